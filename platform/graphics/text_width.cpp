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

constexpr size_t kLongestPiece = 20'000;
constexpr double kTabDistance = 28;

struct Release {
  void operator()(gpointer object) const { g_object_unref(object); }
};

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

// The host's default font map stays as it is: ours counts 72 dots an inch and does not snap to
// pixels.
PangoContext* newPointContext() {
  PangoFontMap* fonts = pango_cairo_font_map_new();
  pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(fonts), 72);
  PangoContext* context = pango_font_map_create_context(fonts);
  g_object_unref(fonts);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  pango_cairo_context_set_font_options(context, options);
  cairo_font_options_destroy(options);
  pango_context_set_round_glyph_positions(context, FALSE);
  return context;
}

// Families are listed even then: the generic ones.
bool isAnyFontInstalled() {
  const FontLock lock;
  const std::unique_ptr<PangoContext, Release> context(newPointContext());
  PangoFontDescription* const plain = fontDescription({});
  const std::unique_ptr<PangoFont, Release> font(pango_context_load_font(context.get(), plain));
  pango_font_description_free(plain);
  return font != nullptr;
}

PangoFontDescription* fontDescription(const NSTextAttributes& look) {
  constexpr double kLargest = 10'000, kRaised = 0.6;
  PangoFontDescription* font = pango_font_description_new();
  const std::string family = look.font.family.utf8();
  pango_font_description_set_family(font, family.empty() ? "sans-serif" : family.c_str());
  pango_font_description_set_weight(font, look.font.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_style(font,
                                   look.font.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
  const double size = look.font.size > 0 ? std::min(look.font.size, kLargest) : 12;
  const double scale = look.superscript != 0 ? kRaised : 1;
  pango_font_description_set_size(font, static_cast<int>(size * scale * PANGO_SCALE));
  return font;
}

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
