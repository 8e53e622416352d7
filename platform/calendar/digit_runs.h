// Numbers that are too long for ICU, made shorter. Internal to the library.
//
// ICU takes a number of any length for any field, reads it at the square of its length, and divides
// by zero for a fraction of a second of more than 34 digits.
#pragma once

#include <string>
#include <string_view>

namespace kelspar::calendar {

// How many digits from the first that is not 0 are left. Every longer number is infinite to ICU:
// those of 310 digits are.
inline constexpr size_t kMostDigits = 1000;
// How many digits of a fraction are left. Longer fractions, where they can be divided at all, are
// whole seconds to ICU as this one is.
inline constexpr size_t kMostFractionDigits = 34;

// The text with the digits dropped that change nothing. An exponent behind a number that lost
// digits would change something: such a number becomes one that nothing describes.
[[nodiscard]] std::u16string withShorterNumbers(std::u16string_view text);

// The text with the digits dropped that are too many for the fraction behind its first ".".
[[nodiscard]] std::u16string withShorterFraction(std::u16string_view text);

}  // namespace kelspar::calendar
