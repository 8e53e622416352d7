#include "platform/unicode/code_pages.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

using namespace std::string_view_literals;

struct Row {
  const char* name;
  int page;
  std::string_view bytes;
  std::u16string_view text;
};
class CodePages : public testing::TestWithParam<Row> {};
TEST_P(CodePages, Decode) {
  std::u16string text = u">";
  CodePage::numbered(GetParam().page).append(GetParam().bytes, &text);
  EXPECT_EQ(text, u">" + std::u16string(GetParam().text));
}
constexpr Row kRows[] = {
    {"Windows1250", 1250, "\xB9", u"\u0105"},
    {"Dos437", 437, "\x82", u"\u00E9"},
    {"MacRoman", 10000, "\x8E", u"\u00E9"},
    {"ShiftJIS", 932, "\x82\xA0\xB1", u"\u3042\uFF71"},
    {"GBK", 936, "\xC4\xE3", u"\u4F60"},
    {"UHC", 949, "\xB0\xA1", u"\uAC00"},
    {"Johab", 1361, "\x88\x61\x88\x63 \\", u"\uAC00\uAC02 \\"},
    {"DamagedJohab", 1361, "\x88\x61\x88 \xFF\xFF\0"sv, u"\uAC00\uFFFD \uFFFD\0"sv},
    {"Big5", 950, "\xA7\x41", u"\u4F60"},
    {"Thai", 874, "\xA1", u"\u0E01"},
    {"UTF8", 65001, "\xE2\x82\xAC", u"\u20AC"},
    {"DamagedIsReplaced", 65001, "a\xE2z", u"a\uFFFDz"},
    {"DamagedDoubleByteIsReplaced", 932, "\xFF\x82", u"\uFFFD\uFFFD"},
    {"UnknownIs1252", 4711, "\x80", u"\u20AC"},
};
INSTANTIATE_TEST_SUITE_P(CodePage, CodePages, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CodePages, KnowLeadBytes) {
  EXPECT_TRUE(CodePage::numbered(932).isLeadByte(0x82));
  EXPECT_FALSE(CodePage::numbered(932).isLeadByte(0xB1));
  EXPECT_FALSE(CodePage::numbered(1252).isLeadByte(0xE9));
  EXPECT_TRUE(CodePage::numbered(1252).isSingleByte());
  EXPECT_FALSE(CodePage::known(4711));
}

TEST(CodePages, EachNumberHasAConverter) {
  for (int number = 0; number <= 65001; ++number) {
    if (!CodePage::known(number)) continue;
    std::u16string text;
    CodePage::numbered(number).append(number == 37 ? "\x81" : "a", &text);
    EXPECT_EQ(text, u"a") << number;
  }
}

}  // namespace
}  // namespace kelspar
