// Shapes and texts as elements of SVG 1.1, in points; every text is escaped.
#include "platform/richtext/metafile_drawing.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <utility>

#include "platform/foundation/foundation.h"

namespace kelspar {

namespace {

constexpr double kLargest = 1e5;

// MS-WMF 2.1.1.31, the low four bytes.
constexpr uint32_t kPatternCopy = 0x00F00021, kPatternInvert = 0x005A0049, kBlackness = 0x42,
                   kWhiteness = 0x00FF0062;

double lengthOf(double x, double y) { return std::sqrt(x * x + y * y); }

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

void MetafileDrawing::beginItem() {
  flushMask();
  ++items_;
  if (whole_.empty()) return;
  const std::string file = std::exchange(whole_, {});
  write(file, wholePlace_, {});
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
