#include "platform/unicode/NSRegularExpression.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

namespace kelspar {
namespace {

using Expression = NSRegularExpression;

TEST(RegularExpression, FindsMatchesAndGroups) {
  const auto expression = Expression::withPattern(u"(\\w)(\\d)?");
  ASSERT_TRUE(expression);
  EXPECT_EQ(expression.numberOfCaptureGroups(), 2u);
  const auto matches = expression.matches(u"a1 b");
  ASSERT_EQ(matches.size(), 2u);
  EXPECT_EQ(matches[0], (Expression::Match{{0, 2}, {0, 1}, {1, 1}}));
  EXPECT_EQ(matches[1], (Expression::Match{{3, 1}, {3, 1}, {NSNotFound, 0}}));
  EXPECT_EQ(expression.firstMatch(u"a1 b", 2)->front(), (NSRange{3, 1}));
  EXPECT_FALSE(expression.firstMatch(u"--"));
  EXPECT_TRUE(expression.matchesWhole(u"a1"));
  EXPECT_FALSE(expression.matchesWhole(u"a1b"));
}

TEST(RegularExpression, FromAPositionSeesWhatStandsBefore) {
  EXPECT_FALSE(Expression::withPattern(u"^b").firstMatch(u"ab", 1));
  EXPECT_TRUE(Expression::withPattern(u"(?<=a)b").firstMatch(u"ab", 1));
  EXPECT_FALSE(Expression::withPattern(u"b").firstMatch(u"ab", 3));
}

struct OptionRow {
  const char* name;
  uint32_t options;
  const char16_t *pattern, *text;
  size_t without, with;
};
class RegularExpressionOptions : public testing::TestWithParam<OptionRow> {};
TEST_P(RegularExpressionOptions, Count) {
  const OptionRow& row = GetParam();
  EXPECT_EQ(Expression::withPattern(row.pattern).matches(row.text).size(), row.without);
  EXPECT_EQ(Expression::withPattern(row.pattern, row.options).matches(row.text).size(), row.with);
}
constexpr OptionRow kOptionRows[] = {
    {"Case", Expression::caseInsensitive, u"ss", u"\u00DF SS", 0, 2},
    {"DotAll", Expression::dotMatchesLineSeparators, u"a.b", u"a\nb", 0, 1},
    {"Multiline", Expression::anchorsMatchLines, u"^a", u"a\na", 1, 2},
    {"Literal", Expression::ignoreMetacharacters, u"a.c", u"abc a.c", 2, 1},
    {"Comments", Expression::allowCommentsAndWhitespace, u"a b", u"ab", 0, 1},
    {"UnixLines", Expression::useUnixLineSeparators, u"a.b", u"a\rb", 0, 1},
};
INSTANTIATE_TEST_SUITE_P(NSRegularExpression, RegularExpressionOptions,
                         testing::ValuesIn(kOptionRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct ReplaceRow {
  const char* name;
  const char16_t *pattern, *text, *form, *result;
};
class Replacing : public testing::TestWithParam<ReplaceRow> {};
TEST_P(Replacing, Gives) {
  const ReplaceRow& row = GetParam();
  EXPECT_EQ(Expression::withPattern(row.pattern).stringByReplacingMatches(row.text, row.form),
            NSString(row.result));
}
constexpr ReplaceRow kReplaceRows[] = {
    {"Plain", u"\\n+", u"a\n\n\nb\n", u"\n", u"a\nb\n"},
    {"Groups", u"(a)(b)", u"ab-ab", u"$2$1", u"ba-ba"},
    {"Whole", u"b", u"abc", u"[$0]", u"a[b]c"},
    {"Escapes", u"b", u"abc", u"\\$1\\\\", u"a$1\\c"},
    {"OneDigitWhereOneGroup", u"(b)", u"abc", u"$12", u"ab2c"},
    {"NoSuchGroup", u"b", u"abc", u"$7", u"ac"},
    {"EmptyMatches", u"x*", u"ab", u"-", u"-a-b-"},
};
INSTANTIATE_TEST_SUITE_P(NSRegularExpression, Replacing, testing::ValuesIn(kReplaceRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(RegularExpression, FaultyPatternsAreNil) {
  NSString error;
  EXPECT_FALSE(Expression::withPattern(u"a(", Expression::none, &error));
  EXPECT_TRUE(error);
  EXPECT_FALSE(Expression::withPattern(nil));
  EXPECT_FALSE(Expression::withPattern(u""));
  EXPECT_TRUE(Expression().matches(u"a").empty());
  const NSString text(u"a");
  EXPECT_TRUE(Expression().stringByReplacingMatches(text, u"b").isIdenticalTo(text));
}

TEST(RegularExpression, GivesUpOnExponentialPatterns) {
  const std::u16string text(200, u'a');
  EXPECT_FALSE(Expression::withPattern(u"(a+)+b").firstMatch(text));
}

TEST(RegularExpression, OneForManyThreads) {
  const auto expression = Expression::withPattern(u"(a|b)+c");
  std::atomic<int> found{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 200; ++round) found += expression.matchesWhole(u"ababc");
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(found, 800);
}

}  // namespace
}  // namespace kelspar
