// The LZ stream of compressed RTF (MS-OXRTFCP 2.2). Internal to the unit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kelspar::lz {

// The text that the dictionary holds before the first byte is decoded (MS-OXRTFCP 2.1.2.1).
inline constexpr size_t kSeedSize = 207;
[[nodiscard]] std::span<const uint8_t, kSeedSize> seed();

// Decodes `stream` into `output`, which is zero. Bytes that the stream does not reach stay so.
void decode(std::span<const uint8_t> stream, std::span<uint8_t> output);

}  // namespace kelspar::lz
