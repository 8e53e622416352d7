// Attributed text to dictionaries and back, member by member.
#include "platform/runtime/attributed_json.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "platform/foundation/base64.h"

namespace kelspar::runtime {

namespace {

constexpr std::u16string_view kAlignments[] = {u"natural", u"left", u"center", u"right",
                                               u"justified"};

struct Length {
  std::u16string_view key;
  double NSParagraphStyle::*member;
};
constexpr Length kLengths[] = {
    {u"firstLineIndent", &NSParagraphStyle::firstLineIndent},
    {u"headIndent", &NSParagraphStyle::headIndent},
    {u"tailIndent", &NSParagraphStyle::tailIndent},
    {u"spacingBefore", &NSParagraphStyle::spacingBefore},
    {u"spacingAfter", &NSParagraphStyle::spacingAfter},
    {u"lineHeightMultiple", &NSParagraphStyle::lineHeightMultiple},
    {u"minimumLineHeight", &NSParagraphStyle::minimumLineHeight},
    {u"maximumLineHeight", &NSParagraphStyle::maximumLineHeight},
};

struct Count {
  std::u16string_view key;
  uint16_t NSTextTableCell::*member;
};
constexpr Count kCellCounts[] = {
    {u"row", &NSTextTableCell::row},         {u"column", &NSTextTableCell::column},
    {u"rowSpan", &NSTextTableCell::rowSpan}, {u"columnSpan", &NSTextTableCell::columnSpan},
    {u"columns", &NSTextTableCell::columns},
};

struct BorderKeys {
  std::u16string_view width, color;
};
constexpr BorderKeys kBorder = {u"border", u"borderColor"};
struct BorderSide {
  BorderKeys keys;
  NSTextBorder NSTextBorders::*side;
};
constexpr BorderSide kBorderSides[] = {
    {{u"borderTop", u"borderTopColor"}, &NSTextBorders::top},
    {{u"borderRight", u"borderRightColor"}, &NSTextBorders::right},
    {{u"borderBottom", u"borderBottomColor"}, &NSTextBorders::bottom},
    {{u"borderLeft", u"borderLeftColor"}, &NSTextBorders::left},
};

struct Edge {
  std::u16string_view key;
  float NSTextEdges::*side;
};
constexpr Edge kMargins[] = {
    {u"marginTop", &NSTextEdges::top},
    {u"marginRight", &NSTextEdges::right},
    {u"marginBottom", &NSTextEdges::bottom},
    {u"marginLeft", &NSTextEdges::left},
};
constexpr Edge kPaddings[] = {
    {u"paddingTop", &NSTextEdges::top},
    {u"paddingRight", &NSTextEdges::right},
    {u"paddingBottom", &NSTextEdges::bottom},
    {u"paddingLeft", &NSTextEdges::left},
};
constexpr double kWidest = 1e6;  // of lines and edges

// Writing

double rounded(float points) {
  constexpr double kExact = 1000;  // a float's digits behind that say nothing
  return std::round(points * kExact) / kExact;
}

// Whole numbers are written without a fraction.
NSNumber number(double value) {
  constexpr double kExact = 9007199254740992;
  const bool whole = std::abs(value) < kExact && value == std::trunc(value);
  return whole ? NSNumber(static_cast<int64_t>(value)) : NSNumber(value);
}

NSString colorText(const NSColor& color) {
  return NSString::stringWithFormat(u"#%02X%02X%02X", static_cast<uint32_t>(color.red),
                                    static_cast<uint32_t>(color.green),
                                    static_cast<uint32_t>(color.blue));
}

class Writer {
 public:
  void set(std::u16string_view key, const id& value) {
    if (value) dictionary_.setObject(value, NSString(key));
  }
  void set(std::u16string_view key, double value) {
    if (value != 0) set(key, id(number(value)));
  }
  void set(std::u16string_view key, bool value) {
    if (value) set(key, id(NSNumber(true)));
  }
  void set(std::u16string_view key, const std::optional<NSColor>& color) {
    if (color) set(key, id(colorText(*color)));
  }
  [[nodiscard]] NSDictionary done() { return NSDictionary(std::move(dictionary_)); }

