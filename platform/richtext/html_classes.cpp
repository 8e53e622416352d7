// Declarations out of attributes.
#include "platform/richtext/html_classes.h"

#include <algorithm>
#include <cmath>

#include "platform/richtext/html_style.h"

namespace kelspar::html {

namespace {

void appendASCII(std::string_view text, std::u16string* out) {
  out->append(text.begin(), text.end());
}

void declare(std::u16string_view property, double points, std::u16string* out) {
  *out += property;
  *out += u':';
  appendNumber(points, out);
  *out += points == 0 ? u";" : u"pt;";
}

void declareLength(std::u16string_view property, double points, std::u16string* out) {
  if (points != 0) declare(property, points, out);
}

void appendColor(const NSColor& color, std::u16string* out) {
  constexpr char16_t kHex[] = u"0123456789abcdef";
  *out += u'#';
  for (const uint8_t level : {color.red, color.green, color.blue}) {
    *out += kHex[level >> 4];
    *out += kHex[level & 15];
  }
}

void declareColor(std::u16string_view property, const std::optional<NSColor>& color,
                  std::u16string* out) {
  if (!color) return;
  *out += property;
  *out += u':';
  appendColor(*color, out);
  *out += u';';
}

void declareBorder(std::u16string_view property, const NSTextBorder& border, std::u16string* out) {
  *out += property;
  *out += u':';
  if (border.width <= 0) {
    *out += u"none;";
    return;
  }
  appendNumber(border.width, out);
  *out += u"pt solid";
  if (border.color != NSColor{}) {
    *out += u' ';
    appendColor(border.color, out);
  }
  *out += u';';
}

// A property for each side, or one for all.
void declareBorders(const NSTextBorders& borders, std::u16string* out) {
  if (borders == NSTextBorders{}) return;
  if (borders == NSTextBorders::all(borders.top)) {
    declareBorder(u"border", borders.top, out);
    return;
  }
  declareBorder(u"border-top", borders.top, out);
  declareBorder(u"border-right", borders.right, out);
  declareBorder(u"border-bottom", borders.bottom, out);
  declareBorder(u"border-left", borders.left, out);
}

void declareEdges(std::u16string_view property, const NSTextEdges& edges, std::u16string* out) {
  *out += property;
  *out += u':';
  for (const float edge : {edges.top, edges.right, edges.bottom, edges.left}) {
    appendNumber(edge, out);
    *out += u"pt ";
  }
  out->back() = u';';
}

void declareFamily(std::u16string_view family, std::u16string* out) {
  const std::u16string name = safeFamily(family);
  if (name.empty()) {
    *out += u"font-family:initial;";
  } else {
    *out += u"font-family:'" + name + u"';";
  }
}

constexpr std::u16string_view kAlignments[] = {u"start", u"left", u"center", u"right", u"justify"};

bool hasSameLineHeight(const NSParagraphStyle& a, const NSParagraphStyle& b) {
  return a.lineHeightMultiple == b.lineHeightMultiple &&
         a.minimumLineHeight == b.minimumLineHeight && a.maximumLineHeight == b.maximumLineHeight;
}

void declareLineHeight(const NSParagraphStyle& style, std::u16string* out) {
  *out += u"line-height:";
  if (style.lineHeightMultiple > 0) {
    appendNumber(style.lineHeightMultiple, out);
  } else if (style.maximumLineHeight > 0) {
    appendNumber(style.maximumLineHeight, out);
    *out += u"pt";
  } else if (style.minimumLineHeight > 0) {
    *out += u"max(1.2em,";
    appendNumber(style.minimumLineHeight, out);
    *out += u"pt)";
  } else {
    *out += u"normal";
  }
  *out += u';';
}

void declareTabStops(const std::vector<NSTextTab>& stops, std::u16string* out) {
  if (stops.empty()) return;
  *out += kTabStopsProperty;
  *out += u':';
  for (const NSTextTab& stop : stops) {
    if (&stop != &stops.front()) *out += u',';
    appendNumber(stop.location, out);
    *out += u"pt";
    if (stop.alignment == NSTextAlignment::center) *out += u" center";
    if (stop.alignment == NSTextAlignment::right) *out += u" right";
    if (stop.decimal) *out += u" decimal";
  }
  *out += u';';
}

// What a paragraph and a list item have in common, where it is not as around them.
void declareText(const NSParagraphStyle& style, const NSParagraphStyle& around,
                 std::u16string* out) {
  if (style.alignment != around.alignment) {
    *out += u"text-align:";
    *out += kAlignments[static_cast<size_t>(style.alignment)];
    *out += u';';
  }
  if (style.rightToLeft != around.rightToLeft) {
    *out += style.rightToLeft ? u"direction:rtl;" : u"direction:ltr;";
  }
  if (!hasSameLineHeight(style, around)) declareLineHeight(style, out);
  declareLength(u"padding-top", style.spacingBefore, out);
  declareLength(u"padding-bottom", style.spacingAfter, out);
  declareLength(u"margin-right", boundedIndent(style.tailIndent) - boundedIndent(around.tailIndent),
                out);
  declareTabStops(style.tabStops, out);
}

double firstLine(const NSParagraphStyle& style) {
  return boundedIndent(style.firstLineIndent) - boundedIndent(style.headIndent);
}

}  // namespace

double boundedIndent(double indent) { return std::clamp(indent, -kLargestIndent, kLargestIndent); }

double boundedSize(double size) { return std::clamp(size, 0.5, 1000.0); }

std::u16string safeFamily(std::u16string_view family) {
  std::u16string name;
  for (const char16_t c : family) {
    constexpr std::u16string_view kUnsafe = u"'\"\\<>&;{}*";
    if (c >= 0x20 && c < 0xD800 && (c < 0x7F || c > 0x9F) && kUnsafe.find(c) == kUnsafe.npos) {
      name += c;
    }
  }
  while (name.starts_with(u' ')) name.erase(0, 1);
  while (name.ends_with(u' ')) name.pop_back();
  return name;
}

void appendNumber(double value, std::u16string* out) {
  constexpr double kLargest = 1e9;
  if (!std::isfinite(value)) value = 0;
  const auto thousandths =
      static_cast<int64_t>(std::llround(std::clamp(value, -kLargest, kLargest) * 1000));
  if (thousandths < 0) *out += u'-';
  const int64_t size = std::abs(thousandths);
  appendASCII(std::to_string(size / 1000), out);
  if (size % 1000 == 0) return;
  std::string fraction = std::to_string(1000 + size % 1000).substr(1);
  while (fraction.back() == '0') fraction.pop_back();
  *out += u'.';
  appendASCII(fraction, out);
}

std::u16string Classes::named(char16_t kind, std::u16string declarations) {
  if (declarations.empty()) return {};
  declarations.pop_back();  // the last semicolon
  std::u16string& name = names_[kind + declarations];
  if (name.empty()) {
    name = kind;
    appendASCII(std::to_string(names_.size()), &name);
    rules_.push_back(u"." + name + u"{" + declarations + u"}\n");
  }
  return name;
}

std::u16string Classes::paragraph(const NSParagraphStyle& style, const NSParagraphStyle& around) {
  std::u16string declarations;
  declareText(style, around, &declarations);
  declareLength(u"margin-left", boundedIndent(style.headIndent) - boundedIndent(around.headIndent),
                &declarations);
  if (firstLine(style) != firstLine(around)) {
    declare(u"text-indent", firstLine(style), &declarations);
  }
  return named(u'p', std::move(declarations));
}

std::u16string Classes::item(const NSParagraphStyle& style, const NSParagraphStyle& around,
                             double from) {
  std::u16string declarations;
  declareText(style, around, &declarations);
  declareLength(u"margin-left", boundedIndent(style.headIndent) - from, &declarations);
  if (firstLine(style) != firstLine(around)) {
    declare(kFirstLineProperty, firstLine(style), &declarations);
  }
  return named(u'l', std::move(declarations));
}

std::u16string Classes::list(const NSTextList& list, double indent, bool isInner) {
  std::u16string declarations;
  const std::u16string_view kind = list.marker.view();
  const bool isName = !kind.empty() && std::ranges::all_of(kind, [](char16_t c) {
    return (c >= u'a' && c <= u'z') || c == u'-';
  });
  if (isName && kind != u"decimal") {
    declarations += u"list-style-type:" + std::u16string(kind) + u";";
  }
  // A list without an indent keeps the padding in which the markers stand.
  declare(u"margin-left", indent, &declarations);
  if (indent > 0 || isInner) declarations += u"padding-left:0;";
  return named(u'o', std::move(declarations));
}

std::u16string Classes::image(double width, double height) {
  std::u16string declarations;
  declareLength(u"width", width, &declarations);
  declareLength(u"height", height, &declarations);
  return named(u'i', std::move(declarations));
}

std::u16string Classes::look(const NSTextAttributes& attributes) {
  std::u16string declarations;
  const NSFont& font = attributes.font;
  if (font.family != font_.family) declareFamily(font.family, &declarations);
  if (font.size != font_.size) declare(u"font-size", boundedSize(font.size), &declarations);
  declareColor(u"color", attributes.foreground, &declarations);
  declareColor(u"background-color", attributes.background, &declarations);
  if (attributes.superscript > 0) declarations += u"vertical-align:super;";
  if (attributes.superscript < 0) declarations += u"vertical-align:sub;";
  if (attributes.superscript == 0) {
    declareLength(u"vertical-align", attributes.baselineOffset, &declarations);
  }
  return named(u's', std::move(declarations));
}

std::u16string Classes::cell(const NSTextTableCell& cell) {
  std::u16string declarations;
  declareLength(u"width", cell.width, &declarations);
  if (cell.margin != NSTextEdges{}) declareEdges(u"margin", cell.margin, &declarations);
  if (cell.padding) declareEdges(u"padding", *cell.padding, &declarations);
  declareBorders(cell.borders, &declarations);
  declareColor(u"background-color", cell.background, &declarations);
  return named(u'c', std::move(declarations));
}

std::u16string Classes::sheet() const {
  std::u16string sheet;
  std::u16string body;
  if (font_.family) declareFamily(font_.family, &body);
  declare(u"font-size", boundedSize(font_.size), &body);
  if (!body.empty()) body.pop_back();
  sheet += u"body{" + body + u"}\n";
  sheet +=
      u"p,pre,h1,h2,h3,h4,h5,h6{margin:0}\n"
      u".w,pre{white-space:pre-wrap}\n"
      u"h1,h2,h3,h4,h5,h6{font-size:";
  appendNumber(boundedSize(font_.size), &sheet);
  sheet += u"pt;font-weight:normal}\n";
  sheet +=
      u"ul,ol{margin-top:0;margin-bottom:0}\n"
      u"blockquote{margin:0}\n"  // its paragraphs have its indent
      u"table{border-collapse:collapse}\n"
      u"td{vertical-align:top}\n"
      u"a.k{color:inherit;text-decoration:none}\n"
      u"li.n{list-style-type:none}\n";
  for (const std::u16string& rule : rules_) sheet += rule;
  return sheet;
}

}  // namespace kelspar::html
