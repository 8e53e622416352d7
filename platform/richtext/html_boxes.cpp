#include "platform/richtext/html_boxes.h"

#include <algorithm>

namespace kelspar::html {

namespace {

constexpr double kMostPadding = 300;
constexpr NSColor kPaper{255, 255, 255};

struct BorderRow {
  Property property;
  NSTextBorder NSTextBorders::*side;
};
constexpr BorderRow kBorders[] = {
    {Property::borderTop, &NSTextBorders::top},
    {Property::borderRight, &NSTextBorders::right},
    {Property::borderBottom, &NSTextBorders::bottom},
    {Property::borderLeft, &NSTextBorders::left},
};

struct PaddingRow {
  Property property;
  Length Declarations::*declared;
  float NSTextEdges::*side;
};
constexpr PaddingRow kPaddings[] = {
    {Property::paddingTop, &Declarations::paddingTop, &NSTextEdges::top},
    {Property::paddingRight, &Declarations::paddingRight, &NSTextEdges::right},
    {Property::paddingBottom, &Declarations::paddingBottom, &NSTextEdges::bottom},
    {Property::paddingLeft, &Declarations::paddingLeft, &NSTextEdges::left},
};

}  // namespace

void applyToBox(const Declarations& declared, double fontSize, NSTextTableCell* box) {
  for (const BorderRow& row : kBorders) {
    if (declared.has(row.property)) box->borders.*row.side = declared.borders.*row.side;
  }
  for (const PaddingRow& row : kPaddings) {
    if (!declared.has(row.property)) continue;
    if (!box->padding) box->padding.emplace();
    const double padding = (declared.*row.declared).of(fontSize);
    (*box->padding).*row.side = static_cast<float>(std::clamp(padding, 0.0, kMostPadding));
  }
  if (declared.has(Property::background)) box->background = declared.background;
  if (declared.has(Property::width) && declared.width.unit == Length::Unit::points) {
    box->width = declared.width.value;
  }
}

bool isBox(const Declarations& declared, const std::optional<NSColor>& ground) {
  if (declared.has(Property::background) && declared.background &&
      *declared.background != ground.value_or(kPaper)) {
    return true;
  }
  return std::ranges::any_of(kBorders, [&](const BorderRow& row) {
    return declared.has(row.property) && (declared.borders.*row.side).width > 0;
  });
}

std::optional<NSColor> groundOf(const NSParagraphStyle& paragraph) {
  const auto& boxes = paragraph.cells;
  const auto box = std::find_if(boxes.rbegin(), boxes.rend(), [](const NSTextTableCell& each) {
    return each.background.has_value();
  });
  return box == boxes.rend() ? std::nullopt : box->background;
}

}  // namespace kelspar::html
