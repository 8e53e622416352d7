// Base64 by thirty-two characters: five ranges of the alphabet compared at once, four six-bit
// values joined to three bytes by two multiplications.
#include "platform/foundation/base64.h"

#if defined(__x86_64__)
#include <immintrin.h>
#define KELSPAR_AVX2 __attribute__((target("avx2")))
#endif

namespace kelspar::base64 {

#if defined(__x86_64__)

namespace {

KELSPAR_AVX2 __m256i load(const char* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

// What is above 0xFF becomes 0xFF or 0, which are foreign too.
KELSPAR_AVX2 __m256i load(const char16_t* from) {
  const auto* blocks = reinterpret_cast<const __m256i*>(from);
  const __m256i narrow =
      _mm256_packus_epi16(_mm256_loadu_si256(blocks), _mm256_loadu_si256(blocks + 1));
  return _mm256_permute4x64_epi64(narrow, 0b11011000);  // the halves interleave
}

KELSPAR_AVX2 __m256i spread(int value) { return _mm256_set1_epi8(static_cast<char>(value)); }

KELSPAR_AVX2 __m256i between(__m256i characters, char first, char last) {
  return _mm256_and_si256(_mm256_cmpgt_epi8(characters, spread(first - 1)),
                          _mm256_cmpgt_epi8(spread(last + 1), characters));
}

KELSPAR_AVX2 __m256i pick(__m256i mask, int shift) { return _mm256_and_si256(mask, spread(shift)); }

// The six-bit values, and in `*foreign` a bit for each character that has none.
KELSPAR_AVX2 __m256i values(__m256i characters, uint32_t* foreign) {
  const __m256i upper = between(characters, 'A', 'Z');
  const __m256i lower = between(characters, 'a', 'z');
  const __m256i digits = between(characters, '0', '9');
  const __m256i plus = _mm256_cmpeq_epi8(characters, spread('+'));
  const __m256i slash = _mm256_cmpeq_epi8(characters, spread('/'));
  const __m256i letterShift = _mm256_or_si256(pick(upper, -'A'), pick(lower, 26 - 'a'));
  const __m256i otherShift = _mm256_or_si256(
      pick(digits, 52 - '0'), _mm256_or_si256(pick(plus, 62 - '+'), pick(slash, 63 - '/')));
  const __m256i known = _mm256_or_si256(_mm256_or_si256(upper, lower),
                                        _mm256_or_si256(digits, _mm256_or_si256(plus, slash)));
  *foreign = ~static_cast<uint32_t>(_mm256_movemask_epi8(known));
  return _mm256_add_epi8(characters, _mm256_or_si256(letterShift, otherShift));
}

// Thirty-two values to twenty-four bytes at the front.
KELSPAR_AVX2 __m256i joined(__m256i values) {
  const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
  const __m256i triples = _mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000));
  const __m256i order = _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,  //
                                         2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
  return _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(triples, order),
                                     _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
}

template <class Char>
KELSPAR_AVX2 Groups decodeGroups(std::basic_string_view<Char> text, uint8_t* out) {
  constexpr size_t kBlock = 32;
  const uint8_t* const start = out;
  size_t at = 0;
  while (at + kBlock <= text.size()) {
    uint32_t foreign = 0;
    const __m256i block = values(load(text.data() + at), &foreign);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), joined(block));
    const size_t known = foreign == 0 ? kBlock : static_cast<size_t>(__builtin_ctz(foreign));
    const size_t whole = known & ~size_t{3};
    at += whole;
    out += whole / 4 * 3;
    if (known == kBlock) continue;
    const size_t groupsEnd = at;
    if (whole == known)
      while (at < text.size() && (text[at] == Char('\r') || text[at] == Char('\n'))) ++at;
    if (at == groupsEnd) return {at, static_cast<size_t>(out - start)};
  }
  const Groups rest = decodeGroupsPortably(text.substr(at), out);
  return {at + rest.read, static_cast<size_t>(out - start) + rest.written};
}

}  // namespace

template <class Char>
DecodeGroups<Char> decodeGroupsVectorised() {
  return __builtin_cpu_supports("avx2") ? &decodeGroups<Char> : nullptr;
}

#else

template <class Char>
DecodeGroups<Char> decodeGroupsVectorised() {
  return nullptr;
}

#endif

template DecodeGroups<char> decodeGroupsVectorised();
template DecodeGroups<char16_t> decodeGroupsVectorised();

}  // namespace kelspar::base64
