#include <gtest/gtest.h>

#include <random>

#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "tests/colours_literal.h"

namespace kelspar {
namespace {

namespace Text = RTFKelsparNSStringAdditions;

struct Row {
  const char* name;
  std::u16string_view rtf, tag;
  const char16_t* group;  // null: nil
};
class ExtractGroup : public testing::TestWithParam<Row> {};
TEST_P(ExtractGroup, Gives) {
  const Row& row = GetParam();
  const NSString expected = row.group ? NSString(row.group) : nil;
  EXPECT_EQ(Text::extractRTFTagContent(row.rtf, row.tag), expected);
}
constexpr Row kRows[] = {
    {"Plain", u"a{\\x b}c", u"x", u"{\\x b}"},
    {"Nested", u"{\\x {a{b}}{c}}}", u"x", u"{\\x {a{b}}{c}}"},
    {"FirstOne", u"{\\x 1}{\\x 2}", u"x", u"{\\x 1}"},
    {"NameIsAPrefix", u"{\\xyz 1}{\\x 2}", u"x", u"{\\xyz 1}"},
    {"StarredDestination", u"{\\*\\x 1}", u"*\\x", u"{\\*\\x 1}"},
    {"CaseCounts", u"{\\X 1}", u"x", nullptr},
    {"EscapedBraces", u"{\\x \\} \\{ }", u"x", u"{\\x \\} \\{ }"},
    {"BraceBehindAnEscapedBackslash", u"{\\x \\\\}}", u"x", u"{\\x \\\\}"},
    {"BraceBehindThreeBackslashes", u"{\\x \\\\\\}}", u"x", u"{\\x \\\\\\}}"},
    {"NotClosed", u"{\\x {a}", u"x", nullptr},
    {"NotClosedAlthoughALaterOneIs", u"{\\x {\\x a}", u"x", nullptr},
    {"EndsBehindTheName", u"{\\x", u"x", nullptr},
    {"EndsInABackslash", u"{\\x\\", u"x", nullptr},
    {"EmptyNameTakesItsBackslash", u"{\\}a}", u"", u"{\\}a}"},
    {"NameThatEndsInABackslash", u"{\\a\\}b}", u"a\\", u"{\\a\\}b}"},
    {"NameThatEndsInTwoBackslashes", u"{\\a\\\\}b}", u"a\\\\", u"{\\a\\\\}"},
    {"NameOfABackslash", u"{\\\\}b}", u"\\", u"{\\\\}"},
    {"NameWithABrace", u"{\\a{b}}", u"a{", u"{\\a{b}"},
};
INSTANTIATE_TEST_SUITE_P(Groups, ExtractGroup, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ExtractGroup, NilReceiverAndNilName) {
  EXPECT_EQ(Text::extractRTFTagContent(nil, u"x"), nil);
  EXPECT_EQ(Text::extractRTFTagContent(u"{\\x}", nil), nil);
  EXPECT_EQ(Text::extractRTFTagContent(u"{\\(null)}", nil), u"{\\(null)}"_ns);
}

TEST(GetContentOfRTFTag, TrimsBlanksButNotLineEnds) {
  EXPECT_EQ(Text::getContentOfRTFTag(u"{\\x a}", u" \tx "), u"{\\x a}"_ns);
  EXPECT_EQ(Text::getContentOfRTFTag(u"{\\x a}", u"x\n"), nil);
  EXPECT_EQ(Text::getContentOfRTFTag(u"{\\x\n}", u"x\n"), u"{\\x\n}"_ns);
}

TEST(GetContentOfRTFTag, NilAndEmptyGiveNil) {
  for (const NSString& nothing : {NSString(), u""_ns, u"  "_ns}) {
    EXPECT_EQ(Text::getContentOfRTFTag(u"{\\x a}", nothing), nil);
    EXPECT_EQ(Text::getContentOfRTFTag(nothing, u"x"), nil);
  }
}

struct ReplaceRow {
  const char* name;
  std::u16string_view rtf, tag, replacement, out;
};
class ReplaceGroup : public testing::TestWithParam<ReplaceRow> {};
TEST_P(ReplaceGroup, Gives) {
  const ReplaceRow& row = GetParam();
  EXPECT_EQ(Text::stringByReplacingContentOfTag(row.rtf, row.tag, row.replacement).view(), row.out);
}
constexpr ReplaceRow kReplaceRows[] = {
    {"One", u"a{\\x b}c", u"x", u"!", u"a!c"},
    {"EveryOccurrenceOfTheSameText", u"{\\x b}{\\x c}{\\x b}.", u"x", u"!", u"!{\\x c}!."},
    {"ReplacementIsNotLookedInto", u"{\\x b}", u"x", u"{\\x b}{\\x b}", u"{\\x b}{\\x b}"},
    {"InsideOthers", u"{\\x b}{\\y{\\x b}}", u" x ", u"", u"{\\y}"},
    {"AtTheEnd", u"{\\x b}-{\\x b", u"x", u"!", u"!-{\\x b"},
};
INSTANTIATE_TEST_SUITE_P(Groups, ReplaceGroup, testing::ValuesIn(kReplaceRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ReplaceGroup, NilReplacementIsTheEmptyText) {
  EXPECT_EQ(Text::stringByReplacingContentOfTag(u"a{\\x b}c", u"x", nil), u"ac"_ns);
}

TEST(ReplaceGroup, TheReceiverItselfWhereNothingIsReplaced) {
  const NSString rtf = u"{\\x {a}"_ns;
  for (const NSString& tag : {NSString(), u""_ns, u" "_ns, u"x"_ns, u"y"_ns}) {
    EXPECT_TRUE(Text::stringByReplacingContentOfTag(rtf, tag, u"!").isIdenticalTo(rtf));
  }
  EXPECT_EQ(Text::stringByReplacingContentOfTag(nil, u"x", u"!"), nil);
}

std::u16string repeated(std::u16string_view piece, size_t times) {
  std::u16string text;
  for (size_t i = 0; i < times; ++i) text += piece;
  return text;
}

TEST(Groups, SameAsTheStepsOnRandomTexts) {
  const uint32_t seed = 4711;
  std::mt19937 random(seed);
  const std::u16string_view pieces[] = {u"{\\x", u"{", u"}", u"\\", u"x", u"\\\\", u"a", u"{\\x}"};
  const std::u16string_view tags[] = {u"x", u"xx", u"x\\", u"x}", u"x{", u"\\"};
  for (int round = 0; round < 100000; ++round) {
    std::u16string text;
    for (auto left = random() % 14; left > 0; --left) text += pieces[random() % std::size(pieces)];
    const std::u16string tag(tags[random() % std::size(tags)]);
    const auto expected = literal::group(text, tag);
    ASSERT_EQ(Text::extractRTFTagContent(text, tag), expected ? NSString(*expected) : nil)
        << NSString(text) << " seed " << seed;
    ASSERT_EQ(Text::stringByReplacingContentOfTag(text, tag, u"{\\x!}").view(),
              literal::replacingGroup(text, tag, u"{\\x!}"))
        << NSString(text) << " seed " << seed;
  }
}

TEST(Groups, AMillionOfAnythingIsLinear) {
  constexpr size_t kMany = 1'000'000;
  const std::u16string open = repeated(u"{\\x", kMany), close = repeated(u"}", kMany);
  EXPECT_EQ(Text::extractRTFTagContent(open, u"x"), nil);
  EXPECT_EQ(Text::extractRTFTagContent(open + close, u"x").length(), 4 * kMany);
  EXPECT_EQ(Text::extractRTFTagContent(u"{\\x" + repeated(u"\\", kMany) + u"}}", u"x").length(),
            kMany + 4);
  EXPECT_EQ(Text::stringByReplacingContentOfTag(repeated(u"{\\x}", kMany), u"x", u"."),
            repeated(u".", kMany));
}

// Each opening behind the group looks like its beginning for a long way.
TEST(Groups, NearOccurrencesOfALongGroupAreLinear) {
  constexpr size_t kMany = 300'000;
  const std::u16string open = repeated(u"{\\x", kMany), close = repeated(u"}", kMany);
  const std::u16string near = open + u"!" + close;
  EXPECT_EQ(Text::stringByReplacingContentOfTag(open + close + near + open + close, u"x", u"."),
            u"." + near + u".");
}

}  // namespace
}  // namespace kelspar
