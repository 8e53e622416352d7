// The UTF-8 codec, by Unicode's table 3-7 of well-formed sequences. Blocks are left to the vector
// code where the processor has it.
#include "platform/foundation/utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/foundation/utf8_vector.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kelspar::utf8 {

namespace {

// One well-formed sequence, or the length of the maximal ill-formed part that begins here.
struct Sequence {
  char32_t codePoint;
  uint8_t length;
  bool wellFormed;
};

Sequence readSequence(const uint8_t* p, size_t left) {
  const uint8_t lead = p[0];
  if (lead < 0x80) return {lead, 1, true};
  const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4) return {0, 1, false};
  // The second byte's bounds shut out overlong forms, surrogates and what lies beyond U+10FFFF.
  const uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  char32_t codePoint = lead & (0x3F >> following);
  for (int i = 1; i <= following; ++i) {
    const uint8_t least = i == 1 ? low : 0x80, most = i == 1 ? high : 0xBF;
    if (static_cast<size_t>(i) >= left || p[i] < least || p[i] > most) {
      return {0, static_cast<uint8_t>(i), false};
    }
    codePoint = codePoint << 6 | (p[i] & 0x3F);
  }
  return {codePoint, static_cast<uint8_t>(following + 1), true};
}

inline char16_t* put(char32_t codePoint, char16_t* out) {
  if (codePoint < 0x10000) {
    *out++ = static_cast<char16_t>(codePoint);
  } else {
    *out++ = static_cast<char16_t>(0xD7C0 + (codePoint >> 10));
    *out++ = static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF));
  }
  return out;
}

}  // namespace

bool isWellFormed(std::u16string_view units) {
  size_t at = 0;
  while (at < units.size()) {
#if defined(__SSE2__)
    // Surrogates are the units of which the upper five bits are 11011.
    const __m128i upper = _mm_set1_epi16(static_cast<int16_t>(0xF800));
    const __m128i surrogate = _mm_set1_epi16(static_cast<int16_t>(0xD800));
    for (; at + 8 <= units.size(); at += 8) {
      const auto block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units.data() + at));
      const __m128i found = _mm_cmpeq_epi16(_mm_and_si128(block, upper), surrogate);
      if (_mm_movemask_epi8(found) != 0) break;
    }
#endif
    const size_t end = std::min(at + 8, units.size());
    while (at < end) {
      const char16_t unit = units[at++];
      if ((unit & 0xF800) != 0xD800) continue;
      if (unit >= 0xDC00 || at == units.size() || (units[at] & 0xFC00) != 0xDC00) return false;
      ++at;
    }
  }
  return true;
}

size_t asciiPrefix(std::string_view bytes) {
  size_t at = 0;
#if defined(__SSE2__)
  for (; at + 16 <= bytes.size(); at += 16) {
    const auto block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + at));
    if (const int high = _mm_movemask_epi8(block)) return at + __builtin_ctz(high);
  }
#endif
  while (at < bytes.size() && static_cast<uint8_t>(bytes[at]) < 0x80) ++at;
  return at;
}

void widen(std::string_view bytes, char16_t* out) {
  size_t at = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  for (; at + 16 <= bytes.size(); at += 16) {
    const auto block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data() + at));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + at), _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + at + 8), _mm_unpackhi_epi8(block, zero));
  }
#endif
  for (; at < bytes.size(); ++at) out[at] = static_cast<uint8_t>(bytes[at]);
}

size_t unitCount(std::string_view bytes) {
  if (hasVectors()) return countUnitsInBlocks(bytes);
  size_t count = 0;
  for (const char c : bytes) {
    const auto byte = static_cast<uint8_t>(c);
    count += ((byte & 0xC0) != 0x80) + (byte >= 0xF0);
  }
  return count;
}

size_t decode(std::string_view bytes, std::span<char16_t> out, size_t* valid) {
  const Progress done = hasVectors() ? decodeBlocks(bytes, out) : Progress{0, 0};
  const size_t rest = decodePlainly(bytes.substr(done.bytes), out.data() + done.units, valid);
  *valid += done.bytes;
  return done.units + rest;
}

