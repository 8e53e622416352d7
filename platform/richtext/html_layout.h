// Where text stands: white space, line ends, cells and list markers, as a browser's innerText has
// them. It is told what comes, in order, and writes each unit once. Internal to the library.
//
// Deliberate differences to innerText: a cell's own blocks put no line ends between it and its
// neighbours, rows without text leave no line, and list markers are text.
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
  void lineBreak() { endLine(lineEnd_); }
  // At least so many line ends before the next text: 1 for a new line, 2 for a blank line between.
  void requireBreaks(uint8_t breaks);

  // An item's marker; it is written when the item's text comes. Empty: none.
  void beginItem(std::u16string marker);

  // `drops`: cells without text at a row's start leave no tabs behind (tables made for layout).
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

  // The look of what comes.
  void setLook(uint32_t look) { look_ = look; }

  [[nodiscard]] Result finish() &&;

 private:
  static bool isLineEnd(char16_t c) { return c == u'\n' || c == u'\u2028'; }

  // A text while it grows.
  struct Output {
    std::u16string text;
    std::vector<Run> runs;
    uint8_t breaks = 0;  // line ends that are due
    bool space = false;  // a space is due, unless the line ends
    bool fresh = false;  // nothing stands in the cell or item yet
    uint32_t tabs = 0;   // cells that were passed
    std::u16string marker;
    bool atLineStart() const { return text.empty() || isLineEnd(text.back()); }
  };
  struct Row {
    size_t start;
    uint32_t tabsBefore;
    bool drops, hasCells;
  };
  struct Table {
    size_t position;  // in front of which its strays stand
    uint8_t breaks;   // line ends that were due there
    std::unique_ptr<Output> strays;
  };

  void flush();
  void startRun();
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
  char16_t lineEnd_;
};

}  // namespace kelspar::html
