// Tables of an RTF document: rows as they are defined, the cells that paragraphs stand in.
// Internal.
#pragma once

#include <optional>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/rtf_keywords.h"

namespace kelspar {

// Where a cell stands in its table is known when the table has ended: edges of all rows make the
// columns. Until then the paragraphs' styles are kept, and then completed.
class RTFTables {
 public:
  // A deeper table counts as one of this depth.
  static constexpr int32_t kDeepest = 8;

  // A word of a row's definition, in a table of this depth (1: outermost); false for any other.
  // `color` is the one that the parameter of a word for colours stands for.
  bool word(int32_t word, int32_t parameter, int32_t depth, const std::optional<NSColor>& color);

  // A paragraph of a cell ends: enters the cells it stands in into the style.
  void paragraph(std::shared_ptr<NSParagraphStyle> style, int32_t depth);
  void cellEnds(int32_t depth);
  void rowEnds(int32_t depth);
  // Whether the row of the outermost table has cells already.
  [[nodiscard]] bool isInRow() const { return !open_.empty() && open_[0].cell > 0; }
  // Ends the tables deeper than this; 0 ends all.
  void closeBelow(int32_t depth);

 private:
  struct Cell {
    int32_t edge = 0;  // right, in twips
    NSTextBorders borders;
    std::optional<NSColor> background;
    bool firstDown = false, mergedDown = false, merged = false;
  };
  using Row = std::vector<Cell>;
  // A cell: the paragraphs from `first` on, up to those of the next one.
  struct Entry {
    size_t first;
    uint32_t row, cell;
  };
  struct Table {
    uint32_t identity = 0;
    uint32_t cell = 0;  // of the row at hand
    std::vector<Row> rows;
    std::vector<Entry> entries;
  };
  bool borderWord(int32_t word, int32_t parameter, const std::optional<NSColor>& color);
  void complete(const Table& table, size_t depth) const;
  static std::vector<int32_t> edgesOf(const Table& table);
  static NSTextTableCell cellAt(const Table& table, const Entry& entry,
                                const std::vector<int32_t>& edges,
                                const std::vector<std::vector<uint32_t>>& spans, size_t mostCells);

  std::vector<Table> open_;                                    // by depth
  std::vector<std::shared_ptr<NSParagraphStyle>> paragraphs_;  // of the outermost table
  std::vector<Row> definitions_;                               // by depth
  Cell next_;                                                  // the cell whose \cellx is to come
  NSTextBorder* side_ = nullptr;                               // of it, that words of lines are for
  uint32_t tables_ = 0;
};

}  // namespace kelspar
