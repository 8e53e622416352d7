#include "platform/richtext/html_writer_blocks.h"

#include <algorithm>

#include "platform/richtext/html_escape.h"
#include "platform/richtext/html_markers.h"

namespace kelspar::html {

namespace {

constexpr size_t kDeepestLists = 16;
constexpr size_t kDeepestTables = 16;
constexpr int kDeepestQuotes = 32;

bool isBreak(char16_t c) { return c == 0x2028 || c == u'\r'; }

// The marker at the paragraph's start, its tab with it: taken off the pieces. Empty: none.
std::u16string takeMarker(std::vector<Piece>* pieces) {
  constexpr size_t kLongest = 16;
  std::u16string marker;
  for (size_t i = 0; i < pieces->size(); ++i) {
    Piece& piece = (*pieces)[i];
    const size_t tab = piece.text.find(u'\t');
    marker += piece.text.substr(0, std::min(tab, kLongest + 1));
    if (marker.size() > kLongest || piece.attributes->attachment) return {};
    if (tab == piece.text.npos) continue;
    marker += u'\t';
    piece.text.remove_prefix(tab + 1);
    pieces->erase(pieces->begin(),
                  pieces->begin() + static_cast<ptrdiff_t>(piece.text.empty() ? i + 1 : i));
    return marker;
  }
  return {};
}

std::u16string_view elementOf(const NSParagraphStyle& style) {
  constexpr std::u16string_view kHeadings[] = {u"h1", u"h2", u"h3", u"h4", u"h5", u"h6"};
  if (style.preformatted) return u"pre";
  if (style.headingLevel < 1 || style.headingLevel > 6) return u"p";
  return kHeadings[style.headingLevel - 1];
}

}  // namespace

void BlockWriter::write(Paragraph* paragraph) {
  const NSParagraphStyle& style = *paragraph->style;
  enterQuotes(style);
  enterCells(style);
  if (!style.lists.empty()) return item(paragraph);
  closeLists(listsOutside());
  block(paragraph, around());
}

// A <p>, <h1> or <pre>.
void BlockWriter::block(Paragraph* paragraph, const NSParagraphStyle& around) {
  const std::u16string_view element = elementOf(*paragraph->style);
  out_ += u'<';
  out_ += element;
  text_.writeClass(classes_.paragraph(*paragraph->style, around));
  out_ += u'>';
  contents(paragraph);
  out_ += u"</";
  out_ += element;
  out_ += u'>';
  endLine();
}

// The text and, where it would not be seen otherwise, the paragraph's end as a <br>.
void BlockWriter::contents(Paragraph* paragraph) {
  std::vector<Piece>& pieces = paragraph->pieces;
  const bool endsInBreak = !pieces.empty() && isBreak(pieces.back().text.back());
  const NSTextAttributes* separator = nullptr;
  if (endsInBreak && paragraph->isUnfinished) {
    separator = pieces.back().attributes;
    pieces.back().text.remove_suffix(1);
  }
  if (!paragraph->marker.empty()) {
    out_ += u"<span class=\"w\">";
    appendEscaped(paragraph->marker, /*inAttribute=*/false, &out_);
    out_ += u"</span>";
    paragraph->marker.clear();
  }
  text_.write(pieces, paragraph->style->preformatted);
  if (separator) return text_.writeSeparator(*separator);
  if (paragraph->isUnfinished) return;
  if (pieces.empty() || endsInBreak || paragraph->isLastLine) text_.writeBreak(*paragraph->end);
}

// Lists

void BlockWriter::item(Paragraph* paragraph) {
  const NSParagraphStyle& style = *paragraph->style;
  const bool goesOn = enterLists(style);
  const std::u16string marker = takeMarker(&paragraph->pieces);
  OpenList& open = lists_.back();
  if (goesOn && marker.empty()) return block(paragraph, *open.item);  // more of the same item
  if (goesOn) {
    out_ += u"</li>";
    endLine(1);
  }
  const NSParagraphStyle& outside = around();
  const bool isPlain = elementOf(style) == u"p";
  NSParagraphStyle own = style;
  if (!isPlain) own.spacingBefore = own.spacingAfter = 0;  // its block says so
  const std::u16string name = classes_.item(own, outside, open.indent);
  open.item = &style;

  out_ += u"<li";
  if (const int32_t value = valueOfMarker(style.lists.back().marker, marker)) {
    if (style.lists.back().ordered && value != open.next) attribute(u"value", value);
    open.next = int64_t{value} + 1;
    text_.writeClass(name);
    out_ += u'>';
  } else {
    ++open.next;  // it counts all the same
    text_.writeClass(name.empty() ? u"n" : u"n " + name);
    out_ += u'>';
    paragraph->marker = marker;
  }
  if (isPlain) return contents(paragraph);
  block(paragraph, own);
}

// What the next block stands in.
const NSParagraphStyle& BlockWriter::around() const {
  static const NSParagraphStyle kPlain;
  const size_t outside = listsOutside();
  return lists_.size() > outside + 1 ? *lists_[lists_.size() - 2].item : kPlain;
}

// Opens and closes lists until the paragraph's own is the innermost one. Whether an item of it is
// open already.
bool BlockWriter::enterLists(const NSParagraphStyle& style) {
  const size_t outside = listsOutside();
  const size_t depth = std::min(style.lists.size(), kDeepestLists);
  size_t same = 0;
  while (same < depth && outside + same < lists_.size() &&
         lists_[outside + same].list == style.lists[same]) {
    ++same;
  }
  closeLists(outside + same);
  if (same == depth) return true;
  for (size_t i = same; i < depth; ++i) {
    const bool isInner = i + 1 < depth;
    openList(style.lists[i], style, isInner);
    if (!isInner) break;
    ++lists_.back().next;
    out_ += u"<li class=\"n\">";
  }
  return false;
}

void BlockWriter::openList(const NSTextList& list, const NSParagraphStyle& style, bool isInner) {
  static const NSParagraphStyle kPlain;
  const bool isOuter = lists_.size() == listsOutside();
  const double from = isOuter ? 0 : boundedIndent(lists_.back().item->headIndent);
  const double indent = isInner ? 0 : boundedIndent(style.headIndent) - from;
  out_ += list.ordered ? u"<ol" : u"<ul";
  if (list.ordered && list.startingNumber != 1) attribute(u"start", list.startingNumber);
  text_.writeClass(classes_.list(list, indent, isInner));
  out_ += u'>';
  endLine();
  lists_.push_back(
      {list, list.startingNumber, from + indent, isOuter ? &kPlain : lists_.back().item});
}

void BlockWriter::closeLists(size_t count) {
  while (lists_.size() > count) {
    out_ += u"</li>";
    endLine(1);
    out_ += lists_.back().list.ordered ? u"</ol>" : u"</ul>";
    lists_.pop_back();
    endLine();
  }
}

// Tables

void BlockWriter::enterCells(const NSParagraphStyle& style) {
  const auto& cells = style.cells;
  const size_t depth = std::min(cells.size(), kDeepestTables);
  size_t same = 0;
  while (same < depth && same < tables_.size() && tables_[same].cell == cells[same]) ++same;
  const bool isSameTable = same < depth && same < tables_.size() &&
                           tables_[same].cell.table == cells[same].table &&
                           tables_[same].cell.row <= cells[same].row;
  closeTables(same + (isSameTable ? 1 : 0));
  if (isSameTable) nextCell(cells[same++]);
  for (size_t i = same; i < depth; ++i) openTable(cells[i]);
}

void BlockWriter::openTable(const NSTextTableCell& cell) {
  closeLists(listsOutside());
  if (cell.isBlock) {
    out_ += u"<div";
    text_.writeClass(classes_.cell(cell));
    out_ += u'>';
    tables_.push_back({cell, lists_.size(), {}});
    return;
  }
  out_ += u"<table>";
  endLine();
  out_ += u"<tbody>";
  endLine();
  out_ += u"<tr>";
  tables_.push_back({{}, lists_.size(), {}});
  rowsUntil(cell.row);
  openCell(cell);
}

void BlockWriter::nextCell(const NSTextTableCell& cell) {
  closeLists(tables_.back().lists);
  out_ += u"</td>";
  rowsUntil(cell.row);
  openCell(cell);
}

// Rows without cells keep the numbers of those behind them.
void BlockWriter::rowsUntil(uint16_t row) {
  OpenTable& open = tables_.back();
  for (; open.cell.row < row; ++open.cell.row) {
    out_ += u"</tr>";
    endLine();
    out_ += u"<tr>";
    open.columns.nextRow();
  }
}

void BlockWriter::openCell(const NSTextTableCell& cell) {
  OpenTable& open = tables_.back();
  open.cell = cell;
  const auto columnSpan =
      static_cast<uint16_t>(std::clamp<int32_t>(cell.columnSpan, 1, kMostColumnsSpanned));
  const auto rowSpan =
      static_cast<uint16_t>(std::clamp<int32_t>(cell.rowSpan, 1, kMostRowsSpanned));
  out_ += u"<td";
  if (rowSpan > 1) attribute(u"rowspan", rowSpan);
  if (columnSpan > 1) attribute(u"colspan", columnSpan);
  if (cell.column != open.columns.next()) attribute(kColumnMark, cell.column);
  if (cell.rowSpan == 0) {
    out_ += u" hidden ";
    out_ += kCoveredMark;
  }
  open.columns.take(cell.column, columnSpan, cell.rowSpan);
  text_.writeClass(classes_.cell(cell));
  out_ += u'>';
}

void BlockWriter::closeTables(size_t count) {
  while (tables_.size() > count) {
    closeLists(tables_.back().lists);
    if (tables_.back().cell.isBlock) {
      out_ += u"</div>";
    } else {
      out_ += u"</td></tr>";
      endLine();
      out_ += u"</tbody>";
      endLine();
      out_ += u"</table>";
    }
    endLine();
    tables_.pop_back();
  }
}

// Quotes

void BlockWriter::enterQuotes(const NSParagraphStyle& style) {
  const int level = std::clamp<int>(style.quoteLevel, 0, kDeepestQuotes);
  if (level == quotes_) return;
  closeQuotes(std::min(level, quotes_));
  for (; quotes_ < level; ++quotes_) out_ += u"<blockquote>\n";
}

void BlockWriter::closeQuotes(int level) {
  closeTables(0);
  closeLists(0);
  for (; quotes_ > level; --quotes_) out_ += u"</blockquote>\n";
}

void BlockWriter::attribute(std::u16string_view name, int64_t value) {
  out_ += u' ';
  out_ += name;
  out_ += u"=\"";
  appendNumber(static_cast<double>(value), &out_);
  out_ += u'"';
}

// Between blocks, for whoever reads the source; not inside an item, where white space is kept.
// `ended`: lists whose item has just ended.
void BlockWriter::endLine(size_t ended) {
  if (lists_.size() == ended) out_ += u'\n';
}

}  // namespace kelspar::html
