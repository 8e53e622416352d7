// Bitmaps of metafiles: by their raster operations, icons from a mask and a picture; one that
// covers everything is the whole drawing.
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/foundation/base64.h"
#include "platform/richtext/little_fields.h"
#include "platform/richtext/metafile_drawing.h"

namespace kelspar {

namespace {

// MS-WMF 2.1.1.31, the low four bytes.
constexpr uint32_t kSourceAnd = 0x008800C6, kSourcePaint = 0x00EE0086, kSourceInvert = 0x00660046;
constexpr uint32_t kOpaque = 0xFF000000;

// How dark a pixel is, as the alpha of black.
uint32_t darkness(uint32_t color) {
  const uint32_t light = ((color >> 16 & 255) + (color >> 8 & 255) + (color & 255)) / 3;
  return (255 - light) << 24;
}

// The part that is wanted, where it lies inside.
Pixels cutOut(Pixels pixels, const MetafileRect& part) {
  const int left = static_cast<int>(std::clamp(part.left, 0.0, double{1} * pixels.width));
  const int top = static_cast<int>(std::clamp(part.top, 0.0, double{1} * pixels.height));
  const int width = static_cast<int>(std::min(part.width, double{1} * (pixels.width - left)));
  const int height = static_cast<int>(std::min(part.height, double{1} * (pixels.height - top)));
  if (width <= 0 || height <= 0 || (width == pixels.width && height == pixels.height))
    return pixels;
  Pixels cut{width, height, {}};
  for (ptrdiff_t y = top; y < top + height; ++y) {
    const auto row = pixels.colors.begin() + y * pixels.width + left;
    cut.colors.insert(cut.colors.end(), row, row + width);
  }
  return cut;
}

}  // namespace

MetafileRect MetafileDrawing::placed(const MetafileRect& rect) const {
  const MetafilePoint a = state.mapping({rect.left, rect.top});
  const MetafilePoint b = state.mapping({rect.left + rect.width, rect.top + rect.height});
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x), std::abs(a.y - b.y)};
}

void MetafileDrawing::bitmap(const std::string& file, MetafileRect to, MetafileRect from,
                             uint32_t operation) {
  if (file.empty() || isFull()) return;
  const MetafileRect place = placed(to);
  if (operation == kSourceAnd) {
    flushMask();
    if (auto pixels = pixelsOf(file)) mask_ = {cutOut(std::move(*pixels), from), place};
    return;
  }
  if (operation == kSourcePaint || operation == kSourceInvert) {
    if (unite(file, place, from, operation)) return;
  }
  flushMask();
  image(file, place, from);
}

void MetafileDrawing::bitmap(Pixels pixels, MetafileRect to, MetafileRect from) {
  flushMask();
  image(bitmapFile(pixels), placed(to), from);
}

// An icon comes in two parts: what of the ground stays, then what is added to it.
bool MetafileDrawing::unite(const std::string& file, const MetafileRect& place,
                            const MetafileRect& from, uint32_t operation) {
  constexpr uint32_t kHalf = 0x80000000;
  auto pixels = pixelsOf(file);
  if (!pixels) return false;
  *pixels = cutOut(std::move(*pixels), from);
  const bool fits = mask_ && mask_->place == place && mask_->pixels.width == pixels->width &&
                    mask_->pixels.height == pixels->height;
  if (!fits && operation == kSourceInvert) return false;
  for (size_t i = 0; i < pixels->colors.size(); ++i) {
    uint32_t& color = pixels->colors[i];
    const bool isShown = fits ? darkness(mask_->pixels.colors[i]) >= kHalf
                              : (color & ~kOpaque) != 0;  // nothing is added by black
    color = isShown ? color | kOpaque : 0;
  }
  if (fits) mask_.reset();
  flushMask();
  image(bitmapFile(*pixels), place, {});
  return true;
}

// A mask alone darkens.
void MetafileDrawing::flushMask() {
  if (!mask_) return;
  Mask mask = std::move(*mask_);
  mask_.reset();
  for (uint32_t& color : mask.pixels.colors) color = darkness(color);
  image(bitmapFile(mask.pixels), mask.place, {});
}

void MetafileDrawing::image(const std::string& file, MetafileRect place, const MetafileRect& from) {
  if (isFull() || !(place.width > 0) || !(place.height > 0)) return;
  const LittleFields fields(file);
  const double width = fields.i32(18), height = std::abs(double{1} * fields.i32(22));
  const bool isCut =
      from.width > 0 && from.height > 0 &&
      (from.left != 0 || from.top != 0 || from.width < width || from.height < height);
  constexpr double kNearly = 0.95;
  const bool isWhole = !isCut && place.left <= size_.width * (1 - kNearly) &&
                       place.top <= size_.height * (1 - kNearly) &&
                       place.width >= size_.width * kNearly &&
                       place.height >= size_.height * kNearly;
  if (items_ == 0 && isWhole) {
    ++items_;
    whole_ = file;
    wholePlace_ = place;
    return;
  }
  beginItem();
  write(file, place, isCut ? from : MetafileRect{});
}

// A part of a bitmap shows through a window.
void MetafileDrawing::write(const std::string& file, MetafileRect place, const MetafileRect& from) {
  const bool isCut = from.width > 0;
  const auto box = [this](const MetafileRect& rect) {
    attribute("x", rect.left);
    attribute("y", rect.top);
    attribute("width", rect.width);
    attribute("height", rect.height);
    svg_ += " preserveAspectRatio=\"none\"";
  };
  if (isCut) {
    const LittleFields fields(file);
    svg_ += "<svg";
    box(place);
    svg_ += " viewBox=\"";
    for (const double value : {from.left, from.top, from.width, from.height}) {
      number(value);
      svg_ += ' ';
    }
    svg_ += "\">";
    place = {0, 0, double{1} * fields.i32(18), std::abs(double{1} * fields.i32(22))};
  }
  svg_ += "<image";
  box(place);
  svg_ += " xlink:href=\"data:image/bmp;base64,";
  const size_t before = svg_.size();
  base64::encode(file, &svg_);
  imageBytes_ += svg_.size() - before;
  svg_ += isCut ? "\"/></svg>\n" : "\"/>\n";
}

}  // namespace kelspar
