// CRC-16/CCITT-FALSE bit by bit: what the fast ways are compared with, in tests and benchmarks.
#pragma once

#include <cstdint>
#include <span>

namespace kelspar::crc16 {

inline uint16_t byTheBook(uint16_t crc, std::span<const uint8_t> bytes) {
  for (const uint8_t byte : bytes) {
    crc = static_cast<uint16_t>(crc ^ byte << 8);
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<uint16_t>(crc & 0x8000 ? crc << 1 ^ 0x1021 : crc << 1);
    }
  }
  return crc;
}

}  // namespace kelspar::crc16
