// Pages with Cairo, paragraphs with Pango: one layout, used again for each paragraph. A line that a
// page end cuts is drawn on both pages.
#include "platform/graphics/pdf_pages.h"

#include <cairo-pdf.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <vector>

#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"
#include "platform/graphics/NSImage.h"
#include "platform/graphics/image_surface.h"
#include "platform/graphics/pango_fonts.h"

namespace kelspar {

namespace {

constexpr double kWidth = 550, kPageHeight = 715;
constexpr size_t kLongestPiece = 20'000;
constexpr size_t kLongestWord = 1'000;  // longer ones are wrapped at any character: linear

using Write = std::function<bool(std::string_view)>;

cairo_status_t writePiece(void* closure, const unsigned char* bytes, unsigned int length) {
  const bool isWritten =
      (*static_cast<const Write*>(closure))({reinterpret_cast<const char*>(bytes), length});
  return isWritten ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

std::string creationDate() {
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  const std::time_t now = epoch ? std::strtoll(epoch, nullptr, 10) : std::time(nullptr);
  std::tm parts{};
  char text[32] = "";
  if (gmtime_r(&now, &parts)) std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text;
}

// Printable ASCII without what link attributes are quoted with; empty for schemes not linked to.
std::string linkTarget(const NSString& link) {
  const std::string text = link.utf8();
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

void drawAttachment(cairo_t* cairo, PangoAttrShape* shape, gboolean isPath, gpointer) {
  const auto* attachment = static_cast<const NSTextAttachment*>(shape->data);
  if (isPath || shape->logical_rect.width <= 0) return;
  cairo_surface_t* image = newImageSurface(attachment->contents);
  if (!image) return;
  const int pixelsWide = cairo_image_surface_get_width(image);
  const int pixelsHigh = cairo_image_surface_get_height(image);
  if (pixelsWide > 0 && pixelsHigh > 0) {
    const double width = pango_units_to_double(shape->logical_rect.width);
    const double height = pango_units_to_double(shape->logical_rect.height);
    double x = 0, y = 0;
    cairo_get_current_point(cairo, &x, &y);
    cairo_save(cairo);
    cairo_translate(cairo, x, y - height);
    cairo_scale(cairo, width / pixelsWide, height / pixelsHigh);
    cairo_set_source_surface(cairo, image, 0, 0);
    cairo_paint(cairo);
    cairo_restore(cairo);
  }
  cairo_surface_destroy(image);
}

class Document {
 public:
  Document(const Write& write, const PDFOptions& options, bool hasLinks)
      : surface_(cairo_pdf_surface_create_for_stream(&writePiece, const_cast<Write*>(&write),
                                                     kWidth, kPageHeight)),
        cairo_(cairo_create(surface_)),
        context_(newPointContext()),
        layout_(pango_layout_new(context_)),
        keepsLinesWhole_(options.keepsLinesWhole),
        hasLinks_(hasLinks) {
    cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_TITLE,
                                   options.title.utf8().c_str());
    cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATOR, "libkelspar");
    cairo_pdf_surface_set_metadata(surface_, CAIRO_PDF_METADATA_CREATE_DATE,
                                   creationDate().c_str());
    pango_cairo_context_set_shape_renderer(context_, &drawAttachment, nullptr, nullptr);
    pango_layout_set_single_paragraph_mode(layout_, TRUE);
    // Links outside a document's structure would refer to one that Cairo never writes.
    if (hasLinks_) cairo_tag_begin(cairo_, "Document", nullptr);
  }
  Document(const Document&) = delete;
  ~Document() {
    if (hasLinks_) cairo_tag_end(cairo_, "Document");
    cairo_show_page(cairo_);
    cairo_surface_finish(surface_);
    g_object_unref(layout_);
    g_object_unref(context_);
    cairo_destroy(cairo_);
    cairo_surface_destroy(surface_);
  }

  // Writing has failed: what follows would not be seen.
  [[nodiscard]] bool isBroken() const {
    return cairo_surface_status(surface_) != CAIRO_STATUS_SUCCESS;
  }

  void begin(const NSTextAttributes& look) {
    static const NSParagraphStyle kPlain;
    style_ = look.paragraph ? look.paragraph.get() : &kPlain;
    const auto indent = [](double points) { return std::clamp(points, 0.0, kWidth / 2); };
    const double first = indent(style_->firstLineIndent), head = indent(style_->headIndent);
    left_ = std::min(first, head);
    width_ = kWidth - left_ - indent(std::abs(style_->tailIndent));
    text_.clear();
    links_.clear();
    attributes_ = pango_attr_list_new();
    PangoFontDescription* font = fontDescription(look);
    pango_layout_set_font_description(layout_, font);
    pango_font_description_free(font);
    pango_layout_set_width(layout_, pango_units_from_double(width_));
    pango_layout_set_indent(layout_, pango_units_from_double(first - head));
    using Align = NSTextAlignment;
    pango_layout_set_justify(layout_, style_->alignment == Align::justified);
    pango_layout_set_alignment(layout_, style_->alignment == Align::center  ? PANGO_ALIGN_CENTER
                                        : style_->alignment == Align::right ? PANGO_ALIGN_RIGHT
                                                                            : PANGO_ALIGN_LEFT);
  }

  void append(std::u16string_view units, const NSTextAttributes& look) {
    const size_t start = text_.size();
    std::u16string clean(units);
    std::ranges::replace(clean, u'\0', u'\x200B');
    utf8::append(clean, &text_);
    PangoFontDescription* font = fontDescription(look);
    insert(pango_attr_font_desc_new(font), start);
    pango_font_description_free(font);
    const auto wide = [](uint8_t channel) { return static_cast<guint16>(channel * 257); };
    if (const auto& color = look.foreground) {
      insert(pango_attr_foreground_new(wide(color->red), wide(color->green), wide(color->blue)),
             start);
    }
    if (const auto& color = look.background) {
      insert(pango_attr_background_new(wide(color->red), wide(color->green), wide(color->blue)),
             start);
    }
    if (look.underline) insert(pango_attr_underline_new(PANGO_UNDERLINE_SINGLE), start);
    if (look.strikethrough) insert(pango_attr_strikethrough_new(TRUE), start);
    const double rise = std::clamp(look.baselineOffset, -1000.0, 1000.0) +
                        look.superscript * 0.35 * std::clamp(look.font.size, 0.0, 1000.0);
    if (rise != 0) insert(pango_attr_rise_new(pango_units_from_double(rise)), start);
    if (look.attachment) insertShape(*look.attachment, start);
    if (look.link) links_.push_back({start, text_.size(), linkTarget(look.link)});
  }

  void end(size_t longestWord, bool isFirstPiece, bool isLastPiece) {
    if (isFirstPiece) y_ += std::clamp(style_->spacingBefore, 0.0, kPageHeight);
    if (style_->lineHeightMultiple > 0) {
      insert(pango_attr_line_height_new(std::clamp(style_->lineHeightMultiple, 0.5, 10.0)), 0);
    }
    pango_layout_set_wrap(layout_,
                          longestWord > kLongestWord ? PANGO_WRAP_CHAR : PANGO_WRAP_WORD_CHAR);
    pango_layout_set_text(layout_, text_.data(), static_cast<int>(text_.size()));
    pango_layout_set_attributes(layout_, attributes_);
    pango_attr_list_unref(attributes_);
    PangoLayoutIter* lines = pango_layout_get_iter(layout_);
    double bottom = y_;
    do {
      PangoRectangle box;
      pango_layout_iter_get_line_extents(lines, nullptr, &box);
      const double top = y_ + pango_units_to_double(box.y);
      bottom = std::max(bottom, top + pango_units_to_double(box.height));
      const double baseline = y_ + pango_units_to_double(pango_layout_iter_get_baseline(lines));
      place(pango_layout_iter_get_line_readonly(lines), left_ + pango_units_to_double(box.x), top,
            baseline, bottom);
    } while (!isBroken() && pango_layout_iter_next_line(lines));
    pango_layout_iter_free(lines);
    y_ = bottom;
    if (isLastPiece) y_ += std::clamp(style_->spacingAfter, 0.0, kPageHeight);
  }

 private:
  struct Link {
    size_t start, end;
    std::string target;
  };

  void insert(PangoAttribute* attribute, size_t start) {
    attribute->start_index = static_cast<guint>(start);
    attribute->end_index = static_cast<guint>(text_.size());
    pango_attr_list_insert(attributes_, attribute);
  }

  void insertShape(const NSTextAttachment& attachment, size_t start) {
    const NSImage image = NSImage::initWithData(attachment.contents);
    double width = 0, height = 0;
    if (image) {
      width = attachment.width > 0 ? attachment.width : image.width();
      height = attachment.height > 0 ? attachment.height : image.height();
      const double scale = std::min(1.0, width_ / width);
      width *= scale;
      height = std::min(height * scale, 100 * kPageHeight);
    }
    const PangoRectangle box{0, -pango_units_from_double(height), pango_units_from_double(width),
                             pango_units_from_double(height)};
    insert(pango_attr_shape_new_with_data(&box, &box, const_cast<NSTextAttachment*>(&attachment),
                                          nullptr, nullptr),
           start);
  }

  void place(PangoLayoutLine* line, double x, double top, double baseline, double bottom) {
    constexpr double kUnit = 1.0 / PANGO_SCALE;
    while (!isBroken() && top >= pageTop_ + kPageHeight) turnPage();
    if (keepsLinesWhole_ && bottom > pageTop_ + kPageHeight + kUnit && top > pageTop_) {
      cairo_show_page(cairo_);
      pageTop_ = top;
    }
    draw(line, x, top, baseline, bottom);
    while (!isBroken() && bottom > pageTop_ + kPageHeight + kUnit) {
      turnPage();
      draw(line, x, top, baseline, bottom);
    }
  }

  void turnPage() {
    cairo_show_page(cairo_);
    pageTop_ += kPageHeight;
  }

  void draw(PangoLayoutLine* line, double x, double top, double baseline, double bottom) {
    cairo_set_source_rgb(cairo_, 0, 0, 0);
    cairo_move_to(cairo_, x, baseline - pageTop_);
    pango_cairo_show_layout_line(cairo_, line);
    const size_t start = static_cast<size_t>(line->start_index);
    const size_t end = start + static_cast<size_t>(line->length);
    for (const Link& link : links_) {
      const size_t from = std::max(start, link.start), to = std::min(end, link.end);
      if (from >= to || link.target.empty()) continue;
      int *ranges = nullptr, count = 0;
      pango_layout_line_get_x_ranges(line, static_cast<int>(from), static_cast<int>(to), &ranges,
                                     &count);
      for (int i = 0; i < count; ++i) {
        const double first = left_ + pango_units_to_double(ranges[2 * i]);
        const double last = left_ + pango_units_to_double(ranges[2 * i + 1]);
        tag(link.target, first, top - pageTop_, last - first, bottom - top);
      }
      g_free(ranges);
    }
  }

  void tag(const std::string& target, double x, double y, double width, double height) {
    char rectangle[4 * G_ASCII_DTOSTR_BUF_SIZE + 16] = "rect=[";
    for (const double value : {x, y, width, height}) {
      if (!std::isfinite(value)) return;
      char number[G_ASCII_DTOSTR_BUF_SIZE];
      std::strcat(rectangle, g_ascii_formatd(number, sizeof number, "%.3f ", value));
    }
    const std::string attributes = std::string(rectangle) + "] uri='" + target + "'";
    cairo_tag_begin(cairo_, CAIRO_TAG_LINK, attributes.c_str());
    cairo_tag_end(cairo_, CAIRO_TAG_LINK);
  }

  cairo_surface_t* surface_;
  cairo_t* cairo_;
  PangoContext* context_;
  PangoLayout* layout_;
  PangoAttrList* attributes_ = nullptr;
  const NSParagraphStyle* style_ = nullptr;
  std::string text_;
  std::vector<Link> links_;
  bool keepsLinesWhole_, hasLinks_;
  double left_ = 0, width_ = kWidth, y_ = 0, pageTop_ = 0;
};

size_t longestWordOf(std::u16string_view units) {
  size_t longest = 0;
  for (size_t at = 0; at < units.size();) {
    const size_t end = scan::findAny(units, at, u' ', u'\t');
    longest = std::max(longest, end - at);
    at = end + 1;
  }
  return longest;
}

}  // namespace

void writePDF(const NSAttributedString& text, const PDFOptions& options, const Write& write) {
  const NSString string = text.string();
  const auto units = string.view();
  const auto runs = text.runs();
  if (units.empty()) return;
  const bool hasLinks = std::ranges::any_of(
      runs, [](const NSTextRun& run) { return static_cast<bool>(run.attributes->link); });
  Document document(write, options, hasLinks);
  size_t run = 0, runEnd = runs[0].length;
  const auto runAt = [&](size_t at) {
    while (at >= runEnd && run + 1 < runs.size()) runEnd += runs[++run].length;
    return runs[run].attributes.get();
  };
  for (size_t at = 0; at <= units.size() && !document.isBroken();) {
    const size_t lineEnd = scan::findAny(units, at, u'\n', u'\r', u'\x2028', u'\x2029', u'\f');
    const size_t lineStart = at;
    do {
      size_t end = std::min(lineEnd, at + kLongestPiece);
      if (end < lineEnd && (units[end] & 0xFC00) == 0xDC00) --end;
      const size_t pieceStart = at;
      document.begin(*runAt(at));
      while (at < end) {
        const NSTextAttributes* look = runAt(at);
        const size_t until = std::min(end, runEnd);
        document.append(units.substr(at, until - at), *look);
        at = until;
      }
      document.end(longestWordOf(units.substr(pieceStart, end - pieceStart)),
                   pieceStart == lineStart, end == lineEnd);
    } while (at < lineEnd);
    const bool isPair =
        lineEnd + 1 < units.size() && units[lineEnd] == u'\r' && units[lineEnd + 1] == u'\n';
    at = lineEnd + (isPair ? 2 : 1);
  }
}

}  // namespace kelspar
