// NSDateFormatter on ICU. A SimpleDateFormat costs tens of microseconds to build and is not safe to
// share: each thread keeps those that it uses.
#include "platform/calendar/NSDateFormatter.h"

#include <unicode/calendar.h>
#include <unicode/smpdtfmt.h>

#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <tuple>

#include "platform/calendar/digit_runs.h"
#include "platform/calendar/locales.h"
#include "platform/calendar/zones.h"

namespace kelspar {

namespace {

// Stand for styles: medium date and short time, full date and long time. No pattern can be these.
constexpr const char16_t* kMediumShort = u"\uFFFF";
constexpr const char16_t* kFullLong = u"\uFFFE";

icu::UnicodeString icuText(const NSString& text) {
  return {false, text.view().data(), static_cast<int32_t>(text.length())};
}

using Format = std::unique_ptr<icu::DateFormat>;

Format make(const NSString& pattern, const NSString& locale, const NSString& timeZone) {
  const icu::Locale where(
      (locale.isEmpty() ? calendar::processLocale() : calendar::knownLocale(locale.utf8()))
          .c_str());
  UErrorCode error = U_ZERO_ERROR;
  using Style = icu::DateFormat;
  Format format(pattern == NSString(kMediumShort)
                    ? Style::createDateTimeInstance(Style::kMedium, Style::kShort, where)
                : pattern == NSString(kFullLong)
                    ? Style::createDateTimeInstance(Style::kFull, Style::kLong, where)
                    : new icu::SimpleDateFormat(icuText(pattern), where, error));
  if (!format || U_FAILURE(error)) return nullptr;
  format->adoptTimeZone(timeZone ? icu::TimeZone::createTimeZone(icuText(timeZone))
                                 : calendar::processZone<icu::TimeZone>().clone());
  format->setLenient(false);
  return format;
}

icu::DateFormat* formatFor(const NSString& pattern, const NSString& locale,
                           const NSString& timeZone) {
  using Key = std::tuple<std::u16string, std::u16string, std::u16string>;
  constexpr size_t kMostKept = 64;  // a host's own patterns are not kept for ever
  thread_local std::map<Key, Format> kept;
  Key key(pattern.view(), locale.view(), timeZone.view());
  const auto found = kept.find(key);
  if (found != kept.end()) return found->second.get();
  if (kept.size() >= kMostKept) kept.clear();
  return (kept[std::move(key)] = make(pattern, locale, timeZone)).get();
}

enum class Extent { whole, prefix };

// The date of the whole text, or the one at its start.
NSDate parse(icu::DateFormat* format, const NSString& text, Extent extent) {
  if (!format || text.length() > INT32_MAX) return nil;
  icu::ParsePosition position(0);
  const UDate milliseconds = format->parse(icuText(text), position);
  const auto end = static_cast<size_t>(position.getIndex());
  if (end == 0 || (extent == Extent::whole && end != text.length())) return nil;
  return NSDate::since1970(milliseconds / 1000);
}

// The same of a text whose numbers may be of any length.
NSDate parseAny(icu::DateFormat* format, const NSString& pattern, const NSString& text,
                Extent extent) {
  const bool hasFraction = pattern.view().find(u".S") != std::u16string_view::npos;
  if (hasFraction && text.length() > calendar::kMostFractionDigits) {
    const NSString shorter(calendar::withShorterFraction(text));
    return parse(format, calendar::withShorterNumbers(shorter), extent);
  }
  if (text.length() <= calendar::kMostDigits) return parse(format, text, extent);
  return parse(format, calendar::withShorterNumbers(text), extent);
}

}  // namespace

NSDateFormatter::NSDateFormatter(const NSString& pattern, const NSString& locale,
                                 const NSString& timeZone)
    : pattern_(pattern), locale_(locale), timeZone_(timeZone) {}

NSDateFormatter NSDateFormatter::mediumDateShortTime() { return {kMediumShort, nil}; }

NSDateFormatter NSDateFormatter::fullDateLongTime(const NSString& locale) {
  return {kFullLong, locale};
}

NSDate NSDateFormatter::dateFromString(const NSString& text) const {
  return parseAny(formatFor(pattern_, locale_, timeZone_), pattern_, text, Extent::whole);
}

NSDate NSDateFormatter::dateFromPrefix(const NSString& text) const {
  return parseAny(formatFor(pattern_, locale_, timeZone_), pattern_, text, Extent::prefix);
}

NSString NSDateFormatter::stringFromDate(const NSDate& date) const {
  icu::DateFormat* format = formatFor(pattern_, locale_, timeZone_);
  if (!format || !date || !std::isfinite(date.secondsSince1970())) return nil;
  icu::UnicodeString text;
  UErrorCode error = U_ZERO_ERROR;
  // ICU counts milliseconds and rounds toward the past.
  format->format(std::floor(date.secondsSince1970() * 1000), text, nullptr, error);
  if (U_FAILURE(error)) return nil;
  return std::u16string_view(text.getBuffer(), static_cast<size_t>(text.length()));
}

}  // namespace kelspar
