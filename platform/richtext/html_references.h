// Character references: "&amp;", "&#233;", "&#xE9;" (WHATWG HTML, 13.2.5.72 to 13.2.5.80).
// Internal to the library.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelspar::html {

// What a reference stands for: one or two units.
struct Reference {
  size_t length = 0;  // units of the reference itself, "&" and ";" included; 0: there is none
  uint8_t count = 0;  // units that it stands for
  char16_t units[2] = {0, 0};

  [[nodiscard]] std::u16string_view text() const { return {units, count}; }
};

// The reference at `at`, where an "&" stands. In attributes a name without ";" before "=" or a
// letter or digit is no reference. Numbers outside Unicode, surrogates and 0 give U+FFFD; 128 to
// 159 are read as Windows-1252, as the rules have it. Constant time in all but a number's digits.
[[nodiscard]] Reference readReference(std::u16string_view text, size_t at, bool inAttribute);

// An attribute's value with its references replaced and CR LF and CR turned into LF.
[[nodiscard]] std::u16string decodeAttributeValue(std::u16string_view raw);

}  // namespace kelspar::html
