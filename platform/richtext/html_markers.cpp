#include "platform/richtext/html_markers.h"

#include <algorithm>

#include "platform/richtext/numerals.h"

namespace kelspar::html {

namespace {

constexpr std::u16string_view kBullets[][2] = {
    {u"disc", u"\u2022\t"}, {u"circle", u"\u25E6\t"}, {u"square", u"\u25AA\t"}};

char16_t lower(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c; }

// a, b, ... z, aa, ab, ...
std::u16string letters(int32_t value) {
  std::u16string text;
  for (; value > 0; value = (value - 1) / 26) {
    text.insert(text.begin(), static_cast<char16_t>(u'a' + (value - 1) % 26));
  }
  return text;
}

int64_t valueOfDigits(std::u16string_view text) {
  int64_t value = 0;
  for (const char16_t c : text) value = value * 10 + (c - u'0');
  return value;
}

int64_t valueOfLetters(std::u16string_view text) {
  int64_t value = 0;
  for (const char16_t c : text) value = value * 26 + (lower(c) - u'a' + 1);
  return value;
}

int64_t valueOfRoman(std::u16string_view text) {
  std::u16string rest(text);
  std::ranges::transform(rest, rest.begin(), lower);
  int64_t value = 0;
  for (size_t at = 0; at < rest.size();) {
    const auto digit = std::ranges::find_if(romanDigits(), [&](const RomanDigit& each) {
      return rest.compare(at, each.text.size(), each.text) == 0;
    });
    if (digit == romanDigits().end()) return 0;
    value += digit->value;
    at += digit->text.size();
  }
  return value;
}

}  // namespace

std::u16string markerText(std::u16string_view style, int32_t value) {
  if (style == u"none") return {};
  for (const auto& [name, text] : kBullets) {
    if (style == name) return std::u16string(text);
  }
  std::u16string text;
  if (value > 0 && style.ends_with(u"alpha")) text = letters(value);
  if (style.ends_with(u"roman")) text = romanNumeral(value);
  if (style.starts_with(u"upper")) raise(&text);
  if (text.empty()) text = decimalNumeral(value);
  return text + u".\t";
}

int32_t valueOfMarker(std::u16string_view style, std::u16string_view marker) {
  constexpr size_t kLongest = 9;
  if (marker.empty()) return 0;
  int64_t value = 1;
  if (marker.size() > 2 && marker.size() <= kLongest && marker.ends_with(u".\t")) {
    const std::u16string_view text = marker.substr(0, marker.size() - 2);
    const auto isDigit = [](char16_t c) { return c >= u'0' && c <= u'9'; };
    const auto isLetter = [](char16_t c) { return lower(c) >= u'a' && lower(c) <= u'z'; };
    if (std::ranges::all_of(text, isDigit)) {
      value = valueOfDigits(text);
    } else if (std::ranges::all_of(text, isLetter)) {
      value = style.ends_with(u"roman") ? valueOfRoman(text) : valueOfLetters(text);
    }
  }
  if (value < 1 || value > INT32_MAX) return 0;
  const auto number = static_cast<int32_t>(value);
  return markerText(style, number) == marker ? number : 0;
}

}  // namespace kelspar::html
