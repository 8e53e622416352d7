#include "platform/unicode/NSStringCase.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <string>

namespace kelspar {
namespace {

struct MapRow {
  const char* name;
  const char16_t *text, *upper, *lower;
};
class CaseMapping : public testing::TestWithParam<MapRow> {};
TEST_P(CaseMapping, Gives) {
  EXPECT_EQ(uppercaseString(GetParam().text), NSString(GetParam().upper));
  EXPECT_EQ(lowercaseString(GetParam().text), NSString(GetParam().lower));
}
constexpr MapRow kMapRows[] = {
    {"Ascii", u"aBz[{@`", u"ABZ[{@`", u"abz[{@`"},
    {"SharpSGrows", u"Stra\u00DFe", u"STRASSE", u"stra\u00DFe"},
    {"Ligature", u"\uFB01x", u"FIX", u"\uFB01x"},
    {"FinalSigma", u"\u039F\u03A3", u"\u039F\u03A3", u"\u03BF\u03C2"},
    {"NotTurkish", u"iI\u0130", u"II\u0130", u"iii\u0307"},
    {"Supplementary", u"\U00010400", u"\U00010400", u"\U00010428"},
    {"LoneSurrogate", u"a\xD800", u"A\xD800", u"a\xD800"},
    {"Empty", u"", u"", u""},
};
INSTANTIATE_TEST_SUITE_P(NSStringCase, CaseMapping, testing::ValuesIn(kMapRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CaseMapping, GivesTheReceiverBack) {
  const NSString upper(u"ABC \u00C9"), plain(u"123");
  EXPECT_TRUE(uppercaseString(upper).isIdenticalTo(upper));
  EXPECT_TRUE(lowercaseString(plain).isIdenticalTo(plain));
  EXPECT_FALSE(uppercaseString(nil));
}

struct FindRow {
  const char* name;
  std::u16string_view text, needle;
  uint64_t location, length;
  uint64_t last;
};
class CaseInsensitive : public testing::TestWithParam<FindRow> {};
TEST_P(CaseInsensitive, Finds) {
  const FindRow& row = GetParam();
  EXPECT_EQ(CaseFoldedText(row.text).find(row.needle), (NSRange{row.location, row.length}));
  EXPECT_EQ(CaseFoldedText(row.text).findLast(row.needle).location, row.last);
}
constexpr FindRow kFindRows[] = {
    {"Ascii", u"say hello HELLO", u"HeLLo", 4, 5, 10},
    {"SharpSIsTwo", u"Stra\u00DFe", u"STRASSE", 0, 6, 0},
    {"HalfASharpSIsNothing", u"\u00DF", u"s", NSNotFound, 0, NSNotFound},
    {"BehindASharpS", u"\u00DFs", u"S", 1, 1, 1},
    {"TwoAcrossASharpS", u"\u00DFs", u"sss", 0, 2, 0},
    {"NeedleFolds", u"xSSx", u"\u00DF", 1, 2, 1},
    {"Kelvin", u"10 \u212A", u"k", 3, 1, 3},
    {"Sigmas", u"\u03C2\u03C3\u03A3", u"\u03A3", 0, 1, 2},
    {"Deseret", u"a\U00010400b", u"\U00010428", 1, 2, 1},
    {"DecomposedDiffers", u"e\u0301", u"\u00C9", NSNotFound, 0, NSNotFound},
    {"EmptyNeedle", u"abc", u"", NSNotFound, 0, NSNotFound},
    {"EmptyText", u"", u"a", NSNotFound, 0, NSNotFound},
};
INSTANTIATE_TEST_SUITE_P(NSStringCase, CaseInsensitive, testing::ValuesIn(kFindRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CaseInsensitive, ReplacesInUnitsOfTheReceiver) {
  EXPECT_EQ(stringByReplacingCaseInsensitive(u"aSS \u00DF ss", u"ss", u"-"), NSString(u"a- - -"));
  EXPECT_EQ(stringByReplacingCaseInsensitive(u"aaa", u"AA", u"b"), NSString(u"ba"));
  const NSString text(u"abc");
  EXPECT_TRUE(stringByReplacingCaseInsensitive(text, u"x", u"y").isIdenticalTo(text));
  EXPECT_TRUE(stringByReplacingCaseInsensitive(text, u"", u"y").isIdenticalTo(text));
}

TEST(CaseInsensitive, FindsFromAPosition) {
  const CaseFoldedText text(u"\u00DFab\u00DFAB");
  EXPECT_EQ(text.find(u"ab", 2).location, 4u);
  EXPECT_EQ(text.find(u"ab", 1).location, 1u);
  EXPECT_TRUE(text.hasPrefix(u"SSa"));
  EXPECT_FALSE(text.hasPrefix(u"s"));
}

TEST(CaseInsensitive, HostileTextIsLinear) {
  std::u16string text(500'000, u'\u00DF');
  EXPECT_EQ(CaseFoldedText(text).findAll(u"SSSS").size(), 250'000u);
  EXPECT_EQ(CaseFoldedText(text).find(std::u16string(99'999, u's')).location, NSNotFound);
}

}  // namespace
}  // namespace kelspar
