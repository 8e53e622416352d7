// Paragraphs in the order of the text. A table is set row by row; rows that share a cell are ready
// together. Tables inside cells are set the same way, to a depth that honest mail does not reach.
#include "platform/graphics/text_flow.h"

#include <algorithm>
#include <span>

#include "platform/foundation/scan.h"
#include "platform/graphics/page_box.h"
#include "platform/graphics/paragraph_setter.h"
#include "platform/graphics/run_cursor.h"
#include "platform/graphics/table_columns.h"

namespace kelspar {

namespace {

constexpr size_t kDeepestBox = 8;    // what deeper ones hold stands below each other
constexpr size_t kMostColumns = 64;  // so do cells of wider tables

struct Paragraph {
  size_t begin, end;  // without what ends it
  const std::vector<NSTextTableCell>* cells;
  TextExtent extent;
};
using Paragraphs = std::span<Paragraph>;

const std::vector<NSTextTableCell>& cellsOf(const NSTextAttributes& look) {
  static const std::vector<NSTextTableCell> kNone;
  return look.paragraph ? look.paragraph->cells : kNone;
}

bool isSameCell(const NSTextTableCell& a, const NSTextTableCell& b) {
  return a.table == b.table && a.row == b.row && a.column == b.column;
}

// Cuts the text into paragraphs. A cell ends its last paragraph.
class ParagraphReader {
 public:
  explicit ParagraphReader(const NSAttributedString& text)
      : string_(text.string()), units_(string_.view()), looks_(text) {}

  // A text that ends in a line end has an empty paragraph behind it.
  [[nodiscard]] bool isAtEnd() const { return at_ > units_.size(); }
  [[nodiscard]] const std::vector<NSTextTableCell>& cells() {
    static const std::vector<NSTextTableCell> kNone;
    return at_ < units_.size() ? cellsOf(looks_.lookAt(at_)) : kNone;
  }

  Paragraph next() {
    const size_t begin = at_;
    const auto& inside = cells();
    size_t end = scan::findAny(units_, at_, u'\n', u'\r', u'\x2029');
    for (size_t at = begin; at < end;) {
      const auto& there = cellsOf(looks_.lookAt(at));
      if (&there != &inside && !std::ranges::equal(there, inside, isSameCell)) {
        at_ = at;
        const bool isTab = units_[at - 1] == u'\t' && !inside.empty();
        return {begin, isTab ? at - 1 : at, &inside, {}};
      }
      at = looks_.runEnd();
    }
    const bool isPair = units_.substr(end, 2) == u"\r\n";
    at_ = end + (isPair ? 2 : 1);
    // What would be an empty paragraph behind a table is the table's own line end.
    if (at_ == units_.size() && !inside.empty()) ++at_;
    return {begin, end, &inside, {}};
  }

 private:
  NSString string_;
  std::u16string_view units_;
  RunCursor looks_;
  size_t at_ = 0;
};

// A cell of one table, and its paragraphs.
struct Cell {
  const NSTextTableCell* place;
  Paragraphs paragraphs;
  size_t firstRow, lastRow;
  size_t column, span;
};

class Flow {
 public:
  using Take = std::function<bool(std::vector<PageLine> lines, double y)>;

  Flow(const NSAttributedString& text, const Take& take)
      : string_(text.string()), reader_(text), setter_(text), take_(take) {}

  void run() {
    while (!reader_.isAtEnd() && goesOn_) {
      if (reader_.cells().empty()) {
        const Paragraph paragraph = reader_.next();
        y_ = setter_.set(paragraph.begin, paragraph.end, {}, y_, &lines_);
        handOnMany(y_);
      } else {
        setOuterBox();
      }
    }
    handOn();
  }

 private:
  void handOn() {
    goesOn_ = goesOn_ && take_(std::move(lines_), y_);
    lines_.clear();
  }

  // In the midst of cells as well, with what is to be seen of them above `y`. There the ground
  // goes on a little below, so that the next piece leaves no seam.
  void handOnMany(double y) {
    constexpr size_t kLinesAtATime = 64;
    constexpr double kOverlap = 1;
    if (lines_.size() < kLinesAtATime) return;
    y_ = y;
    std::vector<PageLine> pieces;
    for (PageBox& box : open_) {
      if (box.isSeen()) pieces.push_back(box.pieceTo(y + kOverlap, false));
      box.top = y;
      box.isBegun = true;
      box.begin = 0;
    }
    lines_.insert(lines_.begin(), std::move_iterator(pieces.begin()),
                  std::move_iterator(pieces.end()));
    handOn();
  }

