// Windows metafiles (MS-WMF): records of 16-bit words, played on a drawing.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/foundation/foundation.h"
#include "platform/richtext/little_fields.h"
#include "platform/richtext/metafile.h"
#include "platform/richtext/metafile_drawing.h"
#include "platform/richtext/rtf_fonts.h"
#include "platform/unicode/code_pages.h"

namespace kelspar {

namespace {

constexpr size_t kPlaceable = 22, kHeader = 18, kRecordHeader = 6;

// MS-WMF 2.1.1.1.
enum Record : uint32_t {
  kSaveDC = 0x001E,
  kRealizePalette = 0x0035,
  kCreatePalette = 0x00F7,
  kSetPolyFillMode = 0x0106,
  kRestoreDC = 0x0127,
  kSelectObject = 0x012D,
  kSetTextAlign = 0x012E,
  kDIBCreatePatternBrush = 0x0142,
  kDeleteObject = 0x01F0,
  kCreatePatternBrush = 0x01F9,
  kSetBackground = 0x0201,
  kSetTextColor = 0x0209,
  kSetWindowOrigin = 0x020B,
  kSetWindowExtent = 0x020C,
  kLineTo = 0x0213,
  kMoveTo = 0x0214,
  kCreatePen = 0x02FA,
  kCreateFont = 0x02FB,
  kCreateBrush = 0x02FC,
  kPolygon = 0x0324,
  kPolyline = 0x0325,
  kEllipse = 0x0418,
  kRectangle = 0x041B,
  kTextOut = 0x0521,
  kPolyPolygon = 0x0538,
  kRoundRect = 0x061C,
  kPatternBlt = 0x061D,
  kCreateRegion = 0x06FF,
  kArc = 0x0817,
  kPie = 0x081A,
  kChord = 0x0830,
  kDIBBitBlt = 0x0940,
  kExtTextOut = 0x0A32,
  kDIBStretchBlt = 0x0B41,
  kSetDIBToDevice = 0x0D33,
  kStretchDIB = 0x0F43,
};

class WMFPlayer {
 public:
  explicit WMFPlayer(MetafileSize size) : size_(size), drawing_(size) {}

  MetafilePicture play(std::string_view bytes, MetafileRect window) {
    setWindow(window);
    const LittleFields fields(bytes);
    for (size_t at = size_t{2} * fields.u16(2); at + kRecordHeader <= bytes.size();) {
      const uint64_t length = uint64_t{2} * fields.u32(at);
      const uint32_t type = fields.u16(at + 4);
      if (length < kRecordHeader || type == 0 || drawing_.isFull()) break;
      record(type, LittleFields(fields.part(at + kRecordHeader, length - kRecordHeader)));
      if (length > bytes.size() - at) break;
      at += length;
    }
    return drawing_.finish();
  }

 private:
  // The window fills the picture.
  void setWindow(const MetafileRect& window) {
    drawing_.state.window = window;
    if (window.width == 0 || window.height == 0) return;
    const double across = size_.width / window.width, down = size_.height / window.height;
    drawing_.state.mapping = {across, 0, 0, down, -window.left * across, -window.top * down};
  }

  void record(uint32_t type, const LittleFields& p) {
    if (setsState(type, p) || makesObject(type, p) || drawsShape(type, p)) return;
    switch (type) {
      case kTextOut: {
        const size_t count = p.u16(0), behind = 2 + (count + 1) / 2 * 2;
        return text({double(p.i16(behind + 2)), double(p.i16(behind))}, p.part(2, count), {});
      }
      case kExtTextOut:
        return extendedText(p);
      case kPatternBlt:
        return pattern(p.u32(0), p, 4);
      default:
        return bitmap(type, p);
    }
  }

  bool setsState(uint32_t type, const LittleFields& p) {
    auto& state = drawing_.state;
    switch (type) {
      case kSaveDC:
        drawing_.save();
        return true;
      case kRestoreDC:
        drawing_.restore(p.i16(0));
        return true;
      case kSetPolyFillMode:
        state.isEvenOdd = p.u16(0) != 2;
        return true;
      case kSetTextAlign:
        state.textAlign = p.u16(0);
        return true;
      case kSetBackground:
        state.background = p.u32(0);
        return true;
      case kSetTextColor:
        state.textColor = p.u32(0);
        return true;
      case kSetWindowOrigin:
        setWindow({double(p.i16(2)), double(p.i16(0)), state.window.width, state.window.height});
        return true;
      case kSetWindowExtent:
        setWindow({state.window.left, state.window.top, double(p.i16(2)), double(p.i16(0))});
        return true;
      case kSelectObject:
        if (p.u16(0) < objects_.size()) drawing_.select(objects_[p.u16(0)]);
        return true;
      case kDeleteObject:
        if (p.u16(0) < objects_.size()) remove(p.u16(0));
        return true;
      default:
        return false;
    }
  }

