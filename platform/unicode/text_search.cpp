// Exact search: candidates by vector comparison, hostile texts by an automaton.
#include "platform/unicode/text_search.h"

#include <cstdint>
#include <cstring>

#include "platform/foundation/scan.h"

namespace kelspar {

namespace {

// The first position at or behind `from` where the needle's first and last units stand.
template <class Char>
size_t findEnds(std::basic_string_view<Char> needle, std::basic_string_view<Char> text,
                size_t from) {
  if (text.size() < needle.size()) return text.size();
  const size_t behind = text.size() - needle.size() + 1, reach = needle.size() - 1;
  const Char first = needle.front(), last = needle.back();
  size_t at = from;
#if defined(__SSE2__)
  constexpr size_t kBlock = 16 / sizeof(Char);
  const __m128i firsts = scan::spread(first), lasts = scan::spread(last);
  for (; at + kBlock <= behind; at += kBlock) {
    const auto load = [&](size_t position) {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + position));
    };
    const __m128i hits = _mm_and_si128(scan::equal<Char>(load(at), firsts),
                                       scan::equal<Char>(load(at + reach), lasts));
    if (const int mask = _mm_movemask_epi8(hits)) {
      return at + static_cast<size_t>(__builtin_ctz(mask)) / sizeof(Char);
    }
  }
#endif
  for (; at < behind; ++at) {
    if (text[at] == first && text[at + reach] == last) return at;
  }
  return text.size();
}

}  // namespace

template <class Char>
size_t BasicTextSearch<Char>::next() {
  if (needle_.empty() || needle_.size() > text_.size()) return npos;
  return borders_.empty() ? nextByComparing() : nextByAutomaton();
}

template <class Char>
size_t BasicTextSearch<Char>::nextByComparing() {
  while (at_ < text_.size()) {
    if (compared_ > 8 * at_ + 4096 && needle_.size() > 8) {
      buildAutomaton();
      return nextByAutomaton();
    }
    const size_t candidate = findEnds(needle_, text_, at_);
    if (candidate >= text_.size()) break;
    compared_ += needle_.size();
    const size_t bytes = needle_.size() * sizeof(Char);
    const bool found = std::memcmp(text_.data() + candidate, needle_.data(), bytes) == 0;
    at_ = candidate + (found ? step_ : 1);
    if (found) return candidate;
  }
  at_ = text_.size();
  return npos;
}

template <class Char>
void BasicTextSearch<Char>::buildAutomaton() {
  borders_.assign(needle_.size(), 0);
  for (size_t i = 1, border = 0; i < needle_.size(); ++i) {
    while (border > 0 && needle_[i] != needle_[border]) border = borders_[border - 1];
    if (needle_[i] == needle_[border]) ++border;
    borders_[i] = static_cast<uint32_t>(border);
  }
}

template <class Char>
size_t BasicTextSearch<Char>::nextByAutomaton() {
  while (at_ < text_.size()) {
    const Char unit = text_[at_++];
    while (matched_ > 0 && unit != needle_[matched_]) matched_ = borders_[matched_ - 1];
    if (unit == needle_[matched_]) ++matched_;
    if (matched_ == needle_.size()) {
      matched_ = step_ == 1 ? borders_[matched_ - 1] : 0;
      return at_ - needle_.size();
    }
  }
  return npos;
}

template class BasicTextSearch<char16_t>;
template class BasicTextSearch<char>;

size_t findText(std::u16string_view needle, std::u16string_view text, size_t from) {
  if (from > text.size()) return TextSearch::npos;
  const size_t found = TextSearch(needle, text.substr(from)).next();
  return found == TextSearch::npos ? found : found + from;
}

}  // namespace kelspar
