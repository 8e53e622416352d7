// What ICU writes for an identifier is what it writes for the locale that is made of it.
#include "platform/calendar/locales.h"

#include <gtest/gtest.h>
#include <unicode/smpdtfmt.h>

#include <map>
#include <memory>
#include <random>
#include <set>

#include "platform/calendar/NSDateFormatter.h"

namespace kelspar {
namespace {

using calendar::knownLocale;
using calendar::localeOfDates;

using Variables = std::map<std::string, std::string>;

std::string nameFrom(const Variables& variables) {
  return localeOfDates([&](const char* name) -> const char* {
    const auto found = variables.find(name);
    return found == variables.end() ? nullptr : found->second.c_str();
  });
}

struct EnvironmentRow {
  const char* name;
  Variables variables;
  const char* locale;
};
class Environments : public testing::TestWithParam<EnvironmentRow> {};
TEST_P(Environments, NameTheLocale) {
  EXPECT_EQ(nameFrom(GetParam().variables), GetParam().locale);
}
const EnvironmentRow kEnvironments[] = {
    {"Nothing", {}, "en_US_POSIX"},
    {"C", {{"LANG", "C"}}, "en_US_POSIX"},
    {"CWithCharset", {{"LANG", "C.UTF-8"}}, "en_US_POSIX"},
    {"POSIX", {{"LC_ALL", "POSIX"}, {"LANG", "de_DE"}}, "en_US_POSIX"},
    {"Lang", {{"LANG", "de_DE.UTF-8"}}, "de_DE"},
    {"Modifier", {{"LANG", "de_DE@euro"}}, "de_DE"},
    {"EmptyAllIsUnset", {{"LC_ALL", ""}, {"LANG", "de_DE.UTF-8"}}, "de_DE"},
    {"EmptyTimeIsUnset", {{"LC_TIME", ""}, {"LANG", "de_DE.UTF-8"}}, "de_DE"},
    {"MessagesDoNotCount", {{"LC_MESSAGES", "fr_FR"}, {"LANG", "de_DE"}}, "de_DE"},
    {"TimeBeforeLang", {{"LC_TIME", "fr_FR.UTF-8"}, {"LANG", "de_DE"}}, "fr_FR"},
    {"AllBeforeTime", {{"LC_ALL", "it_IT"}, {"LC_TIME", "fr_FR"}, {"LANG", "de_DE"}}, "it_IT"},
    {"UnknownLanguage", {{"LANG", "xx"}}, "en_US_POSIX"},
    {"TwelveLetters", {{"LANG", "abcdefghijkl"}}, "en_US_POSIX"},
    {"TwelveCapitals", {{"LC_ALL", "AAAAAAAAAAAA"}}, "en_US_POSIX"},
    {"Path", {{"LC_ALL", "/etc/passwd"}}, "en_US_POSIX"},
    {"TooLong", {{"LC_ALL", std::string(5000, 'A')}}, "en_US_POSIX"},
};
INSTANTIATE_TEST_SUITE_P(Locales, Environments, testing::ValuesIn(kEnvironments),
                         [](const auto& row) { return std::string(row.param.name); });

std::string written(const icu::Locale& locale, int64_t seconds) {
  UErrorCode error = U_ZERO_ERROR;
  icu::SimpleDateFormat format(u"EEEE LLLL MMM yyyy YYYY ww e cccc HH a G Q", locale, error);
  format.adoptTimeZone(icu::TimeZone::createTimeZone(u"GMT"));
  icu::UnicodeString text;
  format.format(static_cast<UDate>(seconds) * 1000, text);
  std::string utf8;
  return text.toUTF8String(utf8);
}

template <class List>
std::string pick(std::mt19937& random, const List& list) {
  return list[random() % std::size(list)];
}

TEST(LocalesLaw, KnownLocalesWriteAsTheirIdentifiersDo) {
  static constexpr const char* kLanguages[] = {"en", "de", "zh", "sr", "iw",  "no",       "ar",
                                               "fa", "xx", "qq", "",   "und", "abcdefgh", "pt"};
  static constexpr const char* kScripts[] = {"",      "",      "",      "_Latn",
                                             "_Hant", "_Arab", "_Zzzz", "_Qqqq"};
  static constexpr const char* kRegions[] = {"",    "_US", "_DE",  "_TW",  "_IR",
                                             "_MV", "_XX", "_419", "_150", "_QQ"};
  static constexpr const char* kRests[] = {
      "", "", "_POSIX", "_xxxxxxxx", "_abcde", "@calendar=buddhist", "_abc@numbers=arab"};
  std::mt19937 random(639);
  for (int round = 0; round < 3000; ++round) {
    const std::string identifier = pick(random, kLanguages) + pick(random, kScripts) +
                                   pick(random, kRegions) + pick(random, kRests);
    const auto plain = icu::Locale::createCanonical(identifier.c_str());
    const auto seconds = static_cast<int64_t>(random());
    // A variant of nothing is no locale.
    if (*plain.getVariant() && !*plain.getLanguage() && !*plain.getCountry()) continue;
    const auto known = knownLocale(identifier);
    ASSERT_EQ(written(icu::Locale(known.c_str()), seconds), written(plain, seconds))
        << identifier << " became " << known;
  }
}

TEST(Locales, UnknownOnesAreFew) {
  std::set<std::string> names;
  for (int i = 0; i < 5000; ++i) {
    const std::string number = std::to_string(10000 + i);
    names.insert(knownLocale("en_XX_x" + number));
    names.insert(knownLocale("en_US_" + number));
    names.insert(knownLocale("x" + number));
    names.insert(knownLocale("abcdefghijkl" + number));
  }
  EXPECT_LE(names.size(), 6u);
}

TEST(Locales, WhatIsNoIdentifierIsTheRoot) {
  for (const std::string& identifier : {std::string("abcdefghijkl"), std::string(59, 'A'),
                                        std::string(5000, 'A'), std::string("@@@@")}) {
    EXPECT_EQ(knownLocale(identifier), "") << identifier;
    const auto formatter = NSDateFormatter::fullDateLongTime(identifier);
    EXPECT_TRUE(formatter.stringFromDate(NSDate::since1970(0))) << identifier;
  }
}

}  // namespace
}  // namespace kelspar
