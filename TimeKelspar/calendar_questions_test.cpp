#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "TimeKelspar/TimeKelspar.h"
#include "TimeKelspar/TimeKelsparNSDateAdditions.h"

namespace kelspar {
namespace {

using T = TimeKelspar;

// A local time by the C library: an opinion of its own on the time zone.
NSDate localDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  std::tm parts{};
  parts.tm_year = year - 1900, parts.tm_mon = month - 1, parts.tm_mday = day;
  parts.tm_hour = hour, parts.tm_min = minute, parts.tm_sec = second, parts.tm_isdst = -1;
  return NSDate::since1970(static_cast<double>(std::mktime(&parts)));
}

TEST(Calendar, LeapYears) {
  EXPECT_FALSE(T::isLeapYear(1900));
  EXPECT_TRUE(T::isLeapYear(2000));
  EXPECT_TRUE(T::isLeapYear(2024));
  EXPECT_FALSE(T::isLeapYear(2023));
  EXPECT_TRUE(T::isLeapYear(0));
  EXPECT_TRUE(T::isLeapYear(-4));
}

TEST(Calendar, ValidDays) {
  EXPECT_FALSE(T::dateIsValidWithDay(29, 2, 2023));
  EXPECT_TRUE(T::dateIsValidWithDay(29, 2, 2024));
  EXPECT_TRUE(T::dateIsValidWithDay(31, 12, -5));
  EXPECT_FALSE(T::dateIsValidWithDay(31, 4, 2020));
  EXPECT_FALSE(T::dateIsValidWithDay(1, 13, 2020));
  EXPECT_FALSE(T::dateIsValidWithDay(1, 0, 2020));
  EXPECT_FALSE(T::dateIsValidWithDay(0, 1, 2020));
  EXPECT_FALSE(T::dateIsValidWithDay(INT32_MIN, INT32_MAX, INT32_MIN));
}

struct Row {
  const char* name;
  float value;
  int32_t flag;
  bool valid;
};
class TimeIsValid : public testing::TestWithParam<Row> {};
TEST_P(TimeIsValid, Tells) {
  EXPECT_EQ(T::timeIsValid(GetParam().value, GetParam().flag), GetParam().valid);
}
constexpr Row kRows[] = {
    {"LastMinute", 23.59f, 0, true},    {"Midnight24", 24.00f, 0, false},
    {"SixtyMinutes", 12.60f, 0, false}, {"MinuteBefore", 12.59f, 0, true},
    {"Negative", -1.0f, 0, false},      {"NegativeFraction", -0.75f, 0, true},
    {"FullTurn", 360.0f, 1, true},      {"MoreThanATurn", 361.0f, 1, false},
    {"Pole", -90.30f, 2, true},         {"BeyondThePole", 91.0f, 2, false},
    {"OtherFlag", 1e9f, 7, true},       {"OtherFlagMinutes", 1.75f, 7, false},
    {"NotANumber", NAN, 0, false},      {"NotANumberOtherFlag", NAN, 3, true},
    {"Infinite", INFINITY, 1, false},
};
INSTANTIATE_TEST_SUITE_P(TimeKelspar, TimeIsValid, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Calendar, NextOccurrenceIsAheadByADayAtMost) {
  for (int hour = 0; hour < 24; ++hour) {
    const NSDate now = NSDate::now();
    const NSDate next = T::nextOccurrenceOfTimeHours(hour, 30);
    EXPECT_GE(next.secondsSince1970(), now.secondsSince1970() - 1);
    EXPECT_LE(next.secondsSince1970(), now.secondsSince1970() + 86400 + 3600);
    const std::time_t seconds = static_cast<std::time_t>(next.secondsSince1970());
    std::tm parts{};
    localtime_r(&seconds, &parts);
    EXPECT_EQ(parts.tm_min, 30);
    EXPECT_EQ(parts.tm_sec, 0);
  }
}

TEST(Calendar, ClockTimesAreCompared) {
  EXPECT_EQ(T::compare24HourTime(u"09:30", u"10:00"), NSComparisonResult::ascending);
  EXPECT_EQ(T::compare24HourTime(u"23:00", u"10:00"), NSComparisonResult::descending);
  EXPECT_EQ(T::compare24HourTime(u"10:00", u"10:00"), NSComparisonResult::same);
  EXPECT_EQ(T::compare24HourTime(u"25:00", u"10:00"), NSComparisonResult::same);
  EXPECT_EQ(T::compare24HourTime(nil, u"10:00"), NSComparisonResult::same);
  EXPECT_EQ(T::compare24HourTime(u"10:00", u"x"), NSComparisonResult::same);
}

TEST(Calendar, IntervalsAreFormatted) {
  EXPECT_EQ(T::formattedStringFromTimeInterval(3661), NSString(u"01:01:01"));
  EXPECT_EQ(T::formattedStringFromTimeInterval(-3661), NSString(u"-1:-1:-1"));
  EXPECT_EQ(T::formattedStringFromTimeInterval(0.9), NSString(u"00:00:00"));
  EXPECT_EQ(T::formattedStringFromTimeInterval(360000), NSString(u"100:00:00"));
  EXPECT_EQ(T::formattedStringFromTimeInterval(std::nan("")), NSString(u"00:00:00"));
}

TEST(Calendar, DaysAreCountedAcrossChangesOfClocks) {
  EXPECT_EQ(T::daysBetweenDate(localDate(2024, 3, 9, 23), localDate(2024, 3, 11, 1)), 2);
  EXPECT_EQ(T::daysBetweenDate(localDate(2024, 11, 2, 1), localDate(2024, 11, 4, 0)), 2);
  EXPECT_EQ(T::daysBetweenDate(localDate(2024, 10, 5, 12), localDate(2024, 10, 7, 0)), 2);
  EXPECT_EQ(T::daysBetweenDate(localDate(2020, 1, 1, 23, 59), localDate(2020, 1, 2)), 1);
  EXPECT_EQ(T::daysBetweenDate(localDate(2020, 1, 2), localDate(2020, 1, 1, 23, 59)), -1);
  EXPECT_EQ(T::daysBetweenDate(localDate(2020, 1, 1), localDate(2020, 1, 1, 23, 59)), 0);
  EXPECT_EQ(T::daysBetweenDate(nil, localDate(2020, 1, 1)), 0);
}

TEST(ClockHands, FollowTheTimeOfDay) {
  float hour = 0, minute = 0, second = 0;
  const NSDate date = localDate(2024, 6, 1, 15, 30, 45);
  TimeKelsparNSDateAdditions::calculateAngleOfHourHand(date, &hour, &minute, &second);
  EXPECT_FLOAT_EQ(hour, static_cast<float>(2.5 * M_PI));
  EXPECT_FLOAT_EQ(minute, static_cast<float>(M_PI));
  EXPECT_FLOAT_EQ(second, static_cast<float>(1.5 * M_PI));
  hour = 7;
  TimeKelsparNSDateAdditions::calculateAngleOfHourHand(nil, &hour, &minute, &second);
  EXPECT_EQ(hour, 7);
  TimeKelsparNSDateAdditions::calculateAngleOfHourHand(date, nullptr, nullptr, &second);
}

TEST(DateToString, UsesTheZoneAndTheLocale) {
  using TimeKelsparNSDateAdditions::convertDateToStringWithFormat;
  const NSDate date = localDate(2024, 6, 1, 15, 30, 45);
  EXPECT_EQ(convertDateToStringWithFormat(date, u"yyyy-MM-dd HH:mm:ss", u"en_US_POSIX"),
            NSString(u"2024-06-01 15:30:45"));
  EXPECT_EQ(convertDateToStringWithFormat(date, u"d. MMMM", u"de_DE"), NSString(u"1. Juni"));
  EXPECT_EQ(convertDateToStringWithFormat(date, u"HH:mm"), NSString(u"15:30"));
  EXPECT_EQ(convertDateToStringWithFormat(date, u"HH:mm", u""), NSString(u"15:30"));
  EXPECT_FALSE(convertDateToStringWithFormat(nil, u"HH:mm"));
}

}  // namespace
}  // namespace kelspar
