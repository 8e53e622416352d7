// Enhanced metafiles (MS-EMF), played on a drawing. Files that hold EMF+ records as well say the
// same in both.
#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

#include "platform/foundation/foundation.h"
#include "platform/richtext/emf_records.h"
#include "platform/richtext/metafile.h"

namespace kelspar {

namespace {

using namespace emf;

class EMFPlayer {
 public:
  // `frame` is the picture's area in the device's pixels.
  EMFPlayer(MetafileSize size, MetafileRect frame, double pixelsAMillimetre)
      : pixelsAMillimetre_(pixelsAMillimetre), drawing_(size) {
    const double across = size.width / frame.width, down = size.height / frame.height;
    toPoints_ = {across, 0, 0, down, -frame.left * across, -frame.top * down};
    drawing_.state.mapping = toPoints_;
  }

  MetafilePicture play(std::string_view bytes) {
    constexpr size_t kLeast = 8;
    const LittleFields fields(bytes);
    for (size_t at = 0; at + kLeast <= bytes.size() && !drawing_.isFull();) {
      const uint32_t type = fields.u32(at), length = fields.u32(at + 4);
      if (length < kLeast || type == kEndOfFile) break;
      record(type, LittleFields(fields.part(at, length)));
      if (length > bytes.size() - at) break;
      at += length;
    }
    MetafilePicture drawn = drawing_.finish();
    if (drawn.file.empty() && !image_.empty()) return {imageType_, std::move(image_), drawn.size};
    return drawn;
  }

 private:
  void record(uint32_t type, const LittleFields& r) {
    if (setsMapping(type, r) || setsState(type, r) || makesObject(type, r)) return;
    if (drawsPoints(type, r) || drawsShape(type, r) || drawsPath(type)) return;
    if (type == kTextOut) return text(r);
    if (type == kComment) return comment(r);
    drawBitmap(type, r, &drawing_);
  }

  void updateMapping() {
    auto& s = drawing_.state;
    constexpr double kMillimetresAnInch = 25.4;
    constexpr double kUnits[] = {0.1, 0.01, kMillimetresAnInch / 100, kMillimetresAnInch / 1000,
                                 kMillimetresAnInch / 1440};
    double across = 1, down = 1;
    if (s.mapMode >= 2 && s.mapMode <= 6) {
      across = kUnits[s.mapMode - 2] * pixelsAMillimetre_;
      down = -across;
    } else if (s.mapMode >= 7 && s.window.width != 0 && s.window.height != 0 &&
               s.viewport.width != 0 && s.viewport.height != 0) {
      across = s.viewport.width / s.window.width;
      down = s.viewport.height / s.window.height;
    }
    const MetafileMapping page{across,
                               0,
                               0,
                               down,
                               s.viewport.left - s.window.left * across,
                               s.viewport.top - s.window.top * down};
    s.mapping = toPoints_.after(page.after(s.world));
  }

  bool setsMapping(uint32_t type, const LittleFields& r) {
    auto& s = drawing_.state;
    const MetafilePoint value = pointOf(r, 8);
    switch (type) {
      case kSetWindowExtent:
        s.window.width = value.x;
        s.window.height = value.y;
        break;
      case kSetWindowOrigin:
        s.window.left = value.x;
        s.window.top = value.y;
        break;
      case kSetViewportExtent:
        s.viewport.width = value.x;
        s.viewport.height = value.y;
        break;
      case kSetViewportOrigin:
        s.viewport.left = value.x;
        s.viewport.top = value.y;
        break;
      case kSetMapMode:
        s.mapMode = r.u32(8);
        break;
      case kSetWorldTransform:
        s.world = mappingOf(r, 8);
        break;
      case kModifyWorldTransform: {
        const MetafileMapping change = mappingOf(r, 8);
        switch (r.u32(32)) {  // MS-EMF 2.1.24
          case 1:
            s.world = {};
            break;
          case 2:
            s.world = s.world.after(change);
            break;
          case 3:
            s.world = change.after(s.world);
            break;
          default:
            s.world = change;
        }
        break;
      }
      default:
        return false;
    }
    updateMapping();
    return true;
  }

  bool setsState(uint32_t type, const LittleFields& r) {
    auto& s = drawing_.state;
    switch (type) {
      case kSetPolyFillMode:
        s.isEvenOdd = r.u32(8) != 2;
        return true;
      case kSetTextAlign:
        s.textAlign = r.u32(8);
        return true;
      case kSetTextColor:
        s.textColor = r.u32(8);
        return true;
      case kSetBackground:
        s.background = r.u32(8);
        return true;
      case kSaveDC:
        drawing_.save();
        return true;
      case kRestoreDC:
        drawing_.restore(r.i32(8));
        return true;
      case kSelectObject:
        select(r.u32(8));
        return true;
      case kDeleteObject:
        objects_.erase(r.u32(8));
        return true;
      default:
        return false;
    }
  }