 private:
  NSMutableDictionary dictionary_;
};

NSDictionary fontContent(const NSFont& font) {
  Writer out;
  out.set(u"family", id(font.family));
  out.set(u"size", font.size);
  out.set(u"bold", font.bold);
  out.set(u"italic", font.italic);
  return out.done();
}

NSDictionary listContent(const NSTextList& list) {
  Writer out;
  out.set(u"identity", static_cast<double>(list.identity));
  out.set(u"ordered", list.ordered);
  out.set(u"marker", id(list.marker));
  out.set(u"startingNumber", id(NSNumber(list.startingNumber)));
  return out.done();
}

// The same on all sides under one key.
void setBorders(const NSTextBorders& borders, Writer* out) {
  const auto set = [out](const BorderKeys& keys, const NSTextBorder& border) {
    out->set(keys.width, rounded(border.width));
    if (border.color != NSColor{}) out->set(keys.color, std::optional(border.color));
  };
  if (borders == NSTextBorders::all(borders.top)) {
    set(kBorder, borders.top);
    return;
  }
  for (const auto& [keys, side] : kBorderSides) set(keys, borders.*side);
}

NSDictionary cellContent(const NSTextTableCell& cell) {
  Writer out;
  out.set(u"table", id(NSNumber(cell.table)));
  for (const Count& count : kCellCounts) out.set(count.key, id(NSNumber(cell.*count.member)));
  out.set(u"width", cell.width);
  out.set(u"block", cell.isBlock);
  for (const auto& [key, side] : kMargins) out.set(key, rounded(cell.margin.*side));
  if (cell.padding) {
    for (const auto& [key, side] : kPaddings) {
      out.set(key, id(number(rounded((*cell.padding).*side))));
    }
  }
  setBorders(cell.borders, &out);
  out.set(u"background", cell.background);
  return out.done();
}

NSDictionary tabContent(const NSTextTab& tab) {
  Writer out;
  out.set(u"location", id(number(tab.location)));
  out.set(u"alignment", id(NSString(kAlignments[static_cast<size_t>(tab.alignment)])));
  out.set(u"decimal", tab.decimal);
  return out.done();
}

template <class T>
id listOf(const std::vector<T>& items, NSDictionary (*content)(const T&)) {
  if (items.empty()) return nil;
  std::vector<id> contents;
  for (const T& item : items) contents.push_back(content(item));
  return NSArray(std::move(contents));
}

id paragraphContent(const NSParagraphStyle* style) {
  if (!style || *style == NSParagraphStyle()) return nil;
  Writer out;
  if (style->alignment != NSTextAlignment::natural) {
    out.set(u"alignment", id(NSString(kAlignments[static_cast<size_t>(style->alignment)])));
  }
  out.set(u"rightToLeft", style->rightToLeft);
  for (const Length& length : kLengths) out.set(length.key, style->*length.member);
  out.set(u"headingLevel", static_cast<double>(style->headingLevel));
  out.set(u"quoteLevel", static_cast<double>(style->quoteLevel));
  out.set(u"preformatted", style->preformatted);
  out.set(u"tabStops", listOf(style->tabStops, tabContent));
  out.set(u"lists", listOf(style->lists, listContent));
  out.set(u"cells", listOf(style->cells, cellContent));
  return out.done();
}

id attachmentContent(const NSTextAttachment* attachment) {
  if (!attachment) return nil;
  Writer out;
  out.set(u"type", id(attachment->type));
  out.set(u"width", id(number(attachment->width)));
  out.set(u"height", id(number(attachment->height)));
  out.set(u"size", id(NSNumber(attachment->contents.length())));
  out.set(u"name", id(attachment->name));
  out.set(u"source", id(attachment->source));
  out.set(u"alternative", id(attachment->alternative));
  return out.done();
}

NSDictionary attributesContent(const NSTextAttributes& attributes) {
  Writer out;
  out.set(u"font", id(fontContent(attributes.font)));
  out.set(u"foregroundColor", attributes.foreground);
  out.set(u"backgroundColor", attributes.background);
  out.set(u"underline", attributes.underline);
  out.set(u"strikethrough", attributes.strikethrough);
  out.set(u"superscript", static_cast<double>(attributes.superscript));
  out.set(u"baselineOffset", attributes.baselineOffset);
  out.set(u"link", id(attributes.link));
  out.set(u"paragraph", paragraphContent(attributes.paragraph.get()));
  out.set(u"attachment", attachmentContent(attributes.attachment.get()));
  return out.done();
}

// Reading

std::optional<NSTextAlignment> alignmentNamed(const NSString& name) {
  const auto* found = std::ranges::find(kAlignments, name.view());
  if (found == std::end(kAlignments)) return {};
  return static_cast<NSTextAlignment>(found - kAlignments);
}

std::optional<NSColor> colorFrom(std::u16string_view text) {
  if (text.size() != 7 || text[0] != u'#') return {};
  uint32_t value = 0;
  for (const char16_t c : text.substr(1)) {
    const char16_t lower = c | 0x20;
    const bool isDigit = c >= u'0' && c <= u'9';
    if (!isDigit && (lower < u'a' || lower > u'f')) return {};
    value = value << 4 | static_cast<uint32_t>(isDigit ? c - u'0' : lower - u'a' + 10);
  }
  return NSColor{static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8),
                 static_cast<uint8_t>(value)};
}

// Members of one dictionary. Each read leaves the target alone when the member is missing, and
// notes when it is of another kind.
class Reader {
 public:
  Reader(const id& content, bool* fits) : dictionary_(content.as<NSDictionary>()), fits_(fits) {
    if (!dictionary_) *fits_ = false;
  }

