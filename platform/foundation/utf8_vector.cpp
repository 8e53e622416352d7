// Each byte of a block is taken for the first of its character, with the next two behind it; what
// that gives at continuation bytes is squeezed out. Checking is the three-table look-up of Keiser
// and Lemire, "Validating UTF-8 in less than one instruction per byte" (2021).
#include "platform/foundation/utf8_vector.h"

#include <array>
#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kelspar::utf8 {

#if defined(__x86_64__)

namespace {

#define KELSPAR_AVX2 __attribute__((target("avx2,popcnt")))

constexpr size_t kBlock = 32;
constexpr size_t kLookahead = 2;

// For each set of lanes that stay, the byte shuffle that moves them together.
struct alignas(16) Shuffle {
  std::array<uint8_t, 16> bytes;
};
constexpr std::array<Shuffle, 256> kSqueeze = [] {
  std::array<Shuffle, 256> table{};
  for (unsigned stay = 0; stay < 256; ++stay) {
    size_t at = 0;
    for (unsigned lane = 0; lane < 8; ++lane) {
      if ((stay >> lane & 1) == 0) continue;
      table[stay].bytes[at++] = static_cast<uint8_t>(2 * lane);
      table[stay].bytes[at++] = static_cast<uint8_t>(2 * lane + 1);
    }
  }
  return table;
}();

// What may be wrong with a byte and the one before it.
enum : uint8_t {
  kTooShort = 1,     // a lead, then no continuation
  kTooLong = 2,      // ASCII, then a continuation
  kOverlong3 = 4,    // E0 80..9F
  kTooLarge = 8,     // F4 90..BF, F5.. 90..BF
  kSurrogate = 16,   // ED A0..BF
  kOverlong2 = 32,   // C0, C1
  kOverlong4 = 64,   // F0 80..8F; with F5.. 80..8F
  kTwoTrails = 128,  // two continuations: wrong unless a longer lead stands before
  kAnyLow = kTooShort | kTooLong | kTwoTrails,
};
using Nibbles = std::array<uint8_t, 16>;
constexpr Nibbles kFirstHigh = {
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTooLong,
    kTwoTrails,
    kTwoTrails,
    kTwoTrails,
    kTwoTrails,
    kTooShort | kOverlong2,
    kTooShort,
    kTooShort | kOverlong3 | kSurrogate,
    kTooShort | kTooLarge | kOverlong4,
};
constexpr uint8_t kLarge = kAnyLow | kTooLarge | kOverlong4;
constexpr Nibbles kFirstLow = {
    kAnyLow | kOverlong2 | kOverlong3 | kOverlong4,
    kAnyLow | kOverlong2,
    kAnyLow,
    kAnyLow,
    kAnyLow | kTooLarge,
    kLarge,
    kLarge,
    kLarge,
    kLarge,
    kLarge,
    kLarge,
    kLarge,
    kLarge,
    kLarge | kSurrogate,
    kLarge,
    kLarge,
};
constexpr uint8_t kTrail = kTooLong | kOverlong2 | kTwoTrails;
constexpr Nibbles kSecondHigh = {
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
    kTrail | kOverlong3 | kOverlong4,
    kTrail | kOverlong3 | kTooLarge,
    kTrail | kSurrogate | kTooLarge,
    kTrail | kSurrogate | kTooLarge,
    kTooShort,
    kTooShort,
    kTooShort,
    kTooShort,
};

KELSPAR_AVX2 inline __m256i lookUp(const Nibbles& table, __m256i nibbles) {
  const auto half = _mm_loadu_si128(reinterpret_cast<const __m128i*>(table.data()));
  return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(half), nibbles);
}

KELSPAR_AVX2 inline __m256i highNibbles(__m256i bytes) {
  return _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(0x0F));
}

// The bytes `kBack` places before those of `block`.
template <int kBack>
KELSPAR_AVX2 inline __m256i before(__m256i block, __m256i previous) {
  return _mm256_alignr_epi8(block, _mm256_permute2x128_si256(previous, block, 0x21), 16 - kBack);
}

