// Decoding and encoding by number: ASCII, Latin-1 and the Unicode forms are read and written here,
// bytes and pairs of bytes by table, the rest by ICU or the C library.
#include "platform/unicode/NSStringEncoding.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <vector>

#include "platform/foundation/utf8.h"
#include "platform/unicode/byte_tables.h"
#include "platform/unicode/iconv_converter.h"
#include "platform/unicode/icu_converter.h"

namespace kelspar {

namespace {

using Shape = EncodingShape;

constexpr bool kIsBigEndian = std::endian::native == std::endian::big;

void swapUnits(std::string_view bytes, char16_t* out) {
  size_t at = 0;
  for (; at + 8 <= bytes.size(); at += 8) {
    constexpr uint64_t kLow = UINT64_C(0x00FF00FF00FF00FF);
    uint64_t word;
    std::memcpy(&word, bytes.data() + at, 8);
    word = (word & kLow) << 8 | (word >> 8 & kLow);
    std::memcpy(out + at / 2, &word, 8);
  }
  for (; at < bytes.size(); at += 2) {
    char16_t unit;
    std::memcpy(&unit, bytes.data() + at, 2);
    out[at / 2] = static_cast<char16_t>(unit << 8 | unit >> 8);
  }
}

NSString decodeUTF16(std::string_view bytes, bool bigEndian) {
  if (bytes.size() % 2 != 0) return nil;
  NSString text = NSString::build(bytes.size() / 2, [&](char16_t* out) {
    if (bigEndian == kIsBigEndian) {
      std::memcpy(out, bytes.data(), bytes.size());
    } else {
      swapUnits(bytes, out);
    }
  });
  return utf8::isWellFormed(text) ? text : nil;
}

char32_t codePointAt(std::string_view bytes, size_t at, bool bigEndian) {
  uint32_t c;
  std::memcpy(&c, bytes.data() + at, 4);
  return bigEndian == kIsBigEndian ? c : __builtin_bswap32(c);
}

NSString decodeUTF32(std::string_view bytes, bool bigEndian) {
  if (bytes.size() % 4 != 0) return nil;
  size_t count = bytes.size() / 4;
  bool isValid = true;
  for (size_t i = 0; i < bytes.size(); i += 4) {
    const char32_t c = codePointAt(bytes, i, bigEndian);
    isValid &= c <= 0x10FFFF && (c & 0xFFFFF800) != 0xD800;
    count += c >= 0x10000;
  }
  if (!isValid) return nil;
  return NSString::build(count, [&](char16_t* out) {
    for (size_t i = 0; i < bytes.size(); i += 4) {
      char32_t c = codePointAt(bytes, i, bigEndian);
      if (c >= 0x10000) {
        *out++ = static_cast<char16_t>(0xD7C0 + (c >> 10));
        c = 0xDC00 + (c & 0x3FF);
      }
      *out++ = static_cast<char16_t>(c);
    }
  });
}

// Without a mark: big-endian (RFC 2781, 4.3).
NSString decodeMarkedUTF16(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return decodeUTF16(bytes.substr(2), false);
  return decodeUTF16(bytes.starts_with("\xFE\xFF") ? bytes.substr(2) : bytes, true);
}

NSString decodeMarkedUTF32(std::string_view bytes) {
  constexpr std::string_view kBig("\0\0\xFE\xFF", 4), kLittle("\xFF\xFE\0\0", 4);
  if (bytes.starts_with(kLittle)) return decodeUTF32(bytes.substr(4), false);
  return decodeUTF32(bytes.starts_with(kBig) ? bytes.substr(4) : bytes, true);
}

NSString decodeWithICU(const EncodingRow& row, std::string_view bytes) {
  std::u16string units;
  if (!convertWithICU(row.converter, bytes, Malformed::stop, &units)) return nil;
  return NSString(std::move(units));
}

// Code page 1361 is Johab with a backslash where the standard has the won sign.
constexpr NSStringEncoding kJohab = 0x80000510;
constexpr char16_t kWon = u'\x20A9';

NSString decodeWithSystem(const EncodingRow& row, std::string_view bytes) {
  std::u16string units;
  if (!convertWithIconv(row.converter, bytes, &units)) return nil;
  if (row.number == kJohab) std::ranges::replace(units, kWon, u'\\');
  return NSString(std::move(units));
}

NSData encodeWithSystem(const EncodingRow& row, std::u16string_view text) {
  std::u16string units(text);
  if (row.number == kJohab) std::ranges::replace(units, u'\\', kWon);
  std::string bytes;
  return encodeWithIconv(row.converter, units, &bytes) ? NSData(std::move(bytes)) : nil;
}

void appendUnit(char16_t unit, bool bigEndian, std::string* out) {
  const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
  out->push_back(bigEndian ? high : low);
  out->push_back(bigEndian ? low : high);
}

NSData encodeUTF16(std::u16string_view text, bool bigEndian, bool mark) {
  std::string bytes;
  bytes.reserve(text.size() * 2 + 2);
  if (mark) appendUnit(u'\xFEFF', bigEndian, &bytes);
  for (const char16_t unit : text) appendUnit(unit, bigEndian, &bytes);
  return NSData(std::move(bytes));
}

NSData encodeUTF32(std::u16string_view text, bool bigEndian, bool mark) {
  std::string bytes;
  bytes.reserve(text.size() * 4 + 4);
  const auto append = [&](uint32_t c) {
    const auto high = static_cast<char16_t>(c >> 16), low = static_cast<char16_t>(c & 0xFFFF);
    appendUnit(bigEndian ? high : low, bigEndian, &bytes);
    appendUnit(bigEndian ? low : high, bigEndian, &bytes);
  };
  if (mark) append(0xFEFF);
  for (size_t i = 0; i < text.size(); ++i) {
    uint32_t c = text[i];
    if ((c & 0xFC00) == 0xD800) c = (c << 10) + text[++i] - 0x35FDC00;
    append(c);
  }
  return NSData(std::move(bytes));
}

NSData encodeBelow(std::u16string_view text, char16_t bound) {
  std::string bytes(text.size(), '\0');
  char16_t all = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    bytes[i] = static_cast<char>(text[i]);
    all |= text[i];
  }
  return all < bound ? NSData(std::move(bytes)) : nil;
}

NSData encodeByConverter(const EncodingRow& row, std::u16string_view text) {
  std::string bytes;
  return encodeWithICU(row.converter, text, &bytes) ? NSData(std::move(bytes)) : nil;
}

bool isAvailable(const EncodingRow& row) {
  if (!row.converter) return true;
  return row.shape == Shape::system ? knownToIconv(row.converter) : knownToICU(row.converter);
}

}  // namespace

