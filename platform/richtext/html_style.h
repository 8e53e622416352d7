// Style declarations, as `style` attributes and style elements hold them: the properties that
// change what text is shown and how it looks. Internal to the library.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/html_layout.h"

namespace kelspar::html {

enum class Property : uint8_t {
  display,
  visibility,
  whiteSpace,
  marginTop,
  marginBottom,
  height,
  overflow,
  opacity,
  listStyle,
  fontSize,  // none hides text
  // From here on: only the look.
  marginLeft,
  marginRight,
  paddingTop,
  paddingRight,
  paddingBottom,
  paddingLeft,
  textIndent,
  fontFamily,
  fontWeight,
  fontStyle,
  color,
  background,
  decoration,
  verticalAlign,
  textAlign,
  lineHeight,
  direction,
  width,
  borderTop,
  borderRight,
  borderBottom,
  borderLeft,
  imageHeight,
  firstLine,  // these two are our writer's own
  tabStops,
  count
};
static_assert(static_cast<int>(Property::count) <= 64);

enum class Display : uint8_t { none, inlineBox, inlineBlock, block, other };

// A length, or a number of times another one.
struct Length {
  enum class Unit : uint8_t { points, times };
  double value = 0;
  Unit unit = Unit::points;
  [[nodiscard]] double of(double whole) const {
    return unit == Unit::points ? value : value * whole;
  }
};

struct Declarations {
  uint64_t set = 0;        // bits of the properties that are declared
  uint64_t important = 0;  // and of those that are "!important"

  Display display = Display::other;
  bool visible = true;
  WhiteSpace whiteSpace = WhiteSpace::collapse;
  bool noHeight = false;
  bool clipped = false;
  bool transparent = false;
  NSString listStyle;  // "none", "disc", "decimal", ...
  Length marginTop, marginBottom, marginLeft, marginRight, paddingTop, paddingRight, paddingBottom,
      paddingLeft, textIndent, fontSize, lineHeight, width, imageHeight, firstLine;
  bool leastLineHeight = false;  // lineHeight is a bound from below
  std::vector<NSTextTab> tabStops;
  NSTextBorders borders;
  NSString fontFamily;  // nil: the default one
  bool bold = false;
  bool italic = false;
  std::optional<NSColor> color, background;
  bool underline = false;
  bool strikethrough = false;
  int8_t superscript = 0;
  double baselineOffset = 0;
  NSTextAlignment textAlign = NSTextAlignment::natural;
  bool rightToLeft = false;

  [[nodiscard]] bool has(Property property) const { return set >> static_cast<int>(property) & 1; }
  void declare(Property property) { set |= uint64_t{1} << static_cast<int>(property); }
  // Takes over what `other` declares, unless it is declared important here.
  void add(const Declarations& other);
  // Nothing is declared.
  void clear();
  // Takes over one property as `other` has it, declared or not.
  void take(Property property, const Declarations& other);
  // Nothing of the element is shown.
  [[nodiscard]] bool hides() const;
};

// What CSS has no property for; browsers pass custom properties over.
inline constexpr std::u16string_view kFirstLineProperty = u"--kelspar-first-line";
inline constexpr std::u16string_view kTabStopsProperty = u"--kelspar-tab-stops";

// Adds the declarations of `text`. With `layoutOnly` those that only change the look are passed
// over. Unknown properties and values count as absent. Linear.
void parseDeclarations(std::u16string_view text, bool layoutOnly, Declarations* declarations);

}  // namespace kelspar::html
