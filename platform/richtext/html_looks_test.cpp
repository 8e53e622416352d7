#include "platform/richtext/html_looks.h"

#include <gtest/gtest.h>

#include "platform/richtext/html_importer.h"
#include "platform/richtext/html_markers.h"

namespace kelspar {
namespace {

std::string colorText(const std::optional<NSColor>& color) {
  char text[8] = "";
  if (color)
    std::snprintf(text, sizeof text, "#%02X%02X%02X", color->red, color->green, color->blue);
  return text;
}

std::string numberText(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

// Width and colour of the lines above, to the right, below and to the left.
std::string linesText(const NSTextBorders& borders) {
  if (borders == NSTextBorders{}) return {};
  std::string text;
  for (const NSTextBorder& side : {borders.top, borders.right, borders.bottom, borders.left}) {
    text += (text.empty() ? " lines=" : ",") + numberText(side.width);
    if (side.color != NSColor{}) text += colorText(side.color);
  }
  return text;
}

// Above, to the right, below and to the left.
std::string edgesText(const char* name, const NSTextEdges& edges) {
  std::string text = name;
  for (const float edge : {edges.top, edges.right, edges.bottom, edges.left}) {
    text += (text.ends_with('=') ? "" : ",") + numberText(edge);
  }
  return text;
}

std::string boxText(const NSTextTableCell& box) {
  std::string text = "box";
  if (!box.isBlock) {
    text = "cell=" + std::to_string(box.row) + "," + std::to_string(box.column) + "/" +
           std::to_string(box.columns);
  }
  text += colorText(box.background) + linesText(box.borders);
  if (box.margin != NSTextEdges{}) text += edgesText(" margin=", box.margin);
  const NSTextEdges none = box.isBlock ? NSTextEdges{} : NSTextEdges{-1, -1, -1, -1};
  if (box.padding.value_or(none) != none) text += edgesText(" padding=", *box.padding);
  return text;
}

// "[bold]text[]text": each run's look that is not the default one, in front of it.
std::string looksOf(const NSAttributedString& attributed) {
  std::string form;
  size_t at = 0;
  const NSString string = attributed.string();
  for (const NSTextRun& run : attributed.runs()) {
    const NSTextAttributes& look = *run.attributes;
    std::string words;
    const auto word = [&words](const std::string& text) {
      words += (words.empty() ? "" : " ") + text;
    };
    if (look.font.family) word("family=" + look.font.family.utf8());
    if (look.font.size != 12) word("size=" + numberText(look.font.size));
    if (look.font.bold) word("bold");
    if (look.font.italic) word("italic");
    if (look.foreground) word("color=" + colorText(look.foreground));
    if (look.background) word("background=" + colorText(look.background));
    if (look.underline) word("underline");
    if (look.strikethrough) word("strikethrough");
    if (look.superscript) word("superscript=" + std::to_string(look.superscript));
    if (look.link) word("link=" + look.link.utf8());
    if (look.attachment) {
      word("image=" + look.attachment->source.utf8() + "," + look.attachment->type.utf8() + "," +
           std::to_string(look.attachment->contents.length()));
    }
    if (const auto& paragraph = look.paragraph) {
      if (paragraph->alignment == NSTextAlignment::center) word("center");
      if (paragraph->alignment == NSTextAlignment::right) word("right");
      if (paragraph->rightToLeft) word("rtl");
      if (paragraph->headIndent) word("indent=" + numberText(paragraph->headIndent));
      if (paragraph->firstLineIndent != paragraph->headIndent) {
        word("first=" + numberText(paragraph->firstLineIndent));
      }
      if (paragraph->spacingBefore) word("before=" + numberText(paragraph->spacingBefore));
      if (paragraph->spacingAfter) word("after=" + numberText(paragraph->spacingAfter));
      if (paragraph->lineHeightMultiple) word("lines=" + numberText(paragraph->lineHeightMultiple));
      if (paragraph->headingLevel) word("heading=" + std::to_string(paragraph->headingLevel));
      if (paragraph->preformatted) word("pre");
      if (paragraph->quoteLevel) word("quote=" + std::to_string(paragraph->quoteLevel));
      for (const NSTextList& list : paragraph->lists) word("list=" + list.marker.utf8());
      for (const NSTextTableCell& box : paragraph->cells) word(boxText(box));
    }
    if (!words.empty() || !form.empty()) form += "[" + words + "]";
    form += string.substring(at, run.length).utf8();
    at += run.length;
  }
  return form;
}

struct Row {
  const char* name;
  const char* in;
  const char* out;
};

constexpr Row kRows[] = {
    {"Plain", "a", "a"},
    {"Bold", "a<b>b</b>c", "a[bold]b[]c"},
    {"NestedFormatting", "<b>a<i>b</i>c</b>", "[bold]a[bold italic]b[bold]c"},
    {"MisnestedFormatting", "<b>a<i>b</b>c</i>d", "[bold]a[bold italic]b[italic]c[]d"},
    {"FormattingAcrossParagraphs", "<p>a<b>b</p><p>c</b>d", "a[bold]b\n\nc[]d"},
    {"FormattingAroundABlockEndsInside", "<b><p>a</b>b</p>c", "[bold]a[]b\n\nc"},
    {"FormattingDoesNotEnterCells", "<b>a<table><tr><td>b</table>c</b>",
     "[bold]a\n[bold cell=0,0/1]b\n[bold]c"},
    {"HeadingStaysBoldBehindAnEnd", "<b><h4>a</b>b</h4>", "[bold heading=4]ab"},
    {"AnchorEndsAnchor", "<a href=x>a<a href=y>b</a>c", "[link=x]a[link=y]b[]c"},
    {"Lines", "<u>a</u><s>b</s><del>c</del><ins>d</ins>",
     "[underline]a[strikethrough]bc[underline]d"},
    {"Raised", "a<sup>b</sup><sub>c</sub>", "a[superscript=1]b[superscript=-1]c"},
    {"Code", "<code>a</code>", "[family=monospace]a"},
    {"FontTag", "<font color=red size=5 face='Arial, Helvetica'>a</font>b",
     "[family=Arial size=18 color=#FF0000]a[]b"},
    {"FontSteps", "<font size=+1>a</font><font size=-2>b", "[size=13.5]a[size=7.5]b"},
    {"LegacyColors", "<font color=00ff00>a</font><font color='#abc'>b",
     "[color=#00FF00]a[color=#AABBCC]b"},
    {"StyleAttribute",
     "<span style=\"color:rgb(1,2,3);background-color:#ff0;font-weight:bold;font-style:italic;"
     "text-decoration:underline;font-size:20px;font-family:'Times New Roman', serif\">a</span>",
     "[family=Times New Roman size=15 bold italic color=#010203 background=#FFFF00 underline]a"},
    {"FontShorthand", "<span style='font: italic bold 10pt/1.5 Arial, sans-serif'>a</span>",
     "[family=Arial size=10 bold italic]a"},
    {"RelativeSizes", "<div style='font-size:10pt'><span style='font-size:150%'>a</span></div>",
     "[size=15]a"},
    {"NormalUndoesBold", "<b>a<span style='font-weight:400'>b</span>c</b>", "[bold]a[]b[bold]c"},
    {"RulesOfClasses",
     "<style>.r{color:#f00} p.r{font-weight:700} #x{font-style:italic}</style>"
     "<p class=r id=x>a</p>",
     "[bold italic color=#FF0000]a"},
    {"Link", "<a href=' https://example.org/?a=1&amp;b=2 '>a</a>",
     "[link=https://example.org/?a=1&b=2]a"},
    {"ScriptIsNoLink", "<a href='java\nscript:alert(1)'>a</a>", "a"},
    {"Alignment", "<center>a</center><p align=right>b</p><div style='text-align:center'>c",
     "[center]a\n\n[right]b\n\n[center]c"},
    {"Headings", "<h1>a</h1>b", "[size=24 bold heading=1]a\n[]b"},
    {"Quotes", "<blockquote>a<blockquote>b</blockquote></blockquote>",
     "[indent=30 quote=1]a\n[indent=60 quote=2]b"},
    {"MarginsAndIndent", "<div style='margin:10pt 0 5pt 20pt;text-indent:-10pt'>a</div>",
     "[indent=20 first=10 before=10 after=5]a"},
    {"LineHeight", "<div style='line-height:1.5'>a</div>", "[lines=1.5]a"},
    {"Direction", "<div dir=rtl>a</div>", "[rtl]a"},
    {"Preformatted", "<pre>a  b</pre>", "[family=monospace pre]a  b"},
    {"List", "<ul><li>a<ol><li>b</ol></ul>",
     "[indent=30 list=disc]\u2022\ta\n[indent=60 list=disc list=decimal]1.\tb"},
    {"Cells", "<table><tr><td bgcolor=#ff0000>a<td>b<tr><th>c</table>",
     "[cell=0,0/2#FF0000]a\t[cell=0,1/2]b\n[bold center cell=1,0/2]c"},
    {"CellsBesideOnesThatReachDown",
     "<table><tr><td rowspan=2>a<td colspan=2>b<tr><td>c<td>d<tr><td>e</table>",
     "[cell=0,0/3]a\t[cell=0,1/3]b\n[cell=1,1/3]c\t[cell=1,2/3]d\n[cell=2,0/3]e"},
    {"CellsOfOurWriter", "<table><tr><td data-column=2>a<td hidden data-covered>b</table>",
     "[cell=0,2/4]a\t[cell=0,3/4]b"},
    {"EmptyCells", "<table><tr><td bgcolor=red><td>a</table>",
     "[cell=0,0/2#FF0000]\t[cell=0,1/2]a"},
    {"BlankLinesAroundATable", "<p>a</p><table><tr><td>b<td>c</table><p>d",
     "a\n\n[cell=0,0/2]b\t[cell=0,1/2]c\n[]\nd"},
    {"BlankLinesInACell", "<table><tr><td><p>a<p>b<td>c</table>d",
     "[cell=0,0/2]a\n\nb\t[cell=0,1/2]c\n[]d"},
    {"BlankLineBehindATableInACell", "<table><tr><td>a<table><tr><td>b</table><p>c</table>",
     "[cell=0,0/1]a\n[cell=0,0/1 cell=0,0/1]b\n[cell=0,0/1]\nc"},
    {"TableWithLines", "<table border=1><tr><td>a<td style='border:none'>b</table>",
     "[cell=0,0/2 lines=0.75,0.75,0.75,0.75]a\t[cell=0,1/2]b"},
    {"LinesOfACell", "<table><tr><td style='border:1px solid #ccc'>a</table>",
     "[cell=0,0/1 lines=0.75#CCCCCC,0.75#CCCCCC,0.75#CCCCCC,0.75#CCCCCC]a"},
    {"LinesOfOneSide",
     "<table><tr><td style='border:none;border-bottom:solid windowtext 1.0pt'>a"
     "<td style='border-top:2px dashed red;border-left:double'>b</table>",
     "[cell=0,0/2 lines=0,0,1,0]a\t[cell=0,1/2 lines=1.5#FF0000,0,0,2.25]b"},
    {"LinesOfAllSidesButOne",
     "<table><tr><td style='border:thin solid;border-right-width:9px;border-left:0'>a</table>",
     "[cell=0,0/1 lines=0.75,0.75,0.75,0]a"},
    {"LinesThatAreNone",
     "<table><tr><td style='border:1px'>a<td style='border:0 solid'>b"
     "<td style='border:1px solid transparent'>c<td style='border:hidden 2px'>d</table>",
     "[cell=0,0/4]a\t[cell=0,1/4]b\t[cell=0,2/4]c\t[cell=0,3/4]d"},
    {"PaddingOfCells",
     "<table cellpadding=4><tr><td>a<td style='padding:1pt 2pt'>b<td style='padding-top:5pt'>c"
     "</table>",
     "[cell=0,0/3 padding=3,3,3,3]a\t[cell=0,1/3 padding=1,2,1,2]b\t"
     "[cell=0,2/3 padding=5,3,3,3]c"},
    {"BlockWithALine", "<div style='border-top:1pt solid #ccc;padding:3pt 0 0'>a</div>b",
     "[box lines=1#CCCCCC,0,0,0 padding=3,0,0,0]a\n[]b"},
    {"BlockWithAGround",
     "<div style='background:#eee;margin:1pt 2pt 3pt 4pt;padding:5pt'><p>a<p>b</div>c",
     "[box#EEEEEE margin=1,2,3,4 padding=5,5,5,5]a\n\nb\n[]\nc"},
    {"QuotesWithALine",
     "<blockquote style='margin:0 0 0 6pt;border-left:1pt solid;padding-left:4pt'>a"
     "<blockquote style='margin:0 0 0 6pt;border-left:2pt solid;padding-left:4pt'>b</blockquote>"
     "c</blockquote>d",
     "[quote=1 box lines=0,0,0,1 margin=0,0,0,6 padding=0,0,0,4]a\n"
     "[quote=2 box lines=0,0,0,1 margin=0,0,0,6 padding=0,0,0,4 "
     "box lines=0,0,0,2 margin=0,0,0,6 padding=0,0,0,4]b\n"
     "[quote=1 box lines=0,0,0,1 margin=0,0,0,6 padding=0,0,0,4]c\n[]d"},
    {"BlankLineBehindABlock", "<div style='border:1pt solid'><p>a</div><p>b",
     "[box lines=1,1,1,1]a\n[]\nb"},
    {"IndentsBeginAnewInABlock",
     "<div style='margin-left:9pt'><div style='border:1pt solid'>a<p style='margin:0 0 0 7pt'>b",
     "[box lines=1,1,1,1 margin=0,0,0,9]a\n[indent=7 box lines=1,1,1,1 margin=0,0,0,9]b"},
    {"MarginsOfABoxedParagraphAreBlankLines",
     "a<p style='border:1pt solid;padding:2pt;margin-top:9pt'>b</p>c",
     "a\n\n[box lines=1,1,1,1 padding=2,2,2,2]b\n[]\nc"},
    {"WhiteOnPaperIsNoBox",
     "<div style='background:#fff'>a</div><div style='background:#eee'><div "
     "style='background:#EEE'>b</div><div style='background:white'>c",
     "[background=#FFFFFF]a\n[background=#EEEEEE box#EEEEEE]b\n[box#EEEEEE box#FFFFFF]c"},
    {"BlockInACell", "<table><tr><td>a<div style='border:1pt solid'>b</div><td>c</table>",
     "[cell=0,0/2]a\n[cell=0,0/2 box lines=1,1,1,1]b\t[cell=0,1/2]c"},
    {"TableInABlock", "<div style='border:1pt solid'>a<table><tr><td>b<td>c</table>d",
     "[box lines=1,1,1,1]a\n[box lines=1,1,1,1 cell=0,0/2]b\t"
     "[box lines=1,1,1,1 cell=0,1/2]c\n[box lines=1,1,1,1]d"},
    {"NoBoxesInLists", "<ul><li style='border:1pt solid'>a</ul>", "[indent=30 list=disc]\u2022\ta"},
    {"InlineLinesAreNoBoxes", "<span style='border:1pt solid'>a</span>", "a"},
    {"PaddingOfABlockIsAnIndent", "<div style='padding:1pt 2pt 3pt 4pt'>a</div>b",
     "[indent=4]a\n[]b"},
    {"BodyColors", "<body text=blue style='font-size:10pt'>a", "[size=10 color=#0000FF]a"},
    {"RemoteImage", "a<img src=https://example.org/a.png>b",
     "a[image=https://example.org/a.png,,0]\uFFFC[]b"},
    {"SpaceBehindAnImageIsNotPartOfIt", "<b><img src=a> b</b>", "[bold image=a,,0]\uFFFC[bold] b"},
    {"CountingPixel", "a<img src=https://example.org/a.png width=1 height=1>b", "ab"},
    {"DataImage", "<img src='data:image/png;base64,AQ ID'>", "[image=,image/png,3]\uFFFC"},
    {"DataImageByPercent", "<img src='data:image/gif,%01ab'>", "[image=,image/gif,3]\uFFFC"},
    {"ImageByContentIdentifier", "<img src='cid:a%40b'>", "[image=cid:a%40b,,4]\uFFFC"},
    {"HiddenImage", "<div style='display:none'><img src=a></div>b", "b"},
};

class HTMLLooks : public testing::TestWithParam<Row> {};
TEST_P(HTMLLooks, Are) {
  HTMLImportOptions options;
  options.dataForContentIdentifier = [](const NSString& name) {
    return name == NSString(u"a@b") ? NSData({1, 2, 3, 4}) : NSData();
  };
  EXPECT_EQ(looksOf(attributedTextFromHTML(NSString(GetParam().in), options)), GetParam().out);
}
INSTANTIATE_TEST_SUITE_P(Rows, HTMLLooks, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

// What the writer asks of a list is what the importer shows.
TEST(Markers, TellTheirNumbers) {
  for (const std::u16string_view style :
       {u"decimal", u"lower-alpha", u"upper-alpha", u"lower-roman", u"upper-roman"}) {
    for (int32_t value = 1; value < 4500; ++value) {
      const std::u16string marker = html::markerText(style, value);
      const int32_t read = html::valueOfMarker(style, marker);
      const bool isShort = marker.size() <= 9;  // longer ones stay text
      ASSERT_EQ(read, isShort ? value : 0) << NSString(marker);
    }
  }
  EXPECT_EQ(html::valueOfMarker(u"decimal", u"\u2022\t"), 0);
  EXPECT_EQ(html::valueOfMarker(u"decimal", u"01.\t"), 0);
  EXPECT_EQ(html::valueOfMarker(u"decimal", u"1)\t"), 0);
  EXPECT_EQ(html::valueOfMarker(u"lower-alpha", u"B.\t"), 0);
  EXPECT_EQ(html::valueOfMarker(u"lower-roman", u"iiii.\t"), 0);
  EXPECT_NE(html::valueOfMarker(u"disc", u"\u2022\t"), 0);
  EXPECT_EQ(html::valueOfMarker(u"none", u""), 0);
}

TEST(AttributedFromHTML, NilStaysNil) {
  EXPECT_FALSE(attributedTextFromHTML(NSString()));
  EXPECT_FALSE(attributedTextFromHTML(NSData()));
}

TEST(AttributedFromHTML, ImagesKeepTheirSizeAndAlternative) {
  const auto text =
      attributedTextFromHTML(NSString(u"<img src=a.png width=40 height=20 alt='A &amp; B'>"));
  const auto& attachment = *text.attributesAtIndex(0).attachment;
  EXPECT_EQ(attachment.width, 30);
  EXPECT_EQ(attachment.height, 15);
  EXPECT_EQ(attachment.alternative, NSString(u"A & B"));
}

}  // namespace
}  // namespace kelspar
