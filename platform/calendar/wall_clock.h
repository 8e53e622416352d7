// The process's time zone as an offset, where that is all it takes. Internal to the library.
#pragma once

#include <cstdint>
#include <optional>

namespace kelspar::calendar {

// Days from 1970-01-01 to a day of the proleptic Gregorian calendar. Any month and day; no checks.
[[nodiscard]] constexpr int64_t daysFromCivil(int64_t year, int64_t month, int64_t day) {
  year -= month <= 2;
  const int64_t era = (year >= 0 ? year : year - 399) / 400;
  const int64_t yearOfEra = year - era * 400;
  const int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

// Seconds since 1970 in UTC of a wall-clock time, given as if it were UTC. Nothing within a day of
// a change of the zone's offset, where it takes a calendar to tell.
[[nodiscard]] std::optional<int64_t> utcFromWallClock(int64_t wallSeconds);

}  // namespace kelspar::calendar
