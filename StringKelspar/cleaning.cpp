// Taking out what does not belong: blanks, control characters, doubled line feeds.
#include <algorithm>

#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/foundation/scan.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kelspar::StringKelsparNSStringAdditions {

namespace {

constexpr bool isStripped(char16_t unit) {
  return unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\f' && unit != u'\r';
}

// The first unit at or behind `from` that is below 0x20.
size_t findControl(std::u16string_view text, size_t from) {
  size_t at = from;
#if defined(__SSE2__)
  const __m128i bound = _mm_set1_epi16(0x1F), zero = _mm_setzero_si128();
  for (; at + 8 <= text.size(); at += 8) {
    const auto block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    const __m128i low = _mm_cmpeq_epi16(_mm_subs_epu16(block, bound), zero);
    if (const int mask = _mm_movemask_epi8(low)) {
      return at + static_cast<size_t>(__builtin_ctz(mask)) / 2;
    }
  }
#endif
  while (at < text.size() && text[at] >= 0x20) ++at;
  return at;
}

}  // namespace

NSString cleanString(const NSString& receiver) {
  const auto text = receiver.view();
  std::u16string cleaned;
  size_t from = 0;
  for (size_t at = findControl(text, 0); at < text.size(); at = findControl(text, at + 1)) {
    if (!isStripped(text[at])) continue;
    if (from == 0) cleaned.reserve(text.size());
    cleaned.append(text.substr(from, at - from));
    from = at + 1;
  }
  if (from == 0) return receiver;
  cleaned.append(text.substr(from));
  return NSString(std::move(cleaned));
}

namespace {

// NSCharacterSet::whitespace(), in code: the blanks of Unicode do not change any more.
bool isWhitespace(char16_t unit) {
  if (unit < 0x80) return unit == u' ' || unit == u'\t';
  return unit == 0xA0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200A) || unit == 0x202F ||
         unit == 0x205F || unit == 0x3000;
}

// Whether none of the eight units at `at` is white space, but for blanks before another unit: with
// ten units at least from there on. May say no without need.
bool isEvenBlock([[maybe_unused]] std::u16string_view text, [[maybe_unused]] size_t at) {
#if defined(__SSE2__)
  const auto spread = [](int unit) { return _mm_set1_epi16(static_cast<int16_t>(unit)); };
  const auto load = [&](size_t position) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + position));
  };
  const __m128i zero = _mm_setzero_si128(), blank = spread(u' ');
  // White space of the block and one unit on: tab, blank, U+00A0 and anything above.
  const auto isBlankish = [&](__m128i units) {
    const __m128i isLow = _mm_cmpeq_epi16(_mm_subs_epu16(units, spread(0x9F)), zero);
    return _mm_or_si128(
        _mm_or_si128(_mm_cmpeq_epi16(units, blank), _mm_cmpeq_epi16(units, spread(u'\t'))),
        _mm_andnot_si128(isLow, _mm_cmpeq_epi16(zero, zero)));
  };
  const __m128i units = load(at), isBlank = _mm_cmpeq_epi16(units, blank);
  const __m128i other = _mm_andnot_si128(isBlank, isBlankish(units));
  const __m128i pairs = _mm_and_si128(isBlank, isBlankish(load(at + 1)));
  return _mm_movemask_epi8(_mm_or_si128(other, pairs)) == 0;
#else
  return false;
#endif
}

// The first unit at or behind `from` that breaks the form "words joined by single blanks": a white
// space that is no blank, or a blank before another white space or the end.
size_t findUneven(std::u16string_view text, size_t from) {
  size_t at = from;
  while (at < text.size()) {
    if (at + 10 <= text.size() && isEvenBlock(text, at)) {
      at += 8;
      continue;
    }
    for (const size_t end = std::min(at + 8, text.size()); at < end; ++at) {
      if (!isWhitespace(text[at])) continue;
      if (text[at] != u' ' || at + 1 == text.size() || isWhitespace(text[at + 1])) return at;
    }
  }
  return at;
}

}  // namespace

NSString condenseWhitespace(const NSString& receiver) {
  const auto text = receiver.view();
  if (text.empty()) return receiver;
  if (findUneven(text, 0) == text.size() && text[0] != u' ') return receiver;
  std::u16string condensed;
  condensed.reserve(text.size());
  size_t at = 0;
  while (at < text.size()) {
    const size_t word = at;
    at = findUneven(text, at);
    // Everything up to here is in form, but a blank may begin it.
    size_t from = word;
    if (from < at && text[from] == u' ') ++from;
    if (from < at) {
      if (!condensed.empty()) condensed.push_back(u' ');
      condensed.append(text.substr(from, at - from));
    }
    while (at < text.size() && isWhitespace(text[at])) ++at;
  }
  return condensed == text ? receiver : NSString(std::move(condensed));
}

NSString trimCharsInString(const NSString& receiver) {
  if (!receiver) return nil;
  std::u16string trimmed;
  trimmed.reserve(receiver.length());
  bool changed = false;
  for (const char16_t unit : receiver.view()) {
    const bool goes = unit <= 1 || unit == 0xA0;
    if (!goes) trimmed.push_back(unit & 0xFF);  // deliberate: "%c" writes the low byte
    changed |= goes || unit > 0xFF;
  }
  return changed ? NSString(std::move(trimmed)) : receiver;
}

NSString replaceDoubleNewline(const NSString& receiver) {
  const auto text = receiver.view();
  std::u16string result;
  size_t from = 0;
  bool changed = false;
  for (size_t at = 0; (at = scan::findAny(text, at, u'\n', u'\r')) < text.size();) {
    const bool isRun = text[at] == u'\n';
    const size_t kept = at + isRun;
    size_t next = at + 1;
    while (isRun && next < text.size() && text[next] == u'\n') ++next;
    if (next != kept) {
      if (!changed) result.reserve(text.size());
      changed = true;
      result.append(text.substr(from, kept - from));
      from = next;
    }
    at = next;
  }
  if (!changed) return receiver;
  result.append(text.substr(from));
  return NSString(std::move(result));
}

}  // namespace kelspar::StringKelsparNSStringAdditions
