#include "platform/richtext/html_style_borders.h"

#include <algorithm>

#include "platform/richtext/html_colors.h"
#include "platform/richtext/html_style_values.h"

namespace kelspar::html {

using namespace values;

namespace {

constexpr double kThin = 0.75, kMedium = 2.25, kThick = 3.75;  // 1, 3 and 5 pixels
constexpr double kWidest = 20;
constexpr double kEm = 12;

bool isLine(Text word) {
  constexpr Text kLines[] = {u"solid",  u"dashed", u"dotted", u"double",
                             u"groove", u"ridge",  u"inset",  u"outset"};
  return std::ranges::any_of(kLines, [&](Text line) { return is(word, line); });
}

NSTextBorder borderIn(Text value) {
  double width = kMedium;
  bool isShown = false;
  NSColor color;
  for (Text word = takeWord(&value); !word.empty(); word = takeWord(&value)) {
    if (const auto stated = length(word)) {
      width = std::clamp(stated->of(kEm), 0.0, kWidest);
    } else if (isLine(word)) {
      isShown = true;
    } else if (is(word, u"thin")) {
      width = kThin;
    } else if (is(word, u"thick")) {
      width = kThick;
    } else if (const auto named = colorNamed(word)) {
      color = *named;
    } else if (is(word, u"transparent")) {
      return {};
    }
  }
  if (!isShown || width == 0) return {};
  return {static_cast<float>(width), color};
}

}  // namespace

bool parseBorder(Text value, Declarations* to) {
  to->borders = NSTextBorders::all(borderIn(value));
  to->declare(Property::borderTop);
  to->declare(Property::borderRight);
  to->declare(Property::borderBottom);
  to->declare(Property::borderLeft);
  return true;
}

bool parseBorderTop(Text value, Declarations* to) {
  to->borders.top = borderIn(value);
  return true;
}

bool parseBorderRight(Text value, Declarations* to) {
  to->borders.right = borderIn(value);
  return true;
}

bool parseBorderBottom(Text value, Declarations* to) {
  to->borders.bottom = borderIn(value);
  return true;
}

bool parseBorderLeft(Text value, Declarations* to) {
  to->borders.left = borderIn(value);
  return true;
}

}  // namespace kelspar::html