  [[nodiscard]] id member(std::u16string_view key) const {
    const id value = dictionary_.objectForKey(key);
    return value.is<NSNull>() ? id() : value;
  }

  template <class Value, class Read>
  void take(std::u16string_view key, const Read& read) const {
    const id value = member(key);
    if (!value) return;
    const auto typed = value.as<Value>();
    if (!typed || !read(typed)) *fits_ = false;
  }

  void read(std::u16string_view key, NSString* out) const {
    take<NSString>(key, [&](const NSString& text) { return *out = text, true; });
  }
  void read(std::u16string_view key, NSData* out) const {
    take<NSData>(key, [&](const NSData& data) { return *out = data, true; });
  }
  void read(std::u16string_view key, bool* out) const {
    take<NSNumber>(key, [&](const NSNumber& value) { return *out = value.boolValue(), true; });
  }
  void read(std::u16string_view key, double* out) const {
    take<NSNumber>(key, [&](const NSNumber& value) {
      *out = value.doubleValue();
      return std::isfinite(*out);
    });
  }
  void read(std::u16string_view key, std::optional<NSColor>* out) const {
    take<NSString>(key,
                   [&](const NSString& text) { return static_cast<bool>(*out = colorFrom(text)); });
  }
  void read(std::u16string_view key, NSTextAlignment* out) const {
    take<NSString>(key, [&](const NSString& name) {
      const auto alignment = alignmentNamed(name);
      *out = alignment.value_or(*out);
      return alignment.has_value();
    });
  }
  template <std::integral T>
  void read(std::u16string_view key, T* out) const {
    take<NSNumber>(key, [&](const NSNumber& value) {
      *out = static_cast<T>(value.longValue());
      return static_cast<double>(*out) == value.doubleValue();
    });
  }
  template <class T>
  void read(std::u16string_view key, std::vector<T>* out, T (*item)(const id&, bool*)) const {
    take<NSArray>(key, [&](const NSArray& items) {
      for (const id& content : items) out->push_back(item(content, fits_));
      return true;
    });
  }

