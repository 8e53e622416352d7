// Exact search: candidates by vector comparison, hostile texts by an automaton.
#include "platform/unicode/text_search.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kelspar {

namespace {

// The first position at or behind `from` where the needle's first and last units stand.
size_t findEnds(std::u16string_view needle, std::u16string_view text, size_t from) {
  if (text.size() < needle.size()) return text.size();
  const size_t behind = text.size() - needle.size() + 1, reach = needle.size() - 1;
  const char16_t first = needle.front(), last = needle.back();
  size_t at = from;
#if defined(__SSE2__)
  const __m128i firsts = _mm_set1_epi16(static_cast<int16_t>(first));
  const __m128i lasts = _mm_set1_epi16(static_cast<int16_t>(last));
  for (; at + 8 <= behind; at += 8) {
    const auto load = [&](size_t position) {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + position));
    };
    const __m128i hits =
        _mm_and_si128(_mm_cmpeq_epi16(load(at), firsts), _mm_cmpeq_epi16(load(at + reach), lasts));
    if (const int mask = _mm_movemask_epi8(hits)) {
      return at + static_cast<size_t>(__builtin_ctz(mask)) / 2;
    }
  }
#endif
  for (; at < behind; ++at) {
    if (text[at] == first && text[at + reach] == last) return at;
  }
  return text.size();
}

}  // namespace

size_t TextSearch::next() {
  if (needle_.empty() || needle_.size() > text_.size()) return npos;
  return borders_.empty() ? nextByComparing() : nextByAutomaton();
}

size_t TextSearch::nextByComparing() {
  while (at_ < text_.size()) {
    if (compared_ > 8 * at_ + 4096 && needle_.size() > 8) {
      buildAutomaton();
      return nextByAutomaton();
    }
    const size_t candidate = findEnds(needle_, text_, at_);
    if (candidate >= text_.size()) break;
    compared_ += needle_.size();
    const size_t bytes = needle_.size() * sizeof(char16_t);
    const bool found = std::memcmp(text_.data() + candidate, needle_.data(), bytes) == 0;
    at_ = candidate + (found ? step_ : 1);
    if (found) return candidate;
  }
  at_ = text_.size();
  return npos;
}

void TextSearch::buildAutomaton() {
  borders_.assign(needle_.size(), 0);
  for (size_t i = 1, border = 0; i < needle_.size(); ++i) {
    while (border > 0 && needle_[i] != needle_[border]) border = borders_[border - 1];
    if (needle_[i] == needle_[border]) ++border;
    borders_[i] = static_cast<uint32_t>(border);
  }
}

size_t TextSearch::nextByAutomaton() {
  while (at_ < text_.size()) {
    const char16_t unit = text_[at_++];
    while (matched_ > 0 && unit != needle_[matched_]) matched_ = borders_[matched_ - 1];
    if (unit == needle_[matched_]) ++matched_;
    if (matched_ == needle_.size()) {
      matched_ = step_ == 1 ? borders_[matched_ - 1] : 0;
      return at_ - needle_.size();
    }
  }
  return npos;
}

size_t findText(std::u16string_view needle, std::u16string_view text, size_t from) {
  if (from > text.size()) return TextSearch::npos;
  const size_t found = TextSearch(needle, text.substr(from)).next();
  return found == TextSearch::npos ? found : found + from;
}

}  // namespace kelspar
