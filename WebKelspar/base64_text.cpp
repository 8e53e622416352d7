// Base64 as text.
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/foundation/base64.h"

namespace kelspar::WebKelsparNSStringAdditions {

NSString base64DecodeWithEncoding(const NSString& receiver, NSStringEncoding encoding) {
  if (!receiver) return nil;
  return stringWithData(base64::decodeLenient(receiver.view()), encoding);
}

}  // namespace kelspar::WebKelsparNSStringAdditions
