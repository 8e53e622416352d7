// Frames around the code points of characters that no font has, two rows of digits, as terminals
// and browsers draw them. Internal to the library.
#pragma once

#include <array>
#include <vector>

#include "platform/graphics/page_line.h"

typedef struct _cairo cairo_t;

namespace kelspar {

// Boxes of one page, drawn together: alone, each would cost a hundred times its text.
class MissingBoxes {
 public:
  // `digits` has the digits; it must outlive the boxes.
  explicit MissingBoxes(cairo_scaled_font_t* digits);

  // Draws what was added before when that looks otherwise.
  void add(cairo_t* page, const GlyphRun& run, const PageGlyph& place);
  void draw(cairo_t* page);

 private:
  struct Look {
    NSColor color;
    double line = 0, digit = 0;  // the frame's width, the digits' size
    friend bool operator==(const Look&, const Look&) = default;
  };
  struct Frame {
    double x, y, width, height;
  };

  cairo_scaled_font_t* font_;
  std::array<unsigned long, 16> digits_{};
  Look look_;
  std::vector<Frame> frames_;
  std::vector<PageGlyph> glyphs_;
};

}  // namespace kelspar
