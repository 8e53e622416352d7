// The base64 codec.
#include "platform/foundation/base64.h"

#include <array>
#include <cstdint>

namespace kelspar::base64 {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr auto kValues = [] {
  std::array<int8_t, 128> values{};
  values.fill(-1);
  for (int8_t value = 0; value < 64; ++value)
    values[static_cast<uint8_t>(kAlphabet[value])] = value;
  return values;
}();

}  // namespace

void encode(std::string_view bytes, std::string* out) {
  const size_t start = out->size();
  out->resize(start + (bytes.size() + 2) / 3 * 4);
  char* to = out->data() + start;
  const auto* from = reinterpret_cast<const uint8_t*>(bytes.data());
  size_t left = bytes.size();
  for (; left >= 3; left -= 3, from += 3, to += 4) {
    const uint32_t bits = from[0] << 16 | from[1] << 8 | from[2];
    to[0] = kAlphabet[bits >> 18];
    to[1] = kAlphabet[bits >> 12 & 63];
    to[2] = kAlphabet[bits >> 6 & 63];
    to[3] = kAlphabet[bits & 63];
  }
  if (left == 0) return;
  const uint32_t bits = from[0] << 16 | (left == 2 ? from[1] << 8 : 0);
  to[0] = kAlphabet[bits >> 18];
  to[1] = kAlphabet[bits >> 12 & 63];
  to[2] = left == 2 ? kAlphabet[bits >> 6 & 63] : '=';
  to[3] = '=';
}

std::optional<std::string> decodeStrict(std::u16string_view text) {
  const bool isPadded = text.size() % 4 == 0;
  for (int i = 0; i < 2 && isPadded && text.ends_with(u'='); ++i) text.remove_suffix(1);
  if (text.size() % 4 == 1) return std::nullopt;
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 2);
  uint32_t bits = 0;
  int count = 0;
  for (const char16_t unit : text) {
    const int value = unit < 128 ? kValues[unit] : -1;
    if (value < 0) return std::nullopt;
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes.push_back(static_cast<char>(bits >> count));
  }
  return bytes;
}

std::string decodeLenient(std::u16string_view text) {
  std::string bytes(text.size() / 4 * 3 + 3, '\0');
  char* to = bytes.data();
  uint32_t bits = 0;
  int count = 0;
  for (const char16_t unit : text) {
    if (unit == u'=') break;
    const int value = unit < 128 ? kValues[unit] : -1;
    if (value < 0) continue;
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    *to++ = static_cast<char>(bits >> count);
  }
  bytes.resize(static_cast<size_t>(to - bytes.data()));
  return bytes;
}

}  // namespace kelspar::base64
