#include "platform/richtext/metafile_drawing.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <utility>

#include "platform/foundation/base64.h"
#include "platform/foundation/foundation.h"
#include "platform/richtext/little_fields.h"

namespace kelspar {

namespace {

constexpr double kLargest = 1e5;

// MS-WMF 2.1.1.31, the low four bytes.
constexpr uint32_t kSourceAnd = 0x008800C6, kSourcePaint = 0x00EE0086, kSourceInvert = 0x00660046,
                   kPatternCopy = 0x00F00021, kPatternInvert = 0x005A0049, kBlackness = 0x42,
                   kWhiteness = 0x00FF0062;
constexpr uint32_t kOpaque = 0xFF000000;

double lengthOf(double x, double y) { return std::sqrt(x * x + y * y); }

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

// XML 1.0, 2.2: most controls and two noncharacters are no characters.
void appendXML(std::u16string_view text, std::string* out) {
  std::u16string clean(text);
  for (char16_t& unit : clean) {
    if (unit < u' ' || unit >= 0xFFFE) unit = u' ';
  }
  for (const char c : NSString(clean).utf8()) {
    if (c == '&') {
      *out += "&amp;";
    } else if (c == '<') {
      *out += "&lt;";
    } else if (c == '>') {
      *out += "&gt;";
    } else if (c == '"') {
      *out += "&quot;";
    } else {
      *out += c;
    }
  }
}

}  // namespace

MetafileMapping MetafileMapping::after(const MetafileMapping& inner) const {
  const MetafilePoint origin = (*this)({inner.x0, inner.y0});
  return {xx * inner.xx + xy * inner.yx,
          yx * inner.xx + yy * inner.yx,
          xx * inner.xy + xy * inner.yy,
          yx * inner.xy + yy * inner.yy,
          origin.x,
          origin.y};
}

void MetafilePath::polygon(std::span<const MetafilePoint> points, bool isClosed) {
  if (points.empty()) return;
  moveTo(points[0]);
  for (const MetafilePoint& point : points.subspan(1)) lineTo(point);
  if (isClosed) close();
}

void MetafilePath::arc(const MetafileRect& box, double from, double to) {
  constexpr double kStep = std::numbers::pi / 18;
  const double across = box.width / 2, down = box.height / 2;
  const int steps = std::clamp(static_cast<int>(std::ceil((to - from) / kStep)), 1, 36);
  for (int i = 0; i <= steps; ++i) {
    const double angle = from + (to - from) * i / steps;
    const MetafilePoint point{box.left + across * (1 + std::cos(angle)),
                              box.top + down * (1 + std::sin(angle))};
    places.empty() || places.back().step == Step::close ? moveTo(point) : lineTo(point);
  }
}

void MetafilePath::arcBetween(const MetafileRect& box, MetafilePoint start, MetafilePoint end,
                              bool isPie) {
  const MetafilePoint middle{box.left + box.width / 2, box.top + box.height / 2};
  const auto angleOf = [&](MetafilePoint p) {
    return std::atan2((p.y - middle.y) * box.width, (p.x - middle.x) * box.height);
  };
  const double to = angleOf(start);
  double from = angleOf(end);
  if (from >= to) from -= 2 * std::numbers::pi;
  if (isPie) moveTo(middle);
  arc(box, from, to);
}

void MetafilePath::roundRect(const MetafileRect& box, double across, double down) {
  constexpr double kQuarter = std::numbers::pi / 2;
  across = std::min(across, box.width);
  down = std::min(down, box.height);
  const double right = box.left + box.width - across, bottom = box.top + box.height - down;
  arc({right, bottom, across, down}, 0, kQuarter);
  arc({box.left, bottom, across, down}, kQuarter, 2 * kQuarter);
  arc({box.left, box.top, across, down}, 2 * kQuarter, 3 * kQuarter);
  arc({right, box.top, across, down}, 3 * kQuarter, 4 * kQuarter);
  close();
}

void MetafileDrawing::save() {
  constexpr size_t kMost = 64;
  if (saved_.size() < kMost) saved_.push_back(state);
}

void MetafileDrawing::restore(int32_t which) {
  const auto depth = static_cast<int64_t>(saved_.size());
  const int64_t wanted = which < 0 ? depth + which : which - 1;
  if (wanted < 0 || wanted >= depth) return;
  state = saved_[static_cast<size_t>(wanted)];
  saved_.resize(static_cast<size_t>(wanted));
}

void MetafileDrawing::select(const MetafileObject& object) {
  if (const auto* pen = std::get_if<MetafilePen>(&object)) state.pen = *pen;
  if (const auto* brush = std::get_if<MetafileBrush>(&object)) state.brush = *brush;
  if (const auto* font = std::get_if<MetafileFont>(&object)) state.font = *font;
}

void MetafileDrawing::number(double value) {
  if (!(std::abs(value) <= kLargest)) value = value > 0 ? kLargest : -kLargest;
  char digits[32];
  char* end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 2).ptr;
  while (end[-1] == '0') --end;
  if (end[-1] == '.') --end;
  svg_.append(digits, end);
}