  // MS-EMF 2.1.31: objects that everybody has.
  void select(uint32_t number) {
    constexpr uint32_t kStock = 0x80000000, kNoBrush = 5, kWhitePen = 6, kBlackPen = 7, kNoPen = 8;
    constexpr uint32_t kBrushes[] = {0xFFFFFF, 0xC0C0C0, 0x808080, 0x404040, 0};
    if (number < kStock) {
      const auto found = objects_.find(number);
      if (found != objects_.end()) drawing_.select(found->second);
      return;
    }
    const uint32_t stock = number - kStock;
    if (stock < kNoBrush) drawing_.select(MetafileBrush{true, kBrushes[stock]});
    if (stock == kNoBrush) drawing_.select(MetafileBrush{false, 0});
    if (stock == kWhitePen) drawing_.select(MetafilePen{0, 0, 0xFFFFFF});
    if (stock == kBlackPen) drawing_.select(MetafilePen{});
    if (stock == kNoPen) drawing_.select(MetafilePen{.style = 5});
    if (stock > kNoPen) drawing_.select(MetafileFont{});
  }

  bool makesObject(uint32_t type, const LittleFields& r) {
    constexpr uint32_t kHollow = 1, kGrey = 0xC0C0C0;
    const uint32_t number = r.u32(8);
    switch (type) {
      case kCreatePen:
        objects_[number] = MetafilePen{r.u32(12), std::abs(double(r.i32(16))), r.u32(24)};
        return true;
      case kExtCreatePen:
        objects_[number] = MetafilePen{r.u32(28), double(r.u32(32)), r.u32(40)};
        return true;
      case kCreateBrush:
        objects_[number] = MetafileBrush{r.u32(12) != kHollow, r.u32(16)};
        return true;
      case kCreateMonoBrush:
      case kCreatePatternBrush:
        objects_[number] = MetafileBrush{true, kGrey};
        return true;
      case kCreateFont:
        objects_[number] = fontOf(r);
        return true;
      default:
        return false;
    }
  }

  // Between the beginning and the end of a path, shapes become parts of it.
  void show(const MetafilePath& path, bool isFilled, bool isStroked) {
    if (!isInPath_) return drawing_.paint(path, isFilled, isStroked);
    constexpr size_t kMost = 100'000;
    if (path_.places.size() > kMost) return;
    path_.places.insert(path_.places.end(), path.places.begin(), path.places.end());
  }

  // Records of 16-bit points come in the order of the others.
  bool drawsPoints(uint32_t type, const LittleFields& r) {
    const bool isShort = type >= kPolyBezier16 && type <= kPolyPolygon16;
    if (isShort) type = type - kPolyBezier16 + kPolyBezier;
    if (type < kPolyBezier || type > kPolyPolygon) return false;
    MetafilePath path;
    auto& position = drawing_.state.position;
    if (type == kPolyPolyline || type == kPolyPolygon) {
      const size_t parts = std::min<size_t>(r.u32(24), r.size() / 4);
      size_t at = 32 + 4 * parts;
      for (size_t i = 0; i < parts && at < r.size(); ++i) {
        const size_t count = r.u32(32 + 4 * i);
        path.polygon(pointsOf(r, at, count, isShort), type == kPolyPolygon);
        at += count * (isShort ? 4 : 8);
      }
      show(path, type == kPolyPolygon, true);
      return true;
    }
    const std::vector<MetafilePoint> points = pointsOf(r, 28, r.u32(24), isShort);
    if (points.empty()) return true;
    const bool goesOn = type == kPolyBezierTo || type == kPolylineTo;
    const bool isCurve = type == kPolyBezier || type == kPolyBezierTo;
    if (!isCurve && !goesOn) {
      path.polygon(points, type == kPolygon);
    } else {
      if (!goesOn) path.moveTo(points[0]);
      if (goesOn && (!isInPath_ || path_.places.empty())) path.moveTo(position);
      const size_t first = goesOn ? 0 : 1;
      const size_t end = isCurve ? first + (points.size() - first) / 3 * 3 : points.size();
      for (size_t i = first; i < end; ++i) {
        isCurve ? path.curveTo(points[i]) : path.lineTo(points[i]);
      }
    }
    if (goesOn) position = points.back();
    show(path, type == kPolygon, true);
    return true;
  }

