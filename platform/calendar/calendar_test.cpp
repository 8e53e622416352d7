// The calendar room in the process's time zone: what ICU says of it is the oracle, so that the
// tests hold wherever they run.
#include <gtest/gtest.h>
#include <unicode/gregocal.h>
#include <unicode/timezone.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "platform/calendar/NSCalendar.h"
#include "platform/calendar/NSDateFormatter.h"
#include "platform/calendar/wall_clock.h"
#include "platform/calendar/zones.h"

namespace kelspar {
namespace {

using calendar::daysFromCivil;

// The process's offset from UTC at a moment, in seconds.
int64_t offsetAt(int64_t seconds) {
  int32_t raw = 0, saving = 0;
  UErrorCode error = U_ZERO_ERROR;
  calendar::processZone<icu::TimeZone>().getOffset(static_cast<UDate>(seconds) * 1000, false, raw,
                                                   saving, error);
  return (raw + saving) / 1000;
}

NSDate at(int64_t seconds) { return NSDate::since1970(static_cast<double>(seconds)); }

struct CivilRow {
  const char* name;
  int64_t year, month, day, days;
};
class CivilDays : public testing::TestWithParam<CivilRow> {};
TEST_P(CivilDays, AreCountedFrom1970) {
  const CivilRow& row = GetParam();
  EXPECT_EQ(daysFromCivil(row.year, row.month, row.day), row.days);
}
INSTANTIATE_TEST_SUITE_P(Calendar, CivilDays,
                         testing::Values(CivilRow{"Epoch", 1970, 1, 1, 0},
                                         CivilRow{"DayBefore", 1969, 12, 31, -1},
                                         CivilRow{"LeapDay", 2000, 2, 29, 11016},
                                         CivilRow{"DayAfterIt", 2000, 3, 1, 11017},
                                         CivilRow{"CenturyWithoutLeapDay", 1900, 3, 1, -25508},
                                         CivilRow{"FileTimesStart", 1601, 1, 1, -134774},
                                         CivilRow{"YearZero", 0, 3, 1, -719468},
                                         CivilRow{"BeforeIt", -1, 3, 1, -719834}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(WallClock, IsTheMomentWhoseOffsetLeadsToIt) {
  std::mt19937_64 random(7);
  int answered = 0;
  for (int round = 0; round < 5000; ++round) {
    const auto wall = static_cast<int64_t>(random() % 6'000'000'000) - 2'000'000'000;
    const auto utc = calendar::utcFromWallClock(wall);
    if (!utc) continue;
    ++answered;
    ASSERT_EQ(*utc + offsetAt(*utc), wall);
  }
  EXPECT_GT(answered, 4500);
}

TEST(Calendar, ClockTimesAndDaysAreThoseOfTheZone) {
  std::mt19937_64 random(8);
  for (int round = 0; round < 3000; ++round) {
    const auto seconds = static_cast<int64_t>(random() % 6'000'000'000) - 2'000'000'000;
    const int64_t local = seconds + offsetAt(seconds);
    const int64_t ofDay = ((local % 86400) + 86400) % 86400;
    const auto shown = NSCalendar::clockTime(at(seconds));
    ASSERT_EQ(shown.hour * 3600 + shown.minute * 60 + shown.second, ofDay) << seconds;
    ASSERT_EQ(NSCalendar::dayNumber(at(seconds)), (local - ofDay) / 86400) << seconds;
  }
}

TEST(Calendar, AClockTimeOfTheDayIsSet) {
  const NSDate date = at(1718000000);
  const NSDate set = NSCalendar::atClockTime(date, 9, 30);
  const auto shown = NSCalendar::clockTime(set);
  EXPECT_EQ(shown.hour, 9);
  EXPECT_EQ(shown.minute, 30);
  EXPECT_EQ(shown.second, 0);
  EXPECT_EQ(NSCalendar::dayNumber(set), NSCalendar::dayNumber(date));
}

TEST(Calendar, HoursBeyondTheDayRunOver) {
  const NSDate date = at(1718000000);
  const NSDate set = NSCalendar::atClockTime(date, 25, 0);
  EXPECT_EQ(NSCalendar::clockTime(set).hour, 1);
  EXPECT_EQ(NSCalendar::dayNumber(set), NSCalendar::dayNumber(date) + 1);
  EXPECT_EQ(NSCalendar::dayNumber(NSCalendar::atClockTime(date, -1, 0)),
            NSCalendar::dayNumber(date) - 1);
}

TEST(Calendar, NilAndWhatIsNoMoment) {
  EXPECT_EQ(NSCalendar::clockTime(nil).hour, 0);
  EXPECT_EQ(NSCalendar::dayNumber(nil), 0);
  EXPECT_FALSE(NSCalendar::atClockTime(nil, 1, 1));
  const NSDate never = NSDate::since1970(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(NSCalendar::clockTime(never).hour, 0);
  EXPECT_FALSE(NSCalendar::atClockTime(never, 1, 1));
}

struct PatternRow {
  const char* name;
  const char16_t* pattern;
  const char16_t* text;
  int64_t seconds;  // since 1970; read in GMT
};
class Patterns : public testing::TestWithParam<PatternRow> {};
TEST_P(Patterns, ReadAndWrite) {
  const PatternRow& row = GetParam();
  const NSDateFormatter formatter(row.pattern, u"en_US_POSIX", u"GMT");
  EXPECT_EQ(formatter.dateFromString(row.text), at(row.seconds));
  EXPECT_EQ(formatter.stringFromDate(at(row.seconds)), NSString(row.text));
}
constexpr PatternRow kPatterns[] = {
    {"Day", u"yyyy-MM-dd", u"1970-01-02", 86400},
    {"Mail", u"EEE, dd MMM yyyy HH:mm:ss Z", u"Thu, 01 Jan 1970 00:00:01 +0000", 1},
    {"QuotedText", u"dd MMM yyyy 'at' HH:mm", u"01 Jan 1970 at 00:01", 60},
    {"BeforeTheEpoch", u"yyyy-MM-dd HH:mm:ss", u"1969-12-31 23:59:59", -1},
};
INSTANTIATE_TEST_SUITE_P(DateFormatter, Patterns, testing::ValuesIn(kPatterns),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(DateFormatter, IsStrict) {
  const NSDateFormatter day(u"yyyy-MM-dd", u"en_US_POSIX", u"GMT");
  EXPECT_FALSE(day.dateFromString(u"1970-02-30"));
  EXPECT_FALSE(day.dateFromString(u"1970-01-01 "));
  EXPECT_FALSE(day.dateFromString(u""));
  EXPECT_FALSE(day.dateFromString(nil));
  EXPECT_EQ(day.dateFromPrefix(u"1970-01-01 and more"), at(0));
  EXPECT_FALSE(day.dateFromPrefix(u"and 1970-01-01"));
}

TEST(DateFormatter, NilAndPatternsThatAreNone) {
  EXPECT_FALSE(NSDateFormatter(u"yyyy", u"en_US_POSIX").stringFromDate(nil));
  EXPECT_FALSE(NSDateFormatter(u"nnn", u"en_US_POSIX").stringFromDate(at(0)));
  EXPECT_FALSE(NSDateFormatter(u"nnn", u"en_US_POSIX").dateFromString(u"1970"));
}

TEST(DateFormatter, AWrongWeekdayIsReadOver) {
  const NSDateFormatter mail(u"EEE, dd MMM yyyy HH:mm:ss Z", u"en_US_POSIX");
  EXPECT_EQ(mail.dateFromString(u"Mon, 01 Jan 1970 00:00:00 +0000"), at(0));
}

}  // namespace
}  // namespace kelspar
