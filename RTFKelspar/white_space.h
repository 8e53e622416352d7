// White space, by unit: Unicode's White_Space property, which is what "\s" matches and what the
// platform trims as white space and line ends. Over bytes, the text is ASCII. Internal to the unit.
#pragma once

#include <string_view>

#include "platform/unicode/NSCharacterSet.h"

namespace kelspar {

template <class Char>
[[nodiscard]] inline bool isSpace(Char c) {
  if (c == ' ' || (c >= '\t' && c <= '\r')) return true;
  if constexpr (sizeof(Char) == 1) return false;
  static const NSCharacterSet spaces = NSCharacterSet::whitespaceAndNewline();
  return c >= 0x80 && spaces.contains(static_cast<char16_t>(c));
}

template <class Char>
[[nodiscard]] inline std::basic_string_view<Char> trimmed(std::basic_string_view<Char> text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace kelspar
