// A byte's low nibble looks up in eight rows of sixteen at once; the other bits choose among them.
#include "platform/unicode/byte_vector.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kelspar {

ByteRows byteRows(std::span<const char16_t, 256> units) {
  ByteRows rows;
  for (size_t i = 0; i < 256; ++i) {
    rows.low[i] = static_cast<uint8_t>(units[i]);
    rows.high[i] = static_cast<uint8_t>(units[i] >> 8);
  }
  return rows;
}

#if defined(__x86_64__)

namespace {

#define KELSPAR_AVX2 __attribute__((target("avx2")))

constexpr size_t kBlock = 32;

// Bits 4 to 6 of each byte as the highest one, which is what a blend goes by.
struct Choice {
  __m256i bit4, bit5, bit6;
};

KELSPAR_AVX2 inline __m256i inRow(const uint8_t* rows, size_t row, __m256i nibbles) {
  const auto entries = _mm_load_si128(reinterpret_cast<const __m128i*>(rows + 16 * row));
  return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(entries), nibbles);
}

KELSPAR_AVX2 inline __m256i inTwoRows(const uint8_t* rows, size_t row, __m256i nibbles,
                                      const Choice& choice) {
  return _mm256_blendv_epi8(inRow(rows, row, nibbles), inRow(rows, row + 1, nibbles), choice.bit4);
}

KELSPAR_AVX2 inline __m256i lookUp(const uint8_t* rows, __m256i nibbles, const Choice& choice) {
  const __m256i first = _mm256_blendv_epi8(inTwoRows(rows, 0, nibbles, choice),
                                           inTwoRows(rows, 2, nibbles, choice), choice.bit5);
  const __m256i second = _mm256_blendv_epi8(inTwoRows(rows, 4, nibbles, choice),
                                            inTwoRows(rows, 6, nibbles, choice), choice.bit5);
  return _mm256_blendv_epi8(first, second, choice.bit6);
}

KELSPAR_AVX2 inline void store(char16_t* out, __m256i units) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), units);
}

}  // namespace

bool hasByteVectors() {
  static const bool has = __builtin_cpu_supports("avx2") != 0;
  return has;
}

KELSPAR_AVX2 size_t decodeByteBlocks(const ByteRows& rows, bool isAsciiBelow128,
                                     std::string_view bytes, char16_t* out, bool* defined) {
  const __m256i replacement = _mm256_set1_epi16(static_cast<int16_t>(0xFFFD));
  const __m256i zero = _mm256_setzero_si256();
  __m256i undefined = zero;
  size_t at = 0;
  for (; at + kBlock <= bytes.size(); at += kBlock) {
    const auto block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes.data() + at));
    if (isAsciiBelow128 && _mm256_movemask_epi8(block) == 0) {
      store(out + at, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(block)));
      store(out + at + 16, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(block, 1)));
      continue;
    }
    const __m256i nibbles = _mm256_and_si256(block, _mm256_set1_epi8(0x0F));
    const Choice choice{_mm256_slli_epi16(block, 3), _mm256_slli_epi16(block, 2),
                        _mm256_slli_epi16(block, 1)};
    __m256i below = block, belowHigh = zero;
    if (!isAsciiBelow128) {
      below = lookUp(rows.low.data(), nibbles, choice);
      belowHigh = lookUp(rows.high.data(), nibbles, choice);
    }
    const __m256i low =
        _mm256_blendv_epi8(below, lookUp(rows.low.data() + 128, nibbles, choice), block);
    const __m256i high =
        _mm256_blendv_epi8(belowHigh, lookUp(rows.high.data() + 128, nibbles, choice), block);
    const __m256i even = _mm256_unpacklo_epi8(low, high), odd = _mm256_unpackhi_epi8(low, high);
    undefined = _mm256_or_si256(undefined, _mm256_or_si256(_mm256_cmpeq_epi16(even, replacement),
                                                           _mm256_cmpeq_epi16(odd, replacement)));
    store(out + at, _mm256_permute2x128_si256(even, odd, 0x20));
    store(out + at + 16, _mm256_permute2x128_si256(even, odd, 0x31));
  }
  if (_mm256_testz_si256(undefined, undefined) == 0) *defined = false;
  return at;
}

#else

bool hasByteVectors() { return false; }
size_t decodeByteBlocks(const ByteRows&, bool, std::string_view, char16_t*, bool*) { return 0; }

#endif

}  // namespace kelspar
