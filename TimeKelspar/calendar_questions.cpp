// Days, clock times, hands and intervals.
#include <cmath>
#include <numbers>

#include "TimeKelspar/TimeKelspar.h"
#include "TimeKelspar/TimeKelsparNSDateAdditions.h"
#include "platform/calendar/NSCalendar.h"
#include "platform/calendar/NSDateFormatter.h"

namespace kelspar {

bool TimeKelspar::isLeapYear(int32_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

bool TimeKelspar::dateIsValidWithDay(int32_t day, int32_t month, int32_t year) {
  constexpr int32_t kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12 || day < 1) return false;
  return day <= kLengths[month - 1] + (month == 2 && isLeapYear(year));
}

bool TimeKelspar::timeIsValid(float value, int32_t flag) {
  double whole = 0;
  const double fraction = std::modf(static_cast<double>(value), &whole);
  if (fraction > 0.59999) return false;
  switch (flag) {
    case 0:
      return whole >= 0 && whole <= 23;
    case 1:
      return whole >= 0 && whole <= 360;
    case 2:
      return std::fabs(whole) <= 90;
    default:
      return true;
  }
}

NSDate TimeKelspar::nextOccurrenceOfTimeHours(int64_t hours, int64_t minutes) {
  constexpr double kSecondsADay = 86400;
  const NSDate now = NSDate::now();
  const NSDate candidate = NSCalendar::atClockTime(now, hours, minutes);
  if (candidate.secondsSince1970() >= now.secondsSince1970()) return candidate;
  return NSDate::since1970(candidate.secondsSince1970() + kSecondsADay);
}

NSComparisonResult TimeKelspar::compare24HourTime(const NSString& a, const NSString& b) {
  const NSDateFormatter formatter(u"HH:mm", nil);
  const NSDate first = formatter.dateFromString(a), second = formatter.dateFromString(b);
  if (!first || !second || first == second) return NSComparisonResult::same;
  return first.secondsSince1970() < second.secondsSince1970() ? NSComparisonResult::ascending
                                                              : NSComparisonResult::descending;
}

NSString TimeKelspar::formattedStringFromTimeInterval(double seconds) {
  // Hours, minutes and seconds are as long on every day; only whole days are not.
  const int64_t total = NSNumber(seconds).longValue();
  return NSString::stringWithFormat(u"%02ld:%02d:%02d", total / 3600,
                                    static_cast<int32_t>(total / 60 % 60),
                                    static_cast<int32_t>(total % 60));
}

int64_t TimeKelspar::daysBetweenDate(const NSDate& a, const NSDate& b) {
  return a && b ? NSCalendar::dayNumber(b) - NSCalendar::dayNumber(a) : 0;
}

namespace TimeKelsparNSDateAdditions {

void calculateAngleOfHourHand(const NSDate& receiver, float* hourHand, float* minuteHand,
                              float* secondHand) {
  if (!receiver) return;
  constexpr double kTurn = 2 * std::numbers::pi;
  const NSCalendar::ClockTime time = NSCalendar::clockTime(receiver);
  if (hourHand) *hourHand = static_cast<float>(time.hour / 12.0 * kTurn);
  if (minuteHand) *minuteHand = static_cast<float>(time.minute / 60.0 * kTurn);
  if (secondHand) *secondHand = static_cast<float>(time.second / 60.0 * kTurn);
}

NSString convertDateToStringWithFormat(const NSDate& receiver, const NSString& pattern,
                                       const NSString& locale) {
  return NSDateFormatter(pattern, locale).stringFromDate(receiver);
}

NSString convertDateToStringWithFormat(const NSDate& receiver, const NSString& pattern) {
  return convertDateToStringWithFormat(receiver, pattern, nil);
}

}  // namespace TimeKelsparNSDateAdditions

}  // namespace kelspar
