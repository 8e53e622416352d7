// An item of Pango's is glyphs of one font and direction. It is cut where the look changes, at
// clusters: characters whose glyphs cannot be told apart.
#include "platform/graphics/line_maker.h"

#include <pango/pangocairo.h>

#include <algorithm>

#include "platform/graphics/font_lock.h"

namespace kelspar {

namespace {

constexpr NSColor kBlack;

}  // namespace

LineMaker::~LineMaker() {
  for (const auto& [font, page] : fonts_) g_object_unref(font);
}

void LineMaker::forgetManyFonts() {
  constexpr size_t kMany = 200;
  if (fonts_.size() < kMany) return;
  const FontLock lock;
  for (const auto& [font, page] : fonts_) g_object_unref(font);
  fonts_.clear();
}

std::shared_ptr<const PageFont> LineMaker::fontOf(PangoFont* font) {
  const auto known = fonts_.find(font);
  if (known != fonts_.end()) return known->second;
  auto page = std::make_shared<PageFont>(pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(font)));
  PangoFontMetrics* metrics = pango_font_get_metrics(font, nullptr);
  page->ascent = pango_units_to_double(pango_font_metrics_get_ascent(metrics));
  page->underlineTop = -pango_units_to_double(pango_font_metrics_get_underline_position(metrics));
  page->underlineHeight =
      pango_units_to_double(pango_font_metrics_get_underline_thickness(metrics));
  page->strikeTop = -pango_units_to_double(pango_font_metrics_get_strikethrough_position(metrics));
  page->strikeHeight =
      pango_units_to_double(pango_font_metrics_get_strikethrough_thickness(metrics));
  pango_font_metrics_unref(metrics);
  g_object_ref(font);
  return fonts_.emplace(font, std::move(page)).first->second;
}

void LineMaker::take(PangoLayoutLine* line, const PangoText& text, double x, PageLine* out) {
  line_ = out;
  for (GSList* run = line->runs; run; run = run->next) {
    x += takeItem(static_cast<PangoGlyphItem*>(run->data), text, {x, out->baseline});
  }
}

double LineMaker::takeItem(PangoGlyphItem* item, const PangoText& text, Place place) {
  place.y -= pango_units_to_double(item->y_offset);
  place.x += pango_units_to_double(item->start_x_offset);
  double x = place.x;
  edges_.clear();
  for (int i = 0; i < item->glyphs->num_glyphs; ++i) {
    edges_.push_back(x);
    x += pango_units_to_double(item->glyphs->glyphs[i].geometry.width);
  }
  edges_.push_back(x);
  takeClusters(item, text, place);
  return x - place.x + pango_units_to_double(item->start_x_offset + item->end_x_offset);
}

void LineMaker::takeClusters(PangoGlyphItem* item, const PangoText& text, Place place) {
  clusters_.clear();
  const PangoGlyphString& glyphs = *item->glyphs;
  const bool isBackward = item->item->analysis.level % 2 == 1;
  const auto offset = static_cast<size_t>(item->item->offset);
  for (int n = 0; n < glyphs.num_glyphs;) {
    const int at = isBackward ? glyphs.num_glyphs - 1 - n : n;
    int count = 1;
    const auto next = [&] { return isBackward ? at - count : at + count; };
    while (n + count < glyphs.num_glyphs && glyphs.log_clusters[next()] == glyphs.log_clusters[at])
      ++count;
    const auto byte = offset + static_cast<size_t>(glyphs.log_clusters[at]);
    if (!clusters_.empty()) clusters_.back().bytes = byte - clusters_.back().byte;
    const PangoGlyphInfo& info = glyphs.glyphs[at];
    clusters_.push_back({.byte = byte,
                         .bytes = 0,
                         .glyph = isBackward ? at - count + 1 : at,
                         .glyphs = count,
                         .isMissing = info.glyph != PANGO_GLYPH_INVALID_INPUT &&
                                      (info.glyph & PANGO_GLYPH_UNKNOWN_FLAG) != 0,
                         .isPicture = info.attr.is_color == 1,
                         .isBlank = count == 1 && info.glyph == PANGO_GLYPH_EMPTY});
    n += count;
  }
  if (clusters_.empty()) return;
  clusters_.back().bytes = offset + static_cast<size_t>(item->item->length) - clusters_.back().byte;
  for (size_t first = 0; first < clusters_.size();) {
    size_t end = 0, last = first;
    const NSTextAttributes& look = text.lookAt(clusters_[first].byte, &end);
    while (last < clusters_.size() && clusters_[last].byte < end) ++last;
    last = std::max(last, first + 1);
    takeRun(item, text, place, first, last, look);
    first = last;
  }
}

