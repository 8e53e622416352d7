// Rich text to HTML: the reader and the writer are platform/richtext's.
#include "WebKelspar/WebKelspar.h"
#include "platform/richtext/NSAttributedString.h"
#include "platform/richtext/html_writer.h"

namespace kelspar {

NSString WebKelspar::htmlFromRTFData(const NSData& rtf) {
  return htmlFromAttributedString(NSAttributedString::initWithRTF(rtf));
}

}  // namespace kelspar
