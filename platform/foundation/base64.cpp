// The base64 codec.
#include "platform/foundation/base64.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <type_traits>

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

// -1 for what is not of the alphabet.
template <class Char>
int valueOf(Char c) {
  const auto unit = static_cast<std::make_unsigned_t<Char>>(c);
  return unit < 128 ? kValues[unit] : -1;
}

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
    const int value = valueOf(unit);
    if (value < 0) return std::nullopt;
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes.push_back(static_cast<char>(bits >> count));
  }
  return bytes;
}

template <class Char>
Groups decodeGroupsPortably(std::basic_string_view<Char> text, uint8_t* out) {
  const uint8_t* const start = out;
  size_t at = 0;
  while (at < text.size()) {
    if (text[at] == Char('\n') || text[at] == Char('\r')) {
      ++at;
      continue;
    }
    if (at + 4 > text.size()) break;
    int32_t bits = 0;
    for (size_t i = 0; i < 4; ++i) bits = bits << 6 | valueOf(text[at + i]);
    if (bits < 0) break;
    *out++ = static_cast<uint8_t>(bits >> 16);
    *out++ = static_cast<uint8_t>(bits >> 8);
    *out++ = static_cast<uint8_t>(bits);
    at += 4;
  }
  return {at, static_cast<size_t>(out - start)};
}
template Groups decodeGroupsPortably(std::string_view, uint8_t*);
template Groups decodeGroupsPortably(std::u16string_view, uint8_t*);

namespace {

template <class Char>
Groups decodeGroups(std::basic_string_view<Char> text, uint8_t* out) {
  static const DecodeGroups<Char> best = [] {
    const DecodeGroups<Char> vectorised = decodeGroupsVectorised<Char>();
    return vectorised ? vectorised : &decodeGroupsPortably<Char>;
  }();
  return best(text, out);
}

// Whole groups at once where the text allows; about foreign characters, one by one.
template <class Char>
NSData decode(std::basic_string_view<Char> text, AtPadding atPadding) {
  constexpr size_t kSlack = 32;
  const size_t room = text.size() / 4 * 3 + 3;
  auto* const bytes = static_cast<uint8_t*>(std::malloc(room + kSlack));
  if (!bytes) throw std::bad_alloc();
  uint8_t* to = bytes;
  uint32_t bits = 0;
  int count = 0;  // of bits that are no byte yet
  for (size_t at = 0; at < text.size();) {
    if (count == 0) {
      const Groups groups = decodeGroups(text.substr(at), to);
      at += groups.read;
      to += groups.written;
    }
    for (bool isForeign = true; at < text.size() && (isForeign || count > 0); ++at) {
      const int value = valueOf(text[at]);
      isForeign = value < 0;
      if (isForeign && text[at] == Char('=')) {
        if (atPadding == AtPadding::stop) text = text.substr(0, at);
        count = 0;
      }
      if (isForeign) continue;
      bits = bits << 6 | static_cast<uint32_t>(value);
      count += 6;
      if (count < 8) continue;
      count -= 8;
      *to++ = static_cast<uint8_t>(bits >> count);
    }
  }
  const auto length = static_cast<size_t>(to - bytes);
  void* const fitting = std::realloc(bytes, std::max<size_t>(length, 1));
  return NSData::adoptingMalloc(fitting ? static_cast<uint8_t*>(fitting) : bytes, length);
}

}  // namespace

NSData decodeLenient(std::u16string_view text, AtPadding atPadding) {
  return decode(text, atPadding);
}

NSData decodeLenient(std::string_view text, AtPadding atPadding) { return decode(text, atPadding); }

}  // namespace kelspar::base64
