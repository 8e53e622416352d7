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

#if defined(__SSE2__)
// A block of sixteen bytes full of `c`.
template <class Char>
[[nodiscard]] inline __m128i spread(Char c) {
  static_assert(sizeof(Char) <= 2);
  return sizeof(Char) == 1 ? _mm_set1_epi8(static_cast<char>(c))
                           : _mm_set1_epi16(static_cast<int16_t>(c));
}

// All bits of the bytes or units that are the same in both blocks.
template <class Char>
[[nodiscard]] inline __m128i equal(__m128i a, __m128i b) {
  return sizeof(Char) == 1 ? _mm_cmpeq_epi8(a, b) : _mm_cmpeq_epi16(a, b);
}
#endif

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
  const __m128i patterns[] = {spread(static_cast<Char>(wanted))...};
  for (; at + kBlock <= size; at += kBlock) {
    const auto block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + at));
    __m128i hits = equal<Char>(block, patterns[0]);
    for (size_t i = 1; i < sizeof...(wanted); ++i) {
      hits = _mm_or_si128(hits, equal<Char>(block, patterns[i]));
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

// How far copyUntil may write behind what it copies, in units of either kind.
inline constexpr size_t kCopySlack = 16;

// Copies from `from` on up to the first `wanted` or the text's end, whose position it returns.
// `out` has room for what is copied and kCopySlack more: blocks are written before it is known how
// much of them counts.
template <class Char>
[[nodiscard]] inline size_t copyUntil(std::basic_string_view<Char> text, size_t from, Char wanted,
                                      Char* out) {
  static_assert(sizeof(Char) <= 2);
  const Char* const data = text.data();
  size_t at = from;
#if defined(__SSE2__)
  constexpr size_t kBlock = 16 / sizeof(Char);
  const __m128i pattern = spread(wanted);
  for (; at + kBlock <= text.size(); at += kBlock, out += kBlock) {
    const auto block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(data + at));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
    if (const int mask = _mm_movemask_epi8(equal<Char>(block, pattern)))
      return at + static_cast<size_t>(__builtin_ctz(mask)) / sizeof(Char);
  }
#endif
  for (; at < text.size() && data[at] != wanted; ++at) *out++ = data[at];
  return at;
}

// The number of leading units below 0x80.
[[nodiscard]] inline size_t asciiPrefix(std::u16string_view text) {
  size_t at = 0;
#if defined(__SSE2__)
  const __m128i high = _mm_set1_epi16(static_cast<int16_t>(0xFF80)), zero = _mm_setzero_si128();
  for (; at + 16 <= text.size(); at += 16) {
    const auto* block = reinterpret_cast<const __m128i*>(text.data() + at);
    const __m128i both = _mm_or_si128(_mm_loadu_si128(block), _mm_loadu_si128(block + 1));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(both, high), zero)) != 0xFFFF) break;
  }
#endif
  while (at < text.size() && text[at] < 0x80) ++at;
  return at;
}

// Writes ASCII bytes as units up to the first NUL or byte above 0x7F; returns how many they are.
// `out` has room for `bytes.size()` units.
[[nodiscard]] inline size_t widenASCII(std::string_view bytes, char16_t* out) {
  size_t at = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  for (; at + 16 <= bytes.size(); at += 16) {
    const auto block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + at));
    // Signed: 0x01 to 0x7F are above 0.
    if (_mm_movemask_epi8(_mm_cmpgt_epi8(block, zero)) != 0xFFFF) break;
    auto* to = reinterpret_cast<__m128i*>(out + at);
    _mm_storeu_si128(to, _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(block, zero));
  }
#endif
  for (; at < bytes.size(); ++at) {
    const auto byte = static_cast<uint8_t>(bytes[at]);
    if (byte == 0 || byte > 0x7F) break;
    out[at] = byte;
  }
  return at;
}

}  // namespace kelspar::scan
