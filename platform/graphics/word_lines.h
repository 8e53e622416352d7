// Plain paragraphs, set from words whose glyphs are known already: most text is made of few words.
// What is not plain is Pango's business. Internal to the library.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/graphics/line_maker.h"
#include "platform/graphics/page_line.h"
#include "platform/graphics/run_cursor.h"

typedef struct _PangoContext PangoContext;

namespace kelspar {

// A word's glyphs in black; x counts from its start, y from the baseline.
struct WordShape {
  double width = 0, ascent = 0, height = 0;
  std::vector<GlyphRun> runs;
};

class WordLines {
 public:
  explicit WordLines(PangoContext* context);
  ~WordLines();
  WordLines(const WordLines&) = delete;

  // Takes the units from `begin` to `end`. False when they are not plain: other letters than those
  // of Latin, Greek and Cyrillic, places inside words or at spaces where the rules of UAX #14 ask
  // for more than a look at spaces, tabs, pictures, raised text. Never for no units at all.
  [[nodiscard]] bool take(std::u16string_view units, size_t begin, size_t end, RunCursor* looks);

  struct Line {
    size_t first, last;  // words, without the spaces behind them
    double width, ascent, height;
  };
  // The lines of what was taken, as many words on each as fit; null when a word is wider than one.
  [[nodiscard]] const std::vector<Line>* breakLines(double firstWidth, double width);

  // How wide what was taken is on one line, and its widest word.
  struct Extent {
    double least, most;
  };
  [[nodiscard]] Extent extent() const;

  // Puts a line's words into `out`, whose top, bottom and baseline are set.
  void compose(const Line& line, double x, PageLine* out);

 private:
  struct Token {
    const WordShape* shape;
    const NSTextAttributes* look;
    bool isSpace;
  };
  class Shapes;

  bool takeRun(std::u16string_view units, const NSTextAttributes& look);
  void endLine(size_t first, size_t last);
  void appendGlyphs(const GlyphRun& from, const Token& token, double x, PageLine* out);
  static bool canJoin(const GlyphRun& run, const GlyphRun& next, NSColor color);

  std::unique_ptr<Shapes> shapes_;
  std::vector<Token> tokens_;
  std::vector<Line> lines_;
};

}  // namespace kelspar