  void setOuterBox() {
    const uint32_t table = reader_.cells().front().table;
    std::vector<Paragraph> paragraphs;
    while (!reader_.isAtEnd() && !reader_.cells().empty() && reader_.cells().front().table == table)
      paragraphs.push_back(reader_.next());
    y_ = setBox(paragraphs, 0, {}, y_, &lines_);
  }

  // What stands in one cell, or below each other.
  double setFlow(Paragraphs paragraphs, size_t depth, Column column, double y,
                 std::vector<PageLine>* lines) {
    for (size_t at = 0; at < paragraphs.size() && goesOn_;) {
      const Paragraph& paragraph = paragraphs[at];
      if (paragraph.cells->size() <= depth || depth >= kDeepestBox) {
        y = setter_.set(paragraph.begin, paragraph.end, column, y, lines);
        ++at;
        if (lines == &lines_ && at < paragraphs.size()) handOnMany(y);
        continue;
      }
      const size_t end = tableEnd(paragraphs, at, depth);
      y = setBox(paragraphs.subspan(at, end - at), depth, column, y, lines);
      at = end;
    }
    return y;
  }

  static size_t tableEnd(Paragraphs paragraphs, size_t at, size_t depth) {
    const uint32_t table = (*paragraphs[at].cells)[depth].table;
    while (at < paragraphs.size() && paragraphs[at].cells->size() > depth &&
           (*paragraphs[at].cells)[depth].table == table)
      ++at;
    return at;
  }

  // The table's cells in the order of rows; no cell is above the one before it.
  static std::vector<Cell> cellsOfTable(Paragraphs paragraphs, size_t depth) {
    std::vector<Cell> cells;
    size_t row = 0;
    for (size_t at = 0; at < paragraphs.size();) {
      const NSTextTableCell& place = (*paragraphs[at].cells)[depth];
      size_t end = at + 1;
      while (end < paragraphs.size() && isSameCell((*paragraphs[end].cells)[depth], place)) ++end;
      row = std::max<size_t>(row, place.row);
      cells.push_back({.place = &place,
                       .paragraphs = paragraphs.subspan(at, end - at),
                       .firstRow = row,
                       .lastRow = row + std::max<size_t>(place.rowSpan, 1) - 1,
                       .column = place.column,
                       .span = std::max<size_t>(place.columnSpan, 1)});
      at = end;
    }
    return cells;
  }

  static size_t columnsOf(const std::vector<Cell>& cells) {
    size_t columns = 1;
    for (const Cell& cell : cells) columns = std::max(columns, cell.column + cell.span);
    return columns;
  }

  TextExtent extentOf(Paragraphs paragraphs, size_t depth) {
    TextExtent extent;
    for (size_t at = 0; at < paragraphs.size();) {
      TextExtent part;
      if (paragraphs[at].cells->size() > depth && depth < kDeepestBox) {
        const size_t end = tableEnd(paragraphs, at, depth);
        part = extentOfTable(paragraphs.subspan(at, end - at), depth);
        at = end;
      } else {
        Paragraph& paragraph = paragraphs[at++];
        if (paragraph.extent.most == 0) {
          paragraph.extent = setter_.measure(paragraph.begin, paragraph.end);
        }
        part = paragraph.extent;
      }
      extent.least = std::max(extent.least, part.least);
      extent.most = std::max(extent.most, part.most);
    }
    return extent;
  }

  TextExtent extentOfTable(Paragraphs paragraphs, size_t depth) {
    const std::vector<Cell> cells = cellsOfTable(paragraphs, depth);
    const size_t columns = columnsOf(cells);
    if (columns > kMostColumns) return {kPageWidth, kPageWidth};
    const std::vector<ColumnNeed> needs = needsOf(cells, depth);
    TextExtent extent;
    for (const double width : columnWidths(columns, needs, 0.0)) extent.least += width;
    for (const double width : columnWidths(columns, needs, 1e9)) extent.most += width;
    return extent;
  }

