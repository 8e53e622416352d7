// NSCalendar on ICU's Gregorian calendar.
#include "platform/calendar/NSCalendar.h"

#include <unicode/gregocal.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "platform/calendar/zones.h"

namespace kelspar::NSCalendar {

namespace {

constexpr double kMillisecondsADay = 86400000;

// A calendar set to the date, or null where ICU has none.
icu::GregorianCalendar* calendarAt(const NSDate& date) {
  thread_local std::unique_ptr<icu::GregorianCalendar> calendar = [] {
    UErrorCode error = U_ZERO_ERROR;
    auto made =
        std::make_unique<icu::GregorianCalendar>(calendar::processZone<icu::TimeZone>(), error);
    return U_SUCCESS(error) ? std::move(made) : nullptr;
  }();
  if (!calendar || !date || !std::isfinite(date.secondsSince1970())) return nullptr;
  UErrorCode error = U_ZERO_ERROR;
  calendar->setTime(std::floor(date.secondsSince1970() * 1000), error);
  return U_SUCCESS(error) ? calendar.get() : nullptr;
}

int32_t field(icu::Calendar* calendar, UCalendarDateFields which) {
  UErrorCode error = U_ZERO_ERROR;
  return calendar->get(which, error);
}

int32_t clamped(int64_t value) {
  return static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX));
}

}  // namespace

ClockTime clockTime(const NSDate& date) {
  auto* calendar = calendarAt(date);
  if (!calendar) return {};
  return {field(calendar, UCAL_HOUR_OF_DAY), field(calendar, UCAL_MINUTE),
          field(calendar, UCAL_SECOND)};
}

NSDate atClockTime(const NSDate& date, int64_t hour, int64_t minute) {
  auto* calendar = calendarAt(date);
  if (!calendar) return nil;
  calendar->set(UCAL_HOUR_OF_DAY, clamped(hour));
  calendar->set(UCAL_MINUTE, clamped(minute));
  calendar->set(UCAL_SECOND, 0);
  calendar->set(UCAL_MILLISECOND, 0);
  UErrorCode error = U_ZERO_ERROR;
  const UDate milliseconds = calendar->getTime(error);
  return U_SUCCESS(error) ? NSDate::since1970(milliseconds / 1000) : nil;
}

int64_t dayNumber(const NSDate& date) {
  auto* calendar = calendarAt(date);
  if (!calendar) return 0;
  UErrorCode error = U_ZERO_ERROR;
  const double local = calendar->getTime(error) + field(calendar, UCAL_ZONE_OFFSET) +
                       field(calendar, UCAL_DST_OFFSET);
  return static_cast<int64_t>(std::floor(local / kMillisecondsADay));
}

}  // namespace kelspar::NSCalendar