// Whether no byte of the block is the one at which a sequence turns out to be ill-formed.
KELSPAR_AVX2 inline bool isWellFormed(__m256i block, __m256i previous) {
  const __m256i first = before<1>(block, previous);
  const __m256i lowNibbles = _mm256_and_si256(first, _mm256_set1_epi8(0x0F));
  const __m256i faults = _mm256_and_si256(
      _mm256_and_si256(lookUp(kFirstHigh, highNibbles(first)), lookUp(kFirstLow, lowNibbles)),
      lookUp(kSecondHigh, highNibbles(block)));
  // Two continuations are right exactly where a lead of three stands two before, of four three.
  const __m256i third = _mm256_subs_epu8(before<2>(block, previous), _mm256_set1_epi8(0xE0 - 0x80));
  const __m256i fourth =
      _mm256_subs_epu8(before<3>(block, previous), _mm256_set1_epi8(0xF0 - 0x80));
  const __m256i wanted =
      _mm256_and_si256(_mm256_or_si256(third, fourth), _mm256_set1_epi8(static_cast<char>(0x80)));
  const __m256i wrong = _mm256_xor_si256(wanted, faults);
  return _mm256_testz_si256(wrong, wrong) == 1;
}

KELSPAR_AVX2 inline __m256i widened(const uint8_t* bytes) {
  return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
}

KELSPAR_AVX2 inline __m256i masked(__m256i units, int16_t mask) {
  return _mm256_and_si256(units, _mm256_set1_epi16(mask));
}

// The longest characters of a block, in bytes: what its units are made of.
enum class Longest { two, three, four };

// The units of sixteen characters, one at each byte; at the second byte of four the low surrogate.
// `preceding`: the byte before each, for characters of four.
template <Longest kLongest>
KELSPAR_AVX2 inline __m256i unitsAt(const uint8_t* bytes, __m128i preceding) {
  const __m256i lead = widened(bytes);
  const __m256i second = masked(widened(bytes + 1), 0x3F);
  __m256i units = _mm256_or_si256(_mm256_slli_epi16(masked(lead, 0x1F), 6), second);
  if constexpr (kLongest != Longest::two) {
    const __m256i third = masked(widened(bytes + 2), 0x3F);
    const __m256i three = _mm256_or_si256(
        _mm256_or_si256(_mm256_slli_epi16(lead, 12), _mm256_slli_epi16(second, 6)), third);
    units = _mm256_blendv_epi8(units, three, _mm256_cmpgt_epi16(lead, _mm256_set1_epi16(0xDF)));
    if constexpr (kLongest == Longest::four) {
      // 0xD800 - (0x10000 >> 10) is 0xD7C0: the plane is counted from 1.
      const __m256i high = _mm256_add_epi16(
          _mm256_or_si256(
              _mm256_slli_epi16(masked(lead, 0x07), 8),
              _mm256_or_si256(_mm256_slli_epi16(second, 2), _mm256_srli_epi16(third, 4))),
          _mm256_set1_epi16(static_cast<int16_t>(0xD7C0)));
      units = _mm256_blendv_epi8(units, high, _mm256_cmpgt_epi16(lead, _mm256_set1_epi16(0xEF)));
      const __m256i low =
          _mm256_or_si256(_mm256_or_si256(_mm256_slli_epi16(masked(second, 0x0F), 6), third),
                          _mm256_set1_epi16(static_cast<int16_t>(0xDC00)));
      const __m256i isSecondOfFour =
          _mm256_cmpgt_epi16(_mm256_cvtepu8_epi16(preceding), _mm256_set1_epi16(0xEF));
      units = _mm256_blendv_epi8(units, low, isSecondOfFour);
    }
  }
  return _mm256_blendv_epi8(units, lead, _mm256_cmpgt_epi16(_mm256_set1_epi16(0x80), lead));
}

KELSPAR_AVX2 inline __m128i squeezeOf(uint32_t stay) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(kSqueeze[stay].bytes.data()));
}

// Writes the units of sixteen bytes that stay; sixteen places are written to.
template <Longest kLongest>
KELSPAR_AVX2 inline char16_t* putHalf(const uint8_t* bytes, __m128i preceding, uint32_t stay,
                                      char16_t* out) {
  const uint32_t low = stay & 0xFF, high = stay >> 8 & 0xFF;
  const __m256i squeeze =
      _mm256_inserti128_si256(_mm256_castsi128_si256(squeezeOf(low)), squeezeOf(high), 1);
  const __m256i units = _mm256_shuffle_epi8(unitsAt<kLongest>(bytes, preceding), squeeze);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(units));
  out += __builtin_popcount(low);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_extracti128_si256(units, 1));
  return out + __builtin_popcount(high);
}

