// Measuring with Pango: a line at a time, long lines in pieces, on a font map of the thread's own.
#include "platform/graphics/text_width.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"
#include "platform/graphics/font_lock.h"
#include "platform/graphics/line_pieces.h"
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

  // Of a text that begins `x` points behind the line's start: tabs count from there.
  double width(const std::string& line, PangoAttrList* attributes, double x) {
    const FontLock lock;
    if (line.find('\t') != line.npos) setTabs(x);
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
  }

  // Behind the second one Pango goes on in steps like the last.
  void setTabs(double x) {
    const int distance = pango_units_from_double(kTabDistance);
    const int first = distance - pango_units_from_double(std::fmod(x, kTabDistance));
    PangoTabArray* tabs = pango_tab_array_new_with_positions(2, FALSE, PANGO_TAB_LEFT, first,
                                                             PANGO_TAB_LEFT, first + distance);
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

  // Where it begins at `x`.
  double width(double x) const { return Ruler::ofThisThread().width(text_, attributes_, x); }

 private:
  void insert(PangoAttribute* attribute, size_t start) {
    attribute->start_index = static_cast<guint>(start);
    attribute->end_index = static_cast<guint>(text_.size());
    pango_attr_list_insert(attributes_, attribute);
  }

  std::string text_;
  PangoAttrList* attributes_;
};

class LineMeasure {
 public:
  explicit LineMeasure(const NSAttributedString& text)
      : string_(text.string()), units_(string_.view()), looks_(text) {}

  double width(size_t begin, size_t end) {
    double x = 0;
    LinePieces pieces(units_, begin, end, &looks_);
    while (pieces.next()) {
      // Marks are measured on their letter.
      const double letter = width(pieces.letter(), {}, x);
      x += width(pieces.letter(), pieces.piece(), x - letter) - letter;
    }
    return x;
  }

 private:
  // Of both together, which begin at `x`.
  double width(LinePieces::Range first, LinePieces::Range second, double x) {
    if (first.begin == first.end && second.begin == second.end) return 0;
    Piece piece;
    for (const auto& range : {first, second}) append(range, &piece);
    return piece.width(x);
  }

  void append(LinePieces::Range range, Piece* piece) {
    while (range.begin < range.end) {
      const NSTextAttributes& look = looks_.lookAt(range.begin);
      const size_t until = std::min(range.end, looks_.runEnd());
      piece->append(units_.substr(range.begin, until - range.begin), look);
      range.begin = until;
    }
  }

  NSString string_;
  std::u16string_view units_;
  RunCursor looks_;
};

}  // namespace

double widthOfText(const NSAttributedString& text) {
  if (text.length() == 0) return 0;
  const NSString string = text.string();
  const auto units = string.view();
  LineMeasure lines(text);
  double widest = 0;
  for (size_t at = 0; at < units.size();) {
    const size_t end = scan::findAny(units, at, u'\n', u'\r', u'\x2028', u'\x2029', u'\f');
    widest = std::max(widest, lines.width(at, end));
    at = end + 1;
  }
  return widest;
}

}  // namespace kelspar
