// The boxes' frames and digits.
#include "platform/graphics/missing_boxes.h"

#include <cairo.h>

#include <algorithm>

namespace kelspar {

MissingBoxes::MissingBoxes(cairo_scaled_font_t* digits) : font_(digits) {
  cairo_glyph_t* glyphs = nullptr;
  int count = 0;
  cairo_scaled_font_text_to_glyphs(font_, 0, 0, "0123456789ABCDEF", 16, &glyphs, &count, nullptr,
                                   nullptr, nullptr);
  for (int i = 0; i < std::min(count, 16); ++i) digits_[static_cast<size_t>(i)] = glyphs[i].index;
  cairo_glyph_free(glyphs);
}

void MissingBoxes::add(cairo_t* page, const GlyphRun& run, const PageGlyph& place) {
  const double height = run.font->ascent, inset = run.width * 0.08;
  const int columns = place.index > 0xFFFF ? 3 : 2;
  const double step = (run.width - 4 * inset) / columns;
  const Look look{run.color, std::max(0.2, height * 0.04),
                  std::max(0.5, std::min(step * 1.7, height * 0.5))};
  if (look != look_) draw(page);
  look_ = look;
  frames_.push_back({place.x + inset, place.y - height, run.width - 2 * inset, height});
  for (int i = 0; i < 2 * columns; ++i) {
    const size_t digit = place.index >> (4 * (2 * columns - 1 - i)) & 0xF;
    glyphs_.push_back({digits_[digit], place.x + 2 * inset + step * (i % columns),
                       place.y - height * (i < columns ? 0.55 : 0.1)});
  }
}

void MissingBoxes::draw(cairo_t* page) {
  if (frames_.empty()) return;
  cairo_set_source_rgb(page, look_.color.red / 255.0, look_.color.green / 255.0,
                       look_.color.blue / 255.0);
  cairo_set_line_width(page, look_.line);
  for (const Frame& frame : frames_) {
    cairo_rectangle(page, frame.x, frame.y, frame.width, frame.height);
  }
  cairo_stroke(page);
  cairo_set_scaled_font(page, font_);
  cairo_set_font_size(page, look_.digit);
  // Glyphs of no text: what the boxes stand for is there already.
  const int count = static_cast<int>(glyphs_.size());
  const cairo_text_cluster_t silent{0, count};
  cairo_show_text_glyphs(page, "", 0, reinterpret_cast<const cairo_glyph_t*>(glyphs_.data()), count,
                         &silent, 1, static_cast<cairo_text_cluster_flags_t>(0));
  frames_.clear();
  glyphs_.clear();
}

}  // namespace kelspar
