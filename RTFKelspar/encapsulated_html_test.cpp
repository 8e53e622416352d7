#include <gtest/gtest.h>

#include <random>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/encapsulated_html_literal.h"

namespace kelspar {
namespace {

NSData rtfData(std::string_view bytes) { return NSData(bytes); }

std::string padded(std::string text, size_t size) {
  text.resize(size, ' ');
  return text;
}

TEST(IsEncapsulatedHTML, NeedsFiftyBytes) {
  const std::string rtf = "{\\rtf1\\ansi\\fromhtml1 }";
  EXPECT_FALSE(RTFKelspar::isEncapsulatedHTML(rtfData(padded(rtf, 49))));
  EXPECT_TRUE(RTFKelspar::isEncapsulatedHTML(rtfData(padded(rtf, 50))));
  EXPECT_FALSE(RTFKelspar::isEncapsulatedHTML(nil));
}

TEST(IsEncapsulatedHTML, LooksAtTheFirst500Bytes) {
  EXPECT_TRUE(RTFKelspar::isEncapsulatedHTML(rtfData(padded("", 491) + "\\fromhtml")));
  EXPECT_FALSE(RTFKelspar::isEncapsulatedHTML(rtfData(padded("", 492) + "\\fromhtml")));
}

TEST(IsEncapsulatedHTML, RefusesBytesThatAreNotAscii) {
  const std::string rtf = padded("\\fromhtml", 499);
  EXPECT_FALSE(RTFKelspar::isEncapsulatedHTML(rtfData(rtf + "\xE9")));
  EXPECT_TRUE(RTFKelspar::isEncapsulatedHTML(rtfData(rtf + " \xE9")));
  EXPECT_FALSE(RTFKelspar::isEncapsulatedHTML(rtfData(padded("\\FROMHTML", 60))));
}

struct Row {
  const char* name;
  std::string_view rtf;
  std::u16string_view html;  // empty: nil
};
class ExtractHTML : public testing::TestWithParam<Row> {};
TEST_P(ExtractHTML, Gives) {
  const Row& row = GetParam();
  const NSString html = RTFKelspar::extractHTMLFromEncapsulatedRTF(rtfData(row.rtf));
  EXPECT_EQ(html.view(), row.html);
  EXPECT_EQ(static_cast<bool>(html), !row.html.empty());
  EXPECT_EQ(html, extractHTMLLiterally(rtfData(row.rtf)));
}
constexpr Row kRows[] = {
    {"Empty", "", u""},
    {"TagContent", "{\\*\\htmltag64 <p>}", u"<p>"},
    {"TextOutsideIsNotPart", "{\\*\\htmltag64 <p>}words{\\*\\htmltag72 </p>}", u"<p></p>"},
    {"ControlWordIsDropped", "{\\*\\htmltag0 \\par }", u""},
    {"SpaceBehindHtmlrtf0IsKept", "{\\*\\htmltag64 a\\htmlrtf b\\htmlrtf0 c}", u"a c"},
    {"HtmlrtfWithoutASpace", "{\\*\\htmltag64 a\\htmlrtf{b}\\htmlrtf0c}", u"ac"},
    {"EscapedBraceIsADelimiter", "{\\*\\htmltag64 a\\{b\\}c}d", u"abc"},
    {"EscapedBackslashStartsAWord", "{\\*\\htmltag64 a\\\\tmp c}", u"ac"},
    {"HexEscapeStays", "{\\*\\htmltag64 caf\\'e9}", u"caf'e9"},
    {"BackslashDropsSignDigitsBlank", "{\\*\\htmltag64 a\\-12 b}", u"ab"},
    {"BackslashDropsDigits", "{\\*\\htmltag64 a\\7b}", u"ab"},
    {"LineBreaksAreDropped", "{\\*\\htmltag64 a\r\nb}", u"ab"},
    {"NoNumber", "{\\*\\htmltag <br>}", u"<br>"},
    {"OneSpaceIsSkipped", "{\\*\\htmltag64  x}", u" x"},
    {"NestedGroupKeepsTheTag", "{\\*\\htmltag64 a{b}c}d", u"abc"},
    {"NestedTagEndsTheOuterOne", "{\\*\\htmltag64 a{\\*\\htmltag65 b}c}d", u"ab"},
    {"Windows1252", "{\\*\\htmltag64 caf\xE9 \x80}", u"caf\u00E9 \u20AC"},
    {"UTF8", "{\\*\\htmltag64 caf\xC3\xA9}", u"caf\u00E9"},
    {"NeitherUTF8NorWindows1252", "{\\*\\htmltag64 caf\xE9 \x81}", u""},
    {"UnicodeDigits", "{\\*\\htmltag64 a\\b\xD9\xA3 c}", u"ac"},
    {"WordAtTheEnd", "{\\*\\htmltag64 a\\par", u"a"},
    {"DigitsAtTheEnd", "{\\*\\htmltag64 a\\par12", u"a"},
    {"TooCloseToTheEndForATag", "{\\*\\htmltag6", u""},
    {"HtmlrtfAtTheVeryEnd", "{\\*\\htmltag64 ab\\htmlrtf", u"ab"},
    {"ClosingTooOften", "}}{\\*\\htmltag64 a}", u"a"},
};
INSTANTIATE_TEST_SUITE_P(RTFKelspar, ExtractHTML, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ExtractHTML, OnlyWhenEncapsulated) {
  const std::string body = "{\\*\\htmltag64 <p>}";
  EXPECT_FALSE(RTFKelspar::extractHTMLIfEncapsulated(rtfData(padded(body, 60))));
  EXPECT_EQ(RTFKelspar::extractHTMLIfEncapsulated(rtfData(padded("{\\fromhtml1 " + body, 60))),
            NSString(u"<p>"));
  EXPECT_FALSE(RTFKelspar::extractHTMLFromEncapsulatedRTF(nil));
}

TEST(ExtractHTMLLaw, EqualsTheLiteralSteps) {
  constexpr std::string_view kPieces[] = {"{",
                                          "}",
                                          "\\",
                                          "{\\*\\htmltag64 ",
                                          "{\\*\\htmltag",
                                          "\\htmlrtf",
                                          "\\htmlrtf0",
                                          "\\htmlrtf ",
                                          " ",
                                          "a",
                                          "<b>",
                                          "\r\n",
                                          "12",
                                          "-",
                                          "\\par",
                                          "'",
                                          "\xC3\xA9",
                                          "\xD9\xA3",
                                          "some longer text "};
  std::mt19937 random(99);
  for (int round = 0; round < 30000; ++round) {
    std::string rtf;
    for (size_t i = random() % 25; i > 0; --i) rtf += kPieces[random() % std::size(kPieces)];
    ASSERT_EQ(RTFKelspar::extractHTMLFromEncapsulatedRTF(rtfData(rtf)),
              extractHTMLLiterally(rtfData(rtf)))
        << rtf;
  }
}

}  // namespace
}  // namespace kelspar
