// Where text stands: white space, line ends, cells and list markers, as a browser's innerText has
// them. It is told what comes, in order, and writes each unit once. Internal to the library.
//
// Deliberate differences to innerText: a cell's own blocks put no line ends between it and its
// neighbours, a <br> at the end of a block or a cell is that end, list markers are text, and in
// tables made for layout neither empty cells at a row's start nor empty rows leave anything.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelspar::html {

enum class WhiteSpace : uint8_t { collapse, keep, keepLines };  // CSS: normal, pre, pre-line

class TextLayout {
 public:
  // From `start` on the text has the look of that number.
  struct Run {
    size_t start;
    uint32_t look;
  };
  struct Result {
    std::u16string text;
    std::vector<Run> runs;  // the first one starts at 0; empty when the text is
  };

  // A <br> is written as `lineEnd`: U+2028 where paragraphs have a look, else LF. One that ends a
  // block is an LF in either case.
  TextLayout(size_t expectedUnits, char16_t lineEnd);

  void text(std::u16string_view units, WhiteSpace whiteSpace);
  // Something that is no white space and stands in the line, in `look`; what is written behind it
  // has the look `after`.
  void atom(std::u16string_view units, uint32_t look, uint32_t after);
  void lineBreak();
  // At least so many line ends before the next text: 1 for a new line, 2 for a blank line between.
  void requireBreaks(uint8_t breaks);

  // An item's marker; it is written when the item's text comes, or the item ends. Empty: none.
  void beginItem(std::u16string marker);
  void endItem();

  // `drops`: a table made for layout. The tab behind a cell without text has the look that is set
  // when the cell ends.
  void beginRow(bool drops);
  void beginCell();
  void endCell();
  void endRow();

  // The table that begins here takes text that strays between its parts in front of it: what comes
  // between `beginStray` and `endStray`. Strays inside strays stay where they are.
  [[nodiscard]] size_t markTable();
  void beginStray(size_t table);
  void endStray();
  [[nodiscard]] bool isStraying() const { return out_ != &main_; }
  [[nodiscard]] bool isEmpty() const { return main_.text.empty(); }
  // Nothing stands in the cell or item yet.
  [[nodiscard]] bool isFresh() const { return out_->fresh; }

  // The look of what comes, and how many boxes (cells, blocks) that is in.
  void setLook(uint32_t look, size_t depth);

  [[nodiscard]] Result finish() &&;

 private:
  // A text while it grows.
  struct Output {
    std::u16string text;
    std::vector<Run> runs;
    uint8_t breaks = 0;  // line ends that are due
    bool space = false;  // a space is due, unless the line ends
    uint32_t spaceLook = 0;
    bool fresh = false;   // nothing stands in the cell or item yet
    uint8_t leading = 0;  // line ends that were due before its first text
    bool rowEnd = false;  // a row has ended, and is a line if another one follows
    uint32_t tabs = 0;    // cells of layout that were passed
    size_t broken = 0;    // the text's length behind the last <br>
    std::u16string marker;
    bool endsInBreak() const { return broken == text.size() && broken > 0; }
    bool atLineStart() const { return text.empty() || text.back() == u'\n' || endsInBreak(); }
  };
  struct Row {
    size_t start;
    uint32_t tabsBefore;
    bool drops;
    bool wasFresh;  // nothing stood in the cell around the table
    bool hasCells = false;
    size_t cellStart = 0;
    uint32_t cellLook = 0;
  };
  struct Table {
    size_t position;  // in front of which its strays stand
    uint8_t breaks;   // line ends that were due there
    bool space;       // a space was
    std::unique_ptr<Output> strays;
  };

  void flush();
  void flushBreaks();
  [[nodiscard]] uint8_t depthOf(uint32_t look) const {
    return look < depths_.size() ? depths_[look] : uint8_t{0};
  }
  void startRun() { startRun(look_); }
  void startRun(uint32_t look);
  void settleBreak();
  void separateCells(const Row& row);
  void endLine(char16_t lineEnd);
  void append(std::u16string_view units);
  void collapse(std::u16string_view units);
  void keep(std::u16string_view units);
  void noteSpace();
  [[nodiscard]] bool rowHasText() const { return out_->text.size() > rows_.back().start; }
  [[nodiscard]] Result merged();

  Output main_;
  Output* out_ = &main_;
  std::vector<Row> rows_;
  std::vector<Table> tables_;  // by position
  uint32_t look_ = 0;
  std::vector<uint8_t> depths_;  // by look; those that are not there are in no box
  char16_t lineEnd_;
};

}  // namespace kelspar::html