void MetafileDrawing::attribute(const char* name, double value) {
  svg_ += std::string(" ") + name + "=\"";
  number(value);
  svg_ += '"';
}

void MetafileDrawing::color(const char* name, uint32_t color) {
  constexpr char kDigits[] = "0123456789abcdef";
  svg_ += std::string(" ") + name + "=\"#";
  for (int shift = 0; shift < 24; shift += 8) {
    svg_ += kDigits[color >> (shift + 4) & 15];
    svg_ += kDigits[color >> shift & 15];
  }
  svg_ += '"';
}

void MetafileDrawing::paint(const MetafilePath& path, bool isFilled, bool isStroked) {
  constexpr uint32_t kDashes = 15, kNoLine = 5;
  isStroked = isStroked && (state.pen.style & kDashes) != kNoLine;
  isFilled = isFilled && (state.brush.isVisible || inverted_);
  if (path.places.empty() || (!isFilled && !isStroked) || isFull()) return;
  beginItem();
  svg_ += "<path";
  if (!isFilled) {
    svg_ += " fill=\"none\"";
  } else {
    color("fill", inverted_.value_or(state.brush.color));
    if (state.isEvenOdd) svg_ += " fill-rule=\"evenodd\"";
  }
  if (isStroked) {
    constexpr double kThinnest = 0.5;
    const double width =
        std::max(kThinnest, state.pen.width * lengthOf(state.mapping.xx, state.mapping.yx));
    color("stroke", state.pen.color);
    attribute("stroke-width", width);
    const uint32_t dashes = state.pen.style & kDashes;
    if (dashes >= 1 && dashes <= 4) {
      attribute("stroke-dasharray", width * (dashes == 2 ? 1 : 3));
    }
  }
  svg_ += " d=\"";
  for (const MetafilePath::Place& place : path.places) {
    if (place.step == MetafilePath::Step::close) {
      svg_ += 'Z';
      continue;
    }
    constexpr char kLetters[] = {'M', 'L', 'C'};
    const MetafilePoint point = state.mapping(place.point);
    svg_ += kLetters[static_cast<size_t>(place.step)];
    number(point.x);
    svg_ += ' ';
    number(point.y);
  }
  svg_ += "\"/>\n";
}

void MetafileDrawing::paintRect(const MetafileRect& rect, bool isFilled, bool isStroked) {
  const double right = rect.left + rect.width, bottom = rect.top + rect.height;
  const MetafilePoint corners[] = {
      {rect.left, rect.top}, {right, rect.top}, {right, bottom}, {rect.left, bottom}};
  MetafilePath path;
  path.polygon(corners, true);
  paint(path, isFilled, isStroked);
}

void MetafileDrawing::fill(const MetafileRect& rect, uint32_t color) {
  if (rect.width == 0 || rect.height == 0) return;
  const MetafileBrush brush = std::exchange(state.brush, {true, color});
  paintRect(rect, true, false);
  state.brush = brush;
}

void MetafileDrawing::paintPattern(uint32_t operation, const MetafileRect& rect) {
  constexpr uint32_t kBlack = 0, kWhite = 0xFFFFFF;
  if (operation == kBlackness) return fill(rect, kBlack);
  if (operation == kWhiteness) return fill(rect, kWhite);
  if (operation == kPatternCopy && state.brush.isVisible) return fill(rect, state.brush.color);
  if (operation != kPatternInvert) return;
  if (inverted_) {
    inverted_.reset();
  } else if (state.brush.isVisible) {
    inverted_ = state.brush.color;
  }
}

