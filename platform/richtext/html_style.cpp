#include "platform/richtext/html_style.h"

#include <utility>

#include "platform/foundation/scan.h"
#include "platform/richtext/html_style_properties.h"
#include "platform/richtext/html_style_values.h"

namespace kelspar::html {

using namespace values;

namespace {

void parseDeclaration(Text text, bool layoutOnly, Declarations* to) {
  const size_t colon = text.find(u':');
  if (colon == text.npos) return;
  const PropertyRow* row = findProperty(trimmed(text.substr(0, colon)));
  if (!row || (layoutOnly && !row->isLayout)) return;
  Text value = trimmed(text.substr(colon + 1));
  bool important = false;
  if (const size_t mark = value.rfind(u'!');
      mark != value.npos && is(trimmed(value.substr(mark + 1)), u"important")) {
    important = true;
    value = trimmed(value.substr(0, mark));
  }
  Declarations one;
  if (value.empty() || !row->parse(value, &one)) return;
  if (row->property != Property::count) one.declare(row->property);
  if (important) one.important = one.set;
  to->add(one);
}

}  // namespace

void Declarations::take(Property property, const Declarations& other) {
  switch (property) {
    case Property::display:
      display = other.display;
      return;
    case Property::visibility:
      visible = other.visible;
      return;
    case Property::whiteSpace:
      whiteSpace = other.whiteSpace;
      return;
    case Property::marginTop:
      marginTop = other.marginTop;
      return;
    case Property::marginBottom:
      marginBottom = other.marginBottom;
      return;
    case Property::height:
      noHeight = other.noHeight;
      return;
    case Property::overflow:
      clipped = other.clipped;
      return;
    case Property::opacity:
      transparent = other.transparent;
      return;
    case Property::listStyle:
      listStyle = other.listStyle;
      return;
    case Property::marginLeft:
      marginLeft = other.marginLeft;
      return;
    case Property::marginRight:
      marginRight = other.marginRight;
      return;
    case Property::paddingTop:
      paddingTop = other.paddingTop;
      return;
    case Property::paddingRight:
      paddingRight = other.paddingRight;
      return;
    case Property::paddingBottom:
      paddingBottom = other.paddingBottom;
      return;
    case Property::paddingLeft:
      paddingLeft = other.paddingLeft;
      return;
    case Property::textIndent:
      textIndent = other.textIndent;
      return;
    case Property::fontFamily:
      fontFamily = other.fontFamily;
      return;
    case Property::fontSize:
      fontSize = other.fontSize;
      return;
    case Property::fontWeight:
      bold = other.bold;
      return;
    case Property::fontStyle:
      italic = other.italic;
      return;
    case Property::color:
      color = other.color;
      return;
    case Property::background:
      background = other.background;
      return;
    case Property::decoration:
      underline = other.underline;
      strikethrough = other.strikethrough;
      return;
    case Property::verticalAlign:
      superscript = other.superscript;
      baselineOffset = other.baselineOffset;
      return;
    case Property::textAlign:
      textAlign = other.textAlign;
      return;
    case Property::lineHeight:
      lineHeight = other.lineHeight;
      leastLineHeight = other.leastLineHeight;
      return;
    case Property::direction:
      rightToLeft = other.rightToLeft;
      return;
    case Property::width:
      width = other.width;
      return;
    case Property::imageHeight:
      imageHeight = other.imageHeight;
      return;
    case Property::firstLine:
      firstLine = other.firstLine;
      return;
    case Property::tabStops:
      tabStops = other.tabStops;
      return;
    case Property::borderTop:
      borders.top = other.borders.top;
      return;
    case Property::borderRight:
      borders.right = other.borders.right;
      return;
    case Property::borderBottom:
      borders.bottom = other.borders.bottom;
      return;
    case Property::borderLeft:
      borders.left = other.borders.left;
      return;
    case Property::count:
      return;
  }
}

// Far cheaper than a new value: a tag declares few of them, and most none.
void Declarations::clear() {
  static const Declarations kNone;
  for (uint64_t left = std::exchange(set, 0); left != 0; left &= left - 1) {
    take(static_cast<Property>(__builtin_ctzll(left)), kNone);
  }
  important = 0;
}

void Declarations::add(const Declarations& other) {
  const uint64_t taken = other.set & ~(important & ~other.important);
  for (uint64_t left = taken; left != 0; left &= left - 1) {
    take(static_cast<Property>(__builtin_ctzll(left)), other);
  }
  set |= taken;
  important |= other.important & taken;
}

bool Declarations::hides() const {
  return display == Display::none || (noHeight && clipped) || transparent;
}

void parseDeclarations(std::u16string_view text, bool layoutOnly, Declarations* declarations) {
  for (size_t from = 0; from < text.size();) {
    // A data: URI holds semicolons, but then it is no value that counts here.
    const size_t end = scan::findAny(text, from, u';');
    parseDeclaration(text.substr(from, end - from), layoutOnly, declarations);
    from = end + 1;
  }
}

}  // namespace kelspar::html
