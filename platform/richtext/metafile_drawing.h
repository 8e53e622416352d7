// What both kinds of metafiles draw on: a device context whose shapes, texts and bitmaps become a
// drawing (SVG 1.1) in points. Internal.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "platform/richtext/device_bitmap.h"
#include "platform/richtext/metafile.h"

namespace kelspar {

struct MetafilePoint {
  double x = 0, y = 0;
  friend bool operator==(const MetafilePoint&, const MetafilePoint&) = default;
};

struct MetafileRect {
  double left = 0, top = 0, width = 0, height = 0;
  friend bool operator==(const MetafileRect&, const MetafileRect&) = default;
};

struct MetafileMapping {
  double xx = 1, yx = 0, xy = 0, yy = 1, x0 = 0, y0 = 0;
  [[nodiscard]] MetafilePoint operator()(MetafilePoint p) const {
    return {xx * p.x + xy * p.y + x0, yx * p.x + yy * p.y + y0};
  }
  // First `inner`, then this.
  [[nodiscard]] MetafileMapping after(const MetafileMapping& inner) const;
};

// Colours are 0x00BBGGRR.
struct MetafilePen {
  uint32_t style = 0;  // MS-WMF 2.1.1.23: the low four bits are dashes, 5 is no line
  double width = 0;
  uint32_t color = 0;
};
struct MetafileBrush {
  bool isVisible = true;
  uint32_t color = 0xFFFFFF;
};
struct MetafileFont {
  double height = 0;      // of the letters when negative, of the line otherwise
  double escapement = 0;  // degrees, counterclockwise
  bool bold = false, italic = false, underline = false, strikethrough = false;
  int charset = 1;
  std::u16string face;
};
using MetafileObject = std::variant<std::monostate, MetafilePen, MetafileBrush, MetafileFont>;

// Lines and curves in the units of the records.
class MetafilePath {
 public:
  enum class Step : uint8_t { move, line, curve, close };
  void moveTo(MetafilePoint p) { add(Step::move, p); }
  void lineTo(MetafilePoint p) { add(Step::line, p); }
  // One of the three points of a curve; they come together.
  void curveTo(MetafilePoint p) { add(Step::curve, p); }
  void close() { add(Step::close, {}); }
  void polygon(std::span<const MetafilePoint> points, bool isClosed);
  // Angles from the x axis, clockwise on paper; a whole turn gives the ellipse.
  void arc(const MetafileRect& box, double from, double to);
  // Counterclockwise on paper from the direction of `start` to that of `end`.
  void arcBetween(const MetafileRect& box, MetafilePoint start, MetafilePoint end, bool isPie);
  // `across` and `down` of the ellipses in the corners.
  void roundRect(const MetafileRect& box, double across, double down);

  struct Place {
    Step step;
    MetafilePoint point;
  };
  std::vector<Place> places;

 private:
  void add(Step step, MetafilePoint p) { places.push_back({step, p}); }
};

class MetafileDrawing {
 public:
  static constexpr uint32_t kSourceCopy = 0x00CC0020;  // MS-WMF 2.1.1.31

  struct State {
    MetafileMapping mapping;  // from the records' units to points
    MetafilePen pen;
    MetafileBrush brush;
    MetafileFont font;
    uint32_t textColor = 0, background = 0xFFFFFF, textAlign = 0;
    bool isEvenOdd = true;
    MetafilePoint position;
    // The records' own parts of the mapping.
    MetafileRect window, viewport;
    uint32_t mapMode = 1;
    MetafileMapping world;
  };

  explicit MetafileDrawing(MetafileSize size) : size_(size) {}

  State state;
  void save();
  // A negative number counts from the top, a positive one from the bottom.
  void restore(int32_t which);
  void select(const MetafileObject& object);

  void paint(const MetafilePath& path, bool isFilled, bool isStroked);
  void paintRect(const MetafileRect& rect, bool isFilled, bool isStroked);
  void fill(const MetafileRect& rect, uint32_t color);
  // `advances`, in the records' units, one a unit of the text; none where they are not known.
  void text(MetafilePoint at, std::u16string_view text, std::span<const double> advances);
  // `file` is a BMP file; a source of no size is the whole of it.
  void bitmap(const std::string& file, MetafileRect to, MetafileRect from, uint32_t operation);
  void bitmap(Pixels pixels, MetafileRect to, MetafileRect from);
  // A raster operation without a bitmap: the brush's colour, black or white. What stands between
  // two inversions masks the brush, so that it is drawn in its colour.
  void paintPattern(uint32_t operation, const MetafileRect& rect);

  [[nodiscard]] bool isFull() const {
    return svg_.size() - imageBytes_ > kLongest || imageBytes_ > kMostImages;
  }
  [[nodiscard]] MetafilePicture finish();

 private:
  static constexpr size_t kLongest = 524'288, kMostImages = 4'194'304;

  struct Mask {
    Pixels pixels;
    MetafileRect place;
  };
  [[nodiscard]] MetafileRect placed(const MetafileRect& rect) const;
  void beginItem();
  void flushMask();
  void write(const std::string& file, MetafileRect place, const MetafileRect& from);
  void image(const std::string& file, MetafileRect place, const MetafileRect& from);
  bool unite(const std::string& file, const MetafileRect& place, const MetafileRect& from,
             uint32_t operation);
  void word(MetafilePoint at, double offset, double length, double size, std::u16string_view text,
            const char* anchor);
  void number(double value);
  void attribute(const char* name, double value);
  void color(const char* name, uint32_t color);

  MetafileSize size_;
  std::vector<State> saved_;
  std::string svg_;
  size_t imageBytes_ = 0, items_ = 0;
  std::optional<Mask> mask_;
  std::optional<uint32_t> inverted_;
  std::string whole_;  // a bitmap over everything, as long as nothing else is drawn
  MetafileRect wholePlace_;
};

}  // namespace kelspar