  std::vector<ColumnNeed> needsOf(const std::vector<Cell>& cells, size_t depth) {
    std::vector<ColumnNeed> needs;
    for (const Cell& cell : cells) {
      ColumnNeed need{.column = cell.column,
                      .span = cell.span,
                      .width = bounded(cell.place->width, 0, 1e5),
                      .extent = {}};
      if (need.width <= 0) {
        need.extent = extentOf(cell.paragraphs, depth + 1);
        const double sides = roomBeside(*cell.place);
        need.extent.least += sides;
        need.extent.most += sides;
      }
      needs.push_back(need);
    }
    return needs;
  }

  static double roomBeside(const NSTextTableCell& box) {
    const NSTextEdges insets = insetsOf(box);
    if (!box.isBlock) return insets.left + insets.right;
    const NSTextEdges outsets = outsetsOf(box);
    return insets.left + insets.right + outsets.left + outsets.right;
  }

  // A table, or a block.
  double setBox(Paragraphs paragraphs, size_t depth, Column column, double y,
                std::vector<PageLine>* lines) {
    const bool isBlock = (*paragraphs[0].cells)[depth].isBlock;
    return isBlock ? setBlock(paragraphs, depth, column, y, lines)
                   : setTable(paragraphs, depth, column, y, lines);
  }

  double setBlock(Paragraphs paragraphs, size_t depth, Column column, double y,
                  std::vector<PageLine>* lines) {
    const NSTextTableCell& place = (*paragraphs[0].cells)[depth];
    const NSTextEdges around = outsetsOf(place);
    const double before = std::min(double{around.left}, column.width / 2);
    const double behind = std::min(double{around.right}, column.width / 4);
    double width = column.width - before - behind;
    if (place.width > 0) width = std::min(width, bounded(place.width, 0, 1e5) + roomBeside(place));
    const std::vector<double> edges{column.left + before, column.left + before + width};
    const Cell block{&place, paragraphs, 0, 0, 0, 1};
    y += around.top;
    y = lines == &lines_ ? setBody({&block, 1}, edges, depth, y)
                         : setRows({&block, 1}, edges, depth, y, lines);
    y += around.bottom;
    handOnRow(depth, y, lines);
    return y;
  }

  double setTable(Paragraphs paragraphs, size_t depth, Column column, double y,
                  std::vector<PageLine>* lines) {
    const std::vector<Cell> cells = cellsOfTable(paragraphs, depth);
    const size_t columns = columnsOf(cells);
    if (columns > kMostColumns) return setFlow(paragraphs, kDeepestBox, column, y, lines);
    std::vector<double> edges{column.left};
    for (const double width : columnWidths(columns, needsOf(cells, depth), column.width)) {
      edges.push_back(edges.back() + width);
    }
    for (size_t first = 0; first < cells.size() && goesOn_;) {
      size_t last = first, end = cells[first].lastRow;
      while (last < cells.size() && cells[last].firstRow <= end) {
        end = std::max(end, cells[last++].lastRow);
      }
      const auto rows = std::span(cells).subspan(first, last - first);
      const bool goesInPieces = lines == &lines_ && hasOneBody(rows);
      y = goesInPieces ? setBody(rows, edges, depth, y) : setRows(rows, edges, depth, y, lines);
      handOnRow(depth, y, lines);
      first = last;
    }
    return y;
  }

  void handOnRow(size_t depth, double y, const std::vector<PageLine>* lines) {
    if (depth == 0) {
      y_ = y;
      handOn();
    } else if (lines == &lines_) {
      handOnMany(y);
    }
  }

  static PageBox boxOf(const Cell& cell, const std::vector<double>& edges, double top) {
    const double left = edges[cell.column];
    return {*cell.place, {left, edges[cell.column + cell.span] - left}, top};
  }

  [[nodiscard]] bool isBlank(const Cell& cell) const {
    constexpr size_t kMostUnits = 8, kMostParagraphs = 4;
    if (cell.paragraphs.size() > kMostParagraphs) return false;
    return std::ranges::all_of(cell.paragraphs, [this](const Paragraph& paragraph) {
      const auto units = string_.view().substr(paragraph.begin, paragraph.end - paragraph.begin);
      return units.size() <= kMostUnits &&
             units.find_first_not_of(u" \t\xA0") == std::u16string_view::npos;
    });
  }

