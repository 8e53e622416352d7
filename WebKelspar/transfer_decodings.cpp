// Quoted-printable and base64 as text, and text as simple quoted-printable.
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/foundation/base64.h"

namespace kelspar::WebKelsparNSStringAdditions {

using StringKelsparNSStringAdditions::decodedStringFromPercentEscapesUsingEncoding;

NSString quotedPrintableDecodeWithEncoding(const NSString& receiver, NSStringEncoding encoding) {
  if (!receiver) return nil;
  // The order is the contract: "==\r\n\n" ends in two removals, "%" is kept apart from "=".
  NSMutableString text(receiver.view());
  text.replaceOccurrences(u"=\r\n", u"");
  text.replaceOccurrences(u"=\n", u"");
  text.replaceOccurrences(u"%", u"%25");
  text.replaceOccurrences(u"=", u"%");
  text.replaceOccurrences(u"%C2%A0", u" ");  // deliberate: upper case only
  const NSString escaped = std::move(text).copy();
  const NSString decoded = decodedStringFromPercentEscapesUsingEncoding(escaped, encoding);
  return decoded ? decoded : forceQuotedPrintableDecode(escaped);
}

NSString forceQuotedPrintableDecode(const NSString& receiver) {
  if (!receiver) return nil;
  for (const NSStringEncoding encoding : availableStringEncodings()) {
    const NSString decoded = decodedStringFromPercentEscapesUsingEncoding(receiver, encoding);
    if (decoded) return decoded;
  }
  return receiver;
}

NSString base64DecodeWithEncoding(const NSString& receiver, NSStringEncoding encoding) {
  if (!receiver) return nil;
  return stringWithBytes(base64::decodeLenient(receiver.view()), encoding);
}

NSString createQuotedPrintable(const NSString& receiver) {
  if (!receiver) return nil;
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  std::u16string out;
  out.reserve(receiver.length() * 3);
  for (const char byte : receiver.utf8()) {
    const auto value = static_cast<uint8_t>(byte);
    if (value == 0) break;
    if (value == '\n' || (value >= 32 && value <= 126)) {
      out.push_back(value);
    } else {
      out.append({u'=', kDigits[value >> 4], kDigits[value & 15]});
    }
  }
  // No other white space is left.
  const size_t first = out.find_first_not_of(u" \n");
  if (first == std::u16string::npos) return u""_ns;
  return NSString(out.substr(first, out.find_last_not_of(u" \n") - first + 1));
}

}  // namespace kelspar::WebKelsparNSStringAdditions
