// Where words stand on the pages.
#include <gtest/gtest.h>

#include <map>

#include "platform/graphics/pdf_tools.h"
#include "platform/graphics/text_flow.h"

namespace kelspar {
namespace {

using testtools::PDFFile;

NSTextAttributes lookOf(const NSParagraphStyle& style) {
  NSTextAttributes look;
  look.font.family = u"DejaVu Sans"_ns;
  look.paragraph = std::make_shared<const NSParagraphStyle>(style);
  return look;
}

NSAttributedString text(std::u16string_view units, const NSParagraphStyle& style) {
  return NSAttributedString(NSString(units), lookOf(style));
}

TEST(TextFlow, IndentsAndAlignment) {
  const std::u16string long_ =
      u"first " + std::u16string(50, u'n') + u" " + std::u16string(40, u'm') + u" last";
  const PDFFile file(text(long_, {.firstLineIndent = 40, .headIndent = 20, .tailIndent = -30}));
  EXPECT_NEAR(file.word("first").left, 40, 1);
  EXPECT_NEAR(file.word(std::string(40, 'm')).left, 20, 1.5);
  using Align = NSTextAlignment;
  EXPECT_NEAR(PDFFile(text(u"word", {.alignment = Align::right})).word("word").right, 550, 1);
  const auto middle = PDFFile(text(u"word", {.alignment = Align::center})).word("word");
  EXPECT_NEAR((middle.left + middle.right) / 2, 275, 1);
  const auto right = PDFFile(text(u"word", {.alignment = Align::right, .tailIndent = 50}));
  EXPECT_NEAR(right.word("word").right, 500, 1);
}

TEST(TextFlow, JustifiedLinesReachBothEdges) {
  std::u16string words;
  for (int i = 0; i < 40; ++i) words += u"word" + std::u16string(1, u'a' + i % 26) + u" ";
  const PDFFile file(text(words + u"end", {.alignment = NSTextAlignment::justified}));
  double widest = 0;
  for (const auto& word : file.words()) widest = std::max(widest, word.right);
  EXPECT_NEAR(widest, 550, 1);
}

TEST(TextFlow, RightToLeft) {
  const char16_t* shalom = u"\u05E9\u05DC\u05D5\u05DD abc";
  EXPECT_NEAR(PDFFile(text(u"abc def", {.rightToLeft = true})).word("def").right, 550, 1);
  double right = 0;
  for (const auto& word : PDFFile(text(shalom, {})).words()) right = std::max(right, word.right);
  EXPECT_NEAR(right, 550, 1);
  // Left is left whatever the letters.
  double left = 550;
  for (const auto& word : PDFFile(text(shalom, {.alignment = NSTextAlignment::left})).words())
    left = std::min(left, word.left);
  EXPECT_NEAR(left, 0, 1);
  const PDFFile indented(text(u"abc", {.rightToLeft = true, .firstLineIndent = 60}));
  EXPECT_NEAR(indented.word("abc").right, 490, 1);
}

TEST(TextFlow, TabStops) {
  NSParagraphStyle style;
  style.tabStops = {{.location = 300}, {.location = 100}};
  style.tabStops.push_back({.location = 500, .alignment = NSTextAlignment::right});
  const PDFFile file(text(u"a\tb\tc\td", style));
  EXPECT_NEAR(file.word("b").left, 100, 1);
  EXPECT_NEAR(file.word("c").left, 300, 1);
  EXPECT_NEAR(file.word("d").right, 500, 1);
  EXPECT_NEAR(PDFFile(text(u"a\tb", {})).word("b").left, 28, 1);
  // A hanging first line has a stop where the others begin.
  const NSParagraphStyle hanging{.firstLineIndent = 10, .headIndent = 45};
  EXPECT_NEAR(PDFFile(text(u"a\tb", hanging)).word("b").left, 45, 1);
}

TEST(TextFlow, MarkersOfListsStandInTheIndent) {
  NSParagraphStyle style{.firstLineIndent = 30, .headIndent = 30};
  style.lists.push_back({.identity = 1, .marker = u"decimal"_ns});
  const PDFFile file(text(u"1.\tone", style));
  EXPECT_NEAR(file.word("1.").left, 14, 1);
  EXPECT_NEAR(file.word("one").left, 30, 1);
}

TEST(TextFlow, LineHeights) {
  const auto pitch = [](const NSParagraphStyle& style) {
    const PDFFile file(text(u"one\ntwo", style));
    return file.word("two").top - file.word("one").top;
  };
  const double own = pitch({});
  EXPECT_NEAR(pitch({.lineHeightMultiple = 2}), 2 * own, 0.1);
  EXPECT_NEAR(pitch({.minimumLineHeight = 40}), 40, 0.1);
  EXPECT_NEAR(pitch({.minimumLineHeight = 5}), own, 0.1);
  EXPECT_NEAR(pitch({.maximumLineHeight = 8}), 8, 0.1);
  EXPECT_NEAR(pitch({.spacingBefore = 7, .spacingAfter = 5}), own + 12, 0.1);
  // A line inside a paragraph has no space around it.
  const PDFFile lines(text(u"one\u2028two", {.spacingBefore = 7, .spacingAfter = 5}));
  EXPECT_NEAR(lines.word("two").top - lines.word("one").top, own, 0.1);
}

// Cells as the readers write them: a tab ends a cell, a line end its row.
class Table {
 public:
  Table& cell(std::u16string_view units, NSTextTableCell place) {
    place.table = 1;
    NSParagraphStyle style;
    style.cells = {place};
    text_.append(units, lookOf(style));
    return *this;
  }
  [[nodiscard]] NSAttributedString done() { return text_.copy(); }

