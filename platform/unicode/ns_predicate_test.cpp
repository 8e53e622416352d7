#include "platform/unicode/NSPredicate.h"

#include <gtest/gtest.h>

#include <string>

namespace kelspar {
namespace {

constexpr uint8_t kC = NSPredicate::caseInsensitive, kD = NSPredicate::diacriticInsensitive;

struct Row {
  const char* name;
  uint8_t options;
  const char16_t *pattern, *text;
  bool matches;
};
class Matches : public testing::TestWithParam<Row> {};
TEST_P(Matches, Decides) {
  const Row& row = GetParam();
  EXPECT_EQ(NSPredicate::matches(row.pattern, row.options).evaluate(row.text), row.matches);
}
constexpr Row kRows[] = {
    {"Whole", 0, u"a+", u"aaa", true},
    {"NotAPart", 0, u"a+", u"aaab", false},
    {"Literal", 0, u"image001.png", u"image001.png", true},
    {"LiteralDot", 0, u"image001.png", u"image001xpng", true},
    {"DotIsNoLineEnd", 0, u"a.b", u"a\nb", false},
    {"DotIsNoFormFeed", 0, u"a.b", u"a\fb", false},
    {"DotIsATab", 0, u"a.b", u"a\tb", true},
    {"CaseCounts", 0, u"abc", u"ABC", false},
    {"CaseIgnored", kC, u"abc", u"ABC", true},
    {"CaseIgnoredByExpression", kC, u"[a-c]+", u"ABC", true},
    {"KelvinSign", kC, u"k", u"\u212A", true},
    {"AccentCounts", kC, u"cafe", u"caf\u00E9", false},
    {"AccentIgnored", kC | kD, u"CAFE", u"caf\u00E9", true},
    {"AccentIgnoredInPattern", kD, u"caf\u00E9", u"cafe", true},
    {"AccentIgnoredByExpression", kC | kD, u"\\w+E", u"caf\u00E9", true},
    {"Broken", 0, u"a(", u"a(", false},
    {"EmptyOnEmpty", 0, u"", u"", true},
    {"EmptyOnText", 0, u"", u"a", false},
};
INSTANTIATE_TEST_SUITE_P(NSPredicate, Matches, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Matches, NothingForNil) {
  EXPECT_FALSE(NSPredicate::matches(nil).evaluate(u""));
  EXPECT_FALSE(NSPredicate::matches(u".*").evaluate(nil));
}

TEST(Matches, LiteralIsWhatTheEngineSays) {
  for (char16_t c = 0; c < 0x80; ++c) {
    const NSString text(std::u16string(u"a") + c + u"b");
    const NSString quick(u"A.B"), slow(u"(?:A).(?:B)");
    ASSERT_EQ(NSPredicate::matches(quick, kC).evaluate(text),
              NSPredicate::matches(slow, kC).evaluate(text))
        << int{c};
  }
}

TEST(NSPredicate, TakesNoMoreStepsThanItIsGiven) {
  const NSString text{std::u16string(29, u'a')};
  int32_t steps = 3;
  EXPECT_TRUE(NSPredicate::matches(u"a+"_ns).evaluate(text, &steps));
  EXPECT_EQ(steps, 3) << "less than a step";
  EXPECT_FALSE(NSPredicate::matches(u"(a*)*b"_ns).evaluate(text, &steps));
  EXPECT_EQ(steps, 0);
  EXPECT_FALSE(NSPredicate::matches(u"a+"_ns).evaluate(text, &steps));
  EXPECT_TRUE(NSPredicate::matches(u"."_ns).evaluate(u"a"_ns, &steps)) << "a comparison takes none";
}

}  // namespace
}  // namespace kelspar
