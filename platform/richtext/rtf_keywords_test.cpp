// Control words by what they do: a row for each word that no other test has a reason to use.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {
namespace {

NSAttributedString read(const std::string& body) {
  return NSAttributedString::initWithRTF(NSData("{\\rtf1" + body + "}"));
}
std::string textOf(const std::string& body) { return read(body).string().utf8(); }
NSTextAttributes firstLookOf(const std::string& body) { return *read(body).runs()[0].attributes; }

class LeftOut : public testing::TestWithParam<std::string_view> {};
TEST_P(LeftOut, WithWhatIsInTheirGroup) {
  const std::string word(GetParam());
  EXPECT_EQ(textOf(" a{\\" + word + " b {\\b c} d}e"), "ae");
  EXPECT_EQ(textOf(" a{\\*\\" + word + " b {\\b c} d}e"), "ae");
}
INSTANTIATE_TEST_SUITE_P(
    RTFKeywords, LeftOut,
    testing::Values("annotation", "atnauthor", "atnicn", "atnid", "atnref", "atntime", "atrfend",
                    "atrfstart", "author", "background", "bkmkend", "bkmkstart", "blipuid",
                    "category", "colorschememapping", "comment", "company", "creatim", "datafield",
                    "datastore", "doccomm", "ebcstart", "falt", "fname", "fontemb", "footer",
                    "footerf", "footerl", "footerr", "footnote", "formfield", "ftncn", "ftnsep",
                    "ftnsepc", "generator", "header", "headerf", "headerl", "headerr", "hlinkbase",
                    "info", "keywords", "latentstyles", "listname", "listpicture", "liststylename",
                    "manager", "mhtmltag", "mmathPr", "nonshppict", "objclass", "objdata",
                    "objname", "objsect", "oldcprops", "oldpprops", "oldsprops", "oldtprops",
                    "operator", "panose", "pgptbl", "picprop", "printim", "private", "protusertbl",
                    "revtbl", "revtim", "rsidtbl", "rxe", "subject", "tc", "tcn", "template",
                    "themedata", "title", "txe", "userprops", "wgrffmtfilter", "xe", "xmlnstbl"),
    [](const auto& row) { return std::string(row.param); });

struct Symbol {
  std::string_view word, text;
};
class Symbols : public testing::TestWithParam<Symbol> {};
TEST_P(Symbols, AreCharacters) {
  const auto [word, text] = GetParam();
  EXPECT_EQ(textOf(" a\\" + std::string(word) + " b"), "a" + std::string(text) + "b");
}
constexpr Symbol kSymbols[] = {
    {"bullet", "\u2022"},    {"emdash", "\u2014"},    {"endash", "\u2013"},  {"emspace", "\u2003"},
    {"enspace", "\u2002"},   {"qmspace", "\u2005"},   {"lquote", "\u2018"},  {"rquote", "\u2019"},
    {"ldblquote", "\u201C"}, {"rdblquote", "\u201D"}, {"ltrmark", "\u200E"}, {"rtlmark", "\u200F"},
    {"zwbo", "\u200B"},      {"zwnbo", "\u2060"},     {"zwj", "\u200D"},     {"zwnj", "\u200C"},
    {"tab", "\t"},           {"page", "\f"},
};
INSTANTIATE_TEST_SUITE_P(RTFKeywords, Symbols, testing::ValuesIn(kSymbols),
                         [](const auto& row) { return std::string(row.param.word); });

class Underlines : public testing::TestWithParam<std::string_view> {};
TEST_P(Underlines, AreOnUntilZero) {
  const std::string word = "\\" + std::string(GetParam());
  const NSAttributedString text = read(word + " a" + word + "0 b" + word + "1 c\\ulnone d");
  ASSERT_EQ(text.runs().size(), 4u);
  for (size_t run = 0; run < 4; ++run) {
    EXPECT_EQ(text.runs()[run].attributes->underline, run % 2 == 0) << run;
  }
}
INSTANTIATE_TEST_SUITE_P(RTFKeywords, Underlines,
                         testing::Values("ul", "uld", "uldash", "uldashd", "uldashdd", "uldb",
                                         "ulhwave", "ulldash", "ulth", "ulthd", "ulthdash",
                                         "ulthdashd", "ulthdashdd", "ulthldash", "ululdbwave",
                                         "ulw", "ulwave"),
                         [](const auto& row) { return std::string(row.param); });

struct Page {
  std::string_view word, bytes, text;
};
class Pages : public testing::TestWithParam<Page> {};
TEST_P(Pages, DecodeEscapes) {
  const auto [word, bytes, text] = GetParam();
  EXPECT_EQ(textOf("\\" + std::string(word) + " " + std::string(bytes)), text);
}
constexpr Page kPages[] = {
    {"ansi", "\\'e9\\'80", "\u00E9\u20AC"}, {"mac", "\\'8e\\'a5", "\u00E9\u2022"},
    {"pc", "\\'82\\'b3", "\u00E9\u2502"},   {"pca", "\\'82\\'b5", "\u00E9\u00C1"},
    {"ansicpg1251", "\\'ea", "\u043A"},
};
INSTANTIATE_TEST_SUITE_P(RTFKeywords, Pages, testing::ValuesIn(kPages),
                         [](const auto& row) { return std::string(row.param.word); });

TEST(RTFKeywords, ParagraphsAndCharacters) {
  EXPECT_TRUE(firstLookOf("\\striked1 a").strikethrough);
  EXPECT_FALSE(firstLookOf("\\striked1\\striked0 a").strikethrough);
  EXPECT_EQ(firstLookOf("\\qd a\\par").paragraph->alignment, NSTextAlignment::justified);
  EXPECT_EQ(firstLookOf("\\lin200\\rin400 a\\par").paragraph->headIndent, 10);
  EXPECT_EQ(std::abs(firstLookOf("\\lin200\\rin400 a\\par").paragraph->tailIndent), 20);
  EXPECT_TRUE(firstLookOf("\\rtlch\\ab a").font.bold);
  EXPECT_FALSE(firstLookOf("\\ltrch\\ab a").font.bold);
  EXPECT_TRUE(
      firstLookOf("{\\fonttbl{\\f0{\\*\\panose 01}{\\*\\fname X}{\\fontemb Y}Arial{\\*\\falt "
                  "Z};}}\\f0 a")
          .font.family == u"Arial"_ns);
  // What an upright reader shows of both readings of a text: the Unicode one.
  EXPECT_EQ(textOf("{\\upr{a}{\\*\\ud{\\u233 ?}}}b"), "\u00E9b");
}

TEST(RTFKeywords, PagesOfFonts) {
  const auto textIn = [](const std::string& font) {
    return textOf("{\\fonttbl{\\f0" + font + " A;}}\\f0 \\'e4\\'b8\\'ad");
  };
  EXPECT_EQ(textIn("\\cpg65001"), "\u4E2D");
  EXPECT_EQ(textIn("\\fcharset128\\cpg65001"), "\u4E2D") << "no charset says UTF-8";
  EXPECT_EQ(textIn("\\fcharset204\\cpg1252"), "\u0434\u0451\u00AD") << "else the charset counts";
}

TEST(RTFKeywords, NumbersOfOldLists) {
  const auto markerOf = [](const std::string& kind) {
    return firstLookOf("{\\*\\pn\\pnlvlbody\\" + kind + "{\\pntxta .}}{\\pntext x.\\tab}a\\par")
        .paragraph->lists.at(0)
        .marker;
  };
  EXPECT_EQ(markerOf("pndec"), u"decimal"_ns);
  EXPECT_EQ(markerOf("pnlcltr"), u"lower-alpha"_ns);
  EXPECT_EQ(markerOf("pnucltr"), u"upper-alpha"_ns);
  EXPECT_EQ(markerOf("pnlcrm"), u"lower-roman"_ns);
  EXPECT_EQ(markerOf("pnucrm"), u"upper-roman"_ns);
}

TEST(RTFKeywords, PicturesOfOtherKindsHaveTheirSize) {
  for (const char* kind : {"macpict", "wbitmap0"}) {
    const auto look =
        firstLookOf("{\\pict\\" + std::string(kind) + "\\picwgoal1440\\pichgoal720 00}");
    ASSERT_TRUE(look.attachment) << kind;
    EXPECT_EQ(look.attachment->width, 72) << kind;
    EXPECT_EQ(look.attachment->height, 36) << kind;
  }
}

// Groups of shapes are shown; form fields and pictures' properties are not text.
TEST(RTFKeywords, Shapes) {
  EXPECT_EQ(textOf(" a{\\shpgrp{\\*\\shpinst{\\shptxt b}}}c"),
            textOf(" a{\\shp{\\*\\shpinst{\\shptxt b}}}c"));
  EXPECT_NE(textOf(" a{\\shpgrp{\\*\\shpinst{\\shptxt b}}}c").find('b'), std::string::npos);
}

}  // namespace
}  // namespace kelspar
