#include "platform/richtext/rtf_list_numbers.h"

#include <gtest/gtest.h>

#include "platform/richtext/NSAttributedString.h"
#include "platform/richtext/rtf_reader.h"

namespace kelspar {
namespace {

// Three lists: 1 numbered in three levels, 2 of bullets, 3 with words; \ls5 and \ls6 are list 1
// again, the latter beginning at 7, and \ls7 has letters in place of its numbers.
constexpr std::string_view kTables =
    "{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}}"
    "{\\*\\listtable"
    "{\\list{\\listlevel\\levelnfc0\\levelstartat1{\\leveltext\\'02\\'00.;}{\\levelnumbers\\'01;}}"
    "{\\listlevel\\levelnfc4\\levelstartat1\\levelfollow1{\\leveltext\\'03(\\'01);}}"
    "{\\listlevel\\levelnfc2\\levelstartat3\\levelfollow2{\\leveltext\\'06\\'00-\\'01-\\'02:;}}"
    "\\listid100}"
    "{\\list{\\listlevel\\levelnfc23{\\leveltext\\'01\\u-3913 ?;}\\f1}"
    "{\\listlevel\\levelnfc23{\\leveltext\\'01o;}\\f0}"
    "{\\listlevel\\levelnfc255{\\leveltext\\'00;}}"
    "{\\listlevel\\levelnfc23{\\leveltext\\'01\\u-4000 ?;}\\f0}\\listid200}"
    "{\\list{\\listlevel\\levelnfc1\\levelstartat9{\\leveltext\\'0aChapter "
    "\\'00\\'b7;}}\\listid300}}"
    "{\\*\\listoverridetable{\\listoverride\\listid100\\ls1}{\\listoverride\\listid200\\ls2}"
    "{\\listoverride\\listid300\\ls3}{\\listoverride\\listid999\\ls4}{"
    "\\listoverride\\listid100\\ls5}"
    "{\\listoverride\\listid100{\\lfolevel\\listoverridestartat\\levelstartat7}\\ls6}"
    "{\\listoverride\\listid100{\\lfolevel\\listoverrideformat{"
    "\\listlevel\\levelnfc3\\levelstartat26"
    "{\\leveltext\\'02\\'00);}}}\\ls7}}";

struct Row {
  const char* name;
  std::string_view body;
  std::u16string_view text;
};
class ListMarkers : public testing::TestWithParam<Row> {};
TEST_P(ListMarkers, Are) {
  const std::string rtf = "{\\rtf1" + std::string(kTables) + std::string(GetParam().body) + "}";
  EXPECT_EQ(plainTextFromRTF(NSData(rtf)).view(), GetParam().text);
  EXPECT_EQ(NSAttributedString::initWithRTF(NSData(rtf)).string().view(), GetParam().text);
}
constexpr Row kRows[] = {
    {"Numbers", "\\ls1 a\\par b\\par\\pard c", u"1.\ta\n2.\tb\nc"},
    {"Levels", "\\ls1 a\\par\\ilvl1 b\\par c\\par\\ilvl2 d\\par\\ilvl0 e\\par\\ilvl1 f",
     u"1.\ta\n(a) b\n(b) c\n1-b-iii:d\n2.\te\n(a) f"},
    {"LevelsBeforeTheirs", "\\ls1\\ilvl2 a\\par\\ilvl0 b", u"1-a-iii:a\n1.\tb"},
    {"Bullets", "\\ls2 a\\par\\ilvl1 b\\par\\ilvl2 c\\par\\ilvl3 d",
     u"\u2022\ta\no\tb\nc\n\u2022\td"},
    {"WordsAndAStart", "\\ls3 a\\par b", u"Chapter IX\u00B7\ta\nChapter X\u00B7\tb"},
    {"WithoutItsList", "\\ls4 a\\par\\ls9 b", u"a\nb"},
    {"TwoListsTakeTurns", "\\ls1 a\\par\\ls3 b\\par\\ls1 c", u"1.\ta\nChapter IX\u00B7\tb\n2.\tc"},
    {"OneListByTwoNumbers", "\\ls1 a\\par\\ls5 b", u"1.\ta\n2.\tb"},
    {"BegunAnew", "\\ls1 a\\par\\ls6 b\\par c\\par\\ls1 d", u"1.\ta\n7.\tb\n8.\tc\n9.\td"},
    {"InAnotherFormat", "\\ls7 a\\par b", u"Z)\ta\nAA)\tb"},
    {"TheWritersMarkersCount", "{\\listtext 1.\\tab}\\ls1 a\\par\\ls1 b", u"1.\ta\n2.\tb"},
    {"NoTwoMarkers", "\\pard{\\listtext\\pard\\plain 5)\\tab}\\ls1 a\\par", u"5)\ta\n"},
    {"EmptyItems", "\\ls1\\par a\\par\\pard", u"1.\t\n2.\ta\n"},
    {"OneMarkerAParagraph", "\\ls1 a\\b b{\\i c}\\line d\\tab e\\par", u"1.\tabc\u2028d\te\n"},
    {"EveryWayToBegin", "\\ls1\\'41\\par\\u66?\\par\\{\\par\\bullet\\par\\~",
     u"1.\tA\n2.\tB\n3.\t{\n4.\t\u2022\n5.\t\u00A0"},
    {"HiddenItemsAreNone", "\\ls1{\\v a\\par}b", u"1.\tb"},
    {"GroupsEndThem", "{\\ls1 a\\par}b\\par{\\ls1 c}", u"1.\ta\nb\n2.\tc"},
    {"InCells", "\\trowd\\cellx9\\intbl\\ls1 a\\cell\\pard b\\cell\\row", u"1.\ta\tb\n"},
    {"MarkersInUnicodeEscapes",
     "{\\*\\listtable{\\list{\\listlevel{\\leveltext{\\uc1\\u2 ?}{\\u0 ?}{\\u41 ?}{\\u59 "
     "?}}}\\listid7}}"
     "{\\*\\listoverridetable{\\listoverride\\listid7\\ls8}}\\ls8 a",
     u"1)\ta"},
    {"TablesThatComeAgain",
     "\\ls8 a\\par{\\*\\listtable{\\list{\\listlevel{\\leveltext\\'01\\'00;}}\\listid7}}"
     "{\\*\\listoverridetable{\\listoverride\\listid7\\ls8}}b",
     u"a\n1\tb"},
};
INSTANTIATE_TEST_SUITE_P(RTF, ListMarkers, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct Number {
  int32_t number, format;
  std::u16string_view text;
};
TEST(ListNumbers, AreWrittenInTheirFormats) {
  constexpr Number kNumbers[] = {
      {12, 0, u"12"},     {4, 1, u"IV"},      {1999, 2, u"mcmxcix"},
      {4000, 2, u"4000"}, {0, 1, u"0"},       {26, 3, u"Z"},
      {27, 4, u"aa"},     {54, 4, u"bbb"},    {209, 4, u"209"},
      {1, 5, u"1st"},     {2, 5, u"2nd"},     {3, 5, u"3rd"},
      {11, 5, u"11th"},   {112, 5, u"112th"}, {4, 5, u"4th"},
      {7, 22, u"07"},     {10, 22, u"10"},    {5, 99, u"5"},
      {-3, 0, u"-3"},     {-3, 4, u"-3"},     {INT32_MIN, 22, u"-2147483648"},
  };
  for (const Number& row : kNumbers) {
    EXPECT_EQ(textOfListNumber(row.number, row.format), row.text)
        << row.number << " " << row.format;
  }
}

TEST(ListMarkersEdges, AreBounded) {
  std::string levels, text = "\\'ff";
  for (int i = 0; i < 9; ++i) text += "\\'0" + std::to_string(i) + "xxxxxxxx";
  for (int i = 0; i < 9; ++i) {
    levels += "{\\listlevel\\levelnfc2\\levelstartat3888{\\leveltext" + text + ";}}";
  }
  const std::string rtf = "{\\rtf1{\\*\\listtable{\\list" + levels +
                          "\\listid1}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}"
                          "\\ls1\\ilvl8 a}";
  EXPECT_LE(plainTextFromRTF(NSData(rtf)).length(), 42u);
}

// A paragraph of two bytes asks for a marker of forty characters, again and again.
TEST(ListMarkersEdges, AreNoLongerThanTheDocument) {
  std::string rtf = "{\\rtf1" + std::string(kTables) + "\\ls3";
  for (int i = 0; i < 100'000; ++i) rtf += "\\\n";
  const size_t length = plainTextFromRTF(NSData(rtf + "}")).length();
  EXPECT_GT(length, rtf.size());
  EXPECT_LE(length, 2 * rtf.size());
}

TEST(ListMarkersEdges, NumbersDoNotOverflow) {
  const std::string rtf =
      "{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelstartat2147483647{\\leveltext\\'01\\'00;}}"
      "\\listid1}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}\\ls1 a\\par b}";
  EXPECT_EQ(plainTextFromRTF(NSData(rtf)), NSString(u"2147483647\ta\n2147483647\tb"));
}

// Each table that ends costs what it holds, not what all before it held.
TEST(ListMarkersEdges, ManyTablesCostLittle) {
  std::string rtf = "{\\rtf1";
  for (int i = 0; i < 100'000; ++i) rtf += "{\\listtable{\\list\\listid" + std::to_string(i) + "}}";
  EXPECT_EQ(plainTextFromRTF(NSData(rtf + "a}")), NSString(u"a"));
}

}  // namespace
}  // namespace kelspar