template <Longest kLongest>
KELSPAR_AVX2 inline char16_t* putBlock(const uint8_t* bytes, __m256i preceding, uint32_t stay,
                                       char16_t* out) {
  out = putHalf<kLongest>(bytes, _mm256_castsi256_si128(preceding), stay & 0xFFFF, out);
  return putHalf<kLongest>(bytes + 16, _mm256_extracti128_si256(preceding, 1), stay >> 16, out);
}

KELSPAR_AVX2 inline uint32_t bytesAbove(__m256i block, uint8_t bound) {
  const __m256i least = _mm256_set1_epi8(static_cast<char>(bound + 1));
  return static_cast<uint32_t>(
      _mm256_movemask_epi8(_mm256_cmpeq_epi8(_mm256_max_epu8(block, least), block)));
}

// Steps back over a character that is not complete before `at`.
Progress backToStart(const uint8_t* bytes, Progress at) {
  constexpr uint8_t kLeads[] = {0xC0, 0xE0, 0xF0};
  for (size_t back = 1; back <= 3 && back <= at.bytes; ++back) {
    if (bytes[at.bytes - back] < kLeads[back - 1]) continue;
    const bool isPair = bytes[at.bytes - back] >= 0xF0 && back > 1;
    return {at.bytes - back, at.units - (isPair ? 2 : 1)};
  }
  return at;
}

}  // namespace

bool hasVectors() {
  static const bool has = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
  return has;
}

KELSPAR_AVX2 Progress decodeBlocks(std::string_view text, std::span<char16_t> out) {
  const auto* const bytes = reinterpret_cast<const uint8_t*>(text.data());
  char16_t* put = out.data();
  const char16_t* const end = out.data() + out.size();
  __m256i previous = _mm256_setzero_si256();
  uint32_t fourBefore = 0;  // the last byte of the block before leads four
  size_t at = 0;
  for (; at + kBlock + kLookahead <= text.size() && end - put >= ptrdiff_t{kBlock}; at += kBlock) {
    const auto block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + at));
    if (_mm256_movemask_epi8(block) == 0) {
      const uint32_t tail = bytesAbove(previous, 0xBF) >> 29;
      if (tail != 0 && !isWellFormed(block, previous)) break;
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(put), widened(bytes + at));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(put + 16), widened(bytes + at + 16));
      put += kBlock;
      fourBefore = 0;
      previous = block;
      continue;
    }
    if (!isWellFormed(block, previous)) break;
    // Signed: continuations are -128 to -65.
    const auto stay = static_cast<uint32_t>(
        _mm256_movemask_epi8(_mm256_cmpgt_epi8(block, _mm256_set1_epi8(-65))));
    const uint32_t fours = bytesAbove(block, 0xEF);
    const __m256i preceding = before<1>(block, previous);
    if ((fours | fourBefore) != 0) {
      put = putBlock<Longest::four>(bytes + at, preceding, stay | fours << 1 | fourBefore, put);
    } else if (bytesAbove(block, 0xDF) != 0) {
      put = putBlock<Longest::three>(bytes + at, preceding, stay, put);
    } else {
      put = putBlock<Longest::two>(bytes + at, preceding, stay, put);
    }
    fourBefore = fours >> 31;
    previous = block;
  }
  return backToStart(bytes, {at, static_cast<size_t>(put - out.data())});
}

KELSPAR_AVX2 size_t countUnitsInBlocks(std::string_view text) {
  size_t at = 0, count = 0;
  for (; at + kBlock <= text.size(); at += kBlock) {
    const auto block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text.data() + at));
    const int starts = _mm256_movemask_epi8(_mm256_cmpgt_epi8(block, _mm256_set1_epi8(-65)));
    count += static_cast<size_t>(__builtin_popcount(static_cast<uint32_t>(starts)) +
                                 __builtin_popcount(bytesAbove(block, 0xEF)));
  }
  for (; at < text.size(); ++at) {
    const auto byte = static_cast<uint8_t>(text[at]);
    count += ((byte & 0xC0) != 0x80) + (byte >= 0xF0);
  }
  return count;
}

#else

bool hasVectors() { return false; }
Progress decodeBlocks(std::string_view, std::span<char16_t>) { return {0, 0}; }
size_t countUnitsInBlocks(std::string_view) { return 0; }

#endif

}  // namespace kelspar::utf8
