// The LZ stream decoded as its format describes it, byte by byte through the ring: what the real
// decoder is compared with, in tests, fuzzing and benchmarks.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "RTFKelspar/lz_stream.h"

namespace kelspar::lz {

inline std::vector<uint8_t> decodeByTheBook(std::span<const uint8_t> stream, size_t rawSize) {
  std::array<uint8_t, 4096> ring{};
  std::copy(seed().begin(), seed().end(), ring.begin());
  size_t write = kSeedSize, written = 0, control = 0, token = 1;
  std::vector<uint8_t> output(rawSize);
  const auto put = [&](uint8_t byte) {
    output[written++] = byte;
    ring[write] = byte;
    write = (write + 1) % ring.size();
  };
  if (stream.empty()) return output;
  while (token <= stream.size()) {
    const uint8_t bits = stream[control];
    control = SIZE_MAX;
    for (int bit = 0; bit < 8 && control == SIZE_MAX; ++bit) {
      if (bits >> bit & 1) {
        if (token + 2 > stream.size()) {
          control = token;
          continue;
        }
        size_t offset = stream[token] * 16 + (stream[token + 1] >> 4);
        const size_t length = (stream[token + 1] & 15) + 2;
        token += 2;
        if (offset == write || written + length > rawSize) {
          control = token;
          continue;
        }
        for (size_t i = 0; i < length; ++i, offset = (offset + 1) % ring.size()) put(ring[offset]);
      } else {
        if (token + 1 > stream.size() || written + 1 > rawSize) {
          control = token;
          continue;
        }
        put(stream[token++]);
      }
    }
    if (control == SIZE_MAX) control = token;
    token = control + 1;
  }
  return output;
}

}  // namespace kelspar::lz
