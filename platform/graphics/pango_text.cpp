// Controls that would show as boxes become zero-width spaces; pictures become shapes.
#include "platform/graphics/pango_text.h"

#include <pango/pango.h>

#include <algorithm>
#include <cmath>

#include "platform/foundation/utf8.h"
#include "platform/graphics/NSImage.h"
#include "platform/graphics/page_line.h"
#include "platform/graphics/pango_fonts.h"

namespace kelspar {

namespace {

constexpr double kLargestRise = 1'000, kHighestPicture = 100 * kPageHeight;

// NUL ends a text for Pango; other controls have no glyphs.
bool isSilent(char16_t c) { return (c < u' ' && c != u'\t') || (c >= 0x7F && c < 0xA0); }

double riseOf(const NSTextAttributes& look) {
  constexpr double kRaised = 0.35;
  const double size = bounded(look.font.size, 0, kLargestRise);
  const double offset = look.baselineOffset;
  return (std::isfinite(offset) ? std::clamp(offset, -kLargestRise, kLargestRise) : 0) +
         look.superscript * kRaised * size;
}

}  // namespace

PangoText::~PangoText() {
  if (attributes_) pango_attr_list_unref(attributes_);
}

void PangoText::begin(const NSTextAttributes& base, double widest) {
  text_.clear();
  spans_.clear();
  pictures_.clear();
  base_ = &base;
  widest_ = widest;
  if (attributes_) pango_attr_list_unref(attributes_);
  attributes_ = pango_attr_list_new();
}

void PangoText::append(std::u16string_view units, const NSTextAttributes& look) {
  const size_t start = text_.size();
  if (std::ranges::any_of(units, isSilent)) {
    std::u16string clean(units);
    std::ranges::replace_if(clean, isSilent, u'\x200B');
    utf8::append(clean, &text_);
  } else {
    utf8::append(units, &text_);
  }
  spans_.push_back({start, &look});
  if (look.superscript != base_->superscript || look.font != base_->font) {
    PangoFontDescription* font = fontDescription(look);
    insert(pango_attr_font_desc_new(font), start, text_.size());
    pango_font_description_free(font);
  }
  const double rise = riseOf(look);
  if (rise != 0) {
    insert(pango_attr_rise_new(pango_units_from_double(rise)), start, text_.size());
  }
  if (look.attachment) insertShapes(look, start);
}

void PangoText::insert(PangoAttribute* attribute, size_t start, size_t end) {
  attribute->start_index = static_cast<guint>(start);
  attribute->end_index = static_cast<guint>(end);
  pango_attr_list_insert(attributes_, attribute);
}

void PangoText::insertShapes(const NSTextAttributes& look, size_t start) {
  constexpr std::string_view kPlace = "\xEF\xBF\xBC";  // U+FFFC
  const NSTextAttachment& attachment = *look.attachment;
  constexpr double kLargest = 1e6;
  double width = bounded(attachment.width, 0, kLargest);
  double height = bounded(attachment.height, 0, kLargest);
  if (width <= 0 || height <= 0) {
    const NSImage image = NSImage::initWithData(attachment.contents);
    if (image) {
      const double ratio = image.height() / image.width();
      if (width <= 0) width = height > 0 ? height / ratio : image.width();
      if (height <= 0) height = width * ratio;
    } else if (attachment.alternative.length() > 0 && width <= 0 && height <= 0) {
      // Room for the words that stand for it.
      constexpr double kLetter = 5, kAround = 8;
      width = kAround + kLetter * static_cast<double>(attachment.alternative.length());
      height = 12;
    }
  }
  const double scale = width > widest_ ? widest_ / width : 1;
  width *= scale;
  height = std::clamp(height * scale, 0.0, kHighestPicture);
  const PangoRectangle box{0, -pango_units_from_double(height), pango_units_from_double(width),
                           pango_units_from_double(height)};
  for (size_t at = start; (at = text_.find(kPlace, at)) != text_.npos; at += kPlace.size()) {
    insert(pango_attr_shape_new(&box, &box), at, at + kPlace.size());
    pictures_.emplace_back(at, height);
  }
}

void PangoText::applyTo(PangoLayout* layout) {
  pango_layout_set_text(layout, text_.data(), static_cast<int>(text_.size()));
  pango_layout_set_attributes(layout, attributes_);
}

const NSTextAttributes& PangoText::lookAt(size_t byte, size_t* end) const {
  auto after = std::ranges::upper_bound(spans_, byte, {}, &Span::start);
  *end = after == spans_.end() ? text_.size() : after->start;
  return after == spans_.begin() ? *base_ : *(after - 1)->look;
}

double PangoText::pictureHeight(size_t byte) const {
  const auto found =
      std::ranges::lower_bound(pictures_, byte, {}, &std::pair<size_t, double>::first);
  return found == pictures_.end() || found->first != byte ? 0 : found->second;
}

bool PangoText::hasPictures(size_t startByte, size_t endByte) const {
  const auto found =
      std::ranges::lower_bound(pictures_, startByte, {}, &std::pair<size_t, double>::first);
  return found != pictures_.end() && found->first < endByte;
}

size_t PangoText::unitsBefore(size_t bytes) const {
  size_t units = 0;
  for (size_t i = 0; i < bytes; ++i) {
    const auto byte = static_cast<uint8_t>(text_[i]);
    units += (byte & 0xC0) != 0x80;
    units += byte >= 0xF0;
  }
  return units;
}

}  // namespace kelspar
