// Declarations out of attributes.
#include "platform/richtext/html_classes.h"

#include <algorithm>
#include <cmath>

namespace kelspar::html {

namespace {

void appendASCII(std::string_view text, std::u16string* out) {
  out->append(text.begin(), text.end());
}

void declareLength(std::u16string_view property, double points, std::u16string* out) {
  if (points == 0) return;
  *out += property;
  *out += u':';
  appendNumber(points, out);
  *out += u"pt;";
}

void declareColor(std::u16string_view property, const std::optional<NSColor>& color,
                  std::u16string* out) {
  if (!color) return;
  constexpr char16_t kHex[] = u"0123456789abcdef";
  *out += property;
  *out += u":#";
  for (const uint8_t level : {color->red, color->green, color->blue}) {
    *out += kHex[level >> 4];
    *out += kHex[level & 15];
  }
  *out += u';';
}

// A quoted family; what could end the quotation or the style element is left out.
void declareFamily(std::u16string_view family, std::u16string* out) {
  std::u16string name;
  for (const char16_t c : family) {
    constexpr std::u16string_view kUnsafe = u"'\"\\<>&;{}";
    if (c >= 0x20 && c < 0xD800 && (c < 0x7F || c > 0x9F) && kUnsafe.find(c) == kUnsafe.npos) {
      name += c;
    }
  }
  if (!name.empty()) *out += u"font-family:'" + name + u"';";
}

constexpr std::u16string_view kAlignments[] = {u"", u"left", u"center", u"right", u"justify"};

// What a paragraph and a list item have in common.
void declareText(const NSParagraphStyle& style, std::u16string* out) {
  if (style.alignment != NSTextAlignment::natural) {
    *out += u"text-align:";
    *out += kAlignments[static_cast<size_t>(style.alignment)];
    *out += u';';
  }
  if (style.rightToLeft) *out += u"direction:rtl;";
  if (style.lineHeightMultiple > 0) {
    *out += u"line-height:";
    appendNumber(style.lineHeightMultiple, out);
    *out += u';';
  } else {
    declareLength(u"line-height", std::max(style.minimumLineHeight, style.maximumLineHeight), out);
  }
  declareLength(u"padding-top", style.spacingBefore, out);
  declareLength(u"padding-bottom", style.spacingAfter, out);
}

}  // namespace

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

std::u16string Classes::paragraph(const NSParagraphStyle& style) {
  std::u16string declarations;
  declareText(style, &declarations);
  declareLength(u"margin-left", style.headIndent, &declarations);
  declareLength(u"margin-right", style.tailIndent, &declarations);
  declareLength(u"text-indent", style.firstLineIndent - style.headIndent, &declarations);
  return named(u'p', std::move(declarations));
}

std::u16string Classes::item(const NSParagraphStyle& style, double indent) {
  std::u16string declarations;
  declareText(style, &declarations);
  declareLength(u"margin-left", indent, &declarations);
  return named(u'l', std::move(declarations));
}

std::u16string Classes::look(const NSTextAttributes& attributes) {
  std::u16string declarations;
  const NSFont& font = attributes.font;
  if (font.family != font_.family) declareFamily(font.family, &declarations);
  if (font.size != font_.size) declareLength(u"font-size", font.size, &declarations);
  declareColor(u"color", attributes.foreground, &declarations);
  declareColor(u"background-color", attributes.background, &declarations);
  if (attributes.superscript > 0) declarations += u"vertical-align:super;";
  if (attributes.superscript < 0) declarations += u"vertical-align:sub;";
  if (attributes.superscript == 0) {
    declareLength(u"vertical-align", attributes.baselineOffset, &declarations);
  }
  return named(u's', std::move(declarations));
}

std::u16string Classes::list(const NSTextList& list, double indent) {
  std::u16string declarations;
  const std::u16string_view kind = list.marker.view();
  const bool isName = !kind.empty() && std::ranges::all_of(kind, [](char16_t c) {
    return (c >= u'a' && c <= u'z') || c == u'-';
  });
  if (isName && kind != u"decimal") {
    declarations += u"list-style-type:" + std::u16string(kind) + u";";
  }
  if (indent > 0) {
    declareLength(u"margin-left", indent, &declarations);
    declarations += u"padding-left:0;";
  }
  return named(u'o', std::move(declarations));
}

std::u16string Classes::cell(const NSTextTableCell& cell) {
  std::u16string declarations;
  declareLength(u"width", cell.width, &declarations);
  if (cell.border > 0) {
    declarations += u"border:";
    appendNumber(cell.border, &declarations);
    declarations += u"pt solid;";
  }
  declareColor(u"background-color", cell.background, &declarations);
  return named(u'c', std::move(declarations));
}

std::u16string Classes::sheet() const {
  std::u16string sheet;
  std::u16string body;
  declareFamily(font_.family, &body);
  declareLength(u"font-size", font_.size, &body);
  if (!body.empty()) body.pop_back();
  sheet += u"body{" + body + u"}\n";
  sheet +=
      u"p,pre,h1,h2,h3,h4,h5,h6{margin:0}\n"
      u".w,pre{white-space:pre-wrap}\n"
      u"h1,h2,h3,h4,h5,h6{font-size:";
  appendNumber(font_.size, &sheet);
  sheet += u"pt;font-weight:normal}\n";
  sheet +=
      u"ul,ol,blockquote{margin-top:0;margin-bottom:0}\n"
      u"table{border-collapse:collapse}\n"
      u"td{vertical-align:top}\n"
      u"a.k{color:inherit;text-decoration:none}\n"
      u"li.n{list-style-type:none}\n";
  for (const std::u16string& rule : rules_) sheet += rule;
  return sheet;
}

}  // namespace kelspar::html
