// Fonts as Pango is asked for them: by family, weight and slant, in points.
#include "platform/graphics/pango_fonts.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <memory>
#include <string>

#include "platform/graphics/font_lock.h"

namespace kelspar {

void Release::operator()(void* object) const { g_object_unref(object); }

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

}  // namespace kelspar