NSString stringWithBytes(std::string_view bytes, NSStringEncoding encoding) {
  const EncodingRow* row = encodingRow(encoding);
  if (!row) return nil;
  switch (row->shape) {
    case Shape::ascii:
      if (utf8::asciiPrefix(bytes) != bytes.size()) return nil;
      [[fallthrough]];
    case Shape::latin1:
      return NSString::build(bytes.size(), [&](char16_t* out) { utf8::widen(bytes, out); });
    case Shape::utf8:
      return NSString::fromUTF8(bytes);
    case Shape::utf16:
      return decodeMarkedUTF16(bytes);
    case Shape::utf16BE:
    case Shape::utf16LE:
      return decodeUTF16(bytes, row->shape == Shape::utf16BE);
    case Shape::utf32:
      return decodeMarkedUTF32(bytes);
    case Shape::utf32BE:
    case Shape::utf32LE:
      return decodeUTF32(bytes, row->shape == Shape::utf32BE);
    case Shape::single:
    case Shape::windows:
    case Shape::ebcdic:
    case Shape::own:
      return SingleByteTable::of(*row).decode(bytes);
    case Shape::pairs:
      return PairTable::of(*row).decode(bytes);
    case Shape::multi:
      return decodeWithICU(*row, bytes);
    case Shape::system:
      return decodeWithSystem(*row, bytes);
  }
  return nil;
}

NSString stringWithData(const NSData& data, NSStringEncoding encoding) {
  if (!data) return nil;
  return stringWithBytes(data.chars(), encoding);
}

NSData dataUsingEncoding(const NSString& text, NSStringEncoding encoding) {
  const EncodingRow* row = encodingRow(encoding);
  if (!row || !text || !utf8::isWellFormed(text)) return nil;
  switch (row->shape) {
    case Shape::ascii:
      return encodeBelow(text, 0x80);
    case Shape::latin1:
      return encodeBelow(text, 0x100);
    case Shape::utf8:
      return NSData(text.utf8());
    case Shape::utf16:
      return encodeUTF16(text, kIsBigEndian, true);
    case Shape::utf16BE:
    case Shape::utf16LE:
      return encodeUTF16(text, row->shape == Shape::utf16BE, false);
    case Shape::utf32:
      return encodeUTF32(text, kIsBigEndian, true);
    case Shape::utf32BE:
    case Shape::utf32LE:
      return encodeUTF32(text, row->shape == Shape::utf32BE, false);
    case Shape::single:
    case Shape::windows:
    case Shape::ebcdic:
    case Shape::own:
      return SingleByteTable::of(*row).encode(text);
    case Shape::pairs:
    case Shape::multi:
      return encodeByConverter(*row, text);
    case Shape::system:
      return encodeWithSystem(*row, text);
  }
  return nil;
}

std::span<const NSStringEncoding> availableStringEncodings() {
  static const std::vector<NSStringEncoding> available = [] {
    std::vector<NSStringEncoding> numbers;
    for (const EncodingRow& row : allEncodings()) {
      if (isAvailable(row)) numbers.push_back(row.number);
    }
    return numbers;
  }();
  return available;
}

NSString localizedNameOfStringEncoding(NSStringEncoding encoding) {
  const EncodingRow* row = encodingRow(encoding);
  return row ? NSString::fromStatic(row->name) : nil;
}

}  // namespace kelspar
