// The unit's operations, as hosts call them.
#include "TimeKelspar/TimeKelspar.h"
#include "TimeKelspar/TimeKelsparNSDataAdditions.h"
#include "TimeKelspar/TimeKelsparNSDateAdditions.h"
#include "TimeKelspar/TimeKelsparNSStringAdditions.h"
#include "platform/runtime/registry.h"

namespace kelspar {

KELSPAR_OPERATIONS(TimeKelspar) {
  using Class = TimeKelspar;
  auto time = registry.forClass("TimeKelspar");
  time.add("isLeapYear:", &Class::isLeapYear);
  time.add("dateIsValidWithDay:month:year:", &Class::dateIsValidWithDay);
  time.add("timeIsValid:withFlag:", &Class::timeIsValid);
  time.add("getVMSTimeFromUnixTime:", &Class::getVMSTimeFromUnixTime);
  time.add("getUnixTimeFromVMSTime:", &Class::getUnixTimeFromVMSTime);
  time.add("getWindowsTimeFromUnixTime:", &Class::getWindowsTimeFromUnixTime);
  time.add("getUnixTimeFromWindowsTime:", &Class::getUnixTimeFromWindowsTime);
  time.add("dateFromMAPITime:", &Class::dateFromMAPITime);
  time.add("mapiTimeFromDate:", &Class::mapiTimeFromDate);
  time.add("dateFromOLEDate:", &Class::dateFromOLEDate);
  time.add("oleDateFromDate:", &Class::oleDateFromDate);
  time.add("dateFromHFSDate:", &Class::dateFromHFSDate);
  time.add("hfsDateFromDate:", &Class::hfsDateFromDate);
  time.add("dateFromCFAbsoluteTime:", &Class::dateFromCFAbsoluteTime);
  time.add("nextOccurrenceOfTimeHours:minutes:", &Class::nextOccurrenceOfTimeHours);
  time.add("compare24HourTime:withTime:", &Class::compare24HourTime);
  time.add("formattedStringFromTimeInterval:", &Class::formattedStringFromTimeInterval);
  time.add("daysBetweenDate:andDate:", &Class::daysBetweenDate);
  time.add("dateFromMIMEString:", &Class::dateFromMIMEString);
  time.add("mimeStringFromDate:", &Class::mimeStringFromDate);
  time.add("timezoneOffsetFromDateString:", &Class::timezoneOffsetFromDateString);

  namespace Date = TimeKelsparNSDateAdditions;
  auto date = registry.forCategory("TimeKelsparNSDateAdditions", "NSDate");
  date.add("calculateAngleOfHourHand:minuteHand:secondHand:", &Date::calculateAngleOfHourHand);
  date.add<NSString, const NSDate&, const NSString&, const NSString&>(
      "convertDateToStringWithFormat:locale:", &Date::convertDateToStringWithFormat);
  date.add<NSString, const NSDate&, const NSString&>("convertDateToStringWithFormat:",
                                                     &Date::convertDateToStringWithFormat);

  namespace String = TimeKelsparNSStringAdditions;
  auto string = registry.forCategory("TimeKelsparNSStringAdditions", "NSString");
  string.add("create24HourStringFrom12HourString", &String::create24HourStringFrom12HourString);
  string.add("create12HourStringFrom24HourString", &String::create12HourStringFrom24HourString);
  string.add("convertStringToDate", &String::convertStringToDate);

  auto data = registry.forCategory("TimeKelsparNSDataAdditions", "NSData");
  data.add("formatDataAsDate", &TimeKelsparNSDataAdditions::formatDataAsDate);
}

}  // namespace kelspar
