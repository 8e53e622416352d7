// Numbers as the markers of lists write them. Internal.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kelspar {

// u"12"
[[nodiscard]] std::u16string decimalNumeral(int32_t number);

// u"xii"; a number outside 1 to 3999 is decimal.
[[nodiscard]] std::u16string romanNumeral(int32_t number);

// What Roman numerals are made of, greatest first, lower case: m, cm, d, ...
struct RomanDigit {
  int32_t value;
  std::u16string_view text;
};
[[nodiscard]] std::span<const RomanDigit> romanDigits();

// Latin letters to upper case.
void raise(std::u16string* letters);

}  // namespace kelspar
