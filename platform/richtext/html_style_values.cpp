#include "platform/richtext/html_style_values.h"

#include <algorithm>

namespace kelspar::html::values {

namespace {

bool isSpace(char16_t c) { return c <= u' '; }

struct UnitRow {
  Text name;
  double points;  // 0: times the font's size
  double times;
};
constexpr UnitRow kUnits[] = {
    {u"px", 0.75, 0}, {u"pt", 1, 0},  {u"em", 0, 1},         {u"rem", 12, 0},       {u"%", 0, 0.01},
    {u"in", 72, 0},   {u"pc", 12, 0}, {u"cm", 72 / 2.54, 0}, {u"mm", 72 / 25.4, 0}, {u"ex", 0, 0.5},
    {u"ch", 0, 0.5},  {u"vw", 6, 0},  {u"vh", 8, 0},
};

}  // namespace

Text trimmed(Text text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool contains(Text text, Text lower) {
  for (size_t at = 0; at + lower.size() <= text.size(); ++at) {
    if (is(text.substr(at, lower.size()), lower)) return true;
  }
  return false;
}

Text takeWord(Text* text) {
  *text = trimmed(*text);
  size_t end = 0;
  while (end < text->size() && !isSpace((*text)[end])) ++end;
  const Text word = text->substr(0, end);
  text->remove_prefix(end);
  return word;
}

std::optional<double> number(Text text, size_t* end) {
  size_t at = 0;
  const bool negative = text.starts_with(u'-');
  if (negative || text.starts_with(u'+')) ++at;
  constexpr int64_t kLargest = 1'000'000'000'000;
  int64_t digits = 0;
  double scale = 1;
  bool hasDigits = false, behindPoint = false;
  for (; at < text.size(); ++at) {
    const char16_t c = text[at];
    if (c == u'.' && !behindPoint) {
      behindPoint = true;
    } else if (c < u'0' || c > u'9') {
      break;
    } else {
      hasDigits = true;
      if (digits >= kLargest) continue;
      digits = digits * 10 + (c - u'0');
      if (behindPoint) scale *= 10;
    }
  }
  *end = at;
  if (!hasDigits) return {};
  const double value = std::min(static_cast<double>(digits) / scale, 1e6);
  return negative ? -value : value;
}

std::optional<Length> length(Text text) {
  constexpr double kPixel = 0.75;
  text = trimmed(text);
  size_t end = 0;
  const auto value = number(text, &end);
  if (!value) return {};
  const Text unit = trimmed(text.substr(end));
  if (unit.empty()) return Length{*value * kPixel, Length::Unit::points};
  for (const UnitRow& row : kUnits) {
    if (!is(unit, row.name)) continue;
    if (row.points == 0) return Length{*value * row.times, Length::Unit::times};
    return Length{*value * row.points, Length::Unit::points};
  }
  return {};
}

bool setLength(Text text, Length* target) {
  const auto value = length(text);
  if (value) *target = *value;
  return value.has_value();
}

}  // namespace kelspar::html::values
