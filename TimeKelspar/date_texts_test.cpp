#include "TimeKelspar/date_texts.h"

#include <gtest/gtest.h>

#include <ctime>
#include <fstream>
#include <random>

#include "TimeKelspar/TimeKelspar.h"
#include "TimeKelspar/TimeKelsparNSDataAdditions.h"
#include "TimeKelspar/TimeKelsparNSStringAdditions.h"
#include "TimeKelspar/date_shapes.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar {
namespace {

using T = TimeKelspar;
using namespace TimeKelsparNSStringAdditions;

// A date in the process's zone, by the C library.
double local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  std::tm parts{};
  parts.tm_year = year - 1900, parts.tm_mon = month - 1, parts.tm_mday = day;
  parts.tm_hour = hour, parts.tm_min = minute, parts.tm_sec = second, parts.tm_isdst = -1;
  return static_cast<double>(std::mktime(&parts));
}

struct ClockRow {
  const char* name;
  const char16_t* in;
  const char16_t* out;  // null: nil
};
NSString expected(const char16_t* text) { return text ? NSString(text) : NSString(); }

class From12Hours : public testing::TestWithParam<ClockRow> {};
TEST_P(From12Hours, Gives) {
  EXPECT_EQ(create24HourStringFrom12HourString(GetParam().in), expected(GetParam().out));
}
constexpr ClockRow kFrom12[] = {
    {"AfterMidnight", u"12:15 AM", u"00:15"},  {"AfterNoon", u"12:15 PM", u"12:15"},
    {"LowerCase", u"1:05 pm", u"13:05"},       {"SixtyMinutes", u"10:60 PM", u"22:60"},
    {"SixtyOneMinutes", u"10:61 PM", nullptr}, {"NoColon", u"10 PM", nullptr},
    {"TwentyFourHours", u"24:00", nullptr},    {"Already24", u"13:05", u"13:05"},
    {"PmInFront", u"pm 1:05", u"13:05"},       {"NoNumbers", u"a:b", u"00:00"},
    {"Negative", u"-1:05", nullptr},           {"Seconds", u"1:05:59 PM", u"13:05"},
    {"Thirteen", u"13:00 PM", u"13:00"},       {"Huge", u"99999999999:0", nullptr},
};
INSTANTIATE_TEST_SUITE_P(ClockTexts, From12Hours, testing::ValuesIn(kFrom12),
                         [](const auto& row) { return std::string(row.param.name); });

class From24Hours : public testing::TestWithParam<ClockRow> {};
TEST_P(From24Hours, Gives) {
  EXPECT_EQ(create12HourStringFrom24HourString(GetParam().in), expected(GetParam().out));
}
constexpr ClockRow kFrom24[] = {
    {"AfterMidnight", u"00:30", u"12:30AM"},
    {"Afternoon", u"13:45", u"1:45PM"},
    {"Noon", u"12:00", u"12:00PM"},
    {"TwentyFour", u"24:00", u"12:00PM"},
    {"TwentyFive", u"25:00", nullptr},
    {"Morning", u"9:05", u"9:05AM"},
    {"NoColon", u"9", nullptr},
    {"SixtyMinutes", u"9:60", u"9:60AM"},
    {"Negative", u"-1:00", nullptr},
    {"Empty", u"", nullptr},
};
INSTANTIATE_TEST_SUITE_P(ClockTexts, From24Hours, testing::ValuesIn(kFrom24),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ClockTexts, MissingReceiversAreNil) {
  EXPECT_FALSE(create24HourStringFrom12HourString(nil));
  EXPECT_FALSE(create12HourStringFrom24HourString(nil));
  EXPECT_FALSE(convertStringToDate(nil));
}