 private:
  NSDictionary dictionary_;
  bool* fits_;
};

NSFont readFont(const id& content, bool* fits) {
  const Reader in(content, fits);
  NSFont font;
  in.read(u"family", &font.family);
  in.read(u"size", &font.size);
  in.read(u"bold", &font.bold);
  in.read(u"italic", &font.italic);
  return font;
}

NSTextTab readTab(const id& content, bool* fits) {
  const Reader in(content, fits);
  NSTextTab tab;
  in.read(u"location", &tab.location);
  in.read(u"alignment", &tab.alignment);
  in.read(u"decimal", &tab.decimal);
  return tab;
}

NSTextList readList(const id& content, bool* fits) {
  const Reader in(content, fits);
  NSTextList list;
  in.read(u"identity", &list.identity);
  in.read(u"ordered", &list.ordered);
  in.read(u"marker", &list.marker);
  in.read(u"startingNumber", &list.startingNumber);
  return list;
}

void readBorder(const Reader& in, const BorderKeys& keys, NSTextBorder* border) {
  double width = border->width;
  std::optional<NSColor> color = border->color;
  in.read(keys.width, &width);
  in.read(keys.color, &color);
  border->width = static_cast<float>(std::clamp(width, 0.0, kWidest));
  border->color = color.value_or(NSColor{});
}

void readEdge(const Reader& in, std::u16string_view key, float* edge) {
  double points = 0;
  in.read(key, &points);
  *edge = static_cast<float>(std::clamp(points, 0.0, kWidest));
}

NSTextTableCell readCell(const id& content, bool* fits) {
  const Reader in(content, fits);
  NSTextTableCell cell;
  in.read(u"table", &cell.table);
  for (const Count& count : kCellCounts) in.read(count.key, &(cell.*count.member));
  in.read(u"width", &cell.width);
  in.read(u"block", &cell.isBlock);
  for (const auto& [key, side] : kMargins) readEdge(in, key, &(cell.margin.*side));
  for (const auto& [key, side] : kPaddings) {
    if (!in.member(key)) continue;
    if (!cell.padding) cell.padding.emplace();
    readEdge(in, key, &((*cell.padding).*side));
  }
  readBorder(in, kBorder, &cell.borders.top);
  cell.borders = NSTextBorders::all(cell.borders.top);
  for (const auto& [keys, side] : kBorderSides) readBorder(in, keys, &(cell.borders.*side));
  in.read(u"background", &cell.background);
  return cell;
}

NSParagraphStyle readParagraph(const id& content, bool* fits) {
  const Reader in(content, fits);
  NSParagraphStyle style;
  in.read(u"alignment", &style.alignment);
  in.read(u"rightToLeft", &style.rightToLeft);
  for (const Length& length : kLengths) in.read(length.key, &(style.*length.member));
  in.read(u"headingLevel", &style.headingLevel);
  in.read(u"quoteLevel", &style.quoteLevel);
  in.read(u"preformatted", &style.preformatted);
  in.read(u"tabStops", &style.tabStops, readTab);
  in.read(u"lists", &style.lists, readList);
  in.read(u"cells", &style.cells, readCell);
  return style;
}

NSTextAttachment readAttachment(const id& content, bool* fits) {
  const Reader in(content, fits);
  NSTextAttachment attachment;
  in.read(u"contents", &attachment.contents);
  in.read(u"type", &attachment.type);
  in.read(u"name", &attachment.name);
  in.read(u"source", &attachment.source);
  in.read(u"alternative", &attachment.alternative);
  in.read(u"width", &attachment.width);
  in.read(u"height", &attachment.height);
  return attachment;
}

NSTextAttributes readAttributes(const id& content, bool* fits) {
  const Reader in(content, fits);
  NSTextAttributes attributes;
  if (const id font = in.member(u"font")) attributes.font = readFont(font, fits);
  in.read(u"foregroundColor", &attributes.foreground);
  in.read(u"backgroundColor", &attributes.background);
  in.read(u"underline", &attributes.underline);
  in.read(u"strikethrough", &attributes.strikethrough);
  in.read(u"superscript", &attributes.superscript);
  in.read(u"baselineOffset", &attributes.baselineOffset);
  in.read(u"link", &attributes.link);
  if (const id style = in.member(u"paragraph")) {
    attributes.paragraph = std::make_shared<NSParagraphStyle>(readParagraph(style, fits));
  }
  if (const id attachment = in.member(u"attachment")) {
    attributes.attachment = std::make_shared<NSTextAttachment>(readAttachment(attachment, fits));
  }
  return attributes;
}

}  // namespace

NSDictionary contentOfAttributed(const NSAttributedString& text) {
  std::vector<id> runs;
  runs.reserve(text.runs().size());
  for (const NSTextRun& run : text.runs()) {
    runs.push_back(NSDictionary(
        {{u"length", NSNumber(run.length)}, {u"attributes", attributesContent(*run.attributes)}}));
  }
  return NSDictionary({{u"string", text.string()}, {u"runs", NSArray(std::move(runs))}});
}

id readAttributed(const id& content) {
  bool fits = true;
  const Reader in(content, &fits);
  NSString text;
  in.read(u"string", &text);
  if (!fits || !text) return nil;
  const id list = in.member(u"runs");
  if (!list) return NSAttributedString(text);
  if (!list.is<NSArray>()) return nil;
  std::vector<NSTextRun> runs;
  size_t length = 0;
  for (const id& element : list.as<NSArray>()) {
    const Reader run(element, &fits);
    NSTextRun& added = runs.emplace_back();
    run.read(u"length", &added.length);
    if (added.length > text.length() - length) fits = false;
    if (const id attributes = run.member(u"attributes")) {
      added.attributes = std::make_shared<NSTextAttributes>(readAttributes(attributes, &fits));
    }
    if (!fits) return nil;
    length += added.length;
  }
  return length == text.length() ? NSAttributedString(text, std::move(runs)) : nil;
}

id readRTF(const id& content) {
  const auto text = content.as<NSString>();
  auto bytes = text ? base64::decodeStrict(text) : std::nullopt;
  return bytes ? NSAttributedString::initWithRTF(NSData(std::move(*bytes))) : nil;
}

}  // namespace kelspar::runtime
