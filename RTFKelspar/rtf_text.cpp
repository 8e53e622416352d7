// RTF bytes to text: as they stand, and as the characters of the document.
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "platform/foundation/utf8.h"
#include "platform/richtext/rtf_reader.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar::RTFKelsparNSDataAdditions {

NSString rtfStringFromData(const NSData& receiver) {
  constexpr NSStringEncoding kTried[] = {NSUTF8StringEncoding, NSISOLatin1StringEncoding,
                                         NSWindowsCP1251StringEncoding};
  for (const NSStringEncoding encoding : kTried) {
    if (NSString text = stringWithData(receiver, encoding)) return text;
  }
  return nil;
}

NSString stringFromRTFData(const NSData& receiver) { return plainTextFromRTF(receiver); }

NSString rtfAsPlainText(const NSData& receiver) {
  // Deliberate: only the first half is read. Half a surrogate pair cannot be encoded.
  if (utf8::asciiPrefix(receiver.chars()) == receiver.length())
    return plainTextFromRTF(receiver.subdata(0, receiver.length() / 2));
  const NSString text = stringWithData(receiver, NSUTF8StringEncoding);
  if (!text) return nil;
  auto half = text.substring(0, text.length() / 2).strictUTF8();
  return half ? plainTextFromRTF(NSData(std::move(*half))) : nil;
}

}  // namespace kelspar::RTFKelsparNSDataAdditions
