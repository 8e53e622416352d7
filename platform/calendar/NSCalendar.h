// The Gregorian calendar in the process's time zone.
#pragma once

#include <cstdint>

#include "platform/foundation/foundation.h"

namespace kelspar::NSCalendar {

struct ClockTime {
  int32_t hour = 0, minute = 0, second = 0;
};

// The time of day that clocks show at `date`; zeros for nil.
[[nodiscard]] ClockTime clockTime(const NSDate& date);

// The first moment at which clocks show hour:minute:00 on the day of `date`; values out of range
// run over into the neighbouring hours and days. nil for nil.
[[nodiscard]] NSDate atClockTime(const NSDate& date, int64_t hour, int64_t minute);

// The number of the civil day of `date`, counted from 1970-01-01; 0 for nil.
[[nodiscard]] int64_t dayNumber(const NSDate& date);

}  // namespace kelspar::NSCalendar
