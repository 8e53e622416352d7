#include "platform/richtext/html_importer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::u16string_view in, out;
};

constexpr Row kRows[] = {
    // White space.
    {"PlainText", u"hello", u"hello"},
    {"WhiteSpaceCollapses", u"  a \n\t b  ", u"a b"},
    {"WhiteSpaceAcrossTags", u"a <b> b</b> <i> c</i>", u"a b c"},
    {"NoBreakSpaceStays", u"a&nbsp; b", u"a\u00A0 b"},
    {"SpaceFromReferenceCollapses", u"a&#32; &#32;b", u"a b"},
    {"VerticalTabIsText", u"a\v\vb", u"a\v\vb"},
    {"LongRunsOfText", u"the quick brown fox jumps  over the lazy dog \n and on",
     u"the quick brown fox jumps over the lazy dog and on"},
    {"Pre", u"<pre>\n a\n  b\n</pre>c", u" a\n  b\nc"},
    {"PreWithCarriageReturns", u"<pre>\r\na\r\nb\rc</pre>", u"a\nb\nc"},
    {"PreLine", u"<div style='white-space:pre-line'>a   b\n c</div>", u"a b\nc"},
    {"PreWrapOnSpan", u"a <span style=\"white-space: pre-wrap\">  b  </span> c", u"a   b   c"},
    {"NullIsDropped", {u"a\0b", 3}, u"ab"},
    // Lines and blocks.
    {"Break", u"a<br>b<br/>c</br>d", u"a\nb\nc\nd"},
    {"BreakDropsSpaces", u"a <br> b", u"a\nb"},
    {"Divs", u"<div>a</div><div>b</div>c", u"a\nb\nc"},
    {"NestedDivs", u"<div><div><div>a</div></div></div><div>b</div>", u"a\nb"},
    {"Paragraphs", u"<p>a</p><p>b</p>", u"a\n\nb"},
    {"ParagraphsWithoutEnds", u"<p>a<p>b<div>c", u"a\n\nb\n\nc"},
    {"EmptyParagraphs", u"<p>a</p><p></p><p> </p><p>b</p>", u"a\n\nb"},
    {"ParagraphsWithoutMargin", u"<p style='margin:0'>a</p><p style='margin:0cm 0cm 0pt'>b</p>c",
     u"a\nb\nc"},
    {"ParagraphsWithoutMarginByRule",
     u"<style>p.MsoNormal, li.MsoNormal {margin:0cm; margin-bottom:.0001pt}</style>"
     u"<p class=MsoNormal>a</p><p class=MsoNormal>b</p>",
     u"a\n\nb"},
    {"BlankLineByBreak", u"<div>a</div><div><br></div><div>b</div>", u"a\n\nb"},
    {"BreakAtTheEndOfABlock", u"<div>a<br></div>b", u"a\nb"},
    {"ParagraphEndWithoutStart", u"a</p>b", u"a\n\nb"},
    {"Headings", u"<h1>a</h1>b<h2>c<h3>d</h2>e", u"a\nb\nc\nd\ne"},
    {"Rule", u"a<hr>b", u"a\nb"},
    {"DisplayBlockOnALink", u"a<a style='display:block'>b</a>c", u"a\nb\nc"},
    {"DisplayInlineOnADiv", u"a<div style='display:inline'>b</div>c", u"abc"},
    {"Options", u"<select><option>a<option>b</select>", u"a\nb"},
    // Implied ends.
    {"ItemEndsItem", u"<ul><li>a<li>b</ul>c", u"\u2022\ta\n\u2022\tb\nc"},
    {"DefinitionList", u"<dl><dt>a<dd>b<dt>c<dd>d</dl>", u"a\nb\nc\nd"},
    {"ItemThroughADiv", u"<ul><li><div>a<li>b</ul>", u"\u2022\ta\n\u2022\tb"},
    {"StrayEndTags", u"a</div></b></td></ul>b", u"ab"},
    {"EndTagThroughInline", u"<div>a<span>b</div>c</span>d", u"ab\ncd"},
    {"SpanEndDoesNotCloseBlocks", u"<span><div>a</span>b</div>c", u"ab\nc"},
    // Lists.
    {"OrderedList", u"<ol start=3><li>a<li value=9>b<li>c</ol>", u"3.\ta\n9.\tb\n10.\tc"},
    {"LettersAndRoman", u"<ol type=a><li>x</ol><ol type=I start=4><li>x</ol>", u"a.\tx\nIV.\tx"},
    {"NestedLists", u"<ul><li>a<ul><li>b<ul><li>c</ul></ul><li>d</ul>",
     u"\u2022\ta\n\u25E6\tb\n\u25AA\tc\n\u2022\td"},
    {"ListWithoutMarkers", u"<ul style='list-style:none'><li>a<li>b</ul>", u"a\nb"},
    {"ParagraphInItem", u"<ul><li><p>a</p></li><li>b</li></ul>", u"\u2022\ta\n\n\u2022\tb"},
    {"EmptyItem", u"<ul><li></li><li>b</li></ul>c", u"\u2022\t\n\u2022\tb\nc"},
    // Tables.
    {"Table", u"<table><tr><td>a<td>b<tr><td>c<td>d</table>e", u"a\tb\nc\td\ne"},
    {"TableOfParagraphs",
     u"<table><tr><td><p>a</p></td><td><p>b</p></td></tr><tr><td><p>c</p></td></tr></table>",
     u"a\tb\nc"},
    {"EmptyCells", u"<table><tr><td></td><td>a</td><td></td><td>b</td><td></td></tr></table>",
     u"\ta\t\tb\t"},
    {"EmptyRows", u"a<table><tr><td></td></tr><tr><td> </td></tr></table>b", u"a\n\nb"},
    {"RowsWithoutCells", u"a<table><tr></tr><tr><td>b</td></tr><tr></table>c", u"a\nb\nc"},
    {"EmptyRowsOfLayout", u"a<table border=0><tr><td></td></tr><tr><td> </td></tr></table>b",
     u"a\nb"},
    {"EmptyCellsInLayout",
     u"<table role=none><tr><td>a<table><tr><td></td><td>b</td></tr></table></table>", u"a\nb"},
    {"TableWithLinesIsNoLayout",
     u"<table border=1 cellspacing=0 cellpadding=0><tr><td></td><td>b</td></tr></table>", u"\tb"},
    {"EmptyTableInACell",
     u"<table><tr><td><table><tr><td></td></tr></table>a</td><td>b</td></tr></table>", u"a\tb"},
    {"BreakAtTheEndOfACell", u"<table><tr><td>a<br></td><td>b<br></td></tr></table>c", u"a\tb\nc"},
    {"BreakAlone", u"<table><tr><td><p><br></p></td><td>b</td></tr></table>c", u"\tb\nc"},
    {"BlocksInACell", u"<table><tr><td><p>a<p>b</td><td><div>c</div></td></tr></table>d",
     u"a\n\nb\tc\nd"},
    {"LayoutTableDropsEmptyCells", u"<table role=presentation><tr><td></td><td>a</td></tr></table>",
     u"a"},
    {"NestedTables", u"<table><tr><td>a<table><tr><td>b<td>c</table><td>d</table>", u"a\nb\tc\td"},
    {"Caption", u"<table><caption>t</caption><tr><td>a</table>", u"t\na"},
    {"StrayTextStandsInFront", u"x<table>a<tr>b<td>c</table>d", u"xab\nc\nd"},
    {"StrayElementStandsInFront", u"<p>x<table><div>a</div><tr><td>c</table>", u"x\na\nc"},
    {"StrayTextBehindASpace", u"a <table>b<tr><td>c</table>", u"a b\nc"},
    {"StrayParagraphEnd", u"a<table>b</p>c<tr><td>d</table>", u"ab\n\nc\nd"},
    {"StraySpaceIsNothing", u"<table> <tr> <td>a</td> </tr> </table>", u"a"},
    {"CellsWithoutTable", u"<tr><td>a</td><td>b</td></tr>", u"ab"},
    {"CellEndsInlineElements", u"<table><tr><td><span>a</td><td>b</span>c</table>d", u"a\tbc\nd"},
    {"TableInParagraph", u"<p>a<table><tr><td>b</table>c", u"a\nb\nc"},
    {"TableEndsParagraph", u"<!DOCTYPE html><p>a<table><tr><td>b</table>c", u"a\n\nb\nc"},
    {"TableInParagraphOfOldPages",
     u"<!DOCTYPE HTML PUBLIC '-//W3C//DTD HTML 4.0 Transitional//EN'><p>a<table><tr><td>b</table>c",
     u"a\nb\nc"},
    // What is not shown.
    {"HeadAndScripts",
     u"<html><head><title>t</title><style>b{}</style></head><body><script>s</script>a", u"a"},
    {"CommentsAreNothing", u"a<!-- b -->c", u"ac"},
    {"ConditionalCommentIsHidden", u"a<!--[if mso]>b<![endif]-->c", u"ac"},
    {"RevealedConditionalIsShown", u"a<![if !mso]>b<![endif]>c", u"abc"},
    {"NotOfficeIsShown", u"a<!--[if !mso]><!-->b<!--<![endif]-->c", u"abc"},
    {"DisplayNone", u"a<div style=\"display:none;\">b<p>c</p></div>d", u"ad"},
    {"DisplayNoneImportant", u"<div style='display:none !important;display:block'>b</div>d", u"d"},
    {"DisplayNoneWithReference", u"<div style='display&#58;none'>b</div>d", u"d"},
    {"DisplayNoneByClass", u"<style>.pre, .x{display:none}</style><p class='q pre'>a</p>b", u"b"},
    {"DisplayNoneByElementAndClass",
     u"<style>div.h{display:none}</style><p class=h>a</p><div class=h>b</div>", u"a"},
    {"DisplayNoneByIdentifier", u"<style>#h{display:none}</style><p id=h>a</p>b", u"b"},
    {"InlineBeatsRule", u"<style>p{display:none}</style><p style='display:block'>a</p>", u"a"},
    {"ImportantRuleBeatsInline",
     u"<style>p{display:none!important}</style><p style='display:block'>a</p>b", u"b"},
    {"MediaRules",
     u"<style>@media print{p{display:none}}@media only screen and (max-width:600px)"
     u"{div{display:none}}@media screen{b{display:none}}</style><p>a</p><div>c</div><b>d</b>",
     u"a\n\nc"},
    {"OtherSelectorsAreNothing",
     u"<style>a:hover,a+a,a~a,a[href],nosuch,a >,>a,a.,.,a!b{display:none}</style><a href=x>a</a>"
     u"<a>b</a>",
     u"ab"},
    // Selectors of several parts.
    {"Descendant", u"<style>.h b{display:none}</style><b>a</b><p class=h><i><b>b</b></i>c",
     u"a\n\nc"},
    {"DescendantOfDescendant",
     u"<style>.x .y i{display:none}</style><p class=y><i>a</i><p class=x><u class=y><i>b</i></u>c",
     u"a\n\nc"},
    {"Child", u"<style>p>i{display:none}</style><p><i>a</i><b><i>b</i></b>", u"b"},
    {"ChildOfChild", u"<style>p > b>i{display:none}</style><p><b><i>a</i></b><u><b><i>c", u"c"},
    {"AncestorAgain",
     u"<style>.x>.x b{display:none}</style><i class=x><i class=x><b>a</b></i>"
     u"<b>b</b></i>",
     u"b"},
    {"CommaList",
     u"<style>.a, .b i ,\n#c{display:none}</style><i class=a>a</i><u class=b>b<i>c</i>"
     u"</u><u id=c>d</u>",
     u"b"},
    {"TwoClasses", u"<style>.a.b{display:none}</style><i class=a>a</i><i class='b x a'>b</i>",
     u"a"},
    {"ClassAndIdentifier",
     u"<style>i.a#b{display:none}</style><i class=a>a</i><i class=a id=b>b</i>"
     u"<b class=a id=b>c</b>",
     u"ac"},
    {"Universal", u"<style>p *{display:none}</style><p>a<i>b</i>c", u"ac"},
    {"OfTheBody",
     u"<style>html body .h, body>i, html > body > u{display:none}</style><b class=h>a</b>"
     u"<i>b</i><u>c</u><b><i>d",
     u"d"},
    {"OfABodyWithClass", u"<style>body.x .h{display:none}</style><body class=x><p class=h>a<p>b",
     u"b"},
    {"OfABodyWithoutThatClass", u"<style>body.x .h{display:none}</style><p class=h>a<p>b",
     u"a\n\nb"},
    {"ThroughImpliedElements",
     u"<style>.t tr td{display:none}</style><table class=t><td>a</table>b", u"b"},
    {"MoreSpecificWins",
     u"<style>#i b{display:inline}.c b{display:none}b{display:none}</style><p id=i class=c><b>a",
     u"a"},
    {"LaterWins", u"<style>.c b{display:none}.d b{display:inline}</style><p class='d c'><b>a",
     u"a"},
    {"FormattingThatComesBack",
     u"<style>div b{display:none}</style><p><b>a<p>b</b><div><b>c</b>d</div>", u"a\n\nb\n\nd"},
    // Style elements behind what they style.
    {"LateStyle", u"<p class=h>a</p>b<style>.h{display:none}</style>", u"b"},
    {"LateStyleInAnElement", u"<div class=h><style>.h b{display:none}</style>a<b>b</b></div>",
     u"a"},
    {"LateStyleInAScript", u"<p>a</p><script>'<style>p{display:none}</style>'</script>", u"a"},
    {"SeveralLateStyles",
     u"a<style>.x{display:none}</style><i class='x'>b</i><i class=y>c</i>"
     u"<style>.y{display:none}</style>",
     u"a"},
    // What is not seen.
    {"VisibleInTheInvisible",
     u"<p style='visibility:hidden'>a<br><b style='visibility:visible'>b</b></p>c", u"b\n\nc"},
    {"InvisibleItem", u"<ul><li style='visibility:hidden'>a<li>b</ul>", u"\u2022\tb"},
    {"NoSize",
     u"<div style='font-size:0'>a<b style='font-size:50%'>b</b><i style='font-size:9pt'>c</i>"
     u"</div><div style='font:0/0 a'>d</div>",
     u"c"},
    {"NoSizeByRule", u"<style>.p{font-size:0px}</style><span class=p>a</span>b", u"b"},
    {"Preheader",
     u"<div style='display:none;font-size:1px;mso-hide:all;max-height:0;opacity:0'>a</div>b", u"b"},
    {"OfficeAloneHides", u"<div style='mso-hide:all'>a</div>", u"a"},
    {"HiddenAttribute", u"<p hidden>a</p>b", u"b"},
    {"VisibilityHidden", u"<span style='visibility:hidden'>a</span>b", u"b"},
    {"NoHeight", u"<div style='max-height:0px;overflow:hidden'>a</div>b", u"b"},
    {"NoOpacity", u"<div style='opacity:0'>a</div>b", u"b"},
    {"TemplateAndNoscript", u"<template>a</template><noscript>b</noscript>", u"b"},
    {"Frames", u"<iframe>a</iframe><noframes>b</noframes>c", u"c"},
    {"HiddenFormatting", u"<b style='display:none'>a<b>b</b>c</b>d", u"d"},
    {"HiddenFormattingComesBack", u"<p><i style='display:none'>a</p><p>b</i>c", u"c"},
    // Foreign content.
    {"SVGText", u"a<svg><title>t</title><text>b</text></svg>c", u"abc"},
    {"SVGEndsAtHTML", u"<svg><g><p>a</p><b>b", u"a\n\nb"},
    {"SVGCells", u"<svg><td>a</td><tr>b</svg>c", u"abc"},
    {"ForeignObject", u"<svg><foreignObject><div>a</div></foreignObject></svg>b", u"a\nb"},
    {"CDataInSVG", u"<svg><text><![CDATA[a<b]]></text></svg>", u"a<b"},
    {"Math", u"<math><mi>x</mi><mo>=</mo><mn>1</mn></math>", u"x=1"},
    // References.
    {"References", u"&lt;b&gt; &amp; &euro;&#8211;", u"<b> & \u20AC\u2013"},
    {"Empty", u"", u""},
};

