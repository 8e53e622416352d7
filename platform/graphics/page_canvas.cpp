// Drawing with Cairo, so that text stays text: what is drawn as pictures or boxes has its
// characters behind a blank glyph.
#include "platform/graphics/page_canvas.h"

#include <cairo-pdf.h>
#include <glib.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <utility>

#include "platform/foundation/utf8.h"
#include "platform/graphics/font_lock.h"
#include "platform/graphics/page_writer.h"

namespace kelspar {

namespace {

constexpr double kPlainSize = 6;
constexpr auto kForwards = static_cast<cairo_text_cluster_flags_t>(0);

static_assert(sizeof(PageGlyph) == sizeof(cairo_glyph_t));
static_assert(sizeof(PageCluster) == sizeof(cairo_text_cluster_t));

std::string creationDate() {
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  char* end = nullptr;
  const long long stated = epoch ? std::strtoll(epoch, &end, 10) : 0;
  const bool isStated = epoch && end != epoch && *end == 0;
  const std::time_t now = isStated ? stated : std::time(nullptr);
  std::tm parts{};
  char text[32] = "";
  if (gmtime_r(&now, &parts)) std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text;
}

// Printable ASCII without what link attributes are quoted with; empty for schemes not linked to.
std::string linkTarget(const NSString& link) {
  constexpr size_t kLongest = 8'000;
  const std::string text = link.utf8();
  if (text.size() > kLongest) return {};
  std::string target;
  for (const char c : text) {
    if (c > ' ' && c < 0x7F && c != '\'' && c != '\\') {
      target += c;
    } else {
      char escape[4];
      std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned char>(c));
      target += escape;
    }
  }
  for (const char* scheme : {"http:", "https:", "mailto:", "tel:", "ftp:"}) {
    if (g_ascii_strncasecmp(target.c_str(), scheme, std::strlen(scheme)) == 0) return target;
  }
  return {};
}

const cairo_glyph_t* cairoGlyphs(const std::vector<PageGlyph>& glyphs) {
  return reinterpret_cast<const cairo_glyph_t*>(glyphs.data());
}

}  // namespace

PageFont::PageFont(cairo_scaled_font_t* scaledFont)
    : scaled(cairo_scaled_font_reference(scaledFont)) {}

PageFont::~PageFont() {
  const FontLock lock;
  cairo_scaled_font_destroy(scaled);
}

PageCanvas::PageCanvas(const PDFPaper& paper, const std::string& title, bool hasLinks, Write write)
    : write_(std::move(write)),
      surface_(cairo_pdf_surface_create_for_stream(
          [](void* canvas, const unsigned char* bytes, unsigned int length) {
            const std::string_view piece(reinterpret_cast<const char*>(bytes), length);
            return static_cast<PageCanvas*>(canvas)->writePiece(piece) ? CAIRO_STATUS_SUCCESS
                                                                       : CAIRO_STATUS_WRITE_ERROR;
          },
          this, paper.width, paper.height)),
      cairo_(cairo_create(surface_)),
      hasLinks_(hasLinks) {
  const FontLock lock;
  cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_TITLE, title.c_str());
  cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATOR, "libkelspar");
  cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATE_DATE, creationDate().c_str());
  // Links outside a document's structure would refer to one that Cairo never writes.
  if (hasLinks_) cairo_tag_begin(cairo_, "Document", nullptr);
  cairo_select_font_face(cairo_, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cairo_, kPlainSize);
  plainFont_ = cairo_scaled_font_reference(cairo_get_scaled_font(cairo_));
  cairo_glyph_t* dash = nullptr;
  int count = 0;
  cairo_scaled_font_text_to_glyphs(plainFont_, 0, 0, "\u2014", -1, &dash, &count, nullptr, nullptr,
                                   nullptr);
  if (count == 1) {
    cairo_text_extents_t extents;
    cairo_scaled_font_text_extents(plainFont_, "\u2014", &extents);
    dash_ = {dash->index, extents.x_advance / kPlainSize};
  }
  cairo_glyph_free(dash);
  boxes_.emplace(plainFont_);
  cairo_translate(cairo_, paper.left, paper.top);
  cairo_scale(cairo_, paper.scale, paper.scale);
}

PageCanvas::~PageCanvas() {
  const FontLock lock;
  cairo_scaled_font_destroy(plainFont_);
  cairo_destroy(cairo_);
  cairo_surface_finish(surface_);
  cairo_surface_destroy(surface_);
}

// Called through Cairo's frames, which no exception may cross.
bool PageCanvas::writePiece(std::string_view piece) noexcept {
  try {
    return write_(piece);
  } catch (...) {
    failure_ = std::current_exception();
    return false;
  }
}

