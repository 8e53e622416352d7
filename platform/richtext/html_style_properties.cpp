#include "platform/richtext/html_style_properties.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <tuple>

#include "platform/richtext/html_colors.h"
#include "platform/richtext/html_style_borders.h"
#include "platform/richtext/html_style_values.h"

namespace kelspar::html {

using namespace values;

namespace {

// Each parser returns false for a value that it does not know.

bool parseDisplay(Text value, Declarations* to) {
  if (is(value, u"none")) {
    to->display = Display::none;
  } else if (is(value, u"block") || is(value, u"list-item") || is(value, u"flex") ||
             is(value, u"grid") || is(value, u"flow-root")) {
    to->display = Display::block;
  } else if (is(value, u"inline")) {
    to->display = Display::inlineBox;
  } else if (is(value, u"inline-block")) {
    to->display = Display::inlineBlock;
  } else {
    to->display = Display::other;
  }
  return true;
}

bool parseVisibility(Text value, Declarations* to) {
  to->visible = !is(value, u"hidden") && !is(value, u"collapse");
  return true;
}

bool parseWhiteSpace(Text value, Declarations* to) {
  if (is(value, u"pre") || is(value, u"pre-wrap") || is(value, u"break-spaces")) {
    to->whiteSpace = WhiteSpace::keep;
  } else if (is(value, u"pre-line")) {
    to->whiteSpace = WhiteSpace::keepLines;
  } else if (is(value, u"normal") || is(value, u"nowrap")) {
    to->whiteSpace = WhiteSpace::collapse;
  } else {
    return false;
  }
  return true;
}

bool parseMaxHeight(Text value, Declarations* to) {
  const auto height = length(value);
  to->noHeight = height && height->value == 0;
  return true;
}

// An image's height, and whether a block has none.
bool parseHeight(Text value, Declarations* to) {
  if (setLength(value, &to->imageHeight)) to->declare(Property::imageHeight);
  return parseMaxHeight(value, to);
}

bool parseOverflow(Text value, Declarations* to) {
  to->clipped = is(value, u"hidden") || is(value, u"clip");
  return true;
}

bool parseOpacity(Text value, Declarations* to) {
  size_t end = 0;
  const auto opacity = number(value, &end);
  to->transparent = opacity && *opacity == 0;
  return true;
}

// One to four lengths, for the sides clockwise from the top.
std::optional<std::array<Length, 4>> sidesIn(Text value) {
  std::array<Length, 4> sides;
  size_t count = 0;
  for (Text word = takeWord(&value); !word.empty() && count < 4; word = takeWord(&value)) {
    if (!is(word, u"auto") && !setLength(word, &sides[count])) return std::nullopt;
    ++count;
  }
  if (count == 0) return std::nullopt;
  if (count < 2) sides[1] = sides[0];
  if (count < 3) sides[2] = sides[0];
  if (count < 4) sides[3] = sides[1];
  return sides;
}

bool parseMargin(Text value, Declarations* to) {
  const auto sides = sidesIn(value);
  if (!sides) return false;
  std::tie(to->marginTop, to->marginRight, to->marginBottom, to->marginLeft) =
      std::tuple_cat(*sides);
  for (const auto side :
       {Property::marginTop, Property::marginRight, Property::marginBottom, Property::marginLeft}) {
    to->declare(side);
  }
  return true;
}

bool parsePadding(Text value, Declarations* to) {
  const auto sides = sidesIn(value);
  if (!sides) return false;
  std::tie(to->paddingTop, to->paddingRight, to->paddingBottom, to->paddingLeft) =
      std::tuple_cat(*sides);
  for (const auto side : {Property::paddingTop, Property::paddingRight, Property::paddingBottom,
                          Property::paddingLeft}) {
    to->declare(side);
  }
  return true;
}

bool parseMarginTop(Text value, Declarations* to) { return setLength(value, &to->marginTop); }
bool parseMarginBottom(Text value, Declarations* to) { return setLength(value, &to->marginBottom); }
bool parseMarginLeft(Text value, Declarations* to) { return setLength(value, &to->marginLeft); }
bool parseMarginRight(Text value, Declarations* to) { return setLength(value, &to->marginRight); }
bool parsePaddingTop(Text value, Declarations* to) { return setLength(value, &to->paddingTop); }
bool parsePaddingRight(Text value, Declarations* to) { return setLength(value, &to->paddingRight); }
bool parsePaddingBottom(Text value, Declarations* to) {
  return setLength(value, &to->paddingBottom);
}
bool parsePaddingLeft(Text value, Declarations* to) { return setLength(value, &to->paddingLeft); }
bool parseTextIndent(Text value, Declarations* to) { return setLength(value, &to->textIndent); }
bool parseWidth(Text value, Declarations* to) { return setLength(value, &to->width); }

bool parseListStyle(Text value, Declarations* to) {
  for (Text word = takeWord(&value); !word.empty(); word = takeWord(&value)) {
    for (const Text known :
         {u"none", u"disc", u"circle", u"square", u"decimal", u"lower-alpha", u"upper-alpha",
          u"lower-latin", u"upper-latin", u"lower-roman", u"upper-roman"}) {
      if (!is(word, known)) continue;
      to->listStyle = known == u"lower-latin"   ? u"lower-alpha"_ns
                      : known == u"upper-latin" ? u"upper-alpha"_ns
                                                : NSString(known);
      return true;
    }
  }
  return false;
}

// The first family of the list, without quotes; the generic ones as they are.
bool parseFontFamily(Text value, Declarations* to) {
  value = trimmed(value);
  const bool isQuoted = !value.empty() && (value[0] == u'"' || value[0] == u'\'');
  if (isQuoted) {
    const char16_t mark = value[0];
    while (!value.empty() && value.front() == mark) value.remove_prefix(1);
    value = trimmed(value.substr(0, value.find(mark)));
  } else {
    value = trimmed(value.substr(0, value.find(u',')));
  }
  if (value.empty() || (!isQuoted && is(value, u"inherit"))) return false;
  to->fontFamily = !isQuoted && is(value, u"initial") ? NSString() : NSString(value);
  return true;
}

struct SizeRow {
  Text name;
  Length size;
};
constexpr SizeRow kSizes[] = {
    {u"xx-small", {6.75}},
    {u"x-small", {7.5}},
    {u"small", {9.75}},
    {u"medium", {12}},
    {u"large", {13.5}},
    {u"x-large", {18}},
    {u"xx-large", {24}},
    {u"smaller", {5.0 / 6, Length::Unit::times}},
    {u"larger", {1.2, Length::Unit::times}},
};

bool parseFontSize(Text value, Declarations* to) {
  for (const SizeRow& row : kSizes) {
    if (is(value, row.name)) {
      to->fontSize = row.size;
      return true;
    }
  }
  return setLength(value, &to->fontSize);
}

bool parseFontWeight(Text value, Declarations* to) {
  size_t end = 0;
  const auto weight = number(value, &end);
  to->bold = weight ? *weight >= 600 : is(value, u"bold") || is(value, u"bolder");
  return weight || to->bold || is(value, u"normal") || is(value, u"lighter");
}

bool parseFontStyle(Text value, Declarations* to) {
  to->italic = is(value, u"italic") || is(value.substr(0, 7), u"oblique");
  return to->italic || is(value, u"normal");
}

bool parseColor(Text value, Declarations* to) {
  to->color = colorNamed(value);
  return to->color.has_value();
}

// The colour among a background's words.
bool parseBackground(Text value, Declarations* to) {
  to->background = colorNamed(value);
  for (Text rest = value; !to->background && !rest.empty();) {
    to->background = colorNamed(takeWord(&rest));
  }
  return to->background || is(value, u"transparent") || is(value, u"none");
}

bool parseDecoration(Text value, Declarations* to) {
  to->underline = contains(value, u"underline");
  to->strikethrough = contains(value, u"line-through");
  return to->underline || to->strikethrough || contains(value, u"none");
}

bool parseVerticalAlign(Text value, Declarations* to) {
  to->superscript = 0;
  to->baselineOffset = 0;
  if (is(value, u"super")) {
    to->superscript = 1;
  } else if (is(value, u"sub")) {
    to->superscript = -1;
  } else if (const auto raise = length(value); raise && raise->unit == Length::Unit::points) {
    to->baselineOffset = raise->value;
  }
  return true;
}

bool parseTextAlign(Text value, Declarations* to) {
  if (is(value, u"left")) {
    to->textAlign = NSTextAlignment::left;
  } else if (is(value, u"right") || is(value, u"end")) {
    to->textAlign = NSTextAlignment::right;
  } else if (is(value, u"center")) {
    to->textAlign = NSTextAlignment::center;
  } else if (is(value, u"justify")) {
    to->textAlign = NSTextAlignment::justified;
  } else if (is(value, u"start")) {
    to->textAlign = NSTextAlignment::natural;
  } else {
    return false;
  }
  return true;
}

bool parseLineHeight(Text value, Declarations* to) {
  to->leastLineHeight = false;
  if (is(value, u"normal")) {
    to->lineHeight = {0, Length::Unit::times};
    return true;
  }
  // "max(1.2em,14pt)": the line's own height, and no less than that.
  if (is(value.substr(0, 4), u"max(") && value.ends_with(u')')) {
    const size_t comma = value.rfind(u',');
    to->leastLineHeight = comma != value.npos;
    return comma != value.npos &&
           setLength(value.substr(comma + 1, value.size() - comma - 2), &to->lineHeight);
  }
  size_t end = 0;
  const auto times = number(value, &end);
  if (times && end == value.size()) {
    to->lineHeight = {*times, Length::Unit::times};
    return true;
  }
  return setLength(value, &to->lineHeight);
}

bool parseFirstLine(Text value, Declarations* to) { return setLength(value, &to->firstLine); }

// "36pt left,72pt decimal"
bool parseTabStops(Text value, Declarations* to) {
  constexpr size_t kMostStops = 64;
  to->tabStops.clear();
  while (!value.empty() && to->tabStops.size() < kMostStops) {
    const size_t comma = value.find(u',');
    Text stop = value.substr(0, comma);
    value.remove_prefix(comma == value.npos ? value.size() : comma + 1);
    Length location;
    if (!setLength(takeWord(&stop), &location)) return false;
    NSTextTab tab{location.value, NSTextAlignment::left, false};
    for (Text word = takeWord(&stop); !word.empty(); word = takeWord(&stop)) {
      if (is(word, u"center")) tab.alignment = NSTextAlignment::center;
      if (is(word, u"right")) tab.alignment = NSTextAlignment::right;
      if (is(word, u"decimal")) tab.decimal = true;
    }
    to->tabStops.push_back(tab);
  }
  return true;
}

bool parseDirection(Text value, Declarations* to) {
  to->rightToLeft = is(value, u"rtl");
  return true;
}

// "italic bold 12px/1.5 Arial, sans-serif"
bool parseFont(Text value, Declarations* to) {
  const auto declare = [to](Property property, bool known) {
    if (known) to->declare(property);
    return known;
  };
  for (Text rest = value;;) {
    const Text word = takeWord(&rest);
    if (word.empty()) return false;
    const size_t slash = word.find(u'/');
    const Text size = word.substr(0, slash);
    if (size == u"0" || size[0] == u'.' ||
        (size[0] >= u'0' && size[0] <= u'9' &&
         size.find_first_not_of(u"0123456789") != size.npos)) {
      if (!declare(Property::fontSize, parseFontSize(size, to))) return false;
      if (slash != word.npos) {
        declare(Property::lineHeight, parseLineHeight(word.substr(slash + 1), to));
      }
      return declare(Property::fontFamily, parseFontFamily(rest, to));
    }
    if (is(word, u"italic") || is(word, u"oblique")) {
      declare(Property::fontStyle, parseFontStyle(word, to));
    } else if (!is(word, u"normal")) {
      declare(Property::fontWeight, parseFontWeight(word, to));
    }
  }
}

// Sorted by name.
// clang-format off
constexpr PropertyRow kProperties[] = {
    {kFirstLineProperty,  Property::firstLine,     parseFirstLine,     false},
    {kTabStopsProperty,   Property::tabStops,      parseTabStops,      false},
    {u"background",       Property::background,    parseBackground,    false},
    {u"background-color", Property::background,    parseBackground,    false},
    {u"border",           Property::count,         parseBorder,        false},
    {u"border-bottom",    Property::borderBottom,  parseBorderBottom,  false},
    {u"border-left",      Property::borderLeft,    parseBorderLeft,    false},
    {u"border-right",     Property::borderRight,   parseBorderRight,   false},
    {u"border-top",       Property::borderTop,     parseBorderTop,     false},
    {u"color",            Property::color,         parseColor,         false},
    {u"direction",        Property::direction,     parseDirection,     false},
    {u"display",          Property::display,       parseDisplay,       true},
    {u"font",             Property::count,         parseFont,          true},
    {u"font-family",      Property::fontFamily,    parseFontFamily,    false},
    {u"font-size",        Property::fontSize,      parseFontSize,      true},
    {u"font-style",       Property::fontStyle,     parseFontStyle,     false},
    {u"font-weight",      Property::fontWeight,    parseFontWeight,    false},
    {u"height",           Property::height,        parseHeight,        true},
    {u"line-height",      Property::lineHeight,    parseLineHeight,    false},
    {u"list-style",       Property::listStyle,     parseListStyle,     true},
    {u"list-style-type",  Property::listStyle,     parseListStyle,     true},
    {u"margin",           Property::count,         parseMargin,        true},
    {u"margin-bottom",    Property::marginBottom,  parseMarginBottom,  true},
    {u"margin-left",      Property::marginLeft,    parseMarginLeft,    false},
    {u"margin-right",     Property::marginRight,   parseMarginRight,   false},
    {u"margin-top",       Property::marginTop,     parseMarginTop,     true},
    {u"max-height",       Property::height,        parseMaxHeight,     true},
    {u"opacity",          Property::opacity,       parseOpacity,       true},
    {u"overflow",         Property::overflow,      parseOverflow,      true},
    {u"padding",          Property::count,         parsePadding,       false},
    {u"padding-bottom",   Property::paddingBottom, parsePaddingBottom, false},
    {u"padding-left",     Property::paddingLeft,   parsePaddingLeft,   false},
    {u"padding-right",    Property::paddingRight,  parsePaddingRight,  false},
    {u"padding-top",      Property::paddingTop,    parsePaddingTop,    false},
    {u"text-align",       Property::textAlign,     parseTextAlign,     false},
    {u"text-decoration",  Property::decoration,    parseDecoration,    false},
    {u"text-decoration-line", Property::decoration, parseDecoration,   false},
    {u"text-indent",      Property::textIndent,    parseTextIndent,    false},
    {u"vertical-align",   Property::verticalAlign, parseVerticalAlign, false},
    {u"visibility",       Property::visibility,    parseVisibility,    true},
    {u"white-space",      Property::whiteSpace,    parseWhiteSpace,    true},
    {u"width",            Property::width,         parseWidth,         false},
};
// clang-format on
static_assert(std::ranges::adjacent_find(kProperties, std::ranges::greater_equal{},
                                         &PropertyRow::name) == std::ranges::end(kProperties));
constexpr size_t kLongestProperty = 20;

constexpr size_t kSlots = 128;

constexpr char16_t lower(char16_t c) { return c >= u'A' && c <= u'Z' ? c + 0x20 : c; }

// First, last and middle letter and the length tell the names apart well enough.
constexpr size_t slotOf(Text name) {
  return (lower(name.front()) * 7u + lower(name.back()) * 13u + lower(name[name.size() / 2]) * 29u +
          name.size()) %
         kSlots;
}

constexpr auto kPropertySlots = [] {
  std::array<uint8_t, kSlots> slots{};
  for (size_t i = 0; i < std::size(kProperties); ++i) {
    size_t slot = slotOf(kProperties[i].name);
    while (slots[slot] != 0) slot = (slot + 1) % kSlots;
    slots[slot] = static_cast<uint8_t>(i + 1);
  }
  return slots;
}();

}  // namespace

const PropertyRow* findProperty(std::u16string_view name) {
  if (name.empty() || name.size() > kLongestProperty) return nullptr;
  for (size_t slot = slotOf(name); kPropertySlots[slot] != 0; slot = (slot + 1) % kSlots) {
    const PropertyRow& row = kProperties[kPropertySlots[slot] - 1];
    if (is(name, row.name)) return &row;
  }
  return nullptr;
}

}  // namespace kelspar::html
