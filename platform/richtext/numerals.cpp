#include "platform/richtext/numerals.h"

namespace kelspar {

namespace {

constexpr RomanDigit kDigits[] = {
    {1000, u"m"}, {900, u"cm"}, {500, u"d"}, {400, u"cd"}, {100, u"c"}, {90, u"xc"}, {50, u"l"},
    {40, u"xl"},  {10, u"x"},   {9, u"ix"},  {5, u"v"},    {4, u"iv"},  {1, u"i"}};
constexpr int32_t kMostRoman = 3999;

}  // namespace

std::u16string decimalNumeral(int32_t number) {
  const std::string text = std::to_string(number);
  return {text.begin(), text.end()};
}

std::u16string romanNumeral(int32_t number) {
  if (number < 1 || number > kMostRoman) return decimalNumeral(number);
  std::u16string text;
  for (const RomanDigit& digit : kDigits) {
    for (; number >= digit.value; number -= digit.value) text += digit.text;
  }
  return text;
}

std::span<const RomanDigit> romanDigits() { return kDigits; }

void raise(std::u16string* letters) {
  for (char16_t& c : *letters) {
    if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 0x20);
  }
}

}  // namespace kelspar
