// The words in a picture's frame, and how they are drawn: like all fonts, under their lock.
#include "platform/graphics/picture_label.h"

#include <pango/pangocairo.h>

#include <algorithm>

#include "platform/graphics/font_lock.h"
#include "platform/graphics/pango_fonts.h"

namespace kelspar {

namespace {

constexpr size_t kLongest = 200;

// RFC 3986: the host, and the path's last part.
std::u16string remoteLabel(std::u16string_view address) {
  std::u16string_view rest = address.substr(address.find(u"//") + 2);
  rest = rest.substr(0, rest.find_first_of(u"?#"));
  const size_t path = std::min(rest.size(), rest.find(u'/'));
  std::u16string_view host = rest.substr(0, path), file = rest.substr(path);
  host = host.substr(host.find(u'@') + 1);  // 0 without one
  file = file.substr(file.rfind(u'/') + 1);
  std::u16string label(file.substr(0, kLongest / 2));
  if (file.empty()) return std::u16string(host);
  return label.append(u" (").append(host).append(u")");
}

std::u16string unclippedLabel(const NSTextAttachment& picture) {
  const std::u16string_view alternative = picture.alternative.view();
  if (alternative.find_first_not_of(u" \t\r\n\xA0") != alternative.npos) {
    return std::u16string(alternative);
  }
  if (picture.name.length() > 0) return std::u16string(picture.name.view());
  const std::u16string_view source = picture.source.view();
  if (source.starts_with(u"http://") || source.starts_with(u"https://")) {
    return remoteLabel(source);
  }
  if (source.starts_with(u"//")) return remoteLabel(source);
  if (source.starts_with(u"cid:")) return std::u16string(source.substr(4));
  if (picture.type == u"image/x-wmf"_ns) return u"WMF";
  if (picture.type == u"image/x-emf"_ns) return u"EMF";
  return {};
}

}  // namespace

std::string pictureLabel(const NSTextAttachment& picture) {
  std::u16string label = unclippedLabel(picture).substr(0, kLongest);
  for (char16_t& unit : label) {
    if (unit < u' ') unit = u' ';
  }
  return NSString(label).utf8();
}

LabelWriter::~LabelWriter() {
  if (!layout_) return;
  const FontLock lock;
  g_object_unref(layout_);
}

void LabelWriter::draw(cairo_t* page, const std::string& label, double x, double y, double width,
                       double height) {
  constexpr double kInset = 3, kLetters = 8, kGrey = 0.5, kLeastWidth = 16;
  const double size = std::min(kLetters, (height - kInset) * 0.7);
  if (label.empty() || width < kLeastWidth || size < kLetters / 2) return;
  const FontLock lock;
  if (!layout_) {
    PangoContext* context = newPointContext();
    layout_ = pango_layout_new(context);
    g_object_unref(context);
    pango_layout_set_ellipsize(layout_, PANGO_ELLIPSIZE_END);
    pango_layout_set_wrap(layout_, PANGO_WRAP_WORD_CHAR);
  }
  PangoFontDescription* font = pango_font_description_from_string("sans-serif");
  pango_font_description_set_absolute_size(font, size * PANGO_SCALE);
  pango_layout_set_font_description(layout_, font);
  pango_font_description_free(font);
  pango_layout_set_width(layout_, pango_units_from_double(width - 2 * kInset));
  pango_layout_set_height(layout_, pango_units_from_double(height - kInset));
  pango_layout_set_text(layout_, label.data(), static_cast<int>(label.size()));
  cairo_set_source_rgb(page, kGrey, kGrey, kGrey);
  cairo_move_to(page, x + kInset, y + kInset / 2);
  pango_cairo_layout_path(page, layout_);
  cairo_fill(page);
}

}  // namespace kelspar
