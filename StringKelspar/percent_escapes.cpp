// Percent escapes: "%XX" to bytes.
#include <optional>

#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/foundation/hex.h"
#include "platform/foundation/scan.h"

namespace kelspar::StringKelsparNSStringAdditions {

namespace {

constexpr bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// What scanf's "%x" makes of two characters in the "C" locale: the low 8 bits, or nothing. One
// digit is enough, "0x" alone reads as its zero.
std::optional<uint8_t> scanTwo(char first, char second) {
  const int high = hexValue(first), low = hexValue(second);
  if (high >= 0 && low >= 0) return static_cast<uint8_t>(high << 4 | low);
  if (high >= 0) return static_cast<uint8_t>(high);
  if (low < 0) return std::nullopt;
  if (isBlank(first) || first == '+') return static_cast<uint8_t>(low);
  if (first == '-') return static_cast<uint8_t>(-low);
  return std::nullopt;
}

}  // namespace

NSString decodedStringFromPercentEscapesUsingEncoding(const NSString& receiver,
                                                      NSStringEncoding encoding) {
  if (!receiver) return nil;
  // Deliberate: the bound counts units, not bytes; what UTF-8 takes beyond it is dropped.
  std::string bytes = receiver.utf8();
  bytes.resize(receiver.length());
  const std::string_view source = bytes;
  std::string decoded;
  decoded.reserve(source.size());
  uint8_t last = 0;  // deliberate: a faulty escape repeats it
  size_t from = 0;
  for (;;) {
    const size_t percent = scan::findAny(source, from, '%');
    if (percent + 2 >= source.size()) break;
    decoded.append(source.substr(from, percent - from));
    last = scanTwo(source[percent + 1], source[percent + 2]).value_or(last);
    decoded.push_back(static_cast<char>(last));
    from = percent + 3;
  }
  decoded.append(source.substr(from));
  return stringWithBytes(decoded, encoding);
}

}  // namespace kelspar::StringKelsparNSStringAdditions