  // One row, with nothing to be read but what stands in one of its cells: a body between margins.
  [[nodiscard]] bool hasOneBody(std::span<const Cell> cells) const {
    if (cells.size() == 1) return cells[0].place->rowSpan > 0;
    return std::ranges::all_of(cells,
                               [&](const Cell& cell) {
                                 return cell.place->rowSpan == 1 &&
                                        cell.firstRow == cells[0].firstRow;
                               }) &&
           std::ranges::count_if(cells, [this](const Cell& cell) { return !isBlank(cell); }) <= 1;
  }

  // Its lines are handed on before its end is known.
  double setBody(std::span<const Cell> cells, const std::vector<double>& edges, size_t depth,
                 double y) {
    const size_t outside = open_.size();
    for (const Cell& cell : cells) {
      open_.push_back(boxOf(cell, edges, y));
      open_.back().begin = lines_.size();
    }
    const auto set = [&](const Cell& cell, std::vector<PageLine>* lines) {
      const PageBox box = boxOf(cell, edges, y);
      return box.insets.bottom +
             setFlow(cell.paragraphs, depth + 1, box.inside(), y + box.insets.top, lines);
    };
    double bottom = y;
    const Cell* body = &cells[0];
    for (const Cell& cell : cells) {
      if (!isBlank(cell)) body = &cell;
    }
    std::vector<PageLine> margins;
    for (const Cell& cell : cells) {
      if (&cell != body) bottom = std::max(bottom, set(cell, &margins));
    }
    std::ranges::move(margins, std::back_inserter(lines_));
    bottom = std::max(bottom, set(*body, &lines_));
    std::vector<PageLine> pieces;
    for (size_t i = outside; i < open_.size(); ++i) {
      if (open_[i].isSeen()) pieces.push_back(open_[i].pieceTo(bottom, true));
    }
    const auto begin = lines_.begin() + static_cast<ptrdiff_t>(open_[outside].begin);
    lines_.insert(begin, std::move_iterator(pieces.begin()), std::move_iterator(pieces.end()));
    open_.erase(open_.begin() + static_cast<ptrdiff_t>(outside), open_.end());
    return bottom;
  }

  // Rows that are tied together by cells that span them.
  double setRows(std::span<const Cell> cells, const std::vector<double>& edges, size_t depth,
                 double y, std::vector<PageLine>* lines) {
    const size_t firstRow = cells.front().firstRow;
    std::vector<double> tops{y};  // of the rows, and of what follows
    size_t settled = 0;           // rows whose top is final
    const auto settle = [&](size_t row) {
      for (; settled < row; ++settled)
        tops[settled + 1] = std::max(tops[settled + 1], tops[settled]);
    };
    std::vector<PageLine> contents;
    for (const Cell& cell : cells) {
      const size_t row = cell.firstRow - firstRow, behind = cell.lastRow - firstRow + 1;
      tops.resize(std::max(tops.size(), behind + 1), y);
      settle(row);
      if (cell.place->rowSpan == 0) continue;
      const PageBox box = boxOf(cell, edges, tops[row]);
      const double bottom =
          setFlow(cell.paragraphs, depth + 1, box.inside(), tops[row] + box.insets.top, &contents);
      tops[behind] = std::max(tops[behind], bottom + box.insets.bottom);
    }
    settle(tops.size() - 1);
    for (const Cell& cell : cells) {
      const PageBox box = boxOf(cell, edges, tops[cell.firstRow - firstRow]);
      if (!box.isSeen()) continue;
      lines->push_back(box.pieceTo(tops[cell.lastRow - firstRow + 1], true));
    }
    std::ranges::move(contents, std::back_inserter(*lines));
    return tops.back();
  }

  NSString string_;
  ParagraphReader reader_;
  ParagraphSetter setter_;
  const Take& take_;
  std::vector<PageLine> lines_;
  std::vector<PageBox> open_;  // of rows with one body, around what is set; outermost first
  double y_ = 0;
  bool goesOn_ = true;
};

}  // namespace

void layOut(const NSAttributedString& text,
            const std::function<bool(std::vector<PageLine> lines, double y)>& take) {
  Flow(text, take).run();
}

}  // namespace kelspar
