// UTF-8 to UTF-16 and back: strict, or with replacement. Internal to the library.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace kelspar::utf8 {

inline constexpr char16_t kReplacement = 0xFFFD;

// The units of `bytes` when they are well-formed: one for each byte that is no continuation, one
// more for each lead of four.
[[nodiscard]] size_t unitCount(std::string_view bytes);

// Writes the units of `bytes` to `out`, which has room for `unitCount(bytes)` of them at least, and
// returns how many they are. Stops at the first byte that is not well-formed UTF-8 (Unicode, table
// 3-7) and stores its position in `*valid`; `*valid == bytes.size()` when all is well.
size_t decode(std::string_view bytes, std::span<char16_t> out, size_t* valid);
// The same in a plain loop: for single characters and for other processors.
size_t decodePlainly(std::string_view bytes, char16_t* out, size_t* valid);

// The whole text; each maximal part of an ill-formed sequence becomes one U+FFFD.
std::u16string decodeReplacing(std::string_view bytes);

// Appends the UTF-8 form of `units`; lone surrogates become U+FFFD. False when there was one.
bool append(std::u16string_view units, std::string* out);

// Whether every surrogate has its partner, so that the text has a UTF-8 form.
bool isWellFormed(std::u16string_view units);

// Appends one code point, a surrogate as its three bytes.
void appendCodePoint(char32_t codePoint, std::string* out);

// Number of leading bytes below 0x80.
size_t asciiPrefix(std::string_view bytes);

// Widens ASCII or Latin-1 bytes to units.
void widen(std::string_view bytes, char16_t* out);

}  // namespace kelspar::utf8
