#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::string_view rtf;
  std::u16string_view html;  // empty: nil
};
class HTMLFromRTF : public testing::TestWithParam<Row> {};
TEST_P(HTMLFromRTF, Gives) {
  const NSString html = MailKelspar::htmlFromEncapsulatedRTF(NSData(GetParam().rtf));
  EXPECT_EQ(html.view(), GetParam().html);
  EXPECT_EQ(static_cast<bool>(html), !GetParam().html.empty());
}
constexpr Row kRows[] = {
    {"NotEncapsulated", "{\\rtf1 words}", u""},
    {"NoRTF", "<p>words</p>", u""},
    {"TagsAndWords", "{\\rtf1\\fromhtml1 {\\*\\htmltag64 <p>}words{\\*\\htmltag72 </p>}}",
     u"<p>words</p>"},
    {"HtmlrtfHides", "{\\rtf1\\fromhtml1 a\\htmlrtf b\\htmlrtf0 c}", u"ac"},
    {"HtmlrtfEndsWithItsGroup", "{\\rtf1\\fromhtml1 a{\\htmlrtf b}c}", u"ac"},
    {"HtmlrtfOpensAgainInAGroup", "{\\rtf1\\fromhtml1 \\htmlrtf {\\htmlrtf0 a}b\\htmlrtf0 c}",
     u"ac"},
    {"ParLineTab", "{\\rtf1\\fromhtml1 a\\par b\\line c\\tab d}", u"a\r\nb\r\nc\td"},
    {"Symbols", "{\\rtf1\\fromhtml1 a\\~b\\-c\\_d}", u"a&nbsp;b&shy;c&#8209;d"},
    {"NamedCharacters", "{\\rtf1\\fromhtml1 \\lquote a\\rquote\\emdash}",
     u"&#8216;a&#8217;&#8212;"},
    {"EscapedBraces", "{\\rtf1\\fromhtml1 {\\*\\htmltag241 a\\{b\\}\\\\}}", u"a{b}\\"},
    {"HexInTheDocumentsPage", "{\\rtf1\\ansicpg1251\\fromhtml1 \\'cf\\'f0}", u"\u041F\u0440"},
    {"HexInTheFontsPage",
     "{\\rtf1\\ansicpg1252\\fromhtml1{\\fonttbl{\\f1\\fcharset128 x;}}{\\f1 \\'82\\'a0}}",
     u"\u3042"},
    {"Unicode", "{\\rtf1\\fromhtml1\\uc1 \\u8364?\\u-10179?\\u-8704?}", u"\u20AC\U0001F600"},
    {"MhtmltagIsDropped", "{\\rtf1\\fromhtml1 {\\*\\mhtmltag64 <x>}a}", u"a"},
    {"OtherDestinationsAreDropped",
     "{\\rtf1\\fromhtml1 {\\colortbl;\\red0;}{\\stylesheet s;}{\\info{\\author n}}{\\*\\gen g;}a}",
     u"a"},
    {"RawLineBreaksAreNoText", "{\\rtf1\\fromhtml1 a\r\nb}", u"ab"},
    {"HiddenTextOfTheRTFIsNotTheHTMLs", "{\\rtf1\\fromhtml1 a{\\v b}c}", u"abc"},
};
INSTANTIATE_TEST_SUITE_P(MailKelspar, HTMLFromRTF, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(DeclaringUTF8, ReplacesTheLabelsOfMetaElements) {
  const auto declaring = [](const char16_t* html) { return MailKelspar::htmlDeclaringUTF8(html); };
  EXPECT_EQ(declaring(u"<meta charset=\"windows-1252\"><p>"),
            NSString(u"<meta charset=\"utf-8\"><p>"));
  EXPECT_EQ(declaring(u"<META http-equiv=Content-Type content='text/html; CHARSET = gb2312'>"),
            NSString(u"<META http-equiv=Content-Type content='text/html; CHARSET = utf-8'>"));
  EXPECT_EQ(declaring(u"<meta name=x content=y><meta charset=a>"),
            NSString(u"<meta name=x content=y><meta charset=utf-8>"));
}

TEST(DeclaringUTF8, LeavesTheRestAlone) {
  for (const char16_t* html :
       {u"", u"<p>charset=x</p>", u"<meta", u"<meta charset>", u"<meta charset="}) {
    const NSString text(html);
    EXPECT_TRUE(MailKelspar::htmlDeclaringUTF8(text).isIdenticalTo(text)) << text;
  }
  EXPECT_FALSE(MailKelspar::htmlDeclaringUTF8(nil));
}

TEST(HTMLFromRTF, TheSampleReadsAsItsAuthorWroteIt) {
  std::ifstream file(KELSPAR_SOURCE_DIR "/samples/invitation.rtfz", std::ios::binary);
  const NSData stored(std::string{std::istreambuf_iterator<char>(file), {}});
  const NSString html =
      MailKelspar::htmlFromEncapsulatedRTF(MailKelspar::rtfFromStoredBody(stored));
  EXPECT_NE(html.rangeOfString(u"<p>Dear neighbours,</p>").location, NSNotFound);
  EXPECT_NE(html.rangeOfString(u"<b>Saturday, 21 June</b>").location, NSNotFound);
  EXPECT_NE(html.rangeOfString(u"Jos\u00E9e bakes, \u0410\u043D\u043D\u0430 brings").location,
            NSNotFound);
  EXPECT_NE(html.rangeOfString(u"<li>cakes &amp; savouries to number 12</li>").location,
            NSNotFound);
}

}  // namespace
}  // namespace kelspar
