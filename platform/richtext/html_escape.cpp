#include "platform/richtext/html_escape.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kelspar::html {

namespace {

// Stands for itself and is no surrogate, no noncharacter and no line end.
bool isPlain(char16_t c) {
  return c >= 0x20 && c != u'&' && c != u'<' && c != u'>' && c != u'"' &&
         (c < 0x7F || (c > 0xA0 && c != 0x2028 && c < 0xD800) || (c >= 0xE000 && c < 0xFDD0) ||
          (c > 0xFDEF && c < 0xFFFC));
}

size_t findSpecial(std::u16string_view text, size_t at) {
#if defined(__SSE2__)
  const auto spread = [](int unit) { return _mm_set1_epi16(static_cast<int16_t>(unit)); };
  const __m128i zero = _mm_setzero_si128();
  const __m128i controls = spread(0x1F), delete_ = spread(0x7F), holes = spread(0xA0 - 0x7F);
  const __m128i separator = spread(0x2028), surrogates = spread(0xD7FF);
  const __m128i marks[] = {spread(u'&'), spread(u'<'), spread(u'>'), spread(u'"')};
  while (at + 8 <= text.size()) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
    // Saturating: 0 for what is not above the bound.
    __m128i hits = _mm_cmpeq_epi16(_mm_subs_epu16(units, controls), zero);
    const __m128i inHoles = _mm_subs_epu16(_mm_sub_epi16(units, delete_), holes);
    hits = _mm_or_si128(hits, _mm_cmpeq_epi16(inHoles, zero));
    hits = _mm_or_si128(hits, _mm_cmpeq_epi16(units, separator));
    for (const __m128i mark : marks) hits = _mm_or_si128(hits, _mm_cmpeq_epi16(units, mark));
    const __m128i isBelow = _mm_cmpeq_epi16(_mm_subs_epu16(units, surrogates), zero);
    const int mask = _mm_movemask_epi8(hits) | (_mm_movemask_epi8(isBelow) ^ 0xFFFF);
    if (mask == 0) {
      at += 8;
      continue;
    }
    at += static_cast<size_t>(__builtin_ctz(static_cast<unsigned>(mask))) / 2;
    if (!isPlain(text[at])) return at;
    ++at;
  }
#endif
  while (at < text.size() && isPlain(text[at])) ++at;
  return at;
}

// Appends what is no plain unit; returns how many units it took.
size_t appendSpecial(std::u16string_view text, bool inAttribute, std::u16string* out) {
  const char16_t c = text[0];
  switch (c) {
    case u'&':
      *out += u"&amp;";
      return 1;
    case u'<':
      *out += u"&lt;";
      return 1;
    case u'>':
      *out += u"&gt;";
      return 1;
    case u'"':
      *out += u"&quot;";
      return 1;
    case 0xA0:
      *out += u"&nbsp;";
      return 1;
    case u'\t':
    case u'\f':
    case 0xFFFC:
      *out += c;
      return 1;
    case u'\n':
    case u'\r':
    case 0x2028:
      *out += inAttribute ? u" " : u"<br>";
      return 1;
    default:
      break;
  }
  const bool isPair = c >= 0xD800 && c < 0xDC00 && text.size() > 1 && (text[1] & 0xFC00) == 0xDC00;
  // The last two places of each plane are no characters.
  const bool isCharacter = isPair && !((text[1] & 0x3FE) == 0x3FE && (c & 0x3F) == 0x3F);
  if (isCharacter) {
    *out += text.substr(0, 2);
    return 2;
  }
  *out += u'\uFFFD';
  return 1;
}

}  // namespace

void appendEscaped(std::u16string_view text, bool inAttribute, std::u16string* out) {
  for (size_t at = 0; at < text.size();) {
    const size_t special = findSpecial(text, at);
    out->append(text.substr(at, special - at));
    if (special == text.size()) return;
    at = special + appendSpecial(text.substr(special), inAttribute, out);
  }
}

bool isWritable(std::u16string_view text) {
  std::u16string written;
  for (size_t at = 0; (at = findSpecial(text, at)) < text.size();) {
    written.clear();
    at += appendSpecial(text.substr(at), /*inAttribute=*/true, &written);
    if (written == u"\uFFFD" || written == u" " || written == u"\t" || written == u"\f")
      return false;
  }
  return true;
}

}  // namespace kelspar::html
