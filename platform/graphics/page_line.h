// What stands on pages, ready to be drawn. Made by layout, drawn by the page writer. Internal to
// the library.
//
// x counts points from the page's left edge. y counts from the line's top, the line's own top and
// bottom from the text's top, as if there were no pages.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"

typedef struct _cairo_scaled_font cairo_scaled_font_t;

namespace kelspar {

inline constexpr double kPageWidth = 550, kPageHeight = 715;

// Callers' numbers may be anything; NaN counts as the least.
[[nodiscard]] inline double bounded(double value, double least, double most) {
  return value >= least ? std::min(value, most) : least;
}

// A font at a size, with where it wants its lines (upwards from the baseline is negative).
struct PageFont {
  explicit PageFont(cairo_scaled_font_t* scaledFont);
  PageFont(const PageFont&) = delete;
  ~PageFont();

  cairo_scaled_font_t* scaled;
  double ascent = 0;
  double underlineTop = 0, underlineHeight = 0;
  double strikeTop = 0, strikeHeight = 0;
};

struct PageGlyph {
  unsigned long index;
  double x, y;
};

// So many bytes of text are shown by so many glyphs.
struct PageCluster {
  int bytes, glyphs;
};

enum class GlyphKind : uint8_t {
  text,
  picture,  // colour glyphs: bitmaps, which hold no text
  missing,  // no font has the character: a box with its code point, `index` of its only glyph
};

// Glyphs of one font in one colour. From left to right; the text is in its logical order, and where
// it runs backwards, so do the clusters.
struct GlyphRun {
  std::shared_ptr<const PageFont> font;
  NSColor color;
  bool isBackward = false;
  GlyphKind kind = GlyphKind::text;
  double width = 0;
  std::vector<PageGlyph> glyphs;
  std::vector<PageCluster> clusters;
  std::string text;
};

struct Fill {
  double x, y, width, height;
  NSColor color;
};

struct Picture {
  double x, y, width, height;
  std::shared_ptr<const NSTextAttachment> attachment;
};

struct LinkArea {
  double x, width;
  NSString link;
};

struct PageLine {
  double top = 0, bottom = 0;
  double baseline = 0;    // from the top
  bool mayBeCut = false;  // a table's border or background
  std::vector<Fill> fills;
  std::vector<GlyphRun> glyphs;
  std::vector<Picture> pictures;
  std::vector<LinkArea> links;
};

}  // namespace kelspar
