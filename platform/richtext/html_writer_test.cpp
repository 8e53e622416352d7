#include "platform/richtext/html_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/richtext/html_round_trip.h"

namespace kelspar {
namespace {

// What stands in the body of the document for this RTF.
std::string bodyOf(std::string_view rtf) {
  const std::string html = htmlFromAttributedString(NSAttributedString::initWithRTF(
                                                        NSData("{\\rtf1" + std::string(rtf) + "}")))
                               .utf8();
  const std::string_view open = "<body>\n", close = "</body>\n</html>\n";
  EXPECT_TRUE(html.starts_with("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n"));
  EXPECT_TRUE(html.ends_with(close));
  const size_t start = html.find(open) + open.size();
  return html.substr(start, html.size() - close.size() - start);
}

std::string headOf(const NSAttributedString& text) {
  const std::string html = htmlFromAttributedString(text).utf8();
  return html.substr(0, html.find("<body>"));
}

struct Row {
  const char* name;
  std::string_view rtf, body;
};
class HTMLWriter : public testing::TestWithParam<Row> {};
TEST_P(HTMLWriter, Writes) { EXPECT_EQ(bodyOf(GetParam().rtf), GetParam().body); }
constexpr Row kRows[] = {
    {"Empty", "", ""},
    {"Paragraphs", " a\\par b", "<p>a</p>\n<p>b</p>\n"},
    {"EmptyParagraph", " a\\par\\par b", "<p>a</p>\n<p><br></p>\n<p>b</p>\n"},
    {"Line", " a\\line b", "<p>a<br>b</p>\n"},
    {"Escapes", " <a href=\"x\">&\\~", "<p>&lt;a href=&quot;x&quot;&gt;&amp;&nbsp;</p>\n"},
    {"Inline", " a{\\b b{\\i c}}{\\ul d}{\\strike e}",
     "<p>a<b>b</b><b><i>c</i></b><u>d</u><s>e</s></p>\n"},
    {"Look", "{\\colortbl;\\red255\\green0\\blue0;}aa{\\cf1\\fs20 b}",
     "<p>aa<span class=\"s1\">b</span></p>\n"},
    {"ParagraphClass", "\\qc a\\par b\\par\\pard c",
     "<p class=\"p1\">a</p>\n<p class=\"p1\">b</p>\n<p>c</p>\n"},
    {"Heading", "\\outlinelevel0 a\\par\\pard b", "<h1>a</h1>\n<p>b</p>\n"},
    {"Link", "{\\field{\\*\\fldinst HYPERLINK \"http://a/?b&c\"}{\\fldrslt a{\\b b}}}",
     "<p><a href=\"http://a/?b&amp;c\">a<b>b</b></a></p>\n"},
    {"ColoredLink", "{\\field{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt{\\ul a}}}",
     "<p><a href=\"http://a/\" class=\"k\"><u>a</u></a></p>\n"},
    {"UnsafeLink", "{\\field{\\*\\fldinst HYPERLINK \"javascript:a()\"}{\\fldrslt a}}",
     "<p>a</p>\n"},
    {"Bullets",
     "{\\*\\pn\\pnlvlblt}{\\pntext\\bullet\\tab}a\\par{\\pntext\\bullet\\tab}b\\par\\pard c",
     "<ul class=\"o1\">\n<li>a</li>\n<li>b</li>\n</ul>\n<p>c</p>\n"},
    {"OtherBullets", "{\\*\\pn\\pnlvlblt}{\\pntext -\\tab}a\\par",
     "<ul class=\"o1\">\n<li class=\"n\"><span class=\"w\">-\t</span>a<br></li>\n</ul>\n"},
    {"Numbers", "{\\*\\pn\\pnlvlbody\\pndec}{\\pntext 1.\\tab}a\\par{\\pntext 5.\\tab}b\\par",
     "<ol class=\"o1\">\n<li>a</li>\n<li value=\"5\">b<br></li>\n</ol>\n"},
    {"Romans", "{\\*\\pn\\pnlvlbody\\pnlcrm}{\\pntext i.\\tab}a\\par{\\pntext ii.\\tab}b\\par",
     "<ol class=\"o1\">\n<li>a</li>\n<li>b<br></li>\n</ol>\n"},
    {"ParagraphOfAnItem", "{\\*\\pn\\pnlvlblt}{\\pntext\\bullet\\tab}a\\par b\\par",
     "<ul class=\"o1\">\n<li>a<p>b<br></p></li>\n</ul>\n"},
    {"NestedLists",
     "{\\*\\listtable{\\list{\\listlevel\\levelnfc0}{\\listlevel\\levelnfc4}\\listid7}}"
     "{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}}"
     "\\ls1{\\listtext 1.\\tab}a\\par\\ilvl1{\\listtext a.\\tab}b\\par\\ilvl0{\\listtext "
     "2.\\tab}c\\par",
     "<ol class=\"o1\">\n<li>a<ol class=\"o2\"><li>b</li></ol></li>\n<li>c<br></li>\n</ol>\n"},
    {"MarkerOfAHeading", "{\\*\\pn\\pnlvlblt}\\outlinelevel1{\\pntext -\\tab}a\\par\\pard b",
     "<ul class=\"o1\">\n<li class=\"n\"><h2><span class=\"w\">-\t</span>a</h2></li>\n</ul>\n"
     "<p>b</p>\n"},
    {"LastLine", " a\\par", "<p>a<br></p>\n"},
    {"LineAtTheEnd", " a\\line\\par b\\line", "<p>a<br><br></p>\n<p>b&#x2028;</p>\n"},
    {"Table",
     "\\trowd\\cellx1000\\cellx2000\\intbl a\\cell\\cell\\row c\\par d\\cell e\\cell\\row\\pard f",
     "<table>\n<tbody>\n<tr><td class=\"c1\"><p>a</p>\n</td><td "
     "class=\"c1\"><p><br></p>\n</td></tr>\n"
     "<tr><td class=\"c1\"><p>c</p>\n<p>d</p>\n</td><td class=\"c1\"><p>e</p>\n</td></tr>\n"
     "</tbody>\n</table>\n<p>f</p>\n"},
    {"Spans",
     "\\trowd\\clvmgf\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row"
     "\\trowd\\clvmrg\\cellx1000\\cellx2000\\cell d\\cell\\row",
     "<table>\n<tbody>\n<tr><td rowspan=\"2\" class=\"c1\"><p>a</p>\n</td><td "
     "class=\"c1\"><p>b</p>\n"
     "</td></tr>\n<tr><td data-column=\"0\" hidden data-covered class=\"c1\"><p><br></p>\n</td>"
     "<td class=\"c1\"><p>d<br></p>\n</td></tr>\n</tbody>\n</table>\n"},
    {"Picture", "{\\pict\\pngblip\\picwgoal150\\pichgoal75 89504e470d0a1a0a}",
     "<p><img src=\"data:image/png;base64,iVBORw0KGgo=\" alt=\"\" width=\"10\" "
     "height=\"5\"></p>\n"},
    {"Placeholder", "{\\pict\\wmetafile8\\picwgoal150\\pichgoal75 0100}",
     "<p><img src=\"data:image/x-wmf;base64,\" alt=\"\" width=\"10\" height=\"5\"></p>\n"},
    {"SizeOfAPicture", "{\\pict\\pngblip\\picwgoal151\\pichgoal75 89504e470d0a1a0a}",
     "<p><img src=\"data:image/png;base64,iVBORw0KGgo=\" alt=\"\" class=\"i1\"></p>\n"},
    {"Controls", "\\u1?\\u-2?\\u-10179?x", "<p>\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDx</p>\n"},
    {"BeyondTheFirstPlane", "\\u-10179?\\u-8704?", "<p>\xF0\x9F\x98\x80</p>\n"},
};
INSTANTIATE_TEST_SUITE_P(HTML, HTMLWriter, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(HTMLWriterEdges, NilIsNil) {
  EXPECT_FALSE(htmlFromAttributedString(nil));
  EXPECT_TRUE(htmlFromAttributedString(NSAttributedString::empty()));
}

TEST(HTMLWriterEdges, RulesStandInTheHead) {
  NSTextAttributes attributes;
  attributes.font.family = u"A';}</style><script>";
  attributes.font.size = 10.5;
  attributes.foreground = NSColor{1, 2, 255};
  const std::string head = headOf(NSAttributedString(u"a", attributes));
  EXPECT_NE(head.find("body{font-family:'A/stylescript';font-size:10.5pt}\n"), head.npos) << head;
  EXPECT_NE(head.find(".s1{color:#0102ff}\n"), head.npos) << head;
}

TEST(HTMLWriterEdges, QuotesAndPreformatted) {
  NSParagraphStyle style;
  style.quoteLevel = 2;
  style.preformatted = true;
  NSTextAttributes attributes;
  attributes.paragraph = std::make_shared<NSParagraphStyle>(style);
  const std::string html = htmlFromAttributedString(NSAttributedString(u"a\nb", attributes)).utf8();
  EXPECT_NE(html.find("<blockquote>\n<blockquote>\n<pre>a</pre>\n<pre>b</pre>\n</blockquote>\n"
                      "</blockquote>\n</body>"),
            html.npos)
      << html;
}

TEST(HTMLWriterEdges, RemoteImagesKeepTheirPlace) {
  const auto written = [](const char16_t* source) {
    NSTextAttachment image;
    image.source = source;
    image.alternative = u"\"x\"";
    NSTextAttributes attributes;
    attributes.attachment = std::make_shared<NSTextAttachment>(image);
    return htmlFromAttributedString(NSAttributedString(u"\uFFFC", attributes)).utf8();
  };
  EXPECT_NE(written(u"cid:a\"b").find("<img src=\"cid:a&quot;b\" alt=\"&quot;x&quot;\">"),
            std::string::npos);
  EXPECT_NE(written(u"javascript:x").find("<img alt=\"&quot;x&quot;\">"), std::string::npos);
}

std::string roundTrip(std::string_view rtf) {
  return html::roundTripDifference(
      NSAttributedString::initWithRTF(NSData("{\\rtf1" + std::string(rtf) + "}")));
}

class ReadsBack : public testing::TestWithParam<Row> {};
TEST_P(ReadsBack, ToTheSame) { EXPECT_EQ(roundTrip(GetParam().rtf), ""); }
INSTANTIATE_TEST_SUITE_P(HTML, ReadsBack, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct Same {
  const char* name;
  std::string_view rtf;
};
class ReadsBackToo : public testing::TestWithParam<Same> {};
TEST_P(ReadsBackToo, ToTheSame) { EXPECT_EQ(roundTrip(GetParam().rtf), ""); }
constexpr Same kSame[] = {
    {"Fonts", "{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}\\f0\\fs20 aaa{\\f1 b}{\\fs48 c}"},
    {"NoFontAmongFonts", "{\\fonttbl{\\f0 ;}{\\f1 Arial;}}\\f1 aaaa {\\f0 b}\\par"},
    {"Inline", " a{\\b b{\\i c}}{\\ul d}{\\strike e}{\\super f}{\\sub g}{\\up6 h}"},
    {"SpacesOfLooks", " a{\\b b }{\\i c}{\\ul  d}\\par"},
    {"Colors", "{\\colortbl;\\red255\\green0\\blue1;}a{\\cf1 b}{\\highlight1 c}"},
    {"Paragraphs",
     "\\qc\\li720\\fi-360\\ri200\\sb120\\sa60\\sl360\\slmult1 a\\par\\pard b\\par\\qr c"},
    {"NegativeIndents", "\\li-720\\ri-200\\fi100 a\\par"},
    {"LineHeights", "\\sl240\\slmult0 a\\par\\pard\\sl-240 b\\par\\pard\\sl280\\slmult1 c"},
    {"TabStops", "\\tx720\\tqr\\tx1441\\tqdec\\tx2160 a\\tab b\\par"},
    {"WhiteSpace", "  a  b \\tab c\\par d \\line  e\\page f\\par"},
    {"BlankLines", "\\par\\par a\\par\\par\\line\\par"},
    {"Headings", "\\outlinelevel0\\b\\fs40 a\\par\\pard\\plain b"},
    {"Links", "{\\field{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt a{\\ul b}}}c"},
    {"ListsOfAnyLook",
     "\\li720\\fi-360\\qr\\sl300\\sb40{\\*\\pn\\pnlvlblt}{\\pntext\\bullet\\tab}a\\par{\\pntext"
     "\\bullet\\tab}b\\par\\li360\\ql\\sl0\\sb0 c\\par\\pard d\\par"},
    {"EmptyItems",
     "{\\*\\pn\\pnlvlblt}{\\pntext\\bullet\\tab}\\par\\par{\\pntext\\bullet\\tab}\\par\\pard d"},
    {"Cells",
     "\\trowd\\clbrdrt\\brdrs\\brdrw20\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row\\pard c"},
    {"EmptyCells",
     "\\trowd\\cellx1000\\cellx2000\\intbl\\cell b\\cell\\row\\cell\\cell\\row c\\par d\\cell "
     "e\\cell\\row\\intbl a\\par\\cell\\par\\cell\\row\\pard f"},
    {"CellsMergedAcross",
     "\\trowd\\clmgf\\cellx1000\\clmrg\\cellx2000\\cellx3000 a\\cell\\cell b\\cell\\row"},
    {"LinkedLineAtTheEnd", "{\\field{\\*\\fldinst HYPERLINK \"http://a/\"}{\\fldrslt a\\line}}"},
    {"OtherMarkersCount",
     "{\\*\\pn\\pnlvlbody\\pndec}{\\pntext -\\tab}a\\par{\\pntext 1.\\tab}b\\par{\\pntext "
     "2.\\tab}c"},
    {"CommentInAFontsName", "{\\fonttbl{\\f0 A /* b */ c;}{\\f1 B;}}\\f0 a{\\f1 b}"},
    {"MarkerAtTheEnd", "{\\*\\pn\\pnlvlblt}{\\pntext\\bullet\\tab}a\\par{\\pntext\\bullet\\tab}"},
    {"LinesAroundATable", "\\par\\trowd\\cellx1000\\intbl a\\cell\\row\\pard\\par b"},
    {"TableThatIsCutOff", "\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\cell"},
    {"NestedTable",
     "\\trowd\\cellx1000\\cellx2000\\intbl x\\par\\itap2 a\\nestcell b\\nestcell"
     "{\\*\\nesttableprops\\trowd\\cellx400\\cellx800\\nestrow}\\itap1\\cell c\\cell\\row\\pard y"},
};
INSTANTIATE_TEST_SUITE_P(HTML, ReadsBackToo, testing::ValuesIn(kSame),
                         [](const auto& row) { return std::string(row.param.name); });

// Blocks with lines come out of HTML only.
TEST(HTMLWriter, BoxesReadBack) {
  for (const char16_t* html : {
           u"<div style='border-top:1pt solid #ccc;padding:3pt 0 0'>a</div>b",
           u"<div style='background:#eee;margin:1pt 2pt 3pt "
           u"4pt;padding:5pt;width:99pt'>a<p>b</div>",
           u"<div style='border:1pt solid'>a<table cellpadding=3><tr><td>b<td>c</table>d</div>e",
           u"<table><tr><td>a<div style='border:1pt solid'>b</div><td>c</table>",
           u"<blockquote>a<blockquote style='border-left:1pt solid'>b</blockquote></blockquote>c",
           u"<div style='border:1pt solid'><ul><li>a<li>b</ul>c<pre>d\ne</pre></div>",
       }) {
    EXPECT_EQ(html::roundTripDifference(attributedTextFromHTML(NSString(html))), "")
        << NSString(html);
  }
}

#ifdef KELSPAR_CORPUS
TEST(HTMLWriterCorpus, ReadsBack) {
  size_t documents = 0;
  for (const char* folder : {"/rtf", "/lzfu"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(KELSPAR_CORPUS + std::string(folder))) {
      if (entry.path().extension() != ".rtf") continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const NSData rtf(std::string{std::istreambuf_iterator<char>(file), {}});
      EXPECT_EQ(html::roundTripDifference(NSAttributedString::initWithRTF(rtf)), "")
          << entry.path();
      ++documents;
    }
  }
  EXPECT_GT(documents, 300u);
}
#endif

TEST(SafeLinks, AreOfFewSchemes) {
  for (const char16_t* link :
       {u"http://a", u"HTTPS://a", u"mailto:a", u"tel:1", u"ftp://a", u"cid:a", u"#a"}) {
    EXPECT_TRUE(isSafeLink(link));
  }
  for (const char16_t* link :
       {u"", u"a", u"javascript:x", u" http://a", u"data:text/html,x", u"file:///etc",
        u"java\nscript:", u"//a", u"http://a/\n", u"http://a\x01/", u"http://a/ "}) {
    EXPECT_FALSE(isSafeLink(link));
  }
}

// Twenty places of 6 MB: the first one and 16 MB more.
TEST(HTMLWriterImages, OneInManyPlacesIsWrittenInTheFirst) {
  struct {
    const char* name;
    NSString source, pictureName, alternative;
    std::string_view behind;
  } const kPlaces[] = {
      {"Named", nil, u"plan.png"_ns, nil, "<img alt=\"plan.png\" width"},
      {"Described", nil, u"plan.png"_ns, u"Plan"_ns, "<img alt=\"Plan\" width"},
      {"Linked", u"cid:x"_ns, u"plan.png"_ns, nil, "<img src=\"cid:x\" alt=\"\" width"},
  };
  for (const auto& row : kPlaces) {
    NSTextAttachment picture;
    picture.contents = NSData(std::string(6 << 20, 'x'));
    picture.type = u"image/png"_ns;
    picture.width = picture.height = 7.5;
    picture.source = row.source;
    picture.name = row.pictureName;
    picture.alternative = row.alternative;
    NSTextAttributes look;
    look.attachment = std::make_shared<const NSTextAttachment>(picture);
    const NSAttributedString text(NSString(std::u16string(20, u'\uFFFC')), look);
    const std::string html = htmlFromAttributedString(text).utf8();
    const auto count = [&](std::string_view part) {
      size_t times = 0;
      for (size_t at = 0; (at = html.find(part, at)) != html.npos; ++at) ++times;
      return times;
    };
    EXPECT_EQ(count(";base64,"), 3u) << row.name;
    EXPECT_EQ(count(row.behind), 17u) << row.name;
  }
}

}  // namespace
}  // namespace kelspar