  bool drawsShape(uint32_t type, const LittleFields& r) {
    MetafilePath path;
    auto& position = drawing_.state.position;
    switch (type) {
      case kMoveTo:
        position = pointOf(r, 8);
        path.moveTo(position);
        if (isInPath_) show(path, false, false);
        return true;
      case kLineTo:
        if (!isInPath_ || path_.places.empty()) path.moveTo(position);
        position = pointOf(r, 8);
        path.lineTo(position);
        show(path, false, true);
        return true;
      case kRectangle: {
        const MetafileRect box = rectOf(r, 8);
        const double right = box.left + box.width, bottom = box.top + box.height;
        const MetafilePoint corners[] = {
            {box.left, box.top}, {right, box.top}, {right, bottom}, {box.left, bottom}};
        path.polygon(corners, true);
        break;
      }
      case kEllipse:
        path.arc(rectOf(r, 8), 0, 2 * std::numbers::pi);
        path.close();
        break;
      case kRoundRect:
        path.roundRect(rectOf(r, 8), std::abs(r.i32(24)), std::abs(r.i32(28)));
        break;
      case kArc:
      case kChord:
      case kPie:
        path.arcBetween(rectOf(r, 8), pointOf(r, 24), pointOf(r, 32), type == kPie);
        if (type != kArc) path.close();
        break;
      default:
        return false;
    }
    show(path, type != kArc, true);
    return true;
  }

  bool drawsPath(uint32_t type) {
    switch (type) {
      case kBeginPath:
        path_.places.clear();
        isInPath_ = true;
        return true;
      case kEndPath:
        isInPath_ = false;
        return true;
      case kCloseFigure:
        if (isInPath_ && !path_.places.empty()) path_.close();
        return true;
      case kFillPath:
      case kStrokeAndFillPath:
      case kStrokePath:
        drawing_.paint(path_, type != kStrokePath, type != kFillPath);
        [[fallthrough]];
      case kAbortPath:
        path_.places.clear();
        isInPath_ = false;
        return true;
      default:
        return false;
    }
  }

  // MS-EMF 2.2.5: the text behind a header, advances of its units.
  void text(const LittleFields& r) {
    constexpr uint32_t kOpaqueRect = 2, kNotText = 0x10;  // glyph numbers
    const uint32_t options = r.u32(52);
    if (options & kOpaqueRect) drawing_.fill(rectOf(r, 56), drawing_.state.background);
    if (options & kNotText) return;
    const size_t begin = r.u32(48), advancesBegin = r.u32(72);
    const size_t count = std::min<size_t>(r.u32(44), r.size() > begin ? (r.size() - begin) / 2 : 0);
    std::u16string units;
    for (size_t i = 0; i < count; ++i) units += static_cast<char16_t>(r.u16(begin + 2 * i));
    std::vector<double> advances;
    if (advancesBegin > 0 && advancesBegin + 4 * count <= r.size()) {
      for (size_t i = 0; i < count; ++i) advances.push_back(r.i32(advancesBegin + 4 * i));
    }
    drawing_.text(pointOf(r, 36), units, advances);
  }

  void comment(const LittleFields& r) {
    if (!image_.empty()) return;
    const CommentImage found = imageInComment(r);
    imageType_ = found.type;
    image_ = found.file;
  }

  double pixelsAMillimetre_;
  MetafileDrawing drawing_;
  MetafileMapping toPoints_;
  std::map<uint32_t, MetafileObject> objects_;
  MetafilePath path_;
  bool isInPath_ = false;
  std::string image_;
  std::string_view imageType_;
};

}  // namespace

// MS-EMF 2.3.4.2: bounds in pixels, the frame in hundredths of a millimetre, the device's size in
// both.
MetafilePicture pictureOfEMF(std::string_view bytes, MetafileSize size) {
  constexpr uint32_t kSignature = 0x464D4520;
  constexpr double kPoints = 72 / 2540.0, kMost = 14'400;
  const LittleFields fields(bytes);
  if (fields.u32(0) != kHeader || fields.u32(40) != kSignature) return {{}, {}, size};
  MetafileRect frame = rectOf(fields, 24);
  if (!(size.width > 0)) size.width = frame.width * kPoints;
  if (!(size.height > 0)) size.height = frame.height * kPoints;
  const double across = fields.i32(72), down = fields.i32(76);
  const double wide = fields.i32(80), high = fields.i32(84);
  if (frame.width > 0 && frame.height > 0 && across > 0 && down > 0 && wide > 0 && high > 0) {
    const double columns = across / wide / 100, rows = down / high / 100;
    frame = {frame.left * columns, frame.top * rows, frame.width * columns, frame.height * rows};
  } else {
    frame = rectOf(fields, 8);
  }
  const bool isSized = size.width > 0 && size.width <= kMost && size.height > 0 &&
                       size.height <= kMost && frame.width > 0 && frame.height > 0;
  if (!isSized) return {{}, {}, size};
  return EMFPlayer(size, frame, wide > 0 && across > 0 ? across / wide : 4).play(bytes);
}

}  // namespace kelspar
