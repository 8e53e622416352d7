#include "platform/graphics/text_width.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace kelspar {
namespace {

NSTextAttributes sized(double size, bool bold = false) {
  NSTextAttributes look;
  look.font.size = size;
  look.font.bold = bold;
  return look;
}

double width(std::u16string_view text, const NSTextAttributes& look = {}) {
  return widthOfText(NSAttributedString(NSString(text), look));
}

TEST(WidthOfText, GrowsWithTextAndFont) {
  EXPECT_EQ(widthOfText(nil), 0);
  EXPECT_EQ(width(u""), 0);
  EXPECT_GT(width(u"mm"), width(u"m"));
  EXPECT_GT(width(u"m", sized(24)), 1.9 * width(u"m", sized(12)));
  EXPECT_GT(width(u"some words", sized(12, true)), width(u"some words", sized(12)));
}

TEST(WidthOfText, IsThatOfTheWidestLine) {
  for (const char16_t* end : {u"\n", u"\r", u"\r\n", u"\u2028", u"\u2029"}) {
    const std::u16string text = std::u16string(u"a") + end + u"wide line" + end + u"b";
    EXPECT_DOUBLE_EQ(width(text), width(u"wide line"));
  }
}

TEST(WidthOfText, AddsRunsUp) {
  NSMutableAttributedString text(NSAttributedString(u"WWW", sized(30)));
  text.append(u"iii", sized(10));
  EXPECT_NEAR(widthOfText(text.copy()), width(u"WWW", sized(30)) + width(u"iii", sized(10)), 1);
}

TEST(WidthOfText, LongLinesDoNotOverflow) {
  const double one = width(u"mmmmmmmmmm") / 10;
  EXPECT_NEAR(width(std::u16string(400'000, u'm')) / (400'000 * one), 1, 0.01);
}

TEST(WidthOfText, TabsCountFromTheLinesStart) {
  constexpr double kTab = 28;
  EXPECT_EQ(width(u"\t"), kTab);
  EXPECT_EQ(width(u"a\t\t"), 2 * kTab);
  EXPECT_EQ(width(std::u16string(3'000, u'\t')), 3'000 * kTab);
  // Behind more than one layout takes.
  const std::u16string letters(20'001, u'a');
  EXPECT_EQ(width(letters + u"\t"), kTab * (std::floor(width(letters) / kTab) + 1));
  EXPECT_EQ(std::fmod(width(letters + u"b\tb\t"), kTab), 0);
}

TEST(WidthOfText, MarksStandOnTheirLetter) {
  struct Row {
    const char* name;
    std::u16string letter, mark;
  };
  const Row rows[] = {
      {"Latin", u"a", u"\u0301"},
      {"LatinAfterOthers", u"word a", u"\u0301"},
      {"Hebrew", u"\u05D0", u"\u05B0"},
      {"Variation", u"a", u"\uFE0F"},
      {"JoinerAtTheUsualEnd", std::u16string(19'999, u'a'), u"\u200D"},
  };
  for (const Row& row : rows) {
    const double marked = width(row.letter + row.mark);
    std::u16string text = row.letter;
    for (const size_t count : {20, 2'000, 20'000, 200'000}) {
      while (text.size() < row.letter.size() + count) text += row.mark;
      EXPECT_NEAR(width(text), marked, 0.01) << row.name << ", " << count;
    }
  }
}

TEST(WidthOfText, LargeLettersDoNotOverflow) {
  EXPECT_NEAR(
      width(std::u16string(20'000, u'm'), sized(1'000)) / (20'000 * width(u"m", sized(1'000))), 1,
      0.01);
}

TEST(WidthOfText, TakesAnyUnits) {
  EXPECT_GE(width(std::u16string_view(u"a\0b\xD800\u0001", 5)), width(u"ab"));
}

}  // namespace
}  // namespace kelspar