// What has one look.
void LineMaker::takeRun(PangoGlyphItem* item, const PangoText& text, Place place, size_t first,
                        size_t last, const NSTextAttributes& look) {
  const Cluster& a = clusters_[first];
  const Cluster& b = clusters_[last - 1];
  const auto edge = [this](int glyph) { return edges_[static_cast<size_t>(glyph)]; };
  const double left = edge(std::min(a.glyph, b.glyph));
  const double right = edge(std::max(a.glyph + a.glyphs, b.glyph + b.glyphs));
  PangoFont* const font = item->item->analysis.font;
  const bool isPicture = look.attachment && a.isBlank;
  decorate(font && !isPicture ? fontOf(font).get() : nullptr, place.y, left, right, look, line_);
  if (isPicture) return takePictures(text, place, first, last, look);
  if (!font) return;
  for (size_t from = first; from < last;) {
    const Cluster& cluster = clusters_[from];
    size_t to = from + 1;
    while (to < last && clusters_[to].isMissing == cluster.isMissing && !cluster.isMissing &&
           clusters_[to].isPicture == cluster.isPicture && !cluster.isPicture &&
           clusters_[to].isBlank == cluster.isBlank)
      ++to;
    if (!cluster.isBlank) takeGlyphs(item, text, place, from, to, look);
    from = to;
  }
}

// A picture stands on the baseline; its height is the shape's.
void LineMaker::takePictures(const PangoText& text, Place place, size_t first, size_t last,
                             const NSTextAttributes& look) {
  for (size_t i = first; i < last; ++i) {
    const auto glyph = static_cast<size_t>(clusters_[i].glyph);
    const double width = edges_[glyph + 1] - edges_[glyph];
    const double height = text.pictureHeight(clusters_[i].byte);
    if (width <= 0 || height <= 0) continue;
    line_->pictures.push_back({edges_[glyph], place.y - height, width, height, look.attachment});
  }
}

void decorate(const PageFont* font, double baseline, double left, double right,
              const NSTextAttributes& look, PageLine* line) {
  if (right <= left) return;
  if (look.background) {
    line->fills.push_back({left, 0, right - left, line->bottom - line->top, *look.background});
  }
  if (look.link) line->links.push_back({left, right - left, look.link});
  const NSColor color = look.foreground.value_or(kBlack);
  if (look.underline && font) {
    line->fills.push_back(
        {left, baseline + font->underlineTop, right - left, font->underlineHeight, color});
  }
  if (look.strikethrough && font) {
    line->fills.push_back(
        {left, baseline + font->strikeTop, right - left, font->strikeHeight, color});
  }
}

// Glyphs from one font, one missing character, or one that is a picture.
void LineMaker::takeGlyphs(PangoGlyphItem* item, const PangoText& text, Place place, size_t first,
                           size_t last, const NSTextAttributes& look) {
  const NSColor color = look.foreground.value_or(kBlack);
  const std::shared_ptr<const PageFont> font = fontOf(item->item->analysis.font);
  const PangoGlyphInfo* infos = item->glyphs->glyphs;
  const Cluster& a = clusters_[first];
  const Cluster& b = clusters_[last - 1];
  const int from = std::min(a.glyph, b.glyph);
  const int to = std::max(a.glyph + a.glyphs, b.glyph + b.glyphs);
  GlyphRun& run = line_->glyphs.emplace_back();
  run.font = font;
  run.color = color;
  run.isBackward = item->item->analysis.level % 2 == 1;
  run.kind = a.isMissing ? GlyphKind::missing : a.isPicture ? GlyphKind::picture : GlyphKind::text;
  run.text = text.utf8().substr(a.byte, b.byte + b.bytes - a.byte);
  const double left = edges_[static_cast<size_t>(from)];
  run.width = edges_[static_cast<size_t>(to)] - left;
  if (a.isMissing) {
    run.glyphs.push_back({infos[from].glyph & ~PANGO_GLYPH_UNKNOWN_FLAG, left, place.y});
    return;
  }
  run.glyphs.reserve(static_cast<size_t>(to - from));
  run.clusters.reserve(last - first);
  const auto isDrawn = [infos](int i) {
    return (infos[i].glyph & PANGO_GLYPH_UNKNOWN_FLAG) == 0 && infos[i].glyph != PANGO_GLYPH_EMPTY;
  };
  for (int i = from; i < to; ++i) {
    if (!isDrawn(i)) continue;
    const PangoGlyphGeometry& geometry = infos[i].geometry;
    run.glyphs.push_back({infos[i].glyph,
                          edges_[static_cast<size_t>(i)] + pango_units_to_double(geometry.x_offset),
                          place.y + pango_units_to_double(geometry.y_offset)});
  }
  for (size_t i = first; i < last; ++i) {
    const Cluster& cluster = clusters_[i];
    int drawn = 0;
    for (int g = cluster.glyph; g < cluster.glyph + cluster.glyphs; ++g) drawn += isDrawn(g);
    run.clusters.push_back({static_cast<int>(cluster.bytes), drawn});
  }
}

}  // namespace kelspar