 private:
  NSMutableAttributedString text_;
};

TEST(TextFlow, CellsStandSideBySide) {
  Table table;
  table.cell(u"a1\na2\t", {.row = 0, .column = 0, .columns = 2, .width = 200})
      .cell(u"b1\n", {.row = 0,
                      .column = 1,
                      .columns = 2,
                      .width = 100,
                      .borders = NSTextBorders::all({1, {}}),
                      .background = NSColor{255, 0, 0}})
      .cell(u"c1\t", {.row = 1, .column = 0, .columns = 2, .width = 200})
      .cell(u"d1\n", {.row = 1, .column = 1, .columns = 2, .width = 100});
  NSMutableAttributedString all(table.done());
  all.append(text(u"after", {}));
  const PDFFile file(all.copy());
  EXPECT_TRUE(file.isSound());
  EXPECT_EQ(file.letters(), "a1a2b1c1d1after");
  EXPECT_NEAR(file.word("a1").top, file.word("b1").top, 2);
  EXPECT_NEAR(file.word("b1").left, 203, 1);
  EXPECT_NEAR(file.word("d1").left, 203, 1);
  EXPECT_GT(file.word("a2").top, file.word("a1").bottom - 3);
  EXPECT_GT(file.word("c1").top, file.word("a2").bottom - 3);
  EXPECT_GT(file.word("after").top, file.word("c1").bottom - 3);
  EXPECT_NEAR(file.word("after").left, 0, 1);
}

TEST(TextFlow, CellsSpanRowsAndColumns) {
  Table table;
  table.cell(u"tall\t", {.row = 0, .column = 0, .rowSpan = 2, .columns = 3, .width = 100})
      .cell(u"wide\n", {.row = 0, .column = 1, .columnSpan = 2, .columns = 3, .width = 300})
      .cell(u"\t", {.row = 1, .column = 0, .rowSpan = 0, .columns = 3, .width = 100})
      .cell(u"one\t", {.row = 1, .column = 1, .columns = 3, .width = 150})
      .cell(u"two\n", {.row = 1, .column = 2, .columns = 3, .width = 150});
  const PDFFile file(table.done());
  EXPECT_NEAR(file.word("wide").left, 103, 1);
  EXPECT_NEAR(file.word("one").left, 103, 1);
  EXPECT_NEAR(file.word("two").left, 253, 1);
  EXPECT_GT(file.word("one").top, file.word("wide").bottom - 4);
}

TEST(TextFlow, TablesKeepToThePage) {
  Table table;
  for (uint16_t i = 0; i < 10; ++i) {
    table.cell(i < 9 ? u"cell\t" : u"cell\n", {.row = 0, .column = i, .columns = 10, .width = 200});
  }
  for (const auto& word : PDFFile(table.done()).words()) EXPECT_LE(word.right, 551);
  Table hostile;
  for (uint16_t i = 0; i < 2'000; ++i) {
    hostile.cell(u"x\t", {.row = 0, .column = i, .columns = 2'000, .width = 20});
  }
  EXPECT_GT(PDFFile(hostile.done()).pages(), 10);  // below each other
}

TEST(TextFlow, CellsGoOverPages) {
  std::u16string left, right, letters;
  for (int i = 0; i < 200; ++i) {
    left += NSString("l" + std::to_string(i)).view();
    left += i < 199 ? u"\n" : u"\t";
    right += NSString("r" + std::to_string(i) + "\n").view();
  }
  Table table;
  table
      .cell(left, {.row = 0,
                   .column = 0,
                   .columns = 2,
                   .width = 200,
                   .borders = NSTextBorders::all({1, {}})})
      .cell(right, {.row = 0, .column = 1, .columns = 2, .width = 200});
  for (const bool keeps : {false, true}) {
    const PDFFile file(table.done(), {.keepsLinesWhole = keeps, .title = nil});
    EXPECT_GE(file.pages(), 4);
    for (const int i : {0, 70, 150, 199}) {
      const auto l = file.word("l" + std::to_string(i)), r = file.word("r" + std::to_string(i));
      EXPECT_EQ(l.page, r.page) << i;
      EXPECT_NEAR(l.top, r.top, 2) << i;
      EXPECT_GT(r.left, l.left + 150) << i;
      EXPECT_LE(l.bottom, keeps ? 716 : 730) << i;
    }
  }
}

TEST(TextFlow, BlocksHaveTheirGroundLinesAndRoom) {
  NSTextTableCell box{.table = 1, .isBlock = true, .margin = {5, 20, 7, 30}};
  box.padding = {4, 6, 8, 10};
  box.borders = {.top = {2, {}}, .left = {4, {}}};
  box.background = NSColor{200, 0, 0};
  NSParagraphStyle style;
  style.cells = {box};
  NSMutableAttributedString whole;
  whole.append(NSString(u"inside\nto the right\n"), lookOf(style));
  whole.append(text(u"after", {}));
  const double line = PDFFile(text(u"a", {})).word("a").bottom;
  const PDFFile file(whole.copy());
  // The lines lie on the block's edges, half of each to either side.
  EXPECT_NEAR(file.word("inside").left, 30 + 4 + 10, 1);
  EXPECT_NEAR(file.word("inside").top, 5 + 2 + 4, 1.5);
  EXPECT_NEAR(file.word("after").left, 0, 1);
  EXPECT_NEAR(file.word("after").bottom, 5 + 2 + 4 + 2 * line + 8 + 7 + line, 2);
  std::vector<Fill> fills;
  double top = 0;
  layOut(whole.copy(), [&](const std::vector<PageLine>& lines, double) {
    for (const PageLine& piece : lines) {
      if (piece.fills.empty()) continue;
      fills = piece.fills;
      top = piece.top;
    }
    return true;
  });
  ASSERT_EQ(fills.size(), 3u);
  EXPECT_EQ(fills[0].color, (NSColor{200, 0, 0}));
  EXPECT_NEAR(fills[0].x, 32, 0.01);
  EXPECT_NEAR(fills[0].width, 550 - 32 - 20, 0.01);
  EXPECT_NEAR(top + fills[0].y, 6, 0.01);
  EXPECT_NEAR(fills[0].height, 1 + 4 + 2 * line + 8, 1.5);
  EXPECT_NEAR(top + fills[1].y, 5, 0.01) << "above";
  EXPECT_NEAR(fills[1].height, 2, 0.01);
  EXPECT_NEAR(fills[2].x, 30, 0.01) << "to the left";
  EXPECT_NEAR(fills[2].width, 4, 0.01);
}

TEST(TextFlow, BlocksAreAsWideAsStatedAndAsThereIsRoom) {
  const auto rightEdge = [](double width) {
    NSTextTableCell box{.table = 1, .width = width, .isBlock = true, .padding = NSTextEdges{}};
    NSParagraphStyle style{.alignment = NSTextAlignment::right};
    style.cells = {box};
    return PDFFile(text(u"word", style)).word("word").right;
  };
  EXPECT_NEAR(rightEdge(0), 550, 1);
  EXPECT_NEAR(rightEdge(200), 200, 1);
  EXPECT_NEAR(rightEdge(9'000), 550, 1);
}

// Nested more deeply than is drawn, with margins that leave no room: text stands all the same.
TEST(TextFlow, HostileBlocksKeepTheirText) {
  NSParagraphStyle style;
  for (uint32_t i = 0; i < 40; ++i) {
    style.cells.push_back({.table = i, .isBlock = true, .margin = {0, 400, 0, 400}});
    style.cells.back().padding = NSTextEdges{1e9F, 1e9F, 1e9F, -1};
  }
  const PDFFile file(text(u"a b", style));
  EXPECT_EQ(file.letters(), "ab");
}

// A body in one cell, between margins in a cell of its own: what is at hand does not grow with it.
TEST(TextFlow, ALongCellIsHandedOnInPieces) {
  constexpr size_t kLines = 2'000;
  std::u16string body;
  for (size_t i = 0; i < kLines; ++i) body += NSString("l" + std::to_string(i) + "\n").view();
  const NSColor ground{240, 240, 255}, inner{255, 240, 240}, left{1, 2, 3}, right{2, 3, 4};
  const auto cell = [](uint32_t table, float border, NSColor background) {
    NSTextTableCell place{.table = table, .borders = NSTextBorders::all({border, {}})};
    place.background = background;
    return place;
  };
  NSMutableAttributedString text;
  NSParagraphStyle style;
  style.cells = {cell(1, 2, ground)};
  text.append(NSString(u"above\n"), lookOf(style));
  style.cells.push_back(cell(2, 0, left));
  style.cells[1].columns = 3;
  style.cells[1].width = 10;
  text.append(u"\xA0\t", lookOf(style));
  style.cells[1] = cell(2, 1, inner);
  style.cells[1].column = 1;
  style.cells[1].columns = 3;
  text.append(NSString(std::u16string_view(body).substr(0, body.size() - 1)), lookOf(style));
  text.append(u"\t", lookOf(style));
  style.cells[1].column = 2;
  style.cells[1].background = right;
  text.append(u"\xA0\n", lookOf(style));
  style.cells.pop_back();
  text.append(NSString(u"below\n"), lookOf(style));
  size_t most = 0, words = 0, across = 0;
  double reached = 0;
  std::map<uint8_t, std::vector<std::pair<double, double>>> grounds;  // by their red
  layOut(text.copy(), [&](std::vector<PageLine> lines, double y) {
    most = std::max(most, lines.size());
    for (const PageLine& line : lines) {
      EXPECT_GE(line.top, reached - 2);
      words += !line.glyphs.empty();
      for (const Fill& fill : line.fills) {
        across += fill.color == NSColor{} && fill.width > 10 && fill.height <= 2;
        if (fill.color == NSColor{}) continue;
        grounds[fill.color.red].emplace_back(line.top + fill.y, line.top + fill.y + fill.height);
      }
    }
    reached = y;
    return true;
  });
  EXPECT_LT(most, 100u);
  EXPECT_EQ(across, 6u) << "above and below three cells, not between pieces";
  EXPECT_NEAR(static_cast<double>(words), kLines + 2, 2) << "margins may count";
  EXPECT_EQ(grounds.size(), 4u);
  for (const auto& [red, pieces] : grounds) {
    EXPECT_GT(pieces.size(), 20u);
    for (size_t i = 1; i < pieces.size(); ++i) {
      EXPECT_NEAR(pieces[i].first, pieces[i - 1].second - 1, 0.01) << "no gap, no seam";
    }
  }
  EXPECT_NEAR(grounds[240].back().second, reached, 0.01);
  EXPECT_LT(grounds[255].back().second, reached - 10);
}

// Plain words come from known shapes; a soft hyphen sends the same words to Pango.
TEST(TextFlow, PlainWordsStandWherePangoPutsThem) {
  for (const char16_t* units :
       {u"The office, quickly: \"fine\" waffles (again).",
        u"\u0434\u043E\u0431\u0440\u044B\u0439 AVA To", u"caf\u00E9 na\u00EFve 1,000.50 %  x"}) {
    const auto plain = PDFFile(text(units, {})).words();
    const auto other = PDFFile(text(std::u16string(units) + u" \u00AD", {})).words();
    ASSERT_GE(other.size(), plain.size());
    for (size_t i = 0; i < plain.size(); ++i) {
      EXPECT_EQ(plain[i].text, other[i].text);
      EXPECT_NEAR(plain[i].left, other[i].left, 1) << plain[i].text;
      EXPECT_NEAR(plain[i].top, other[i].top, 0.1) << plain[i].text;
    }
  }
}

TEST(TextFlow, PlainWordsKeepTheirLooks) {
  NSTextAttributes bold = lookOf({});
  bold.font.bold = true;
  bold.underline = true;
  NSMutableAttributedString parts(text(u"plain unbre", {}));
  parts.append(u"akable", bold);
  parts.append(u" end", lookOf({}));
  const PDFFile file(parts.copy());
  EXPECT_EQ(file.letters(), "plainunbreakableend");
  const std::string fonts = file.output("pdffonts %");
  EXPECT_NE(fonts.find("DejaVuSans-Bold"), std::string::npos) << fonts;
}

TEST(TextFlow, LongParagraphsHaveNoSeams) {
  // 120,000 units in six pieces: but for the last, no line could take another word.
  std::u16string words;
  for (int i = 0; i < 20'000; ++i) words += u"word" + std::u16string(1, u'a' + i % 26) + u" ";
  const PDFFile file(text(words, {}));
  std::map<std::pair<int, double>, double> ends;
  for (const auto& word : file.words()) {
    double& end = ends[{word.page, word.top}];
    end = std::max(end, word.right);
  }
  ends.erase(std::prev(ends.end()));
  EXPECT_GT(ends.size(), 1'000u);
  for (const auto& [line, end] : ends) EXPECT_GT(end, 550 - 45) << line.first << ' ' << line.second;
}

TEST(TextFlow, WordsWithoutEndAreWrapped) {
  const std::u16string units = u"short words " + std::u16string(50'000, u'x') + u" and more";
  const PDFFile file(text(units, {}));
  EXPECT_EQ(file.letters(), "shortwords" + std::string(50'000, 'x') + "andmore");
  for (const auto& word : file.words()) EXPECT_LE(word.right, 551);
  EXPECT_EQ(file.word("more").page, file.pages());
}

}  // namespace
}  // namespace kelspar
