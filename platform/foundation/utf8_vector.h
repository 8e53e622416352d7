// UTF-8 to UTF-16 thirty-two bytes at a time, where the processor has AVX2. Internal to the codec,
// whose plain loop gives the same answers.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace kelspar::utf8 {

// Whether the functions below may be called: the processor is asked once.
[[nodiscard]] bool hasVectors();

// How far a decoder came; both count from the start.
struct Progress {
  size_t bytes, units;
};

// Decodes characters from the start of `bytes` for as long as they are well-formed and a block of
// bytes and of room is left; what was not decoded begins with a whole character or is ill-formed.
// Writes within `out` only, also behind the units that count.
[[nodiscard]] Progress decodeBlocks(std::string_view bytes, std::span<char16_t> out);

// As utf8::unitCount.
[[nodiscard]] size_t countUnitsInBlocks(std::string_view bytes);

}  // namespace kelspar::utf8
