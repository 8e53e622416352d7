// The two ways of CRC-16/CCITT-FALSE. Internal to the unit.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kelspar::crc16 {

// The register after `length` bytes, from the register `crc` before them: by tables, eight bytes at
// a time; and by carry-less multiplication, to be called only where the processor has it.
[[nodiscard]] uint16_t sliced(uint16_t crc, const uint8_t* bytes, size_t length);
[[nodiscard]] uint16_t folded(uint16_t crc, const uint8_t* bytes, size_t length);
[[nodiscard]] bool hasCarrylessMultiplication();

}  // namespace kelspar::crc16
