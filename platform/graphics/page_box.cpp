#include "platform/graphics/page_box.h"

#include <algorithm>

namespace kelspar {

namespace {

double widthOf(const NSTextBorder& border) {
  constexpr double kWidest = 20;
  return bounded(double{border.width}, 0, kWidest);
}

double widestOf(const NSTextBorders& borders) {
  return std::max({widthOf(borders.top), widthOf(borders.right), widthOf(borders.bottom),
                   widthOf(borders.left)});
}

float side(float room, const NSTextBorder& border) {
  constexpr double kMost = 300;
  return static_cast<float>(bounded(double{room}, 0, kMost) + widthOf(border) / 2);
}

NSTextEdges withHalfOf(const NSTextBorders& borders, const NSTextEdges& room) {
  return {side(room.top, borders.top), side(room.right, borders.right),
          side(room.bottom, borders.bottom), side(room.left, borders.left)};
}

}  // namespace

NSTextEdges insetsOf(const NSTextTableCell& box) {
  if (box.padding) return withHalfOf(box.borders, *box.padding);
  constexpr float kSide = 3, kBare = 0.5, kSeen = 2;
  const float across = widestOf(box.borders) > 0 || box.background ? kSeen : kBare;
  return {across, kSide, across, kSide};
}

NSTextEdges outsetsOf(const NSTextTableCell& block) {
  return withHalfOf(block.borders, block.margin);
}

PageBox::PageBox(const NSTextTableCell& place, Column column, double boxTop)
    : left(column.left),
      top(boxTop),
      width(column.width),
      borders(place.borders),
      insets(insetsOf(place)),
      widest(widestOf(place.borders)),
      background(place.rowSpan > 0 ? place.background : std::nullopt) {}

Column PageBox::inside() const {
  const double before = std::min(double{insets.left}, width / 4);
  const double behind = std::min(double{insets.right}, width / 4);
  return {left + before, width - before - behind};
}

PageLine PageBox::pieceTo(double end, bool isLast) const {
  const double height = end - top;
  PageLine piece;
  piece.top = top - down();
  piece.bottom = end + (isLast ? widest / 2 : 0);
  piece.mayBeCut = true;
  if (background) piece.fills.push_back({left, down(), width, height, *background});
  if (!isBegun) addAcross(borders.top, down(), &piece);
  if (isLast) addAcross(borders.bottom, down() + height, &piece);
  addAlong(borders.left, left, height, isLast, &piece);
  addAlong(borders.right, left + width, height, isLast, &piece);
  return piece;
}

void PageBox::addAcross(const NSTextBorder& border, double y, PageLine* piece) const {
  const double line = widthOf(border), half = line / 2;
  if (line > 0) piece->fills.push_back({left - half, y - half, width + line, line, border.color});
}

void PageBox::addAlong(const NSTextBorder& border, double x, double height, bool isLast,
                       PageLine* piece) const {
  const double line = widthOf(border), half = line / 2;
  const double above = isBegun ? 0 : half, below = isLast ? half : 0;
  if (line <= 0) return;
  piece->fills.push_back({x - half, down() - above, line, height + above + below, border.color});
}

}  // namespace kelspar