struct HeaderRow {
  const char* name;
  const char16_t* text;
  double seconds;
};
class HeaderDates : public testing::TestWithParam<HeaderRow> {};
TEST_P(HeaderDates, AreRead) {
  const NSDate date = T::dateFromMIMEString(GetParam().text);
  ASSERT_TRUE(date);
  EXPECT_EQ(date.secondsSince1970(), GetParam().seconds);
}
const HeaderRow kHeader[] = {
    {"Canonical", u"Thu, 01 Jan 1970 00:00:00 +0000", 0},
    {"DoubleBlank", u"Thu,  1 Jan 1970 00:00:00 +0000 \r\n", 0},
    {"WrongWeekday", u"Mon, 01 Jan 1970 00:00:00 +0000", 0},
    {"NamedZone", u"Thu, 01 Jan 1970 00:00:00 EST", 18000},
    {"WithoutWeekday", u"1 Jan 1970 01:00:00 +0100", 0},
    {"ISO", u"1970-01-01T00:00:00+0000", 0},
    {"ISOMilliseconds", u"1970-01-01T00:00:00.500+0000", 0.5},
    {"ISOBlanks", u"1970-01-01 00:00:00 -0100", 3600},
    {"CLibrary", u"Sat Jun  1 12:00:00 2024", local(2024, 6, 1, 12)},
    {"TwoDigitYearIsTheFirstCenturys", u"Thu, 01 Jan 70 00:00:00 +0000", -59958316800.0},
    {"GeneralForm", u"2024-06-01 12:00:00", local(2024, 6, 1, 12)},
};
INSTANTIATE_TEST_SUITE_P(DateTexts, HeaderDates, testing::ValuesIn(kHeader),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(DateTexts, WhatIsNoDateIsNil) {
  for (const char16_t* text :
       {u"", u"x", u"Thu, 31 Feb 2020 00:00:00 +0000", u"2020-13-01", u"01 Jan",
        u"Thu, 01 Jan 1970 24:00:00 +0000", u"Thu, 01 Jan 1970 00:00:00 +0000 (UTC)"}) {
    EXPECT_FALSE(T::dateFromMIMEString(text)) << NSString(text);
  }
  EXPECT_FALSE(T::dateFromMIMEString(nil));
}

class GeneralDates : public testing::TestWithParam<HeaderRow> {};
TEST_P(GeneralDates, AreRead) {
  const NSDate date = convertStringToDate(GetParam().text);
  ASSERT_TRUE(date);
  EXPECT_EQ(date.secondsSince1970(), GetParam().seconds);
}
const HeaderRow kGeneral[] = {
    {"Day", u"2024-06-01", local(2024, 6, 1)},
    {"CLibrary", u"Sat Jun 01 12:00:00 2024", local(2024, 6, 1, 12)},
    {"DayAndTime", u"2024-06-01 12:30:15", local(2024, 6, 1, 12, 30, 15)},
    {"Basic", u"20240601T123015Z", local(2024, 6, 1, 12, 30, 15)},
    {"At", u"01 Jun 2024 at 12:30", local(2024, 6, 1, 12, 30)},
    {"Mail", u"Sat, 01 Jun 2024 12:30:15 +0200", 1717237815},
    {"DayFirstComma", u"03/04/2024, 12:30", local(2024, 4, 3, 12, 30)},
    {"DayFirst", u"03/04/2024 12:30", local(2024, 4, 3, 12, 30)},
    {"MonthFirstWhereTheDayCannotBe", u"06/13/2024, 12:30", local(2024, 6, 13, 12, 30)},
};
INSTANTIATE_TEST_SUITE_P(DateTexts, GeneralDates, testing::ValuesIn(kGeneral),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(DateTexts, ThereIsNoMonthFirstFormWithoutAComma) {
  EXPECT_FALSE(convertStringToDate(u"06/13/2024 12:30"));
}

TEST(DateTexts, HeaderFormIsWrittenInGMT) {
  EXPECT_EQ(T::mimeStringFromDate(NSDate::since1970(0)),
            NSString(u"Thu, 01 Jan 1970 00:00:00 +0000"));
  EXPECT_EQ(T::mimeStringFromDate(nil), NSString(u""));
}

struct OffsetRow {
  const char* name;
  const char16_t* text;
  int64_t offset;
};
class Offsets : public testing::TestWithParam<OffsetRow> {};
TEST_P(Offsets, AreFound) {
  EXPECT_EQ(T::timezoneOffsetFromDateString(GetParam().text), GetParam().offset);
}
constexpr OffsetRow kOffsets[] = {
    {"Negative", u"1 Jan 2020 00:00:00 -0530", -19800},
    {"TrailingBlanks", u"00:00:00 +0100 \n", 3600},
    {"NumberWins", u"EST +0200", 7200},
    {"NumberMustBeLast", u"+0200 EST", -18000},
    {"FourDigitsExactly", u"+02000", 0},
    {"Cest", u"00:00 CEST", 7200},
    {"AestBeforeEst", u"AEST", 36000},
    {"CaseCounts", u"cest", 0},
    {"InsideAWord", u"TESTED", -18000},
    {"Nothing", u"2020-01-01", 0},
    {"Empty", u"", 0},
    {"TwoSigns", u"-0100+0200", 7200},
};
INSTANTIATE_TEST_SUITE_P(DateTexts, Offsets, testing::ValuesIn(kOffsets),
                         [](const auto& row) { return std::string(row.param.name); });

NSString recordDate(std::string_view record) {
  return TimeKelsparNSDataAdditions::formatDataAsDate(NSData(record));
}

TEST(RecordDates, AreReadAsLocalTime) {
  const NSString text = recordDate("a;b;c;x-240601123015-y;z");
  ASSERT_TRUE(text);
  EXPECT_NE(text.rangeOfString(u"2024").location, NSNotFound) << text;
  EXPECT_NE(text.rangeOfString(u"12:30").location, NSNotFound) << text;
}

TEST(RecordDates, ShortRecordsAreRangeErrors) {
  EXPECT_THROW((void)recordDate("a;b;c"), NSRangeException);
  EXPECT_THROW((void)recordDate("a;b;c;240601123015"), NSRangeException);
  EXPECT_THROW((void)recordDate("a;b;c;24060112301-x"), NSRangeException);
  EXPECT_THROW((void)recordDate(";;;-"), NSRangeException);
}

TEST(RecordDates, WhatIsNoTimeIsNil) {
  EXPECT_FALSE(TimeKelsparNSDataAdditions::formatDataAsDate(nil));
  EXPECT_FALSE(recordDate(""));
  EXPECT_FALSE(recordDate("a;b;c;\xE9-240601123015-y"));
  EXPECT_FALSE(recordDate("a;b;c;ab0601123015-y"));
}

TEST(DateTexts, NumbersOfAnyLengthAreReadOrRefused) {
  constexpr size_t kMany = 300'000;
  const std::string nines(kMany, '9');
  for (const std::string& text :
       {nines, "1" + nines + " Jan 2024 10:00", "2024-" + nines, "20240101T" + nines + "Z",
        "Mon, 01 Jan 2024 10:00:00 +" + nines, "01/" + nines + "/2024, 10:00"}) {
    EXPECT_FALSE(convertStringToDate(text)) << text.substr(0, 30);
    EXPECT_FALSE(T::dateFromMIMEString(text)) << text.substr(0, 30);
  }
  // Infinite to ICU, which makes it 0.
  EXPECT_EQ(convertStringToDate("2024-01-01 10:00:" + nines),
            NSDate::since1970(local(2024, 1, 1, 10)));
  const std::string zeros(kMany, '0');
  EXPECT_EQ(T::compare24HourTime(zeros + "1:" + zeros, u"01:01"), NSComparisonResult::ascending);
  EXPECT_EQ(T::compare24HourTime(nines + ":01", u"00:02"), NSComparisonResult::ascending);
}

TEST(DateTexts, FractionsOfAnyLengthAreRead) {
  for (const size_t count : {34, 35, 36, 60, 5000}) {
    const std::string text = "1970-01-01T00:00:07." + std::string(count, '3') + "+0000";
    EXPECT_EQ(T::dateFromMIMEString(text), NSDate::since1970(7)) << count;
  }
}

// What the operation does, without the scanner of plain shapes.
NSDate literally(const NSString& text) {
  NSMutableString single(text.view());
  single.replaceOccurrences(u"  ", u" ");
  const NSString cleaned = stringByTrimming(single.copy(), NSCharacterSet::whitespaceAndNewline());
  if (cleaned.isEmpty()) return nil;
  if (NSDate date = dates::readByHeaderFormats(cleaned)) return date;
  return dates::readByGeneralFormats(cleaned);
}

std::string randomDate(std::mt19937& random) {
  static constexpr const char* kWeekdays[] = {"Mon", "Tue", "WED",    "thu",
                                              "Fri", "Sat", "Sunday", "Xyz"};
  static constexpr const char* kMonths[] = {"Jan", "Feb", "MAR",  "apr", "May", "June", "Jul",
                                            "Aug", "Sep", "Sept", "Oct", "Nov", "Dec",  "Foo"};
  static constexpr const char* kZones[] = {"+0000",  "-0530", "+1400", "+1500", "GMT",  "EST",
                                           "pdt",    "uT",    "UTC",   "ESTX",  "CEST", "Z",
                                           "+01:00", "",      "+0199", "-0000"};
  const auto pick = [&](const auto& list) { return std::string(list[random() % std::size(list)]); };
  const auto number = [&](int most, int width) {
    std::string digits = std::to_string(random() % (most + 2));
    while (static_cast<int>(digits.size()) < width && random() % 8) digits = "0" + digits;
    return digits;
  };
  const std::string year =
      random() % 12 == 0 ? number(99, 2) : std::to_string(1500 + random() % 700);
  const std::string time = number(24, 2) + ":" + number(60, 2) + ":" + number(60, 2);
  switch (random() % 6) {
    case 0:
      return pick(kWeekdays) + ", " + number(31, 2) + " " + pick(kMonths) + " " + year + " " +
             time + " " + pick(kZones);
    case 1:
      return number(31, 1) + " " + pick(kMonths) + " " + year + " " + time + " " + pick(kZones);
    case 2:
      return year + "-" + number(12, 2) + "-" + number(31, 2) + (random() % 2 ? "T" : " ") + time +
             (random() % 2 ? " " : "") + pick(kZones);
    case 3:
      return pick(kWeekdays) + " " + pick(kMonths) + " " + number(31, 1) + " " + time + " " + year;
    case 4:
      return year + "-" + number(12, 2) + "-" + number(31, 2) + (random() % 2 ? "" : " " + time);
    default:
      return year + number(12, 2) + number(31, 2) + "T" + number(24, 2) + number(60, 2) +
             number(60, 2) + "Z";
  }
}

TEST(DateTextsLaw, PlainShapesEqualTheFormatters) {
  std::mt19937 random(2026);
  int read = 0;
  for (int round = 0; round < 12000; ++round) {
    std::string text = randomDate(random);
    if (random() % 10 == 0 && !text.empty())
      text[random() % text.size()] = " :,-+09Tx"[random() % 9];
    const NSDate expectedDate = literally(text);
    ASSERT_EQ(T::dateFromMIMEString(text), expectedDate) << text;
    ASSERT_EQ(convertStringToDate(text), dates::readByGeneralFormats(text)) << text;
    read += static_cast<bool>(dates::readHeaderShape(NSString(text)));
  }
  EXPECT_GT(read, 300) << "the scanner has something to do";
}

// Every named zone that is read at once, at each of the hours about the changes of its clocks.
TEST(DateTextsLaw, NamedZonesEqualTheFormatters) {
  static constexpr const char* kZones[] = {"EST", "EDT", "CST", "cdt", "MST", "MDT",
                                           "PST", "Pdt", "GMT", "UT",  "utc", "Z"};
  static constexpr const char* kMonths[] = {"Mar", "Apr", "Oct", "Nov"};
  std::mt19937 random(1967);
  int read = 0;
  for (int round = 0; round < 12000; ++round) {
    const auto number = [&](size_t least, size_t count) {
      return std::to_string(least + random() % count);
    };
    const std::string text = "Sun, " + number(10, 22) + " " + kMonths[random() % 4] + " " +
                             number(1965, 100) + " 0" + number(0, 5) + ":30:00 " +
                             kZones[random() % std::size(kZones)];
    const NSDate date = dates::readHeaderShape(NSString(text));
    if (!date) continue;
    ++read;
    ASSERT_EQ(date, literally(text)) << text;
  }
  EXPECT_GT(read, 8000);
}

#ifdef KELSPAR_CORPUS
TEST(DateTextsCorpus, HeadersReadAsTheFormattersDo) {
  std::ifstream file(KELSPAR_CORPUS "/headers/dates.txt");
  int count = 0, read = 0;
  for (std::string line; std::getline(file, line); ++count) {
    const NSDate date = T::dateFromMIMEString(line);
    EXPECT_EQ(date, literally(line)) << line;
    read += static_cast<bool>(date);
  }
  EXPECT_GT(read, count / 2);
}
#endif

}  // namespace
}  // namespace kelspar
