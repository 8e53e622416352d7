// Numbers of any length in date texts: bare ICU is the oracle, up to lengths that it bears.
#include "platform/calendar/digit_runs.h"

#include <gtest/gtest.h>
#include <unicode/smpdtfmt.h>

#include <memory>
#include <random>
#include <string>

#include "platform/calendar/NSDateFormatter.h"

namespace kelspar {
namespace {

using calendar::kMostDigits;
using calendar::withShorterFraction;
using calendar::withShorterNumbers;

// With the numbers of a text in their places: "#" is any number, "$" a fraction.
struct Shape {
  const char16_t* pattern;
  const char* text;
};
constexpr Shape kShapes[] = {
    {u"yyyy-MM-dd", "#-#-#"},
    {u"EEE MMM dd HH:mm:ss yyyy", "Mon Jan # #:#:# #"},
    {u"yyyy-MM-dd HH:mm:ss", "#-#-# #:#:#"},
    {u"yyyyMMdd'T'HHmmss'Z'", "#T#Z"},
    {u"d MMM YYYY hh:mm", "# Jan # #:#"},
    {u"dd MMM yyyy 'at' HH:mm", "# Jan # at #:#"},
    {u"EEE, dd MMM yyyy HH:mm:ss Z", "Mon, # Jan # #:#:# +#"},
    {u"EEE, dd MMM yyyy HH:mm:ss zzz", "Mon, # Jan # #:#:# GMT+#"},
    {u"EEE, dd MMM yy HH:mm:ss Z", "Mon, # Jan # #:#:# -#"},
    {u"yyyy-MM-dd'T'HH:mm:ss.SSSZ", "#-#-#T#:#:#.$+0000"},
    {u"dd/MM/yyyy, HH:mm", "#/#/#, #:#"},
    {u"HH:mm", "#:#"},
};

using Random = std::mt19937;

std::string digits(Random& random, size_t count) {
  std::string text;
  while (text.size() < count) text += static_cast<char>('0' + random() % 10);
  return text;
}

std::string number(Random& random) {
  switch (random() % 40) {
    case 0:
      return digits(random, 1 + random() % 40);
    case 1:
      return digits(random, 300 + random() % 20);
    case 2:
      return digits(random, kMostDigits - 5 + random() % 10);
    case 3:
      return digits(random, kMostDigits + random() % 300);
    case 4:
      return std::string(random() % 1500, '0') + digits(random, random() % 1200);
    case 5:
      return "1" + std::string(random() % 1500, '0');
    case 6:
      return std::string(random() % 3, '0') + digits(random, 1 + random() % 3) + "E-" +
             digits(random, 1);
    case 7:
      return std::to_string(1 + random() % 3) + std::string(random() % 900, '0') + "E-" +
             std::to_string(random() % 900);
    case 8:
      return digits(random, 8);
    case 9:
      return std::to_string(1900 + random() % 200);
    default:
      return std::to_string(1 + random() % 12);
  }
}

std::string filled(Random& random, std::string_view shape) {
  std::string text;
  for (const char unit : shape) {
    if (unit == '#') {
      text += number(random);
    } else if (unit == '$') {
      text += digits(random, 1 + random() % calendar::kMostFractionDigits);
    } else {
      text += unit;
    }
  }
  return text;
}

TEST(LongNumbersLaw, AreReadAsICUReadsThem) {
  Random random(309);
  int read = 0, longAndRead = 0;
  for (const Shape& shape : kShapes) {
    UErrorCode error = U_ZERO_ERROR;
    icu::SimpleDateFormat bare(icu::UnicodeString(shape.pattern), icu::Locale("en_US_POSIX"),
                               error);
    ASSERT_TRUE(U_SUCCESS(error));
    bare.setLenient(false);
    bare.adoptTimeZone(icu::TimeZone::createTimeZone(u"GMT"));
    const NSDateFormatter formatter(shape.pattern, u"en_US_POSIX", u"GMT");
    for (int round = 0; round < 1000; ++round) {
      const std::string text = filled(random, shape.text);
      icu::ParsePosition end(0);
      const UDate date = bare.parse(icu::UnicodeString::fromUTF8(text), end);
      const bool isWhole = end.getIndex() != 0 && end.getIndex() == static_cast<int>(text.size());
      ASSERT_EQ(formatter.dateFromString(text), isWhole ? NSDate::since1970(date / 1000) : nil)
          << text;
      ASSERT_EQ(formatter.dateFromPrefix(text),
                end.getIndex() != 0 ? NSDate::since1970(date / 1000) : nil)
          << text;
      read += isWhole;
      longAndRead += isWhole && text.size() > kMostDigits;
    }
  }
  EXPECT_GT(read, 500);
  EXPECT_GT(longAndRead, 50);
}

TEST(LongNumbers, OfAMillionDigitsAreInfiniteOrPaddedWithZeros) {
  constexpr size_t kMany = 500'000;
  const NSDateFormatter clock(u"HH:mm", u"en_US_POSIX", u"GMT");
  const auto at = [](double seconds) { return NSDate::since1970(seconds); };
  EXPECT_EQ(clock.dateFromString(std::string(kMany, '9') + ":10"), at(600));
  EXPECT_EQ(clock.dateFromString(std::string(kMany, '0') + "1:10"), at(4200));
  EXPECT_FALSE(clock.dateFromString(std::string(kMany, '9')));
  EXPECT_FALSE(clock.dateFromString(std::string(kMany, '9') + "x"));
  const NSDateFormatter day(u"yyyy-MM-dd", u"en_US_POSIX", u"GMT");
  EXPECT_FALSE(day.dateFromString("2024-" + std::string(kMany, '1')));
}

TEST(LongNumbers, WithAnExponentAreNone) {
  const NSDateFormatter clock(u"HH:mm", u"en_US_POSIX", u"GMT");
  const std::string thousand(kMostDigits, '0');
  EXPECT_EQ(clock.dateFromString("1" + thousand.substr(1) + "E-999:10"), NSDate::since1970(4200));
  EXPECT_FALSE(clock.dateFromString("1" + thousand + "E-1000:10"));
}

TEST(LongNumbers, KeepZerosInFrontAndForeignDigits) {
  const std::u16string zeros(5000, u'0'), many(5000, u'7'), most(kMostDigits, u'7');
  EXPECT_EQ(withShorterNumbers(zeros + u"5:" + zeros), zeros + u"5:" + zeros);
  EXPECT_EQ(withShorterNumbers(zeros + many + u":" + many + u"x"),
            zeros + most + u":" + most + u"x");
  std::u16string bold, kept;  // outside the first plane
  for (size_t i = 0; i < 2 * kMostDigits; ++i) {
    bold += u"\U0001D7D7";
    if (i < kMostDigits) kept += u"\U0001D7D7";
  }
  EXPECT_EQ(withShorterNumbers(bold + u" " + bold), kept + u" " + kept);
  EXPECT_EQ(withShorterNumbers(std::u16string{0xD835}), (std::u16string{0xD835}));
}

TEST(LongFractions, AreWholeSeconds) {
  const NSDateFormatter stamp(u"yyyy-MM-dd'T'HH:mm:ss.SSSZ", u"en_US_POSIX", u"GMT");
  for (const size_t count : {34, 35, 36, 40, 400, 2000, 1'000'000}) {
    for (const char digit : {'0', '1', '9'}) {
      for (const char* before : {"", " ", "\u200E", "1E", "\u0661"}) {
        const std::string text =
            "1970-01-01T00:00:01." + (before + std::string(count, digit)) + "+0000";
        EXPECT_EQ(stamp.dateFromString(text), NSDate::since1970(1)) << count << digit << before;
      }
    }
  }
}

TEST(LongFractions, EndWhereTheNumberEnds) {
  const std::u16string many(50, u'7'), most(calendar::kMostFractionDigits, u'7');
  EXPECT_EQ(withShorterFraction(many + u"." + many + u"+" + many),
            many + u"." + most + u"+" + many);
  EXPECT_EQ(withShorterFraction(u"." + most + u"E-" + many + u"-1"), u"." + most + u"E--1");
  EXPECT_EQ(withShorterFraction(u". \t" + many + u" " + many), u". \t" + most + u" " + many);
  EXPECT_EQ(withShorterFraction(many), many);
}

}  // namespace
}  // namespace kelspar
