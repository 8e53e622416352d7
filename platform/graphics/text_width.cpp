// Measuring with Pango: a line at a time, long lines in pieces (Pango's widths overflow at 2^21
// points), on a font map of the thread's own.
#include "platform/graphics/text_width.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <memory>

#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"
#include "platform/graphics/font_lock.h"
#include "platform/graphics/pango_fonts.h"

namespace kelspar {

namespace {

// The layout that measures.
class Ruler {
 public:
  static Ruler& ofThisThread() {
    thread_local Ruler ruler;
    return ruler;
  }

  ~Ruler() {
    const FontLock lock;
    layout_.reset();
    context_.reset();
  }

  double width(const std::string& line, PangoAttrList* attributes) {
    const FontLock lock;
    pango_layout_set_text(layout_.get(), line.data(), static_cast<int>(line.size()));
    pango_layout_set_attributes(layout_.get(), attributes);
    int width = 0;
    pango_layout_get_size(layout_.get(), &width, nullptr);
    return static_cast<double>(width) / PANGO_SCALE;
  }

 private:
  Ruler() {
    const FontLock lock;
    context_.reset(newPointContext());
    layout_.reset(pango_layout_new(context_.get()));
    pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
    PangoTabArray* tabs = pango_tab_array_new(1, FALSE);
    pango_tab_array_set_tab(tabs, 0, PANGO_TAB_LEFT, static_cast<int>(kTabDistance * PANGO_SCALE));
    pango_layout_set_tabs(layout_.get(), tabs);
    pango_tab_array_free(tabs);
  }

  std::unique_ptr<PangoContext, Release> context_;
  std::unique_ptr<PangoLayout, Release> layout_;
};

// A line, or a piece of one, as Pango takes it: UTF-8 without NUL, attributes by byte.
class Piece {
 public:
  Piece() : attributes_(pango_attr_list_new()) {}
  Piece(const Piece&) = delete;
  ~Piece() { pango_attr_list_unref(attributes_); }

  void append(std::u16string_view units, const NSTextAttributes& look) {
    const size_t start = text_.size();
    std::u16string clean(units);
    std::ranges::replace(clean, u'\0', u'\x200B');
    utf8::append(clean, &text_);
    PangoFontDescription* font = fontDescription(look);
    insert(pango_attr_font_desc_new(font), start);
    pango_font_description_free(font);
    const double width = look.attachment ? look.attachment->width : 0;
    if (width > 0 && units.front() == u'\xFFFC') {
      const PangoRectangle box{0, 0, static_cast<int>(std::min(width, 1e6) * PANGO_SCALE), 0};
      insert(pango_attr_shape_new(&box, &box), start);
    }
  }

  double width() const { return Ruler::ofThisThread().width(text_, attributes_); }

 private:
  void insert(PangoAttribute* attribute, size_t start) {
    attribute->start_index = static_cast<guint>(start);
    attribute->end_index = static_cast<guint>(text_.size());
    pango_attr_list_insert(attributes_, attribute);
  }

  std::string text_;
  PangoAttrList* attributes_;
};

}  // namespace

double widthOfText(const NSAttributedString& text) {
  const NSString string = text.string();
  const auto units = string.view();
  const auto runs = text.runs();
  double widest = 0;
  size_t run = 0, runEnd = runs.empty() ? 0 : runs[0].length;
  for (size_t at = 0; at < units.size();) {
    const size_t lineEnd = scan::findAny(units, at, u'\n', u'\r', u'\x2028', u'\x2029', u'\f');
    double line = 0;
    while (at < lineEnd) {
      size_t end = std::min(lineEnd, at + kLongestPiece);
      if (end < lineEnd && (units[end] & 0xFC00) == 0xDC00) --end;
      Piece piece;
      while (at < end) {
        while (at >= runEnd) runEnd += runs[++run].length;
        const size_t until = std::min(end, runEnd);
        piece.append(units.substr(at, until - at), *runs[run].attributes);
        at = until;
      }
      line += piece.width();
    }
    widest = std::max(widest, line);
    at = lineEnd + 1;
    while (at < units.size() && at >= runEnd) runEnd += runs[++run].length;
  }
  return widest;
}

}  // namespace kelspar