// At `offset` points to the right of a place on the baseline, turned about that place; `length` is
// 0 where it is not known.
void MetafileDrawing::word(MetafilePoint at, double offset, double length, double size,
                           std::u16string_view text, const char* anchor) {
  if (text.find_first_not_of(u" \t\0") == text.npos || isFull()) return;
  const MetafileFont& font = state.font;
  beginItem();
  svg_ += "<text xml:space=\"preserve\"";
  attribute("x", at.x + offset);
  attribute("y", at.y);
  if (font.escapement != 0) {
    svg_ += " transform=\"rotate(";
    for (const double value : {-font.escapement, at.x, at.y}) {
      number(value);
      svg_ += ' ';
    }
    svg_ += ")\"";
  }
  attribute("font-size", size);
  if (!font.face.empty()) {
    svg_ += " font-family=\"";
    appendXML(font.face, &svg_);
    svg_ += '"';
  }
  if (length > 0) {
    attribute("textLength", length);
    svg_ += " lengthAdjust=\"spacingAndGlyphs\"";
  }
  if (font.bold) svg_ += " font-weight=\"bold\"";
  if (font.italic) svg_ += " font-style=\"italic\"";
  if (font.underline) svg_ += " text-decoration=\"underline\"";
  if (font.strikethrough) svg_ += " text-decoration=\"line-through\"";
  if (anchor) svg_ += std::string(" text-anchor=\"") + anchor + '"';
  color("fill", state.textColor);
  svg_ += '>';
  appendXML(text, &svg_);
  svg_ += "</text>\n";
}

// MS-WMF 2.1.2.3: the bits of a text's alignment.
void MetafileDrawing::text(MetafilePoint at, std::u16string_view text,
                           std::span<const double> advances) {
  constexpr uint32_t kFromPosition = 1, kSideways = 6, kCentred = 6, kToTheLeft = 2;
  constexpr uint32_t kUpright = 24, kBaseline = 24, kBottom = 8;
  constexpr double kLineHeight = 1.15, kAscent = 0.9, kDescent = 0.21, kDefaultHeight = -12;
  const double across = lengthOf(state.mapping.xx, state.mapping.yx);
  const double height = state.font.height != 0 ? state.font.height : kDefaultHeight / across;
  const double letters = std::abs(height) / (height > 0 ? kLineHeight : 1);
  const double size =
      std::min(letters * lengthOf(state.mapping.xy, state.mapping.yy), 10 * size_.height);
  if (!(size > 0.01)) return;
  double whole = 0;
  for (const double advance : advances) whole += advance;
  const uint32_t side = state.textAlign & kSideways;
  const bool isPlaced = advances.size() >= text.size();
  MetafilePoint place = state.mapping(state.textAlign & kFromPosition ? state.position : at);
  if (state.textAlign & kFromPosition) state.position.x += whole;
  const uint32_t upright = state.textAlign & kUpright;
  const double down = upright == kBaseline ? 0 : size * (upright == kBottom ? -kDescent : kAscent);
  const double turn = state.font.escapement * std::numbers::pi / 180;
  place.x += down * std::sin(turn);
  place.y += down * std::cos(turn);
  if (!isPlaced) {
    return word(place, 0, 0, size, text,
                side == kCentred     ? "middle"
                : side == kToTheLeft ? "end"
                                     : nullptr);
  }
  const double part = side == kCentred ? 0.5 : side == kToTheLeft ? 1 : 0;
  double offset = -whole * part;
  for (size_t begin = 0; begin < text.size();) {
    const size_t end = std::min(text.size(), text.find(u' ', begin));
    double length = 0;
    for (size_t i = begin; i < end; ++i) length += advances[i];
    word(place, offset * across, length * across, size, text.substr(begin, end - begin), nullptr);
    offset += length + (end < text.size() ? advances[end] : 0);
    begin = end + 1;
  }
}

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

void MetafileDrawing::beginItem() {
  flushMask();
  ++items_;
  if (whole_.empty()) return;
  const std::string file = std::exchange(whole_, {});
  write(file, wholePlace_, {});
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

MetafilePicture MetafileDrawing::finish() {
  flushMask();
  if (items_ == 0 || isFull()) return {{}, {}, size_};
  if (!whole_.empty()) return {"image/bmp", std::move(whole_), size_};
  std::string body = std::move(svg_);
  svg_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\"";
  attribute("width", size_.width);
  attribute("height", size_.height);
  svg_ += " viewBox=\"0 0 ";
  number(size_.width);
  svg_ += ' ';
  number(size_.height);
  svg_ += "\">\n" + body + "</svg>\n";
  return {"image/svg+xml", std::move(svg_), size_};
}

}  // namespace kelspar