class PlainTextFromHTML : public testing::TestWithParam<Row> {};
TEST_P(PlainTextFromHTML, Gives) {
  EXPECT_EQ(plainTextFromHTML(NSString(GetParam().in)), NSString(GetParam().out));
}
INSTANTIATE_TEST_SUITE_P(Rows, PlainTextFromHTML, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PlainTextFromHTML, NilStaysNil) {
  EXPECT_FALSE(plainTextFromHTML(NSString()));
  EXPECT_FALSE(plainTextFromHTML(NSData()));
}

TEST(PlainTextFromHTML, BytesAreUTF8) {
  EXPECT_EQ(plainTextFromHTML(NSData(std::string_view("\xEF\xBB\xBF<p>\xC3\xA9\xFF"))),
            NSString(u"\u00E9\uFFFD"));
}

struct CharsetRow {
  const char* name;
  std::string_view page;
  std::u16string_view text;
};
constexpr CharsetRow kCharsetRows[] = {
    {"Meta", "<meta charset='windows-1251'>\xCF\xF0", u"\u041F\u0440"},
    {"Pragma", "<META content='text/html; charset = \"koi8-r\"' HTTP-EQUIV=content-type>\xF0",
     u"\u041F"},
    {"ContentWithoutPragma", "<meta name=x content='text/html; charset=koi8-r'>\xF0", u"\uFFFD"},
    {"InAComment", "<!-- <meta charset=koi8-r> --><meta charset=latin1>\xE9", u"\u00E9"},
    {"TheFirstOneCounts", "<meta charset=latin1><meta charset=koi8-r>\xE9", u"\u00E9"},
    {"UnknownLabelsArePassedOver", "<meta charset=nosuch><meta charset=latin1>\xE9", u"\u00E9"},
    {"ValidUTF8IsUTF8", "<meta charset=latin1>\xC3\xA9", u"\u00E9"},
    {"UTF16CannotBeSo", "<meta charset=utf-16>\xC3\xA9\xFF", u"\u00E9\uFFFD"},
    {"TwoBytes", "<meta charset=shift_jis>\x93\xFA\x96\x7B", u"\u65E5\u672C"},
};
class Charset : public testing::TestWithParam<CharsetRow> {};
TEST_P(Charset, OfThePage) {
  EXPECT_EQ(plainTextFromHTML(NSData(GetParam().page)), NSString(GetParam().text));
}
INSTANTIATE_TEST_SUITE_P(Pages, Charset, testing::ValuesIn(kCharsetRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Charset, IsLookedForInTheFirstPart) {
  const std::string meta = "<meta charset=latin1>\xE9";
  const auto text = [&](size_t before) {
    return plainTextFromHTML(NSData(std::string(before, ' ') + meta));
  };
  EXPECT_EQ(text(65515), NSString(u"\u00E9"));
  EXPECT_EQ(text(65516), NSString(u"\uFFFD"));
}

// What plain text has as LF, attributed text has as U+2028 where a <br> ends the line.
NSString plainLines(const NSString& text) {
  NSMutableString lines(text.view());
  lines.replaceOccurrences(u"\u2028", u"\n");
  return std::move(lines).copy();
}

class AttributedFromHTML : public testing::TestWithParam<Row> {};
TEST_P(AttributedFromHTML, HasTheSameCharacters) {
  EXPECT_EQ(plainLines(attributedTextFromHTML(NSString(GetParam().in)).string()),
            NSString(GetParam().out));
}
INSTANTIATE_TEST_SUITE_P(Rows, AttributedFromHTML, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(AttributedFromHTML, BreaksInsideAParagraphAreLineSeparators) {
  const auto text = [](const char16_t* html) {
    return attributedTextFromHTML(NSString(html)).string();
  };
  EXPECT_EQ(text(u"<p>a<br>b</p>c"), NSString(u"a\u2028b\n\nc"));
  EXPECT_EQ(text(u"<div>a<br></div>b"), NSString(u"a\nb"));
  EXPECT_EQ(text(u"<div>a</div><div><br></div>b"), NSString(u"a\n\nb"));
}

TEST(PlainTextFromHTML, AMarkOfUTF16IsBelieved) {
  EXPECT_EQ(plainTextFromHTML(NSData({0xFF, 0xFE, '<', 0, 'p', 0, '>', 0, 0xE9, 0})),
            NSString(u"\u00E9"));
  EXPECT_EQ(plainTextFromHTML(NSData({0xFE, 0xFF, 0, 'a', 0x20, 0xAC, 0})), NSString(u"a\u20AC"));
}

struct Nesting {
  const char* name;
  std::u16string_view open, inside, close;
};
constexpr Nesting kNestings[] = {
    {"Divs", u"<div>", u"x", u"</div>"},
    {"Formatting", u"<b><i>", u"x", u"</b></i>"},
    {"FormattingWithStyle", u"<font style='white-space:pre'><p>", u"x", u"</font>"},
    {"Tables", u"<table><tr><td>", u"x", u"</table>"},
    {"TablesWithStrays", u"<table>a<b>", u"x", u"</b></table>"},
    {"Lists", u"<ul><li>", u"x", u"</ul>"},
    {"SVG", u"<svg><g>", u"x", u"</q>"},
    {"UnknownNames", u"<x-y>", u"x", u"</x-z>"},
    {"SpansAcrossBlocks", u"<span><div><i style='display:inline'>", u"x", u"</span>"},
    {"Paragraphs", u"<p><a style='margin:0'>", u"x", u"</div>"},
};
class HostileNesting : public testing::TestWithParam<Nesting> {};
TEST_P(HostileNesting, IsLinear) {
  std::u16string html;
  for (int i = 0; i < 100'000; ++i) html += GetParam().open;
  html += GetParam().inside;
  for (int i = 0; i < 100'000; ++i) html += GetParam().close;
  const NSString text = plainTextFromHTML(NSString(html));
  EXPECT_NE(text.view().find(u'x'), std::u16string_view::npos);
  EXPECT_EQ(attributedTextFromHTML(NSString(html)).string(), text);
}
#ifdef KELSPAR_CORPUS
// Takes out "12." and the tab behind it.
void eraseNumberMarkers(std::u16string* text) {
  for (size_t tab = 0; (tab = text->find(u".\t", tab)) != text->npos;) {
    size_t start = tab;
    while (start > 0 && (*text)[start - 1] >= u'0' && (*text)[start - 1] <= u'9') --start;
    if (start == tab) {
      tab += 2;
      continue;
    }
    text->erase(start, tab + 2 - start);
    tab = start;
  }
}

TEST(PlainTextFromHTML, CorpusHasTheSameTextBothWays) {
  size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KELSPAR_CORPUS "/html")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const NSData html{std::string_view(bytes)};
    const NSAttributedString attributed = attributedTextFromHTML(html);
    std::u16string without;
    size_t at = 0;
    const NSString string = plainLines(attributed.string());
    for (const NSTextRun& run : attributed.runs()) {
      if (!run.attributes->attachment) without += string.view().substr(at, run.length);
      at += run.length;
    }
    std::u16string plain(plainTextFromHTML(html).view());
    // Lines, cells and items that hold an image only leave nothing in plain text, their markers
    // included. Digits elsewhere are compared.
    if (without.size() != string.length()) {
      for (auto* text : {&plain, &without}) {
        eraseNumberMarkers(text);
        std::erase_if(*text, [](char16_t c) {
          return c == u'\n' || c == u'\t' || c == u' ' || c == u'\u2022' || c == u'\u25E6';
        });
      }
    }
    EXPECT_EQ(NSString(without), NSString(plain)) << entry.path();
    ++files;
  }
  EXPECT_GT(files, 0u);
}
#endif
INSTANTIATE_TEST_SUITE_P(Rows, HostileNesting, testing::ValuesIn(kNestings),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar
