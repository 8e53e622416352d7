#include "platform/richtext/html_white_space.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kelspar::html {

size_t findCollapsible(std::u16string_view text, size_t from) {
  const size_t size = text.size();
  size_t at = from;
#if defined(__SSE2__)
  const __m128i blank = _mm_set1_epi16(u' ');
  const __m128i tab = _mm_set1_epi16(u'\t');
  const __m128i reach = _mm_set1_epi16(u'\r' - u'\t');
  const __m128i zero = _mm_setzero_si128();
  for (; at + 9 <= size; at += 8) {
    const auto* const units = reinterpret_cast<const __m128i*>(text.data() + at);
    const __m128i here = _mm_loadu_si128(units);
    const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at + 1));
    const __m128i twice = _mm_and_si128(_mm_cmpeq_epi16(here, blank), _mm_cmpeq_epi16(next, blank));
    const __m128i control = _mm_cmpeq_epi16(_mm_subs_epu16(_mm_sub_epi16(here, tab), reach), zero);
    if (const int mask = _mm_movemask_epi8(_mm_or_si128(twice, control))) {
      return at + static_cast<size_t>(__builtin_ctz(mask)) / 2;
    }
  }
#endif
  for (; at < size; ++at) {
    if (text[at] >= u'\t' && text[at] <= u'\r') return at;
    if (text[at] == u' ' && at + 1 < size && text[at + 1] == u' ') return at;
  }
  return size;
}

}  // namespace kelspar::html
