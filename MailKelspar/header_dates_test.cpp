#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  const char16_t* in;
  double seconds;  // -1: nil
};
class HeaderDates : public testing::TestWithParam<Row> {};
TEST_P(HeaderDates, Read) {
  const NSDate date = MailKelspar::dateFromHeader(GetParam().in);
  EXPECT_EQ(static_cast<bool>(date), GetParam().seconds != -1);
  if (date) {
    EXPECT_EQ(date.secondsSince1970(), GetParam().seconds);
  }
}
constexpr double kNoon = 1049198400;  // 2003-04-01 12:00:00 UTC
constexpr Row kRows[] = {
    {"Canonical", u"Tue, 1 Apr 2003 14:00:00 +0200", kNoon},
    {"NoWeekday", u"1 Apr 2003 12:00:00 GMT", kNoon},
    {"NoSeconds", u"Tue, 01 Apr 2003 12:00 +0000", kNoon},
    {"Comments", u"Tue, 1 (one) Apr 2003 (a(b)c) 14:00:00 +0200 (CEST)", kNoon},
    {"ObsoleteZone", u"Tue, 1 Apr 2003 07:00:00 EST", kNoon},
    {"MilitaryZone", u"Tue, 1 Apr 2003 12:00:00 A", kNoon},
    {"Zulu", u"Tue, 1 Apr 2003 12:00:00 Z", kNoon},
    {"UnknownZone", u"Tue, 1 Apr 2003 12:00:00 XYZ", kNoon},
    {"NoZone", u"Tue, 1 Apr 2003 12:00:00", kNoon},
    {"GMTWithOffset", u"Tue, 1 Apr 2003 14:00:00 GMT+0200", kNoon},
    {"TwoDigitYear", u"1 Apr 03 12:00:00 +0000", kNoon},
    {"TwoDigitYearBefore2000", u"1 Jan 70 00:00:01 +0000", 1},
    {"ThreeDigitYear", u"1 Apr 103 12:00:00 +0000", kNoon},
    {"Asctime", u"Tue Apr  1 12:00:00 2003", kNoon},
    {"Dashes", u"Tue, 01-Apr-2003 12:00:00 GMT", kNoon},
    {"ISO8601", u"2003-04-01T14:00:00.5+02:00", kNoon},
    {"AfternoonByLetters", u"1 Apr 2003 2:00:00 PM +0200", kNoon},
    {"NegativeOffset", u"Tue, 1 Apr 2003 08:30:00 -0330", kNoon},
    {"LeapDay", u"29 Feb 2004 00:00:00 +0000", 1078012800},
    {"NoLeapDay", u"29 Feb 2003 00:00:00 +0000", -1},
    {"Day32", u"32 Jan 2003 00:00:00 +0000", -1},
    {"Hour24", u"1 Jan 2003 24:00:00 +0000", -1},
    {"NoDate", u"hello", -1},
    {"Empty", u"", -1},
    {"EndlessNumber", u"1 Apr 20031111111111111 12:00", -1},
};
INSTANTIATE_TEST_SUITE_P(MailKelspar, HeaderDates, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(HeaderDates, NilIsNil) { EXPECT_FALSE(MailKelspar::dateFromHeader(nil)); }

}  // namespace
}  // namespace kelspar
