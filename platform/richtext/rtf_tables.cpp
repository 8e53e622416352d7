// From rows of right edges to a grid of cells.
#include "platform/richtext/rtf_tables.h"

#include <algorithm>

namespace kelspar {

namespace {

constexpr size_t kCellsOfARow = 1024;  // a longer definition is cut
constexpr size_t kLargestCount = 65535;
constexpr int32_t kSameEdge = 20;  // twips; edges closer than that are one

// The column that begins or ends at this edge.
size_t columnAt(const std::vector<int32_t>& edges, int32_t edge) {
  const auto at = std::ranges::lower_bound(edges, edge - kSameEdge);
  return static_cast<size_t>(at - edges.begin());
}

uint16_t count(size_t value) { return static_cast<uint16_t>(std::min(value, kLargestCount)); }

}  // namespace

bool RTFTables::word(int32_t word, int32_t parameter, int32_t depth,
                     const std::optional<NSColor>& color) {
  const auto level = static_cast<size_t>(std::clamp(depth, 1, kDeepest)) - 1;
  if (definitions_.size() <= level) definitions_.resize(level + 1);
  Row& row = definitions_[level];
  switch (word) {
    case kRowDefault:
      row = {};
      next_ = {};
      side_ = nullptr;
      return true;
    case kCellEdge:
      next_.edge = parameter;
      if (row.size() < kCellsOfARow) row.push_back(next_);
      next_ = {};
      side_ = nullptr;
      return true;
    case kCellBackground:
      next_.background = color;
      return true;
    case kMerged:
      next_.merged = true;
      return true;
    case kFirstMergedDown:
      next_.firstDown = true;
      return true;
    case kMergedDown:
      next_.mergedDown = true;
      return true;
    case kFirstMerged:
      return true;
    default:
      return borderWord(word, parameter, color);
  }
}

bool RTFTables::borderWord(int32_t word, int32_t parameter, const std::optional<NSColor>& color) {
  const auto begin = [this](NSTextBorder* side) {
    *side = {0.5f, {}};
    side_ = side;
    return true;
  };
  switch (word) {
    case kCellBorderTop:
      return begin(&next_.borders.top);
    case kCellBorderRight:
      return begin(&next_.borders.right);
    case kCellBorderBottom:
      return begin(&next_.borders.bottom);
    case kCellBorderLeft:
      return begin(&next_.borders.left);
    case kBorderWidth:
      if (side_ && side_->width > 0) {
        side_->width = static_cast<float>(std::clamp(parameter, 1, 200)) / 20;
      }
      return true;
    case kBorderColor:
      if (side_ && side_->width > 0) side_->color = color.value_or(NSColor{});
      return true;
    case kBorderNone:
      if (side_) *side_ = {};
      return true;
    default:
      return false;
  }
}

void RTFTables::paragraph(std::shared_ptr<NSParagraphStyle> style, int32_t depth) {
  const auto levels = static_cast<size_t>(std::clamp(depth, 1, kDeepest));
  closeBelow(depth);
  while (open_.size() < levels) {
    open_.emplace_back();
    open_.back().identity = ++tables_;
  }
  style->cells.resize(levels);
  for (Table& table : open_) {
    const auto row = static_cast<uint32_t>(table.rows.size());
    const bool isSame = !table.entries.empty() && table.entries.back().row == row &&
                        table.entries.back().cell == table.cell;
    if (!isSame) table.entries.push_back({paragraphs_.size(), row, table.cell});
  }
  paragraphs_.push_back(std::move(style));
}

void RTFTables::cellEnds(int32_t depth) {
  closeBelow(depth);
  const auto levels = static_cast<size_t>(std::clamp(depth, 1, kDeepest));
  if (open_.size() == levels) ++open_.back().cell;
}

void RTFTables::rowEnds(int32_t depth) {
  closeBelow(depth);
  const auto level = static_cast<size_t>(std::clamp(depth, 1, kDeepest)) - 1;
  if (open_.size() != level + 1) return;
  Table& table = open_.back();
  // A definition is stated again for every row, or counts on. Rows are as long as their cells.
  Row& row = table.rows.emplace_back();
  if (level < definitions_.size()) {
    const Row& defined = definitions_[level];
    row.assign(defined.begin(),
               defined.begin() + std::min<ptrdiff_t>(table.cell, std::ssize(defined)));
  }
  table.cell = 0;
}

void RTFTables::closeBelow(int32_t depth) {
  const auto levels = static_cast<size_t>(std::clamp(depth, 0, kDeepest));
  while (open_.size() > levels) {
    complete(open_.back(), open_.size() - 1);
    open_.pop_back();
  }
  if (open_.empty()) paragraphs_.clear();
}

// The right edges of all rows' cells, each once.
std::vector<int32_t> RTFTables::edgesOf(const Table& table) {
  std::vector<int32_t> edges;
  for (const Row& row : table.rows) {
    for (const Cell& cell : row) edges.push_back(cell.edge);
  }
  std::ranges::sort(edges);
  const auto far = [last = INT32_MIN](int32_t edge) mutable {
    const bool isSame = last != INT32_MIN && edge - int64_t{last} <= kSameEdge;
    if (!isSame) last = edge;
    return isSame;
  };
  edges.erase(std::remove_if(edges.begin(), edges.end(), far), edges.end());
  return edges;
}

NSTextTableCell RTFTables::cellAt(const Table& table, const Entry& entry,
                                  const std::vector<int32_t>& edges,
                                  const std::vector<std::vector<uint32_t>>& spans,
                                  size_t mostCells) {
  NSTextTableCell cell;
  cell.table = table.identity;
  cell.row = count(entry.row);
  cell.column = count(entry.cell);
  cell.columns = count(std::max(mostCells, edges.size()));
  if (entry.row >= table.rows.size()) return cell;
  const Row& row = table.rows[entry.row];
  if (entry.cell >= row.size()) return cell;
  const Cell& definition = row[entry.cell];
  const size_t first = entry.cell ? columnAt(edges, row[entry.cell - 1].edge) + 1 : 0;
  size_t end = entry.cell + size_t{1};
  while (!definition.merged && end < row.size() && row[end].merged) ++end;
  const size_t last = columnAt(edges, row[end - 1].edge);
  if (last < first) return cell;  // edges that run backwards
  cell.column = count(first);
  cell.columnSpan = count(last - first + 1);
  const bool continues = definition.merged || (definition.mergedDown && entry.row > 0);
  cell.rowSpan = continues ? 0 : count(spans[entry.row][entry.cell]);
  cell.borders = definition.borders;
  cell.background = definition.background;
  const int32_t left = entry.cell ? row[entry.cell - 1].edge : 0;
  cell.width = std::clamp<int64_t>(int64_t{row[end - 1].edge} - left, 0, 288000) / 20.0;
  return cell;
}

void RTFTables::complete(const Table& table, size_t depth) const {
  const std::vector<int32_t> edges = edgesOf(table);
  size_t mostCells = 1;
  for (const Entry& entry : table.entries)
    mostCells = std::max<size_t>(mostCells, entry.cell + size_t{1});

  // The rows that a cell merged downwards covers, counted from below.
  std::vector<std::vector<uint32_t>> spans(table.rows.size());
  for (size_t r = table.rows.size(); r-- > 0;) {
    const Row& cells = table.rows[r];
    spans[r].assign(cells.size(), 1);
    if (r + 1 == table.rows.size()) continue;
    const Row& below = table.rows[r + 1];
    for (size_t c = 0; c < std::min(cells.size(), below.size()); ++c) {
      if ((cells[c].firstDown || cells[c].mergedDown) && below[c].mergedDown) {
        spans[r][c] += spans[r + 1][c];
      }
    }
  }

  for (size_t i = 0; i < table.entries.size(); ++i) {
    const Entry& entry = table.entries[i];
    const NSTextTableCell cell = cellAt(table, entry, edges, spans, mostCells);
    const size_t end =
        i + 1 < table.entries.size() ? table.entries[i + 1].first : paragraphs_.size();
    for (size_t p = entry.first; p < end; ++p) paragraphs_[p]->cells[depth] = cell;
  }
}

}  // namespace kelspar
