// Which columns of a table's row are taken by cells of the rows above (WHATWG HTML, 4.9.12).
// Internal to the HTML importer and writer.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kelspar::html {

// Attributes by which the writer says what HTML has no word for: the column of a cell that stands
// in another one than its place in the row gives it, and a cell that a neighbour covers.
inline constexpr std::u16string_view kColumnMark = u"data-column", kCoveredMark = u"data-covered";
inline constexpr int32_t kMostColumnsSpanned = 1000, kMostRowsSpanned = 65534;

class TableColumns {
 public:
  // A row begins.
  void nextRow() {
    column_ = 0;
    for (Span& span : spans_) --span.rowsLeft;
    std::erase_if(spans_, [](const Span& span) { return span.rowsLeft == 0; });
  }

  // The first column that is free for the next cell.
  [[nodiscard]] uint16_t next() const {
    uint32_t column = column_;
    for (const Span& span : spans_) {  // by column
      if (column >= span.from) column = std::max(column, span.to);
    }
    return static_cast<uint16_t>(std::min<uint32_t>(column, UINT16_MAX));
  }

  // A cell stands at `column`; the next one is behind it. Returns the column behind it.
  uint16_t take(uint16_t column, uint16_t columnSpan, uint16_t rowSpan) {
    const uint32_t to = std::min<uint32_t>(uint32_t{column} + columnSpan, UINT16_MAX);
    column_ = std::max(column_, to);
    if (rowSpan > 1 && spans_.size() < kMostSpans) {
      const auto behind = std::ranges::upper_bound(spans_, uint32_t{column}, {}, &Span::from);
      spans_.insert(behind, {column, to, rowSpan});
    }
    return static_cast<uint16_t>(to);
  }

 private:
  // More cells that reach down at once count as ones of a single row: the cost stays linear.
  static constexpr size_t kMostSpans = 32;
  struct Span {
    uint32_t from, to;
    uint32_t rowsLeft;  // this one included
  };
  std::vector<Span> spans_;
  uint32_t column_ = 0;
};

}  // namespace kelspar::html
