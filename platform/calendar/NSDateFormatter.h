// Dates to text and back by Unicode date patterns (UTS 35), strict: what a pattern does not
// describe is not accepted. ICU's own habits are kept (a two-digit year under "yyyy" is a year of
// the first century, a wrong weekday is read over).
#pragma once

#include <cstdint>

#include "platform/foundation/foundation.h"

namespace kelspar {

// Costs little to make: the expensive parts are kept per thread and shared by equal formatters.
class NSDateFormatter {
 public:
  // Empty or nil locale: the process's (LC_ALL, LC_TIME, LANG; en_US_POSIX for none that is known).
  // An identifier that is none: the root. nil time zone: the process's; else a name ("GMT",
  // "Europe/Berlin").
  NSDateFormatter(const NSString& pattern, const NSString& locale, const NSString& timeZone = nil);
  // Medium date and short time in the process's locale and time zone.
  [[nodiscard]] static NSDateFormatter mediumDateShortTime();
  // Full date and long time, with the zone's name, as the locale writes them.
  [[nodiscard]] static NSDateFormatter fullDateLongTime(const NSString& locale);

  // nil for nil and for text that does not parse from its first unit to its last.
  [[nodiscard]] NSDate dateFromString(const NSString& text) const;
  // The same, but what follows the date is not looked at.
  [[nodiscard]] NSDate dateFromPrefix(const NSString& text) const;
  // nil for nil, and for a pattern that is none.
  [[nodiscard]] NSString stringFromDate(const NSDate& date) const;

 private:
  NSString pattern_, locale_, timeZone_;
};

}  // namespace kelspar
