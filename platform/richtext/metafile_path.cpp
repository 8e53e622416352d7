// Shapes of metafiles as lines and curves; arcs are lines of ten degrees each.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/richtext/metafile_drawing.h"

namespace kelspar {

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

}  // namespace kelspar
