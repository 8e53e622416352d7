// Charset labels, and text under a label, as mail has them.
#include "platform/unicode/charset_labels.h"

#include "MailKelspar/MailKelspar.h"
#include "platform/richtext/html_charset.h"

namespace kelspar {

NSString MailKelspar::encodingOfCharsetLabel(const NSString& label) {
  return kelspar::encodingOfCharsetLabel(label);
}

NSString MailKelspar::textFromData(const NSData& bytes, const NSString& label) {
  return textUnderCharsetLabel(bytes, label);
}

NSString MailKelspar::charsetDeclaredByHTML(const NSData& html) {
  return html::declaredCharset(html);
}

}  // namespace kelspar