  // MS-WMF 3.1.4.1: an object takes the lowest free place.
  void add(MetafileObject object) {
    constexpr size_t kMost = 65'536;
    while (free_ < objects_.size() && isTaken_[free_]) ++free_;
    if (free_ == kMost) return;
    if (free_ == objects_.size()) {
      objects_.emplace_back();
      isTaken_.push_back(false);
    }
    objects_[free_] = std::move(object);
    isTaken_[free_] = true;
  }
  void remove(size_t place) {
    isTaken_[place] = false;
    objects_[place] = {};
    free_ = std::min(free_, place);
  }

  bool makesObject(uint32_t type, const LittleFields& p) {
    constexpr uint32_t kHollow = 1, kGrey = 0xC0C0C0, kBold = 600;
    switch (type) {
      case kCreatePen:
        add(MetafilePen{p.u16(0), std::abs(double(p.i16(2))), p.u32(6)});
        return true;
      case kCreateBrush:
        add(MetafileBrush{p.u16(0) != kHollow, p.u32(2)});
        return true;
      case kDIBCreatePatternBrush:
      case kCreatePatternBrush:
        add(MetafileBrush{true, kGrey});
        return true;
      case kCreateFont: {
        const std::string_view name = p.part(18, 32);
        add(MetafileFont{.height = double(p.i16(0)),
                         .escapement = p.i16(4) / 10.0,
                         .bold = p.u16(8) >= kBold,
                         .italic = p.u8(10) != 0,
                         .underline = p.u8(11) != 0,
                         .strikethrough = p.u8(12) != 0,
                         .charset = int(p.u8(13)),
                         .face = decoded(name.substr(0, name.find('\0')), int(p.u8(13)))});
        return true;
      }
      case kCreatePalette:
      case kCreateRegion:
        add({});
        return true;
      default:
        return false;
    }
  }

  static std::u16string decoded(std::string_view bytes, int charset) {
    constexpr int kWestern = 1252;
    const int page = codePageOfCharset(charset);
    std::u16string units;
    CodePage::numbered(page == 0 ? kWestern : page).append(bytes, &units);
    return units;
  }

  // Corners stand the other way round: bottom, right, top, left.
  static MetafileRect rectOf(const LittleFields& p, size_t at) {
    const double bottom = p.i16(at), right = p.i16(at + 2), top = p.i16(at + 4),
                 left = p.i16(at + 6);
    return {std::min(left, right), std::min(top, bottom), std::abs(right - left),
            std::abs(bottom - top)};
  }
  static std::vector<MetafilePoint> pointsOf(const LittleFields& p, size_t at, size_t count) {
    count = std::min(count, p.size() > at ? (p.size() - at) / 4 : 0);
    std::vector<MetafilePoint> points;
    for (size_t i = 0; i < count; ++i) {
      points.push_back({double(p.i16(at + 4 * i)), double(p.i16(at + 4 * i + 2))});
    }
    return points;
  }

  bool drawsShape(uint32_t type, const LittleFields& p) {
    MetafilePath path;
    switch (type) {
      case kMoveTo:
        drawing_.state.position = {double(p.i16(2)), double(p.i16(0))};
        return true;
      case kLineTo:
        path.moveTo(drawing_.state.position);
        drawing_.state.position = {double(p.i16(2)), double(p.i16(0))};
        path.lineTo(drawing_.state.position);
        drawing_.paint(path, false, true);
        return true;
      case kPolygon:
      case kPolyline:
        path.polygon(pointsOf(p, 2, p.u16(0)), type == kPolygon);
        drawing_.paint(path, type == kPolygon, true);
        return true;
      case kPolyPolygon: {
        const size_t polygons = p.u16(0);
        size_t at = 2 + 2 * polygons;
        for (size_t i = 0; i < polygons && at < p.size(); ++i) {
          const size_t count = p.u16(2 + 2 * i);
          path.polygon(pointsOf(p, at, count), true);
          at += 4 * count;
        }
        drawing_.paint(path, true, true);
        return true;
      }
      case kRectangle:
        drawing_.paintRect(rectOf(p, 0), true, true);
        return true;
      case kRoundRect:
        path.roundRect(rectOf(p, 4), std::abs(p.i16(2)), std::abs(p.i16(0)));
        drawing_.paint(path, true, true);
        return true;
      case kEllipse:
        path.arc(rectOf(p, 0), 0, 2 * std::numbers::pi);
        path.close();
        drawing_.paint(path, true, true);
        return true;
      case kArc:
      case kPie:
      case kChord:
        path.arcBetween(rectOf(p, 8), {double(p.i16(6)), double(p.i16(4))},
                        {double(p.i16(2)), double(p.i16(0))}, type == kPie);
        if (type != kArc) path.close();
        drawing_.paint(path, type != kArc, true);
        return true;
      default:
        return false;
    }
  }

