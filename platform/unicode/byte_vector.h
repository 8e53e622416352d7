// Single bytes to units by table, thirty-two at a time, where the processor has AVX2. Internal to
// the tables, whose plain loop gives the same answers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace kelspar {

// The units of all bytes, apart into their low and high bytes, for look-ups in registers.
struct ByteRows {
  alignas(16) std::array<uint8_t, 256> low, high;
};
[[nodiscard]] ByteRows byteRows(std::span<const char16_t, 256> units);

// Whether the function below may be called: the processor is asked once.
[[nodiscard]] bool hasByteVectors();

// Writes one unit a byte for as many whole blocks as there are, and returns how many bytes that is.
// `isAsciiBelow128` says so of the table. `*defined` becomes false when a unit was U+FFFD, and
// stays otherwise.
[[nodiscard]] size_t decodeByteBlocks(const ByteRows& rows, bool isAsciiBelow128,
                                      std::string_view bytes, char16_t* out, bool* defined);

}  // namespace kelspar
