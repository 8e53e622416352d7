// Search for the next byte or unit that needs a decision, sixteen bytes at a time. Internal.
//
// SSE2 belongs to every x86-64 processor; elsewhere, and for what is left at the end, a plain loop
// gives the same answers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kelspar::scan {

// The first position at or behind `from` that holds one of `wanted`, or the text's length.
//
//   scan::findAny(text, 0, u'\\', u'{', u'}')
template <class Char, class... Wanted>
[[nodiscard]] inline size_t findAny(std::basic_string_view<Char> text, size_t from,
                                    Wanted... wanted) {
  static_assert(sizeof(Char) <= 2);
  const Char* const data = text.data();
  const size_t size = text.size();
  size_t at = from;
#if defined(__SSE2__)
  constexpr size_t kBlock = 16 / sizeof(Char);
  const auto spread = [](Char c) {
    return sizeof(Char) == 1 ? _mm_set1_epi8(static_cast<char>(c))
                             : _mm_set1_epi16(static_cast<int16_t>(c));
  };
  const auto equal = [](__m128i a, __m128i b) {
    return sizeof(Char) == 1 ? _mm_cmpeq_epi8(a, b) : _mm_cmpeq_epi16(a, b);
  };
  const __m128i patterns[] = {spread(static_cast<Char>(wanted))...};
  for (; at + kBlock <= size; at += kBlock) {
    const auto block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + at));
    __m128i hits = equal(block, patterns[0]);
    for (size_t i = 1; i < sizeof...(wanted); ++i) {
      hits = _mm_or_si128(hits, equal(block, patterns[i]));
    }
    if (const int mask = _mm_movemask_epi8(hits)) {
      return at + static_cast<size_t>(__builtin_ctz(mask)) / sizeof(Char);
    }
  }
#endif
  for (; at < size; ++at) {
    if (((data[at] == static_cast<Char>(wanted)) || ...)) return at;
  }
  return size;
}

}  // namespace kelspar::scan
