// Clock times from twelve hours to twenty-four and back.
#include <algorithm>

#include "TimeKelspar/TimeKelsparNSStringAdditions.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::TimeKelsparNSStringAdditions {

namespace {

// Blanks are skipped, a sign is read, what follows the digits is ignored; saturates.
int32_t integerValue(std::u16string_view text) {
  static const auto blanks = NSCharacterSet::whitespaceAndNewline();
  size_t at = 0;
  while (at < text.size() && blanks.contains(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == u'-';
  if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) ++at;
  int64_t value = 0;
  for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at) {
    value = std::min<int64_t>(value * 10 + (text[at] - u'0'), INT64_C(1) << 32);
  }
  value = negative ? -value : value;
  return static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX));
}

struct Clock {
  bool found = false;
  int32_t hour = 0, minute = 0;
};

// The first two parts of a text that is split at ":".
Clock readClock(std::u16string_view text) {
  const size_t colon = text.find(u':');
  if (colon == text.npos) return {};
  const auto behind = text.substr(colon + 1);
  return {true, integerValue(text.substr(0, colon)),
          integerValue(behind.substr(0, behind.find(u':')))};
}

// 60 is accepted on purpose.
bool isMinute(int32_t minute) { return minute >= 0 && minute <= 60; }

}  // namespace

NSString create24HourStringFrom12HourString(const NSString& receiver) {
  NSMutableString text(uppercaseString(receiver).view());
  const bool afternoon = text.replaceOccurrences(u"PM", u"") > 0;
  text.replaceOccurrences(u"AM", u"");
  const Clock clock = readClock(text.view());
  if (!clock.found) return nil;
  int32_t hour = clock.hour;
  if (hour == 12) hour = afternoon ? 12 : 0;
  if (hour < 12 && afternoon) hour += 12;
  if (hour < 0 || hour > 23 || !isMinute(clock.minute)) return nil;
  return NSString::stringWithFormat(u"%02d:%02d", hour, clock.minute);
}

NSString create12HourStringFrom24HourString(const NSString& receiver) {
  const Clock clock = readClock(receiver);
  if (!clock.found) return nil;
  const int32_t hour = clock.hour == 0 ? 12 : clock.hour >= 13 ? clock.hour - 12 : clock.hour;
  if (hour < 1 || hour > 12 || !isMinute(clock.minute)) return nil;
  return NSString::stringWithFormat(u"%d:%02d%@", hour, clock.minute,
                                    clock.hour < 12 ? u"AM" : u"PM");
}

}  // namespace kelspar::TimeKelsparNSStringAdditions
