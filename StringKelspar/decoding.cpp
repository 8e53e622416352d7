// Bytes of unknown encoding to text.
#include <algorithm>

#include "StringKelspar/StringKelspar.h"
#include "platform/unicode/NSEncodingDetector.h"

namespace kelspar {

namespace {

constexpr NSStringEncoding kCStringTrials[] = {
    NSASCIIStringEncoding,
    NSUTF8StringEncoding,
    NSUnicodeStringEncoding,
    NSWindowsCP1252StringEncoding,
};

constexpr NSStringEncoding kHints[] = {
    NSUTF8StringEncoding,
    NSISOLatin1StringEncoding,
    NSWindowsCP1252StringEncoding,
};

// In order of preference. Latin-1 takes everything, so what stands behind it is never reached; the
// order is kept all the same.
constexpr NSStringEncoding kDataFallbacks[] = {
    NSUTF8StringEncoding,
    NSISOLatin1StringEncoding,
    NSWindowsCP1252StringEncoding,
    NSASCIIStringEncoding,
    NSUnicodeStringEncoding,
    NSUTF16BigEndianStringEncoding,
    NSUTF16LittleEndianStringEncoding,
    NSUTF32StringEncoding,
    NSUTF32BigEndianStringEncoding,
    NSUTF32LittleEndianStringEncoding,
    NSMacOSRomanStringEncoding,
    NSISOLatin2StringEncoding,
    NSWindowsCP1250StringEncoding,
    NSWindowsCP1251StringEncoding,
    NSShiftJISStringEncoding,
    NSISO2022JPStringEncoding,
    NSJapaneseEUCStringEncoding,
    NSSymbolStringEncoding,
    NSNEXTSTEPStringEncoding,
};

}  // namespace

NSString StringKelspar::stringFromCString(const char* bytes) {
  if (!bytes) return u""_ns;
  for (const NSStringEncoding encoding : kCStringTrials) {
    if (NSString text = stringWithBytes(bytes, encoding)) return text;
  }
  return u""_ns;
}

bool StringKelspar::isValidDecodedString(const NSString& string) {
  const auto head = string.view().substr(0, 100);
  const auto replaced = std::ranges::count(head, u'\xFFFD');
  return !head.empty() && static_cast<double>(replaced) <= 0.2 * static_cast<double>(head.size());
}

NSString StringKelspar::stringFromNSData(const id& object) {
  if (object.is<NSString>()) return object.as<NSString>();
  const auto data = object.as<NSData>();
  if (data.isEmpty()) return u""_ns;
  EncodingDetection detected = stringEncodingForData(data, kHints);
  if (detected.text && !detected.usedLossyConversion) return detected.text;
  for (const NSStringEncoding encoding : kDataFallbacks) {
    NSString text = stringWithData(data, encoding);
    if (isValidDecodedString(text)) return text;
  }
  return stringWithData(data, NSISOLatin1StringEncoding);
}

NSString StringKelspar::fixUnicode(const NSString& string) { return string; }

}  // namespace kelspar
