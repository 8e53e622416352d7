// Base64 as text.
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_words.h"
#include "platform/foundation/base64.h"

namespace kelspar::WebKelsparNSStringAdditions {

NSString textOfBase64(std::u16string_view text, NSStringEncoding encoding) {
  return stringWithData(base64::decodeLenient(text), encoding);
}

NSString base64DecodeWithEncoding(const NSString& receiver, NSStringEncoding encoding) {
  return receiver ? textOfBase64(receiver, encoding) : nil;
}

}  // namespace kelspar::WebKelsparNSStringAdditions
