// How \leveltext becomes the text of a marker (RTF 1.9.1, "List Levels").
#include "platform/richtext/rtf_list_numbers.h"

#include <algorithm>

#include "platform/richtext/numerals.h"

namespace kelspar {

namespace {

constexpr size_t kLongestMarker = 40;  // a longer one is cut

// a to z, aa, bb, ...
std::u16string letters(int32_t number, char16_t first) {
  constexpr int32_t kLetters = 26, kMostOfOne = 8;
  if (number < 1 || number > kLetters * kMostOfOne) return decimalNumeral(number);
  const auto count = static_cast<size_t>((number - 1) / kLetters + 1);
  return std::u16string(count, static_cast<char16_t>(first + (number - 1) % kLetters));
}

std::u16string ordinal(int32_t number) {
  const int32_t tens = number % 100, ones = number % 10;
  const bool isTeen = tens > 10 && tens < 14;
  return decimalNumeral(number) + (isTeen      ? u"th"
                                   : ones == 1 ? u"st"
                                   : ones == 2 ? u"nd"
                                   : ones == 3 ? u"rd"
                                               : u"th");
}

}  // namespace

std::u16string textOfListNumber(int32_t number, int32_t format) {
  switch (format) {
    case 1: {
      std::u16string text = romanNumeral(number);
      raise(&text);
      return text;
    }
    case 2:
      return romanNumeral(number);
    case 3:
      return letters(number, u'A');
    case 4:
      return letters(number, u'a');
    case 5:
      return ordinal(number);
    case 22:  // two digits at least
      return number >= 0 && number < 10 ? u"0" + decimalNumeral(number) : decimalNumeral(number);
    default:
      return decimalNumeral(number);
  }
}

size_t RTFListNumbers::depth(int32_t level) {
  return static_cast<size_t>(std::clamp<int32_t>(level, 0, RTFLists::kLevels - 1));
}

void RTFListNumbers::count(int32_t override, int32_t level) {
  const auto list = lists_.listIdOf(override);
  if (!list) return;
  Counters& counters = counters_[*list];
  if (used_.insert(override).second) {
    for (size_t i = 0; i < RTFLists::kLevels; ++i) {
      if (lists_.restartOf(override, i)) counters.begun &= ~(1u << i);
    }
  }
  const size_t at = depth(level);
  int32_t& number = counters.numbers[at];
  const int32_t next = numberAt(counters, override, at);
  const bool goesOn = (counters.begun >> at & 1) != 0 && next < INT32_MAX;
  number = goesOn ? next + 1 : next;
  // Deeper levels begin anew.
  counters.begun = (counters.begun & ((2u << at) - 1)) | 1u << at;
}

// The number that stands at a level, or that it would begin with.
int32_t RTFListNumbers::numberAt(const Counters& counters, int32_t override, size_t level) const {
  if ((counters.begun >> level & 1) != 0) return counters.numbers[level];
  const RTFListLevel* found = lists_.levelOf(override, level);
  return lists_.restartOf(override, level).value_or(found ? found->start : 1);
}

// Bullets are private characters of symbol fonts, often.
char16_t RTFListNumbers::bullet(char16_t unit, int32_t font) const {
  constexpr char16_t kBullet = 0x2022, kPrivate = 0xE000, kLastPrivate = 0xF8FF;
  const RTFSymbolFont symbols = fonts_.symbolFontOf(font);
  if (symbols != RTFSymbolFont::none && (unit < 0x100 || (unit & 0xFF00) == 0xF000)) {
    unit = unitOfSymbol(symbols, static_cast<uint8_t>(unit));
  }
  return unit >= kPrivate && unit <= kLastPrivate ? kBullet : unit;
}

std::u16string RTFListNumbers::marker(int32_t override, int32_t level) const {
  const size_t at = depth(level);
  const RTFListLevel* shown = lists_.levelOf(override, at);
  const auto list = lists_.listIdOf(override);
  if (!shown || !list || shown->text.empty()) return {};
  const auto counters = counters_.find(*list);
  if (counters == counters_.end()) return {};
  std::u16string marker;
  for (const char16_t unit : shown->text) {
    if (unit >= RTFLists::kLevels) {
      marker += shown->format == RTFListLevel::kBullet ? bullet(unit, shown->font) : unit;
    } else if (unit <= at) {
      const RTFListLevel* numbered = lists_.levelOf(override, unit);
      marker += textOfListNumber(numberAt(counters->second, override, unit),
                                 numbered ? numbered->format : 0);
    }
  }
  if (marker.size() > kLongestMarker) marker.resize(kLongestMarker);
  if (shown->follow == 0) marker += u'\t';
  if (shown->follow == 1) marker += u' ';
  return marker;
}

}  // namespace kelspar
