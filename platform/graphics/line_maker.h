// Takes the glyphs of Pango's lines, with the looks of the text. Internal to the library.
#pragma once

#include <memory>
#include <unordered_map>

#include "platform/graphics/page_line.h"
#include "platform/graphics/pango_text.h"

typedef struct _PangoFont PangoFont;
typedef struct _PangoGlyphItem PangoGlyphItem;
typedef struct _PangoLayoutLine PangoLayoutLine;

namespace kelspar {

// Background, link and lines of what stands between `left` and `right`. Null font: no lines.
void decorate(const PageFont* font, double baseline, double left, double right,
              const NSTextAttributes& look, PageLine* line);

class LineMaker {
 public:
  LineMaker() = default;
  ~LineMaker();
  LineMaker(const LineMaker&) = delete;

  // Puts the line's glyphs and what goes with them into `out`, whose top, bottom and baseline are
  // set. The line begins at `x`.
  void take(PangoLayoutLine* line, const PangoText& text, double x, PageLine* out);

  // Fonts are kept from line to line; this forgets them when they have become many.
  void forgetManyFonts();

 private:
  struct Place {
    double x, y;  // of the baseline
  };
  struct Cluster {
    size_t byte, bytes;  // in the whole text
    int glyph, glyphs;   // the leftmost one
    bool isMissing = false, isPicture = false, isBlank = false;
  };

  double takeItem(PangoGlyphItem* item, const PangoText& text, Place place);
  void takeClusters(PangoGlyphItem* item, const PangoText& text, Place place);
  void takeRun(PangoGlyphItem* item, const PangoText& text, Place place, size_t first, size_t last,
               const NSTextAttributes& look);
  void takeGlyphs(PangoGlyphItem* item, const PangoText& text, Place place, size_t first,
                  size_t last, const NSTextAttributes& look);
  void takePictures(const PangoText& text, Place place, size_t first, size_t last,
                    const NSTextAttributes& look);
  [[nodiscard]] std::shared_ptr<const PageFont> fontOf(PangoFont* font);

  std::unordered_map<PangoFont*, std::shared_ptr<const PageFont>> fonts_;
  std::vector<Cluster> clusters_;  // of the item at hand, in the text's order
  std::vector<double> edges_;      // x of its glyphs, and of its end
  PageLine* line_ = nullptr;
};

}  // namespace kelspar
