// The offset that a date text names.
#include <optional>

#include "TimeKelspar/TimeKelspar.h"
#include "platform/unicode/NSRegularExpression.h"

namespace kelspar {

namespace {

struct Zone {
  std::u16string_view abbreviation;
  int64_t offset;
};

// In alphabetical order, which matters: "AEDT", "AEST" and "CEST" are tried before the shorter
// abbreviations that they contain.
constexpr Zone kZones[] = {
    {u"AEDT", 39600}, {u"AEST", 36000}, {u"BST", 3600},   {u"CDT", -18000}, {u"CEST", 7200},
    {u"CET", 3600},   {u"CST", -21600}, {u"EDT", -14400}, {u"EST", -18000}, {u"GMT", 0},
    {u"IST", 19800},  {u"JST", 32400},  {u"MDT", -21600}, {u"MST", -25200}, {u"PDT", -25200},
    {u"PST", -28800}, {u"UTC", 0},
};

// Decimal digits of any script, as the expression below takes them; only ASCII ones have a value
// here.
int64_t valueOf(std::u16string_view digits) {
  int64_t value = 0;
  for (const char16_t unit : digits) {
    if (unit < u'0' || unit > u'9') return value;
    value = value * 10 + (unit - u'0');
  }
  return value;
}

std::optional<int64_t> numericOffset(const NSString& text) {
  // Without a sign there is nothing to search for.
  if (text.view().find_first_of(u"+-") == std::u16string_view::npos) return std::nullopt;
  static const auto expression = NSRegularExpression::withPattern(u"([+-])(\\d{2})(\\d{2})\\s*$");
  // The match ends at the text's end: what precedes the last sign cannot be part of it.
  const size_t sign = text.view().find_last_of(u"+-");
  const auto match = expression.firstMatch(text, sign);
  if (!match) return std::nullopt;
  const auto group = [&](size_t index) {
    return text.view().substr((*match)[index].location, (*match)[index].length);
  };
  const int64_t offset = valueOf(group(2)) * 3600 + valueOf(group(3)) * 60;
  return group(1) == u"-" ? -offset : offset;
}

}  // namespace

int64_t TimeKelspar::timezoneOffsetFromDateString(const NSString& text) {
  if (text.isEmpty()) return 0;
  if (const auto offset = numericOffset(text)) return *offset;
  for (const Zone& zone : kZones) {
    if (text.view().find(zone.abbreviation) != std::u16string_view::npos) return zone.offset;
  }
  return 0;
}

}  // namespace kelspar