  void text(MetafilePoint at, std::string_view bytes, const std::vector<double>& advances) {
    const std::u16string units = decoded(bytes, drawing_.state.font.charset);
    drawing_.text(at, units, advances);
  }

  // MS-WMF 2.3.3.5: y, x, length, options, a rectangle for two of them, bytes, advances.
  void extendedText(const LittleFields& p) {
    constexpr uint32_t kOpaqueRect = 2, kClipped = 4;
    const size_t count = p.u16(4);
    const uint32_t options = p.u16(6);
    const bool hasRect = options & (kOpaqueRect | kClipped);
    if (options & kOpaqueRect) {
      const double left = p.i16(8), top = p.i16(10);
      drawing_.fill({left, top, p.i16(12) - left, p.i16(14) - top}, drawing_.state.background);
    }
    const size_t begin = hasRect ? 16 : 8, behind = begin + (count + 1) / 2 * 2;
    std::vector<double> advances;
    if (behind + 2 * count <= p.size()) {
      for (size_t i = 0; i < count; ++i) advances.push_back(p.i16(behind + 2 * i));
    }
    text({double(p.i16(2)), double(p.i16(0))}, p.part(begin, count), advances);
  }

  // Height, width, top, left at `at`.
  void pattern(uint32_t operation, const LittleFields& p, size_t at) {
    const MetafileRect rect{double(p.i16(at + 6)), double(p.i16(at + 4)), double(p.i16(at + 2)),
                            double(p.i16(at))};
    drawing_.paintPattern(operation, rect);
  }

  // MS-WMF 2.3.1: heights stand before widths, y before x, the source before the target.
  void bitmap(uint32_t type, const LittleFields& p) {
    const auto rect = [&p](size_t height, size_t y) {
      return MetafileRect{double(p.i16(y + 2)), double(p.i16(y)), double(p.i16(height + 2)),
                          double(p.i16(height))};
    };
    switch (type) {
      case kDIBBitBlt:
        if (p.size() <= 18) return pattern(p.u32(0), p, 10);
        return draw(p.from(16), rect(8, 12), {}, p.u32(0));
      case kDIBStretchBlt:
        if (p.size() <= 22) return pattern(p.u32(0), p, 14);
        return draw(p.from(20), rect(12, 16), rect(4, 8), p.u32(0));
      case kStretchDIB:
        return draw(p.from(22), rect(14, 18), rect(6, 10), p.u32(0));
      case kSetDIBToDevice:
        return draw(p.from(18), rect(10, 14), {}, MetafileDrawing::kSourceCopy);
      default:
        return;
    }
  }
  void draw(std::string_view bitmap, const MetafileRect& to, const MetafileRect& from,
            uint32_t operation) {
    drawing_.bitmap(bitmapFile(bitmap), to, from, operation);
  }

  MetafileSize size_;
  MetafileDrawing drawing_;
  std::vector<MetafileObject> objects_;
  std::vector<bool> isTaken_;
  size_t free_ = 0;
};

}  // namespace

// MS-WMF 2.3.2.3: a placeable header states the area and its units an inch.
MetafilePicture pictureOfWMF(std::string_view bytes, MetafileSize size) {
  constexpr uint32_t kPlaceableKey = 0x9AC6CDD7;
  constexpr double kPoints = 72, kMost = 14'400;
  const LittleFields fields(bytes);
  MetafileRect window;
  if (fields.u32(0) == kPlaceableKey) {
    const double left = fields.i16(6), top = fields.i16(8), inch = fields.u16(14);
    window = {left, top, fields.i16(10) - left, fields.i16(12) - top};
    if (inch > 0 && !(size.width > 0)) size.width = std::abs(window.width) * kPoints / inch;
    if (inch > 0 && !(size.height > 0)) size.height = std::abs(window.height) * kPoints / inch;
    bytes.remove_prefix(std::min(bytes.size(), kPlaceable));
  }
  constexpr uint32_t kHeaderWords = kHeader / 2;
  if (bytes.size() < kHeader || LittleFields(bytes).u16(2) != kHeaderWords ||
      !(size.width > 0 && size.width <= kMost) || !(size.height > 0 && size.height <= kMost))
    return {{}, {}, size};
  return WMFPlayer(size).play(bytes, window);
}

}  // namespace kelspar
