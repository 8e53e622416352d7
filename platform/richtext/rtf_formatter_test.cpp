#include "platform/richtext/rtf_formatter.h"

#include <gtest/gtest.h>

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {
namespace {

void add(const std::string& word, std::string* out) {
  if (!out->empty()) *out += ' ';
  *out += word;
}

std::string number(double value) {
  std::string text = std::to_string(value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string hex(const NSColor& color) {
  char text[8];
  std::snprintf(text, sizeof text, "#%02X%02X%02X", color.red, color.green, color.blue);
  return text;
}

std::string describeBorder(const NSTextBorder& border) {
  return number(border.width) + (border.color == NSColor{} ? "" : hex(border.color));
}

std::string describeParagraph(const NSParagraphStyle& style) {
  constexpr const char* kAlignments[] = {"natural", "left", "center", "right", "justified"};
  std::string out;
  const auto length = [&](const char* name, double value) {
    if (value != 0) add(name + number(value), &out);
  };
  if (style.alignment != NSTextAlignment::natural) {
    add(kAlignments[static_cast<size_t>(style.alignment)], &out);
  }
  if (style.rightToLeft) add("rtl", &out);
  length("first", style.firstLineIndent);
  length("head", style.headIndent);
  length("tail", style.tailIndent);
  length("before", style.spacingBefore);
  length("after", style.spacingAfter);
  length("times", style.lineHeightMultiple);
  length("min", style.minimumLineHeight);
  length("max", style.maximumLineHeight);
  length("h", style.headingLevel);
  for (const NSTextTab& tab : style.tabStops) {
    add("tab" + number(tab.location) + kAlignments[static_cast<size_t>(tab.alignment)][0], &out);
  }
  for (const NSTextList& list : style.lists) {
    add("list" + list.marker.utf8() + "@" + std::to_string(list.startingNumber), &out);
  }
  for (const NSTextTableCell& cell : style.cells) {
    add("cell" + std::to_string(cell.table) + ":" + std::to_string(cell.row) + "," +
            std::to_string(cell.column) + "/" + std::to_string(cell.columns),
        &out);
    if (cell.rowSpan != 1 || cell.columnSpan != 1) {
      add("span" + std::to_string(cell.rowSpan) + "x" + std::to_string(cell.columnSpan), &out);
    }
    const NSTextBorders& borders = cell.borders;
    if (borders == NSTextBorders::all(borders.top)) {
      if (borders.top.width > 0) add("border" + describeBorder(borders.top), &out);
    } else {
      if (borders.top.width > 0) add("top" + describeBorder(borders.top), &out);
      if (borders.right.width > 0) add("right" + describeBorder(borders.right), &out);
      if (borders.bottom.width > 0) add("bottom" + describeBorder(borders.bottom), &out);
      if (borders.left.width > 0) add("left" + describeBorder(borders.left), &out);
    }
    if (cell.background) add("fill" + hex(*cell.background), &out);
  }
  return out;
}

// Every run as [units|what differs from plain 12-point text].
std::string looks(const NSAttributedString& text) {
  std::string out;
  size_t at = 0;
  for (const NSTextRun& run : text.runs()) {
    const NSTextAttributes& attributes = *run.attributes;
    std::string look;
    if (attributes.font.family) add(attributes.font.family.utf8(), &look);
    if (attributes.font.size != 12) add(number(attributes.font.size), &look);
    if (attributes.font.bold) add("b", &look);
    if (attributes.font.italic) add("i", &look);
    if (attributes.underline) add("u", &look);
    if (attributes.strikethrough) add("s", &look);
    if (attributes.superscript != 0) add("script" + number(attributes.superscript), &look);
    if (attributes.baselineOffset != 0) add("up" + number(attributes.baselineOffset), &look);
    if (attributes.foreground) add(hex(*attributes.foreground), &look);
    if (attributes.background) add("on" + hex(*attributes.background), &look);
    if (attributes.link) add("->" + attributes.link.utf8(), &look);
    if (attributes.attachment) {
      const NSTextAttachment& picture = *attributes.attachment;
      add(picture.type.utf8() + " " + number(picture.width) + "x" + number(picture.height) + " " +
              std::to_string(picture.contents.length()),
          &look);
    }
    if (attributes.paragraph) add(describeParagraph(*attributes.paragraph), &look);
    if (look.ends_with(' ')) look.pop_back();
    out += "[" + text.string().substring(at, run.length).utf8() + (look.empty() ? "" : "|") + look +
           "]";
    at += run.length;
  }
  EXPECT_EQ(at, text.length());
  return out;
}

struct Row {
  const char* name;
  std::string_view body;  // of "{\rtf1 ...}"
  std::string_view looks;
};
class RTFLooks : public testing::TestWithParam<Row> {};
TEST_P(RTFLooks, Are) {
  const std::string rtf = "{\\rtf1" + std::string(GetParam().body) + "}";
  EXPECT_EQ(looks(NSAttributedString::initWithRTF(NSData(rtf))), GetParam().looks);
}

constexpr Row kCharacters[] = {
    {"Plain", " a", "[a]"},
    {"BoldUntilZero", " a\\b b\\b0 c", "[a][b|b][c]"},
    {"BoldInAGroup", " a{\\b b}c", "[a][b|b][c]"},
    {"ItalicUnderlineStrike", "\\i a\\ul b\\strike c\\i0\\ulnone\\strike0 d",
     "[a|i][b|i u][c|i u s][d]"},
    {"KindsOfUnderline", "{\\uldb a}{\\ulwave b}\\uldash c\\ul0 d", "[abc|u][d]"},
    {"PlainResetsAll", "\\b\\i\\fs48\\ul a\\plain b", "[a|24 b i u][b]"},
    {"Sizes", "\\fs20 a\\fs b", "[a|10][b]"},
    {"Scripts", "{\\super a}{\\sub b}\\super c\\nosupersub d",
     "[a|script1][b|script-1][c|script1][d]"},
    {"RaisedAndLowered", "{\\up6 a}{\\dn4 b}", "[a|up3][b|up-2]"},
    {"RaisedAsUsual", "\\up a\\up0 b\\dn c", "[a|up3][b][c|up-3]"},
    {"Colors", "{\\colortbl;\\red255\\green0\\blue0;\\red0\\green128\\blue0;}\\cf1 a\\cf2 b\\cf0 c",
     "[a|#FF0000][b|#008000][c]"},
    {"ColorThatIsNotDefined", "\\cf7 a", "[a]"},
    {"Highlight", "{\\colortbl;\\red255\\green255\\blue0;}{\\highlight1 a}{\\chcbpat1 b}\\cb1 c",
     "[abc|on#FFFF00]"},
    {"Fonts", "\\deff0{\\fonttbl{\\f0\\fswiss Arial;}{\\f1 {\\*\\falt X}Times New Roman;}}a\\f1 b",
     "[a|Arial][b|Times New Roman]"},
    {"FontTableWithoutGroups", "{\\fonttbl\\f0 Arial;\\f1 Courier;}\\f0 a\\f1 b",
     "[a|Arial][b|Courier]"},
    {"FontNameInItsCharset", "{\\fonttbl{\\f0\\fcharset128 \\'82\\'6c;}}\\f0 a",
     "[a|\xEF\xBC\xAD]"},
    {"AssociatedProperties", "\\b\\rtlch\\afs40\\ai a\\ltrch b", "[a|20 i][b|b]"},
    {"Link", "{\\field{\\*\\fldinst HYPERLINK \"http://a.example/\" }{\\fldrslt\\ul a}}b",
     "[a|u ->http://a.example/][b]"},
    {"LinkToAPlace", "{\\field{\\*\\fldinst{HYPERLINK \\\\l \"place\"}}{\\fldrslt a}}",
     "[a|->#place]"},
    {"LinkWithATip", "{\\field{\\*\\fldinst HYPERLINK \"x:y\" \\\\o \"tip\"}{\\fldrslt a}}",
     "[a|->x:y]"},
    {"LinkAroundAField",
     "{\\field{\\*\\fldinst HYPERLINK \"x:\"}{\\fldrslt a{\\field{\\*\\fldinst PAGEREF "
     "q}{\\fldrslt 3}}}}",
     "[a3|->x:]"},
    {"OtherFields", "{\\field{\\*\\fldinst DATE}{\\fldrslt today}}", "[today]"},
};
INSTANTIATE_TEST_SUITE_P(Characters, RTFLooks, testing::ValuesIn(kCharacters),
                         [](const auto& row) { return std::string(row.param.name); });

constexpr Row kParagraphs[] = {
    {"Alignment", "\\qc a\\par\\qr b\\par\\qj c\\par\\pard d",
     "[a\n|center][b\n|right][c\n|justified][d]"},
    {"PropertiesAtTheEndCount", " a\\qc\\par b", "[a\nb|center]"},
    {"Indents", "\\li720\\fi-360\\ri200 a", "[a|first18 head36 tail10]"},
    {"Spacing", "\\sb120\\sa240 a", "[a|before6 after12]"},
    {"LineHeight", "\\sl360\\slmult1 a\\par\\slmult0 b\\par\\sl-300 c",
     "[a\n|times1.5][b\n|min18][c|min15 max15]"},
    {"TabStops", "\\tx720\\tqr\\tx1440\\tqc\\tx2880 a", "[a|tab36l tab72r tab144c]"},
    {"RightToLeft", "\\rtlpar a\\par\\ltrpar b", "[a\n|rtl][b]"},
    {"HeadingByStyle", "{\\stylesheet{\\s1 heading 1;}{\\s2 Normal;}}\\s1 a\\par\\pard\\s2 b",
     "[a\n|h1][b]"},
    {"HeadingByOutline", "\\outlinelevel2 a\\par\\pard b", "[a\n|h3][b]"},
    {"Groups", "{\\qc a\\par}b", "[a\n|center][b]"},
    {"List",
     "{\\*\\listtable{\\list{\\listlevel\\levelnfc0\\levelstartat3{\\leveltext "
     "x;}}{\\listlevel\\levelnfc23}\\listid7}}{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}"
     "}"
     "{\\listtext 3.\\tab}\\ls1 a\\par\\ilvl1 b\\par\\pard c",
     "[3.\ta\n|listdecimal@3][b\n|listdecimal@3 listcircle@1][c]"},
    {"OverrideOfALevel",
     "{\\*\\listtable{\\list{\\listlevel\\levelnfc0\\levelstartat3}\\listid7}}{\\*"
     "\\listoverridetable"
     "{\\listoverride\\listid7{\\lfolevel\\listoverridestartat\\levelstartat5}\\ls1}{\\listoverride"
     "\\listid7{\\lfolevel\\listoverrideformat{\\listlevel\\levelnfc4\\levelstartat2}}\\ls2}}"
     "\\ls1 a\\par\\ls2 b",
     "[a\n|listdecimal@5][b|listlower-alpha@2]"},
    {"OlderLists",
     "{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody\\pndec\\pnstart4{\\pntxta .}}a\\par\\pard b",
     "[1.\ta\n|listdecimal@4][b]"},
    {"OlderBullets", "{\\*\\pn\\pnlvlblt{\\pntxtb x}}a\\par", "[a\n|listdisc@1]"},
};
INSTANTIATE_TEST_SUITE_P(Paragraphs, RTFLooks, testing::ValuesIn(kParagraphs),
                         [](const auto& row) { return std::string(row.param.name); });

#define SHEET                                                                                    \
  "{\\colortbl;\\red255\\green0\\blue0;}{\\stylesheet{\\fs20 Normal;}{\\s1\\qc\\sb240\\b\\fs32 " \
  "heading 1;}{\\*\\cs10\\additive\\i\\cf1 Emphasis;}{\\s3\\li720 Quote;}}"
constexpr Row kStyles[] = {
    {"OfAParagraph", SHEET "\\pard\\s1 a\\par\\pard b", "[a\n|16 b center before12 h1][b]"},
    {"SaidAgain", SHEET "\\pard\\plain\\s1\\qc\\sb240\\b\\fs32 a\\par\\pard\\plain b",
     "[a\n|16 b center before12 h1][b]"},
    {"WordsOfItsOwnCount", SHEET "\\pard\\s1\\ql\\sb0 a{\\b0 b}\\fs24 c",
     "[a|16 b left h1][b|16 left h1][c|b left h1]"},
    {"WordsBeforeItCount", SHEET "\\pard\\qr\\i\\s1 a", "[a|16 b i right before12 h1]"},
    {"PlainEndsIt", SHEET "\\pard\\s1\\plain a", "[a|center before12 h1]"},
    {"EndsWithTheParagraph", SHEET "\\pard\\s1 a\\par\\pard\\s3 b\\par\\pard c",
     "[a\n|16 b center before12 h1][b\n|first36 head36][c]"},
    {"OfCharacters", SHEET "a{\\cs10 b}c", "[a][b|i #FF0000][c]"},
    {"OfCharactersInAStyle", SHEET "\\pard\\s1 a{\\cs10\\b0 b}",
     "[a|16 b center before12 h1][b|16 i #FF0000 center before12 h1]"},
    {"NotInTheSheet", SHEET "\\s9 a{\\cs8 b}", "[ab]"},
    {"Zero", SHEET "\\s0 a", "[a|10]"},
    {"NameInPieces", "{\\stylesheet{\\s1 hea{d}ing\r\n 2;}}\\s1 a", "[a|h2]"},
};
INSTANTIATE_TEST_SUITE_P(Styles, RTFLooks, testing::ValuesIn(kStyles),
                         [](const auto& row) { return std::string(row.param.name); });

constexpr Row kTables[] = {
    {"TwoRows",
     "\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row c\\cell d\\cell\\row\\pard e",
     "[a\t|cell1:0,0/2][b\n|cell1:0,1/2][c\t|cell1:1,0/2][d\n|cell1:1,1/2][e]"},
    {"ParagraphsInACell", "\\trowd\\cellx1000\\intbl a\\par b\\cell\\row\\pard c",
     "[a\nb\n|cell1:0,0/1][c]"},
    {"WiderCell",
     "\\trowd\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row\\trowd\\cellx2000 c\\cell\\row",
     "[a\t|cell1:0,0/2][b\n|cell1:0,1/2][c\n|cell1:1,0/2 span1x2]"},
    {"MergedDown",
     "\\trowd\\clvmgf\\cellx1000\\cellx2000\\intbl a\\cell b\\cell\\row"
     "\\trowd\\clvmrg\\cellx1000\\cellx2000\\cell d\\cell\\row",
     "[a\t|cell1:0,0/2 span2x1][b\n|cell1:0,1/2][\t|cell1:1,0/2 span0x1][d\n|cell1:1,1/2]"},
    {"MergedAcross", "\\trowd\\clmgf\\cellx1000\\clmrg\\cellx2000\\intbl a\\cell\\cell\\row",
     "[a\t|cell1:0,0/2 span1x2][\n|cell1:0,1/2 span0x1]"},
    {"BordersAndFill",
     "{\\colortbl;\\red1\\green2\\blue3;}\\trowd\\clbrdrt\\brdrs\\brdrw20\\clcbpat1\\cellx1000"
     "\\intbl a\\cell\\row",
     "[a\n|cell1:0,0/1 top1 fill#010203]"},
    {"BordersOfAllSides",
     "\\trowd\\clbrdrt\\brdrs\\brdrw10\\clbrdrl\\brdrs\\brdrw10\\clbrdrb\\brdrs\\brdrw10"
     "\\clbrdrr\\brdrdb\\brdrw10\\cellx1000\\intbl a\\cell\\row",
     "[a\n|cell1:0,0/1 border0.5]"},
    {"BordersThatAreNone",
     "{\\colortbl;\\red1\\green2\\blue3;}\\trowd\\clbrdrt\\brdrtbl\\clbrdrl\\brdrnone\\brdrw10"
     "\\clbrdrb\\brdrs\\brdrw40\\brdrcf1\\clbrdrr\\brdrnil\\cellx1000\\brdrw60\\cellx2000"
     "\\intbl\\brdrb\\brdrs\\brdrw20 a\\cell b\\cell\\row",
     "[a\t|cell1:0,0/2 bottom2#010203][b\n|cell1:0,1/2]"},
    {"Nested",
     "\\trowd\\cellx4000\\intbl x\\par\\itap2 a\\nestcell b\\nestcell{\\*\\nesttableprops"
     "\\trowd\\cellx1000\\cellx2000\\nestrow}{\\nonesttables\\par}\\itap1 y\\cell\\row",
     "[x\n|cell1:0,0/1][a\t|cell1:0,0/1 cell2:0,0/2][b\n|cell1:0,0/1 "
     "cell2:0,1/2][y\n|cell1:0,0/1]"},
    {"WithoutIntbl", "\\trowd\\cellx1\\cellx2000 a\\cell b\\par c\\cell\\row\\pard d",
     "[a\t|cell1:0,0/2][b\nc\n|cell1:0,1/2][d]"},
    {"TwoTables",
     "\\trowd\\cellx100\\intbl a\\cell\\row\\pard x\\par\\trowd\\cellx100\\intbl b\\cell\\row",
     "[a\n|cell1:0,0/1][x\n][b\n|cell2:0,0/1]"},
};
INSTANTIATE_TEST_SUITE_P(Tables, RTFLooks, testing::ValuesIn(kTables),
                         [](const auto& row) { return std::string(row.param.name); });

#define PICTURE "\xEF\xBF\xBC"
constexpr Row kPictures[] = {
    {"PNG", "a{\\pict\\pngblip\\picwgoal200\\pichgoal100 89504e470d0a1a0a00}b",
     "[a][" PICTURE "|image/png 10x5 9][b]"},
    {"JPEGInBinary", "{\\pict\\jpegblip\\picw4\\pich8\\bin4 \xFF\xD8\xFF\xE0}",
     "[" PICTURE "|image/jpeg 3x6 4]"},
    {"NamedWrongly", "{\\pict\\jpegblip\\picwgoal20\\pichgoal20 89504e470d0a1a0a}",
     "[" PICTURE "|image/png 1x1 8]"},
    {"Scaled",
     "{\\pict\\pngblip\\picwgoal200\\pichgoal100\\picscalex50\\picscaley200 "
     "89504e470d0a1a0a}",
     "[" PICTURE "|image/png 5x10 8]"},
    {"Bitmap",
     "{\\pict\\dibitmap0\\picwgoal20\\pichgoal20 "
     "28000000010000000100000001001800000000000400000000000000000000000000000000000000ff00ff00}",
     "[" PICTURE "|image/bmp 1x1 58]"},
    {"MetafileKeepsItsPlace", "{\\pict\\wmetafile8\\picwgoal200\\pichgoal100 0100}",
     "[" PICTURE "|image/x-wmf 10x5 0]"},
    {"EmptyPicture", "a{\\pict\\pngblip}b", "[ab]"},
    {"NewerFormWins",
     "{\\*\\shppict{\\pict\\pngblip\\picwgoal20\\pichgoal20 89504e470d0a1a0a}}"
     "{\\nonshppict{\\pict\\wmetafile8\\picwgoal200\\pichgoal100 0100}}",
     "[" PICTURE "|image/png 1x1 8]"},
    {"ResultOfAnObject",
     "{\\object\\objemb{\\*\\objdata 0102}{\\result{\\pict\\emfblip\\picwgoal20\\pichgoal40 00}}}",
     "[" PICTURE "|image/x-emf 1x2 0]"},
    {"OfAShape",
     "a{\\shp{\\*\\shpinst{\\sp{\\sn shapeType}{\\sv 75}}{\\sp{\\sn pib}{\\sv {\\pict\\pngblip"
     "\\picwgoal20\\pichgoal20 89504e470d0a1a0a}}}{\\sp{\\sn pibName}{\\sv x}}}{\\shprslt\\par}}b",
     "[a][" PICTURE "|image/png 1x1 8][b]"},
    {"HiddenPicture", "a{\\v{\\pict\\wmetafile8\\picwgoal200\\pichgoal100 0100}}b", "[ab]"},
};
INSTANTIATE_TEST_SUITE_P(Pictures, RTFLooks, testing::ValuesIn(kPictures),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(RTFLooksEdges, HostileTablesCostLittle) {
  std::string rows = "{\\rtf1\\trowd";
  for (int i = 0; i < 2000; ++i) rows += "\\cellx" + std::to_string(i * 10);
  for (int i = 0; i < 200'000; ++i) rows += "\\row";
  const NSAttributedString text = NSAttributedString::initWithRTF(NSData(rows));
  EXPECT_EQ(text.length(), 200'000u);
}

TEST(RTFLooksEdges, HostileNestingCostsLittle) {
  std::string cells = "{\\rtf1";
  for (int i = 0; i < 100'000; ++i) cells += "\\itap" + std::to_string(i % 40) + " a\\nestcell";
  EXPECT_EQ(NSAttributedString::initWithRTF(NSData(cells)).length(), 200'000u);
  std::string tabs = "{\\rtf1";
  for (int i = 0; i < 200'000; ++i) tabs += "\\tx" + std::to_string(i);
  EXPECT_EQ(NSAttributedString::initWithRTF(NSData(tabs + " a")).runs()[0].length, 1u);
}

}  // namespace
}  // namespace kelspar
