// Fields as texts: GUIDs, four-byte identifiers, bits, sizes.
#include <array>
#include <cstring>

#include "BitKelspar/BitKelspar.h"
#include "platform/foundation/hex.h"

namespace kelspar {

namespace {

constexpr size_t kGUIDSize = 16;

// Which byte of a stored GUID each pair of digits is: three little-endian fields, then bytes in
// order.
constexpr std::array<uint8_t, kGUIDSize> kByteOfPair = {3, 2, 1,  0,  5,  4,  7,  6,
                                                        8, 9, 10, 11, 12, 13, 14, 15};
// Pairs with a dash before them.
constexpr bool hasDashBefore(size_t pair) {
  return pair == 4 || pair == 6 || pair == 8 || pair == 10;
}

}  // namespace

NSString BitKelspar::formatGUIDFromData(const NSData& data) {
  if (data.length() < kGUIDSize) return nil;
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  return NSString::build(36, [&](char16_t* out) {
    for (size_t pair = 0; pair < kGUIDSize; ++pair) {
      const uint8_t byte = data.bytes()[kByteOfPair[pair]];
      if (hasDashBefore(pair)) *out++ = u'-';
      *out++ = kDigits[byte >> 4];
      *out++ = kDigits[byte & 15];
    }
  });
}

NSData BitKelspar::dataFromGUIDString(const NSString& text) {
  if (text.length() < 2 * kGUIDSize) return nil;
  std::array<uint8_t, kGUIDSize> bytes{};
  size_t digits = 0;
  const auto append = [&](int digit) {
    if (digit < 0 || digits == 2 * kGUIDSize) return false;
    uint8_t& byte = bytes[kByteOfPair[digits++ / 2]];
    byte = static_cast<uint8_t>(byte << 4 | digit);
    return true;
  };
  for (const char16_t unit : text.view()) {
    if (unit == u'-') continue;
    // The text counts in upper case, and a ligature's upper case is two letters.
    const bool isLigature = unit == u'\uFB00';
    const int digit = isLigature ? 15 : hexValue(unit);
    if (!append(digit) || (isLigature && !append(digit))) return nil;
  }
  return digits == 2 * kGUIDSize ? NSData(bytes.data(), bytes.size()) : nil;
}

NSString BitKelspar::dumpbits(int64_t value) {
  return NSString::build(11, [value](char16_t* out) {
    constexpr char16_t kDigits[] = u"0123456789abcdef";
    *out++ = kDigits[value >> 4 & 15];
    *out++ = kDigits[value & 15];
    *out++ = u' ';
    for (int bit = 0; bit < 8; ++bit) *out++ = (value >> bit & 1) != 0 ? u'1' : u'0';
  });
}

const char* BitKelspar::stringFromFourByteIdentifier(uint32_t identifier) {
  thread_local char buffer[8];
  std::memcpy(buffer, &identifier, sizeof identifier);
  return buffer;
}

NSString BitKelspar::formatSize(double bytes) {
  constexpr const char16_t* kUnits[] = {u"bytes", u"KB", u"MB", u"GB", u"TB"};
  size_t unit = 0;
  while (bytes > 1024.0) {
    bytes *= 0.0009765625;
    if (++unit == std::size(kUnits)) throw NSRangeException("a size beyond TB has no unit");
  }
  return NSString::stringWithFormat(u"%4.2f %@", bytes, kUnits[unit]);
}

}  // namespace kelspar
