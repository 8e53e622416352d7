// The time values of message stores, converted to dates and back, and small questions about clocks
// and calendars.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar {

enum class NSComparisonResult : int32_t { ascending = -1, same = 0, descending = 1 };

// All operations are stateless; any thread may call them. Where a result needs a time zone it is
// the process's. Integer conversions that leave 64 bits wrap around.
class TimeKelspar {
 public:
  // Representations of a point in time:
  //   Unix time      seconds since 1970-01-01 00:00 UTC
  //   Windows, MAPI  100 ns since 1601-01-01 00:00 UTC
  //   VMS            100 ns since 1858-11-17 00:00 UTC, unsigned
  //   OLE            days since 1899-12-30 00:00 UTC, as a double
  //   HFS            seconds since 1904-01-01 00:00, unsigned 32 bits
  //   reference date seconds since 2001-01-01 00:00 UTC, as a double
  [[nodiscard]] static uint64_t getVMSTimeFromUnixTime(int64_t seconds);
  // Deliberate: a time before 1970 wraps to a huge positive one.
  [[nodiscard]] static int64_t getUnixTimeFromVMSTime(uint64_t time);
  [[nodiscard]] static int64_t getWindowsTimeFromUnixTime(int64_t seconds);
  // Parts of a second are dropped toward 1601.
  [[nodiscard]] static int64_t getUnixTimeFromWindowsTime(int64_t time);

  // nil for 0. Whole seconds; early values give dates before 1970.
  [[nodiscard]] static NSDate dateFromMAPITime(uint64_t time);
  // 0 for nil. Parts of a second are dropped.
  [[nodiscard]] static int64_t mapiTimeFromDate(const NSDate& date);
  // nil for an infinite value and NaN. Linear, for negative values as well.
  [[nodiscard]] static NSDate dateFromOLEDate(double days);
  // 0 for nil.
  [[nodiscard]] static double oleDateFromDate(const NSDate& date);
  [[nodiscard]] static NSDate dateFromHFSDate(uint32_t seconds);
  // 0 for nil. Dropped to whole seconds after the epochs are added up.
  [[nodiscard]] static int64_t hfsDateFromDate(const NSDate& date);
  [[nodiscard]] static NSDate dateFromCFAbsoluteTime(double seconds);

  // Calendar

  // The Gregorian rule.
  [[nodiscard]] static bool isLeapYear(int32_t year);
  [[nodiscard]] static bool dateIsValidWithDay(int32_t day, int32_t month, int32_t year);
  // Whether `value` is hours.minutes as a decimal (12.30 is 12 h 30 min; minutes up to 59). `flag`
  // 0: a time of day; 1: an angle of 0 to 360; 2: a latitude of at most 90 either way; any other:
  // only the minutes are looked at.
  [[nodiscard]] static bool timeIsValid(float value, int32_t flag);
  // The next time that clocks show hours:minutes: today's, or if that has passed, 86400 seconds
  // later. Deliberate: seconds and not a day, so it is an hour off across a change of clocks.
  [[nodiscard]] static NSDate nextOccurrenceOfTimeHours(int64_t hours, int64_t minutes);
  // Two "HH:mm" texts by time; same when one of them does not parse.
  [[nodiscard]] static NSComparisonResult compare24HourTime(const NSString& a, const NSString& b);
  // "01:01:01" for 3661 seconds; hours are not limited. Each part of a negative interval carries
  // its sign: "-1:-1:-1". Not a number: "00:00:00".
  [[nodiscard]] static NSString formattedStringFromTimeInterval(double seconds);
  // How many days the calendar turns from the day of `a` to the day of `b`; negative when `b` is
  // earlier, 0 when one is nil. A day counts whatever its length.
  [[nodiscard]] static int64_t daysBetweenDate(const NSDate& a, const NSDate& b);

  // Header dates

  // The date of a header's text (RFC 5322 forms, ISO 8601 forms, the C library's form, then the
  // forms of convertStringToDate); double blanks and blanks at the ends do not matter. Without a
  // zone it is the process's. nil for nil, for empty text and for text that no form describes.
  [[nodiscard]] static NSDate dateFromMIMEString(const NSString& text);
  // "Thu, 01 Jan 1970 00:00:00 +0000"; the empty text for nil.
  [[nodiscard]] static NSString mimeStringFromDate(const NSDate& date);
  // Seconds east of UTC that a date text names: by "+hhmm" or "-hhmm" at its end, else by the first
  // of the known abbreviations that stands anywhere in it. 0 when there is none, for nil and empty
  // text.
  [[nodiscard]] static int64_t timezoneOffsetFromDateString(const NSString& text);
};

}  // namespace kelspar
