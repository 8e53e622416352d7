// Hexadecimal digits. Internal to the library.
#pragma once

#include <array>
#include <cstdint>
#include <type_traits>

namespace kelspar {

namespace detail {

inline constexpr auto kHexValues = [] {
  std::array<int8_t, 256> values{};
  values.fill(-1);
  for (int8_t i = 0; i < 10; ++i) values[static_cast<uint8_t>('0' + i)] = i;
  for (int8_t i = 0; i < 6; ++i)
    values[static_cast<uint8_t>('a' + i)] = values[static_cast<uint8_t>('A' + i)] = 10 + i;
  return values;
}();

}  // namespace detail

// 0 to 15, either case; -1 for what is no digit.
template <class Char>
[[nodiscard]] constexpr int hexValue(Char c) {
  const auto unit = static_cast<std::make_unsigned_t<Char>>(c);
  return unit < 256 ? detail::kHexValues[unit] : -1;
}

// Two digits at `digits` as a byte; negative when one is none.
template <class Char>
[[nodiscard]] constexpr int hexByte(const Char* digits) {
  return hexValue(digits[0]) * 16 | hexValue(digits[1]);
}

}  // namespace kelspar
