// XOR and CRC-16/CCITT-FALSE, each as fast as memory is read.
#include "BitKelspar/checksums.h"

#include <array>
#include <cstring>

#include "BitKelspar/BitKelspar.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kelspar {

namespace crc16 {

namespace {

constexpr uint16_t kPolynomial = 0x1021;

// table[k][b]: what byte `b` does to the register when `k` zero bytes follow it.
constexpr auto kTables = [] {
  std::array<std::array<uint16_t, 256>, 8> tables{};
  for (int byte = 0; byte < 256; ++byte) {
    auto crc = static_cast<uint16_t>(byte << 8);
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<uint16_t>(crc << 1 ^ (crc & 0x8000 ? kPolynomial : 0));
    }
    tables[0][byte] = crc;
  }
  for (size_t k = 1; k < tables.size(); ++k) {
    for (int byte = 0; byte < 256; ++byte) {
      const uint16_t before = tables[k - 1][byte];
      tables[k][byte] = static_cast<uint16_t>(before << 8 ^ tables[0][before >> 8]);
    }
  }
  return tables;
}();

// x^exponent modulo the polynomial.
constexpr uint64_t powerOfX(int exponent) {
  uint32_t value = 1;
  for (int i = 0; i < exponent; ++i) {
    value <<= 1;
    if (value & 0x10000) value ^= 0x10000 | kPolynomial;
  }
  return value;
}

}  // namespace

uint16_t sliced(uint16_t crc, const uint8_t* bytes, size_t length) {
  for (; length >= 8; bytes += 8, length -= 8) {
    crc = static_cast<uint16_t>(kTables[7][bytes[0] ^ crc >> 8] ^
                                kTables[6][bytes[1] ^ (crc & 0xFF)] ^ kTables[5][bytes[2]] ^
                                kTables[4][bytes[3]] ^ kTables[3][bytes[4]] ^ kTables[2][bytes[5]] ^
                                kTables[1][bytes[6]] ^ kTables[0][bytes[7]]);
  }
  for (; length > 0; ++bytes, --length) {
    crc = static_cast<uint16_t>(crc << 8 ^ kTables[0][crc >> 8 ^ *bytes]);
  }
  return crc;
}

#if defined(__x86_64__)

namespace {

#define KELSPAR_CLMUL __attribute__((target("pclmul,ssse3,sse4.1")))

// A block as a polynomial whose highest power is its first byte's highest bit.
KELSPAR_CLMUL inline __m128i loadBlock(const uint8_t* bytes) {
  const __m128i reversed = _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)), reversed);
}

// `block` moved up by as many bits as `powers` was made for, modulo the polynomial: its high half
// times x^(n + 64), its low half times x^n.
KELSPAR_CLMUL inline __m128i fold(__m128i block, __m128i powers) {
  return _mm_xor_si128(_mm_clmulepi64_si128(block, powers, 0x11),
                       _mm_clmulepi64_si128(block, powers, 0x00));
}

constexpr int kLanes = 8;
constexpr size_t kStride = 16 * kLanes;

}  // namespace

bool hasCarrylessMultiplication() {
  static const bool has = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("ssse3") &&
                          __builtin_cpu_supports("sse4.1");
  return has;
}

// Folds eight blocks at a time onto the eight that follow (Gopal et al., "Fast CRC computation for
// generic polynomials using PCLMULQDQ"); what is left is short enough for the tables.
KELSPAR_CLMUL uint16_t folded(uint16_t crc, const uint8_t* bytes, size_t length) {
  if (length < 2 * kStride) return sliced(crc, bytes, length);
  const __m128i farPowers = _mm_set_epi64x(powerOfX(128 * kLanes + 64), powerOfX(128 * kLanes));
  const __m128i nearPowers = _mm_set_epi64x(powerOfX(128 + 64), powerOfX(128));
  __m128i lanes[kLanes];
  for (int i = 0; i < kLanes; ++i) lanes[i] = loadBlock(bytes + 16 * i);
  // The register stands above the first sixteen bits.
  lanes[0] = _mm_xor_si128(lanes[0], _mm_set_epi64x(static_cast<int64_t>(uint64_t{crc} << 48), 0));
  bytes += kStride, length -= kStride;
  for (; length >= kStride; bytes += kStride, length -= kStride) {
    for (int i = 0; i < kLanes; ++i) {
      lanes[i] = _mm_xor_si128(fold(lanes[i], farPowers), loadBlock(bytes + 16 * i));
    }
  }
  __m128i block = lanes[0];
  for (int i = 1; i < kLanes; ++i) block = _mm_xor_si128(fold(block, nearPowers), lanes[i]);

  uint8_t left[16];
  const __m128i reversed = _mm_set_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(left), _mm_shuffle_epi8(block, reversed));
  return sliced(sliced(0, left, sizeof left), bytes, length);
}

#else

bool hasCarrylessMultiplication() { return false; }

uint16_t folded(uint16_t crc, const uint8_t* bytes, size_t length) {
  return sliced(crc, bytes, length);
}

#endif

}  // namespace crc16

uint8_t BitKelspar::xorChecksumOfData(const NSData& data) {
  const uint8_t* bytes = data.bytes();
  size_t left = data.length();
  uint64_t words[4] = {};
  for (; left >= sizeof words; bytes += sizeof words, left -= sizeof words) {
    uint64_t next[4];
    std::memcpy(next, bytes, sizeof next);
    for (int i = 0; i < 4; ++i) words[i] ^= next[i];
  }
  uint64_t all = words[0] ^ words[1] ^ words[2] ^ words[3];
  for (int shift = 32; shift >= 8; shift /= 2) all ^= all >> shift;
  auto checksum = static_cast<uint8_t>(all);
  for (; left > 0; ++bytes, --left) checksum ^= *bytes;
  return checksum;
}

uint16_t BitKelspar::crc16OfData(const NSData& data) {
  if (data.isEmpty()) return 0;
  return crc16::hasCarrylessMultiplication() ? crc16::folded(0xFFFF, data.bytes(), data.length())
                                             : crc16::sliced(0xFFFF, data.bytes(), data.length());
}

}  // namespace kelspar
