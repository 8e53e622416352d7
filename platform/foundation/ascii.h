// Letters and blanks of ASCII, which are all that headers, labels and style sheets know of case and
// white space. Bytes and units above 0x7F are themselves. Internal.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"

namespace kelspar::ascii {

[[nodiscard]] constexpr bool isUpper(auto c) { return c >= 'A' && c <= 'Z'; }

template <class Char>
[[nodiscard]] constexpr Char lower(Char c) {
  return isUpper(c) ? static_cast<Char>(c | 0x20) : c;
}

template <class Char>
[[nodiscard]] std::basic_string<Char> lowerCase(std::basic_string_view<Char> text) {
  std::basic_string<Char> lowered(text);
  std::ranges::transform(lowered, lowered.begin(), lower<Char>);
  return lowered;
}

// Blank and tab to carriage return: HTML's and CSS's white space, and the vertical tab.
[[nodiscard]] constexpr bool isSpace(auto c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The text without what `isBlank` says of at both ends.
template <class Char, class IsBlank>
[[nodiscard]] constexpr std::basic_string_view<Char> trimmed(std::basic_string_view<Char> text,
                                                             IsBlank isBlank) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// Whether nothing in it is above 0x7F.
[[nodiscard]] inline bool isAll(std::string_view text) {
  return utf8::asciiPrefix(text) == text.size();
}
[[nodiscard]] inline bool isAll(std::u16string_view text) {
  return scan::asciiPrefix(text) == text.size();
}

}  // namespace kelspar::ascii
