#include "platform/unicode/NSCharacterSet.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

struct Row {
  const char* name;
  const char* set;
  char16_t unit;
  bool belongs;
};
class CharacterSets : public testing::TestWithParam<Row> {};
TEST_P(CharacterSets, Hold) {
  EXPECT_EQ(NSCharacterSet::named(GetParam().set).contains(GetParam().unit), GetParam().belongs);
}
constexpr Row kRows[] = {
    {"BlankIsWhitespace", "whitespace", u' ', true},
    {"TabIsWhitespace", "whitespace", u'\t', true},
    {"IdeographicSpaceIsWhitespace", "whitespace", u'\u3000', true},
    {"LineFeedIsNotWhitespace", "whitespace", u'\n', false},
    {"LineFeedIsNewline", "whitespaceAndNewline", u'\n', true},
    {"NextLineIsNewline", "whitespaceAndNewline", u'\u0085', true},
    {"LineSeparatorIsNewline", "whitespaceAndNewline", u'\u2028', true},
    {"ZeroWidthSpaceIsNot", "whitespaceAndNewline", u'\u200B', false},
    {"LettersAreAlphanumeric", "alphanumeric", u'\u00E9', true},
    {"MarksAreAlphanumeric", "alphanumeric", u'\u0301', true},
    {"FractionsAreAlphanumeric", "alphanumeric", u'\u00BD', true},
    {"UnderscoreIsNot", "alphanumeric", u'_', false},
    {"ArabicDigit", "decimalDigit", u'\u0663', true},
    {"SuperscriptIsNoDigit", "decimalDigit", u'\u00B2', false},
    {"NoncharacterIsIllegal", "illegal", char16_t{0xFFFF}, true},
    {"UnassignedIsIllegal", "illegal", u'\u0378', true},
    {"PrivateUseIsLegal", "illegal", u'\uE000', false},
    {"SurrogatesAreLegal", "illegal", char16_t{0xD800}, false},
};
INSTANTIATE_TEST_SUITE_P(NSCharacterSet, CharacterSets, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CharacterSets, OfCharacters) {
  const auto set = NSCharacterSet::withCharacters(u"ab");
  EXPECT_TRUE(set.contains(u'a'));
  EXPECT_FALSE(set.contains(u'c'));
  EXPECT_FALSE(NSCharacterSet().contains(u'a'));
  EXPECT_FALSE(NSCharacterSet::named("letters"));
  EXPECT_TRUE(set.isEqual(NSCharacterSet::withCharacters(u"ba")));
}

TEST(Trimming, TakesBothEnds) {
  const auto blanks = NSCharacterSet::whitespace();
  EXPECT_EQ(stringByTrimming(u" \ta b ", blanks), NSString(u"a b"));
  EXPECT_EQ(stringByTrimming(u"  ", blanks), NSString(u""));
  const NSString clean(u"clean");
  EXPECT_TRUE(stringByTrimming(clean, blanks).isIdenticalTo(clean));
  EXPECT_FALSE(stringByTrimming(nil, blanks));
}

}  // namespace
}  // namespace kelspar