void PageCanvas::finish() {
  {
    const FontLock lock;
    cairo_surface_finish(surface_);
  }
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

bool PageCanvas::isBroken() const {
  return cairo_surface_status(surface_) != CAIRO_STATUS_SUCCESS ||
         cairo_status(cairo_) != CAIRO_STATUS_SUCCESS;
}

void PageCanvas::turnPage(bool isLast) {
  showGathered();
  painted_.clear();
  const FontLock lock;
  boxes_->draw(cairo_);
  if (isLast && hasLinks_) cairo_tag_end(cairo_, "Document");
  cairo_show_page(cairo_);
}

void PageCanvas::draw(const PageLine& line, double pageTop, double pageEnd) {
  const double y = line.top - pageTop;
  const double baseline = y + line.baseline;
  const bool asText = baseline >= 0 && baseline < pageEnd - pageTop;
  for (const Fill& area : line.fills) fill(area, y, pageEnd - pageTop);
  for (const GlyphRun& run : line.glyphs) show(run, y, asText);
  for (const Picture& picture : line.pictures) show(picture, y);
  if (!line.links.empty()) showGathered();  // a link's area stands behind its text
  for (const LinkArea& area : line.links) link(area, y, line.bottom - line.top);
}

void PageCanvas::setColor(NSColor color) {
  cairo_set_source_rgb(cairo_, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
}

void PageCanvas::fill(const Fill& area, double y, double pageHeight) {
  const double top = std::max(0.0, y + area.y);
  const double bottom = std::min(pageHeight, y + area.y + area.height);
  if (bottom <= top) return;
  setColor(area.color);
  cairo_rectangle(cairo_, area.x, top, area.width, bottom - top);
  cairo_fill(cairo_);
}

void PageCanvas::show(const GlyphRun& run, double y, bool asText) {
  if (run.glyphs.empty()) return;
  if (run.kind == GlyphKind::text && asText && !run.isBackward) return gather(run, y);
  moved_ = run.glyphs;
  for (PageGlyph& glyph : moved_) glyph.y += y;
  if (run.kind == GlyphKind::missing) {
    const FontLock lock;
    boxes_->add(cairo_, run, moved_[0]);
    if (asText) hide(run, moved_[0]);
    return;
  }
  showGathered();
  const FontLock lock;
  setColor(run.color);
  cairo_set_scaled_font(cairo_, run.font->scaled);
  const int count = static_cast<int>(moved_.size());
  if (run.kind == GlyphKind::text) {
    const cairo_text_cluster_t silent{0, count};
    const auto* clusters = reinterpret_cast<const cairo_text_cluster_t*>(run.clusters.data());
    if (asText) {
      cairo_show_text_glyphs(
          cairo_, run.text.data(), static_cast<int>(run.text.size()), cairoGlyphs(moved_), count,
          clusters, static_cast<int>(run.clusters.size()), CAIRO_TEXT_CLUSTER_FLAG_BACKWARD);
    } else {
      // Glyphs without text: as outlines they would be fifty times as long.
      cairo_show_text_glyphs(cairo_, "", 0, cairoGlyphs(moved_), count, &silent, 1, kForwards);
    }
    return;
  }
  if (run.kind == GlyphKind::picture) showBitmap(run);
  if (asText) hide(run, moved_[0]);
}

// Calls cost more than glyphs: runs of one font and colour go together, over lines as well.
void PageCanvas::gather(const GlyphRun& run, double y) {
  showHidden();
  if (gathered_.font != run.font || gathered_.color != run.color) {
    showGathered();
    gathered_.font = run.font;
    gathered_.color = run.color;
  }
  for (const PageGlyph& glyph : run.glyphs) {
    gathered_.glyphs.push_back({glyph.index, glyph.x, glyph.y + y});
  }
  gathered_.clusters.insert(gathered_.clusters.end(), run.clusters.begin(), run.clusters.end());
  gathered_.text += run.text;
}

// One of the two is empty: text stands in its order.
void PageCanvas::showGathered() {
  showHidden();
  if (gathered_.glyphs.empty()) return;
  const FontLock lock;
  setColor(gathered_.color);
  cairo_set_scaled_font(cairo_, gathered_.font->scaled);
  showText(gathered_);
}

// As text only. Cairo leaves out blanks near the page's edges together with their text, and what
// has no opacity at all: a dash with the least that it draws stands for the text, as wide as what
// is seen, so that whoever reads it finds no blanks between neighbours.
void PageCanvas::hide(const GlyphRun& run, const PageGlyph& place) {
  constexpr double kSameSize = 0.01;
  const double size = bounded(run.width / std::max(dash_.width, 0.1), 1, 1'000);
  if (std::abs(size - hiddenSize_) > kSameSize || !gathered_.glyphs.empty()) {
    showGathered();
    hiddenSize_ = size;
  }
  hidden_.glyphs.push_back({dash_.index, place.x, place.y});
  hidden_.clusters.push_back({static_cast<int>(run.text.size()), 1});
  hidden_.text += run.text;
}

void PageCanvas::showHidden() {
  if (hidden_.glyphs.empty()) return;
  constexpr double kFaint = 1.0 / 200;
  const FontLock lock;
  cairo_set_source_rgba(cairo_, 0.5, 0.5, 0.5, kFaint);
  cairo_set_scaled_font(cairo_, plainFont_);
  cairo_set_font_size(cairo_, hiddenSize_);
  showText(hidden_);
}

void PageCanvas::showText(GlyphRun& run) {
  cairo_show_text_glyphs(cairo_, run.text.data(), static_cast<int>(run.text.size()),
                         cairoGlyphs(run.glyphs), static_cast<int>(run.glyphs.size()),
                         reinterpret_cast<const cairo_text_cluster_t*>(run.clusters.data()),
                         static_cast<int>(run.clusters.size()), kForwards);
  run.glyphs.clear();
  run.clusters.clear();
  run.text.clear();
}

// Colour glyphs: Cairo would draw them as coarse as their size in points says.
void PageCanvas::showBitmap(const GlyphRun& run) {
  constexpr double kPixelsAPoint = 4, kMostPixels = 1'000;
  cairo_text_extents_t box;
  cairo_scaled_font_glyph_extents(run.font->scaled, cairoGlyphs(moved_),
                                  static_cast<int>(moved_.size()), &box);
  const double longer = std::max(box.width, box.height);
  if (!(longer > 0)) return;
  const double scale = std::min(kPixelsAPoint, kMostPixels / longer);
  const double left = moved_[0].x + box.x_bearing, top = moved_[0].y + box.y_bearing;
  cairo_surface_t* bitmap = cairo_image_surface_create(
      CAIRO_FORMAT_ARGB32, static_cast<int>(std::ceil(box.width * scale)) + 1,
      static_cast<int>(std::ceil(box.height * scale)) + 1);
  cairo_t* painter = cairo_create(bitmap);
  cairo_set_scaled_font(painter, run.font->scaled);
  cairo_scale(painter, scale, scale);
  cairo_translate(painter, -left, -top);
  cairo_show_glyphs(painter, cairoGlyphs(moved_), static_cast<int>(moved_.size()));
  cairo_destroy(painter);
  cairo_save(cairo_);
  cairo_translate(cairo_, left, top);
  cairo_scale(cairo_, 1 / scale, 1 / scale);
  cairo_set_source_surface(cairo_, bitmap, 0, 0);
  cairo_paint(cairo_);
  cairo_restore(cairo_);
  cairo_surface_destroy(bitmap);
}

void PageCanvas::show(const Picture& picture, double y) {
  showGathered();
  const StoredPicture* stored = pictures_.find(picture.attachment->contents);
  if (!stored) {
    constexpr double kLeastFrame = 8;
    if (picture.width < kLeastFrame || picture.height < kLeastFrame) return;
    setColor({192, 192, 192});
    cairo_set_line_width(cairo_, 0.5);
    cairo_rectangle(cairo_, picture.x + 0.5, y + picture.y + 0.5, picture.width - 1,
                    picture.height - 1);
    cairo_stroke(cairo_);
    labels_.draw(cairo_, pictureLabel(*picture.attachment), picture.x, y + picture.y, picture.width,
                 picture.height);
    return;
  }
  cairo_save(cairo_);
  cairo_translate(cairo_, picture.x, y + picture.y);
  cairo_scale(cairo_, picture.width, picture.height);
  const cairo_matrix_t upright{stored->turn.xx, stored->turn.yx, stored->turn.xy,
                               stored->turn.yy, stored->turn.x0, stored->turn.y0};
  cairo_transform(cairo_, &upright);
  cairo_scale(cairo_, 1.0 / stored->width, 1.0 / stored->height);
  cairo_set_source_surface(cairo_, stored->surface, 0, 0);
  // Cairo 1.16 names an image twice among the page's resources when it is
  // painted twice; as a pattern it has resources of its own.
  const bool isFirst = std::ranges::find(painted_, stored->surface) == painted_.end();
  if (isFirst) {
    painted_.push_back(stored->surface);
    cairo_paint(cairo_);
  } else {
    cairo_pattern_set_extend(cairo_get_source(cairo_), CAIRO_EXTEND_REPEAT);
    cairo_rectangle(cairo_, 0, 0, stored->width, stored->height);
    cairo_fill(cairo_);
  }
  cairo_restore(cairo_);
}

void PageCanvas::link(const LinkArea& area, double y, double height) {
  const std::string target = linkTarget(area.link);
  if (target.empty() || !hasLinks_) return;
  // Cairo takes these as they are: in the page's units, whatever the transformation.
  double left = area.x, width = area.width;
  cairo_user_to_device(cairo_, &left, &y);
  cairo_user_to_device_distance(cairo_, &width, &height);
  std::string attributes = "rect=[";
  for (const double value : {left, y, width, height}) {
    if (!std::isfinite(value)) return;
    char number[G_ASCII_DTOSTR_BUF_SIZE];
    attributes += g_ascii_formatd(number, sizeof number, "%.3f ", value);
  }
  attributes += "] uri='" + target + "'";
  cairo_tag_begin(cairo_, CAIRO_TAG_LINK, attributes.c_str());
  cairo_tag_end(cairo_, CAIRO_TAG_LINK);
}

}  // namespace kelspar