size_t decodePlainly(std::string_view bytes, char16_t* out, size_t* valid) {
  char16_t* const start = out;
  const auto* p = reinterpret_cast<const uint8_t*>(bytes.data());
  size_t at = 0;
  while (at < bytes.size()) {
    const uint8_t lead = p[at];
    // The frequent forms, where the next bytes need no look at bounds of their own.
    if (at + 2 < bytes.size()) {
      const uint8_t second = p[at + 1], third = p[at + 2];
      if (lead >= 0xC2 && lead < 0xE0 && (second & 0xC0) == 0x80) {
        *out++ = static_cast<char16_t>((lead & 0x1F) << 6 | (second & 0x3F));
        at += 2;
        continue;
      }
      if (lead > 0xE0 && lead < 0xED && (second & 0xC0) == 0x80 && (third & 0xC0) == 0x80) {
        *out++ = static_cast<char16_t>((lead & 0x0F) << 12 | (second & 0x3F) << 6 | (third & 0x3F));
        at += 3;
        continue;
      }
      if (lead < 0x80 && second >= 0x80) {
        *out++ = lead;
        ++at;
        continue;
      }
    }
    if (lead < 0x80) {
      const size_t run = asciiPrefix(bytes.substr(at));
      widen(bytes.substr(at, run), out);
      out += run;
      at += run;
      continue;
    }
    const Sequence next = readSequence(p + at, bytes.size() - at);
    if (!next.wellFormed) break;
    out = put(next.codePoint, out);
    at += next.length;
  }
  *valid = at;
  return out - start;
}

std::u16string decodeReplacing(std::string_view bytes) {
  std::u16string units(bytes.size(), u'\0');
  size_t count = 0;
  while (!bytes.empty()) {
    size_t valid = 0;
    count += decode(bytes, std::span(units).subspan(count), &valid);
    bytes.remove_prefix(valid);
    if (bytes.empty()) break;
    units[count++] = kReplacement;
    const auto* bad = reinterpret_cast<const uint8_t*>(bytes.data());
    bytes.remove_prefix(readSequence(bad, bytes.size()).length);
  }
  units.resize(count);
  return units;
}

void appendCodePoint(char32_t c, std::string* out) {
  const auto byte = [out](char32_t value) { out->push_back(static_cast<char>(value)); };
  if (c < 0x80) {
    byte(c);
  } else if (c < 0x800) {
    byte(0xC0 | c >> 6), byte(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    byte(0xE0 | c >> 12), byte(0x80 | (c >> 6 & 0x3F)), byte(0x80 | (c & 0x3F));
  } else {
    byte(0xF0 | c >> 18), byte(0x80 | (c >> 12 & 0x3F));
    byte(0x80 | (c >> 6 & 0x3F)), byte(0x80 | (c & 0x3F));
  }
}

bool append(std::u16string_view units, std::string* out) {
  bool clean = true;
  out->reserve(out->size() + units.size());
  size_t at = 0;
  while (at < units.size()) {
#if defined(__SSE2__)
    const __m128i notAscii = _mm_set1_epi16(static_cast<int16_t>(0xFF80));
    for (; at + 16 <= units.size(); at += 16) {
      const auto* source = reinterpret_cast<const __m128i*>(units.data() + at);
      const __m128i a = _mm_loadu_si128(source), b = _mm_loadu_si128(source + 1);
      const __m128i high = _mm_and_si128(_mm_or_si128(a, b), notAscii);
      if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF) break;
      char packed[16];
      _mm_storeu_si128(reinterpret_cast<__m128i*>(packed), _mm_packus_epi16(a, b));
      out->append(packed, 16);
    }
    if (at == units.size()) break;
#endif
    const char16_t unit = units[at++];
    if (unit < 0x80) {
      out->push_back(static_cast<char>(unit));
    } else if (unit < 0xD800 || unit > 0xDFFF) {
      appendCodePoint(unit, out);
    } else if (unit < 0xDC00 && at < units.size() && (units[at] & 0xFC00) == 0xDC00) {
      appendCodePoint((static_cast<char32_t>(unit) << 10) + units[at++] - 0x35FDC00, out);
    } else {
      clean = false;
      appendCodePoint(kReplacement, out);
    }
  }
  return clean;
}

}  // namespace kelspar::utf8
