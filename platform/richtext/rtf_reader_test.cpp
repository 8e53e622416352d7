#include "platform/richtext/rtf_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {
namespace {

std::u16string withoutPictures(const NSString& text) {
  std::u16string units(text.view());
  std::erase(units, u'\uFFFC');
  return units;
}

struct Row {
  const char* name;
  std::string_view body;  // of "{\rtf1 ...}"
  std::u16string_view text;
};
class PlainText : public testing::TestWithParam<Row> {};
TEST_P(PlainText, Gives) {
  const std::string rtf = "{\\rtf1" + std::string(GetParam().body) + "}";
  EXPECT_EQ(plainTextFromRTF(NSData(rtf)).view(), GetParam().text);
  EXPECT_EQ(withoutPictures(NSAttributedString::initWithRTF(NSData(rtf)).string()),
            GetParam().text);
}
constexpr Row kRows[] = {
    {"Paragraphs", " a\\par b\\par", u"a\nb\n"},
    {"EscapedLineBreakIsAParagraph", " a\\\nb", u"a\nb"},
    {"LineInsideAParagraph", " a\\line b", u"a\u2028b"},
    {"PageAndTab", " a\\page b\\tab c", u"a\fb\tc"},
    {"EscapedBracesAndBackslashes", " \\{a\\}\\\\", u"{a}\\"},
    {"Symbols", " a\\~b\\-c\\_d", u"a\u00A0b\u00ADc\u2011d"},
    {"NamedCharacters", " \\ldblquote a\\rdblquote\\endash\\bullet", u"\u201Ca\u201D\u2013\u2022"},
    {"HexIsWindows1252", "\\ansi \\'e9\\'80", u"\u00E9\u20AC"},
    {"AnsiCodePage", "\\ansi\\ansicpg1251 \\'cf\\'f0", u"\u041F\u0440"},
    {"MacRoman", "\\mac \\'8e", u"\u00E9"},
    {"FontCharset", "{\\fonttbl{\\f0 a;}{\\f1\\fcharset204 b;}}\\f1 \\'cf\\f0 \\'cf",
     u"\u041F\u00CF"},
    {"FontCodePage", "\\ansicpg1252{\\fonttbl{\\f1\\fcharset1\\cpg1253 b;}}\\f1 \\'e1", u"\u03B1"},
    {"DefaultFont", "\\deff1{\\fonttbl{\\f1\\fcharset204 b;}}\\'cf{\\f2 \\'cf}\\plain \\'cf",
     u"\u041F\u00CF\u041F"},
    {"FontThatIsNotDefined", "\\ansicpg1251\\f7 \\'cf", u"\u041F"},
    {"FontEndsWithItsGroup", "{\\fonttbl{\\f1\\fcharset204 b;}}{\\f1 \\'cf}\\'cf", u"\u041F\u00CF"},
    {"DoubleByteInTwoEscapes", "\\ansicpg932 \\'82\\'a0", u"\u3042"},
    {"DoubleByteWithALetter", "\\ansicpg932 \\'83A", u"\u30A2"},
    {"DoubleByteWithAnEscapedBackslash", "\\ansicpg932 \\'83\\\\", u"\u30BD"},
    {"DoubleByteAcrossALineBreak", "\\ansicpg932 \\'82\r\n\\'a0", u"\u3042"},
    {"DoubleByteRawBytes", "\\ansicpg932 \x82\xA0", u"\u3042"},
    {"UTF8Page", "\\ansicpg65001 \\'e2\\'82\\'ac", u"\u20AC"},
    {"RightToLeftFont",
     "{\\fonttbl{\\f0 a;}{\\f1\\fcharset177 b;}}{\\ltrch\\f0 \\rtlch\\af1 \\'e0}{\\rtlch\\af1 "
     "\\ltrch\\f0 \\'e0}",
     u"\u05D0\u00E0"},
    {"Unicode", "\\u8364?x", u"\u20ACx"},
    {"UnicodeNegative", "\\u-4064?", u"\uF020"},
    {"UnicodePair", "\\u-10179?\\u-8704?", u"\U0001F600"},
    {"UnicodeWholeCodePoint", "\\u128512?", u"\U0001F600"},
    {"UnicodeZeroFallback", "\\uc0\\u8364x", u"\u20ACx"},
    {"UnicodeTwoBytesOfFallback", "\\uc2\\u12354\\'82\\'a0x", u"\u3042x"},
    {"UnicodeFallbackEndsWithTheGroup", "{\\uc3\\u8364?}xyz", u"\u20ACxyz"},
    {"UnicodeFallbackCountIsScoped", "{\\uc0\\u8364}\\u8364?x", u"\u20AC\u20ACx"},
    {"UnicodeFallbackOfAWord", "\\u8364\\bullet x", u"\u20ACx"},
    {"Upr", "{\\upr{ansi}{\\*\\ud{u\\u8364?}}}x", u"u\u20ACx"},
    {"HiddenText", " a{\\v b}c\\v d\\v0 e", u"ace"},
    {"HiddenEndsAtPlain", "\\v a\\plain b", u"b"},
    {"DeletedText", " a{\\deleted b}c", u"ac"},
    {"UnknownDestination", " a{\\*\\unknown b{c}d}e", u"ae"},
    {"UnknownWord", " a\\unknown b", u"ab"},
    {"StarInTheMiddleOfAGroup", " {a\\*\\unknown b}c", u"abc"},
    {"SymbolFont", "{\\fonttbl{\\f1\\fcharset2 Symbol;}}\\f1 \\'b7a\\f0 a", u"\u2022\u03B1a"},
    {"SymbolFontPrivateUnits", "{\\fonttbl{\\f1\\fcharset2 Wingdings;}}\\f1\\u-3844?", u"\u2713"},
    {"HalfACharacterIsLatin", "\\ansicpg932 \\'95\\tab x", u"\u2022\tx"},
    {"SectionBehindAParagraph", " a\\par\\sect b\\sect c", u"a\nb\nc"},
    {"TextBox", " a{\\shp{\\*\\shpinst{\\sp{\\sn x}{\\sv 1}}{\\shptxt box}}{\\shprslt old}}b",
     u"aboxb"},
    {"PictureOfAShape",
     "a{\\shp{\\*\\shpinst{\\sp{\\sn pib}{\\sv {\\pict\\pngblip 89504e47}}}{\\sp{\\sn x}{\\sv "
     "y}}}}b",
     u"ab"},
    {"UnicodeDestinationWithoutItsUpr", "{\\*\\unknown{\\*\\ud x}}y", u"y"},
    {"SkippedGroupsWithBinaryData", "{\\*\\unknown\\bin3 }}}x\\}{\\{}}y", u"y"},
    {"NestedInstruction",
     "{\\field{\\*\\fldinst IF {\\field{\\*\\fldinst A}{\\fldrslt b}}}{\\fldrslt c}}", u"c"},
    {"StarredTextDestination", " {\\*\\pntext x}a", u"xa"},
    {"TablesOfTheHeader",
     "{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red1;}{\\stylesheet{s;}}{\\info{\\title t}}a", u"a"},
    {"HeadersFootersNotes", "{\\header h}{\\footerf f}a{\\footnote n}b", u"ab"},
    {"Pictures", "a{\\pict\\pngblip 89504e47}b{\\*\\shppict{\\pict 00}}{\\nonshppict{\\pict 00}}c",
     u"abc"},
    {"BinaryPicture", "a{\\pict\\bin4 }}{{}b", u"ab"},
    {"Field", "{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt link}}", u"link"},
    {"ObjectResult", "{\\object{\\*\\objdata 00}{\\result shown}}", u"shown"},
    {"ListText", "{\\listtext\\bullet\\tab}{\\*\\pn{\\pntxtb x}}item", u"\u2022\titem"},
    {"SymbolField",
     "{\\field{\\*\\fldinst SYMBOL 183 \\\\f \"Symbol\" \\\\s 10}{\\fldrslt\\f3\\fs20}}a",
     u"\u2022a"},
    {"SymbolFieldWithItsResult", "{\\field{\\*\\fldinst SYMBOL 97}{\\fldrslt x}}a", u"xa"},
    {"SymbolFieldWithoutAResult", "{\\field{\\*\\fldinst{SYMBOL 0x61}}}a", u"aa"},
    {"HiddenSymbolField", "{\\v{\\field{\\*\\fldinst SYMBOL 97}}}a", u"a"},
    {"OlderTextBox", "a{\\*\\do\\dobxpage{\\dptxbxtext\\pard b\\par}\\dpx1}c", u"ab\nc"},
    {"Rows", "a\\cell b\\cell\\row c\\cell d\\cell\\row", u"a\tb\nc\td\n"},
    {"NestedRows", "a\\nestcell b\\nestcell{\\*\\nesttableprops\\nestrow}{\\nonesttables x}c",
     u"a\tb\nc"},
    {"HtmltagGroupsAreSkipped", "\\fromhtml1 {\\*\\htmltag64 <p>}\\htmlrtf a\\htmlrtf0 b", u"ab"},
    {"RawNulsAreNoText", std::string_view(" a\0b", 4), u"ab"},
};
INSTANTIATE_TEST_SUITE_P(RTF, PlainText, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

NSString plain(std::string_view rtf) { return plainTextFromRTF(NSData(rtf)); }

TEST(PlainTextEdges, WhatIsNoRTFIsNil) {
  EXPECT_FALSE(plainTextFromRTF(nil));
  EXPECT_FALSE(plain(""));
  EXPECT_FALSE(plain("plain text"));
}

TEST(PlainTextEdges, TextBehindTheDocumentIsNotRead) {
  EXPECT_EQ(plain("{\\rtf1 a}b{c}"), NSString(u"a"));
}

TEST(PlainTextEdges, MissingBracesCostNothing) {
  EXPECT_EQ(plain("{\\rtf1 a{\\b b"), NSString(u"ab"));
  EXPECT_EQ(plain("{\\rtf1 a\\"), NSString(u"a"));
  EXPECT_EQ(plain("{\\rtf1"), NSString(u""));
}

TEST(PlainTextEdges, AMillionGroupsAreACounter) {
  const std::string open(1'000'000, '{'), close(1'000'000, '}');
  EXPECT_EQ(plain("{\\rtf1 a" + open + "b" + close + "c}"), NSString(u"abc"));
  std::string words;
  for (int i = 0; i < 300'000; ++i) words += "{\\v0";
  EXPECT_EQ(plain("{\\rtf1 a" + words + " b}"), NSString(u"ab"));
}

TEST(PlainTextEdges, HalvesOfCharactersAreCountedOnce) {
  std::string pairs = "\\ansicpg932 ";
  for (int i = 0; i < 200'000; ++i) pairs += "\\'83\\\\";
  EXPECT_EQ(plain("{\\rtf1" + pairs + "}").length(), 200'000u);
}

#ifdef KELSPAR_CORPUS
TEST(RTFCorpus, AttributedTextHasThePlainCharacters) {
  size_t documents = 0;
  for (const char* folder : {"/rtf", "/lzfu"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(KELSPAR_CORPUS + std::string(folder))) {
      if (entry.path().extension() != ".rtf") continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const NSData rtf(std::string{std::istreambuf_iterator<char>(file), {}});
      const NSString text = plainTextFromRTF(rtf);
      const NSAttributedString attributed = NSAttributedString::initWithRTF(rtf);
      ASSERT_EQ(text.isNil(), attributed.isNil()) << entry.path();
      EXPECT_EQ(withoutPictures(attributed.string()), withoutPictures(text)) << entry.path();
      ++documents;
    }
  }
  EXPECT_GT(documents, 300u);
}
#endif

}  // namespace
}  // namespace kelspar
