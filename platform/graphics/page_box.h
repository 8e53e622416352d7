// A cell's or a block's ground and lines on pages. Internal to the library.
#pragma once

#include <optional>

#include "platform/graphics/page_line.h"
#include "platform/graphics/paragraph_setter.h"
#include "platform/richtext/NSTextAttributes.h"

namespace kelspar {

// Room between a box's edges and its text.
[[nodiscard]] NSTextEdges insetsOf(const NSTextTableCell& box);

// Room around a block, half of its lines included: they lie on its edges.
[[nodiscard]] NSTextEdges outsetsOf(const NSTextTableCell& block);

// What is known of a box while its contents are set: its first piece has the line above, its last
// one that below. Lines along the sides lie half inside.
struct PageBox {
  PageBox(const NSTextTableCell& place, Column column, double boxTop);

  double left, top, width;
  NSTextBorders borders;
  NSTextEdges insets;
  double widest;  // of the borders
  std::optional<NSColor> background;
  bool isBegun = false;  // pieces of it are drawn
  size_t begin = 0;      // of the piece's contents among the lines at hand

  [[nodiscard]] bool isSeen() const { return widest > 0 || background; }
  [[nodiscard]] Column inside() const;
  [[nodiscard]] PageLine pieceTo(double end, bool isLast) const;

 private:
  // Where the ground begins in the piece.
  [[nodiscard]] double down() const { return isBegun ? 0 : widest / 2; }
  void addAcross(const NSTextBorder& border, double y, PageLine* piece) const;
  void addAlong(const NSTextBorder& border, double x, double height, bool isLast,
                PageLine* piece) const;
};

}  // namespace kelspar
