#include "platform/richtext/html_looks.h"

#include <algorithm>
#include <iterator>

#include "platform/richtext/html_attributes.h"
#include "platform/richtext/html_boxes.h"
#include "platform/richtext/html_classes.h"
#include "platform/richtext/html_colors.h"

namespace kelspar::html {

namespace {

// Bits of what an element changes.
enum Own : uint32_t {
  kFamily = 1u << 0,
  kSize = 1u << 1,
  kBold = 1u << 2,
  kItalic = 1u << 3,
  kForeground = 1u << 4,
  kBackground = 1u << 5,
  kUnderline = 1u << 6,
  kStrikethrough = 1u << 7,
  kSuperscript = 1u << 8,
  kBaseline = 1u << 9,
  kLink = 1u << 10,
  kParagraph = 1u << 11,
};

constexpr size_t kDeepestLists = 16;
constexpr size_t kDeepestTables = 16;
constexpr double kIndent = 30;                 // of lists and quotes
constexpr uint32_t kFirstBlock = 0x8000'0000;  // tables count from 1

bool isCell(Tag tag) { return tag == Tag::td || tag == Tag::th; }

// Nothing in lists, whose markers stand outside of it.
bool canBeBox(Tag tag, const NSParagraphStyle& paragraph) {
  return tag != Tag::body && !isCell(tag) && !has(tag, kTablePart | kFormatting) &&
         paragraph.lists.empty() && paragraph.cells.size() < kDeepestTables;
}

void take(const NSTextAttributes& from, uint32_t own, NSTextAttributes* to) {
  if (own & kFamily) to->font.family = from.font.family;
  if (own & kSize) to->font.size = from.font.size;
  if (own & kBold) to->font.bold = from.font.bold;
  if (own & kItalic) to->font.italic = from.font.italic;
  if (own & kForeground) to->foreground = from.foreground;
  if (own & kBackground) to->background = from.background;
  if (own & kUnderline) to->underline = from.underline;
  if (own & kStrikethrough) to->strikethrough = from.strikethrough;
  if (own & kSuperscript) to->superscript = from.superscript;
  if (own & kBaseline) to->baselineOffset = from.baselineOffset;
  if (own & kLink) to->link = from.link;
  if (own & kParagraph) to->paragraph = from.paragraph;
}

// What elements look like by nature (HTML, 15.3).
void applyNature(Tag tag, NSTextAttributes* style, uint32_t* own) {
  constexpr double kHeadingSizes[] = {2, 1.5, 1.17, 1, 0.83, 0.67};
  NSFont& font = style->font;
  switch (tag) {
    case Tag::h1:
    case Tag::h2:
    case Tag::h3:
    case Tag::h4:
    case Tag::h5:
    case Tag::h6:
      font.size *= kHeadingSizes[static_cast<int>(tag) - static_cast<int>(Tag::h1)];
      font.bold = true;
      *own |= kSize | kBold;
      return;
    case Tag::b:
    case Tag::strong:
    case Tag::th:
      font.bold = true;
      *own |= kBold;
      return;
    case Tag::i:
    case Tag::em:
    case Tag::cite:
    case Tag::dfn:
    case Tag::var:
    case Tag::address:
      font.italic = true;
      *own |= kItalic;
      return;
    case Tag::u:
    case Tag::ins:
      style->underline = true;
      *own |= kUnderline;
      return;
    case Tag::s:
    case Tag::strike:
    case Tag::del:
      style->strikethrough = true;
      *own |= kStrikethrough;
      return;
    case Tag::sup:
    case Tag::sub:
      style->superscript = tag == Tag::sup ? 1 : -1;
      *own |= kSuperscript;
      return;
    case Tag::code:
    case Tag::kbd:
    case Tag::samp:
    case Tag::tt:
    case Tag::pre:
    case Tag::listing:
    case Tag::xmp:
    case Tag::plaintext:
      font.family = u"monospace";
      *own |= kFamily;
      return;
    case Tag::small:
    case Tag::big:
      font.size *= tag == Tag::small ? 5.0 / 6 : 1.2;
      *own |= kSize;
      return;
    case Tag::mark:
      style->background = NSColor{255, 255, 0};
      *own |= kBackground;
      return;
    default:
      return;
  }
}

void applyAttributes(Tag tag, const Tokenizer& tag_, NSTextAttributes* style, uint32_t* own) {
  if (tag == Tag::a) {
    if (const NSString link = linkOf(tag_)) {
      style->link = link;
      *own |= kLink;
    }
    return;
  }
  if (tag != Tag::font && tag != Tag::body) return;
  const Attribute* const color = tag_.attribute(tag == Tag::font ? u"color" : u"text");
  if (const auto value = color ? legacyColor(color->raw) : std::nullopt) {
    style->foreground = value;
    *own |= kForeground;
  }
  if (tag == Tag::body) return;
  if (const Attribute* face = tag_.attribute(u"face")) {
    Declarations declarations;
    parseDeclarations(u"font-family:" + face->value(), false, &declarations);
    if (declarations.has(Property::fontFamily)) {
      style->font.family = declarations.fontFamily;
      *own |= kFamily;
    }
  }
  if (const double size = fontSizeOf(tag_)) {
    style->font.size = size;
    *own |= kSize;
  }
}

void applyDeclarations(const Declarations& declared, NSTextAttributes* style, uint32_t* own) {
  const auto set = [&](Property property, uint32_t bits) {
    if (declared.has(property)) *own |= bits;
    return declared.has(property);
  };
  if (set(Property::fontFamily, kFamily)) style->font.family = declared.fontFamily;
  if (set(Property::fontSize, kSize)) {
    style->font.size = boundedSize(declared.fontSize.of(style->font.size));
  }
  if (set(Property::fontWeight, kBold)) style->font.bold = declared.bold;
  if (set(Property::fontStyle, kItalic)) style->font.italic = declared.italic;
  if (set(Property::color, kForeground)) style->foreground = declared.color;
  if (set(Property::background, kBackground)) style->background = declared.background;
  if (set(Property::decoration, kUnderline | kStrikethrough)) {
    style->underline = declared.underline;
    style->strikethrough = declared.strikethrough;
  }
  if (set(Property::verticalAlign, kSuperscript | kBaseline)) {
    style->superscript = declared.superscript;
    style->baselineOffset = declared.baselineOffset;
  }
}

void alignBy(const Source& source, NSParagraphStyle* paragraph) {
  if (source.tag == Tag::center || source.tag == Tag::th || source.tag == Tag::caption) {
    paragraph->alignment = NSTextAlignment::center;
  } else if (source.tag == Tag::table) {
    paragraph->alignment = NSTextAlignment::natural;
  }
  if (source.attributes && source.tag != Tag::table) {
    const Attribute* const align = source.attributes->attribute(u"align");
    if (align) paragraph->alignment = alignmentNamed(align->raw, paragraph->alignment);
  }
  if (source.declarations->has(Property::textAlign)) {
    paragraph->alignment = source.declarations->textAlign;
  }
}

void indentBy(const Source& source, double fontSize, NSParagraphStyle* paragraph) {
  const Declarations& declared = *source.declarations;
  const double textIndent = paragraph->firstLineIndent - paragraph->headIndent;
  const bool isList = source.tag == Tag::ul || source.tag == Tag::ol;
  double left = isList || source.tag == Tag::blockquote || source.tag == Tag::dd ? kIndent : 0;
  if (declared.has(Property::marginLeft)) left = declared.marginLeft.of(fontSize);
  double first = textIndent;
  if (declared.has(Property::textIndent)) first = declared.textIndent.of(fontSize);
  if (declared.has(Property::firstLine)) first = declared.firstLine.of(fontSize);
  paragraph->headIndent = boundedIndent(paragraph->headIndent + left);
  paragraph->firstLineIndent = boundedIndent(paragraph->headIndent + first);
  if (declared.has(Property::marginRight)) {
    paragraph->tailIndent =
        boundedIndent(paragraph->tailIndent + declared.marginRight.of(fontSize));
  }
}

// Padding of a block that is no box: its text stands that much further in.
void padBy(const Source& source, double fontSize, NSParagraphStyle* paragraph) {
  const Declarations& declared = *source.declarations;
  const bool isList = source.tag == Tag::ul || source.tag == Tag::ol;
  if (isList || isCell(source.tag) || has(source.tag, kTablePart)) return;
  const double left = std::max(0.0, declared.paddingLeft.of(fontSize));
  const double right = std::max(0.0, declared.paddingRight.of(fontSize));
  paragraph->headIndent = boundedIndent(paragraph->headIndent + left);
  paragraph->firstLineIndent = boundedIndent(paragraph->firstLineIndent + left);
  paragraph->tailIndent = boundedIndent(paragraph->tailIndent + right);
}

void spaceBy(const Source& source, double fontSize, NSParagraphStyle* paragraph) {
  const Declarations& declared = *source.declarations;
  paragraph->spacingBefore = paragraph->spacingAfter = 0;
  if (source.tag != Tag::p && source.tag != Tag::body) {
    if (declared.has(Property::marginTop)) {
      paragraph->spacingBefore = std::max(0.0, declared.marginTop.of(fontSize));
    }
    if (declared.has(Property::marginBottom)) {
      paragraph->spacingAfter = std::max(0.0, declared.marginBottom.of(fontSize));
    }
  }
  // Where a margin would be a blank line, padding is the space.
  if (source.tag == Tag::p || source.tag == Tag::li || source.tag == Tag::pre ||
      has(source.tag, kHeading)) {
    paragraph->spacingBefore += std::max(0.0, declared.paddingTop.of(fontSize));
    paragraph->spacingAfter += std::max(0.0, declared.paddingBottom.of(fontSize));
  }
  if (!declared.has(Property::lineHeight)) return;
  paragraph->lineHeightMultiple = paragraph->minimumLineHeight = paragraph->maximumLineHeight = 0;
  if (declared.lineHeight.unit == Length::Unit::times) {
    paragraph->lineHeightMultiple = declared.lineHeight.value;
  } else {
    paragraph->minimumLineHeight = declared.lineHeight.value;
    if (!declared.leastLineHeight) paragraph->maximumLineHeight = declared.lineHeight.value;
  }
}

}  // namespace

Looks::Looks() { levels_.emplace_back(); }

NSParagraphStyle Looks::paragraph() const {
  const auto& present = levels_.back().style.paragraph;
  return present ? *present : NSParagraphStyle();
}

void Looks::setParagraph(NSParagraphStyle&& paragraph, Level* level) {
  const auto& present = level->style.paragraph;
  if (paragraph == (present ? *present : NSParagraphStyle())) return;
  auto style = std::make_shared<NSParagraphStyle>(std::move(paragraph));
  if (!style->cells.empty()) inCells_.push_back(style);
  level->style.paragraph = std::move(style);
  level->own |= kParagraph;
}

void Looks::apply(const Source& source, Level* level) {
  NSTextAttributes& style = level->style;
  applyNature(source.tag, &style, &level->own);
  if (source.attributes) applyAttributes(source.tag, *source.attributes, &style, &level->own);
  applyDeclarations(*source.declarations, &style, &level->own);

  const Attribute* const direction =
      source.attributes ? source.attributes->attribute(u"dir") : nullptr;
  const bool turns = direction || source.declarations->has(Property::direction);
  if (!source.isBlock && !turns && !has(source.tag, kTablePart) && !isCell(source.tag)) return;
  NSParagraphStyle paragraph = style.paragraph ? *style.paragraph : NSParagraphStyle();
  alignBy(source, &paragraph);
  indentBy(source, style.font.size, &paragraph);
  spaceBy(source, style.font.size, &paragraph);
  if (direction) paragraph.rightToLeft = equalsIgnoringCase(direction->raw, u"rtl");
  if (source.declarations->has(Property::direction)) {
    paragraph.rightToLeft = source.declarations->rightToLeft;
  }
  if (has(source.tag, kHeading)) {
    paragraph.headingLevel =
        static_cast<int8_t>(1 + static_cast<int>(source.tag) - static_cast<int>(Tag::h1));
  }
  if (source.tag == Tag::blockquote && paragraph.quoteLevel < 100) ++paragraph.quoteLevel;
  paragraph.preformatted = source.keepsWhiteSpace;
  paragraph.tabStops = source.declarations->tabStops;
  if (source.isBlock && canBeBox(source.tag, paragraph) &&
      isBox(*source.declarations, groundOf(paragraph))) {
    enterBlock(source, &paragraph, level);
  } else if (source.isBlock) {
    padBy(source, style.font.size, &paragraph);
  }
  setParagraph(std::move(paragraph), level);
}

// The block's indents and the space around it are the box's, and those of its text begin anew.
void Looks::enterBlock(const Source& source, NSParagraphStyle* paragraph, Level* level) {
  NSTextTableCell box;
  box.table = kFirstBlock + blocks_++;
  box.isBlock = true;
  const auto edge = [](double points) { return static_cast<float>(std::max(0.0, points)); };
  box.margin.left = edge(paragraph->headIndent);
  box.margin.right = edge(paragraph->tailIndent);
  if (source.tag != Tag::p) {  // there they are blank lines
    box.margin.top = edge(source.declarations->marginTop.of(level->style.font.size));
    box.margin.bottom = edge(source.declarations->marginBottom.of(level->style.font.size));
  }
  box.padding.emplace();
  applyToBox(*source.declarations, level->style.font.size, &box);
  if (box.background) {
    level->style.background.reset();
    level->own |= kBackground;
  }
  paragraph->firstLineIndent -= paragraph->headIndent;
  paragraph->headIndent = paragraph->tailIndent = 0;
  paragraph->spacingBefore = paragraph->spacingAfter = 0;
  paragraph->cells.push_back(box);
}

void Looks::push(const Source& source) {
  levels_.push_back({levels_.back().style, 0});
  apply(source, &levels_.back());
  isFresh_ = isFresh_ && levels_.back().own == 0;
}

void Looks::pop() {
  isFresh_ = isFresh_ && levels_.back().own == 0;
  levels_.pop_back();
}

void Looks::changeBody(const Source& source) {
  apply(source, &levels_.front());
  isFresh_ = false;
}

uint32_t Looks::save() {
  if (free_.empty()) {
    saved_.push_back(levels_.back());
    return static_cast<uint32_t>(saved_.size() - 1);
  }
  const uint32_t slot = free_.back();
  free_.pop_back();
  saved_[slot] = levels_.back();
  return slot;
}

void Looks::again(uint32_t saved) {
  levels_.push_back({levels_.back().style, saved_[saved].own & ~uint32_t{kParagraph}});
  take(saved_[saved].style, levels_.back().own, &levels_.back().style);
  isFresh_ = false;
}

void Looks::release(uint32_t saved) { free_.push_back(saved); }

void Looks::forget(uint32_t position) {
  Level& level = levels_[position - 1];
  const NSTextAttributes below = levels_[position - 2].style;
  uint32_t left = std::exchange(level.own, 0);
  take(below, left, &level.style);
  for (size_t i = position; i < levels_.size(); ++i) {
    left &= ~levels_[i].own;
    if (left == 0) break;
    take(below, left, &levels_[i].style);
  }
  isFresh_ = false;
}

void Looks::enterList(const NSTextList& list) {
  NSParagraphStyle style = paragraph();
  if (style.lists.size() < kDeepestLists) style.lists.push_back(list);
  setParagraph(std::move(style), &levels_.back());
  isFresh_ = false;
}

void Looks::enterCell(NSTextTableCell cell, const Source& source) {
  Level& level = levels_.back();
  const Attribute* const color = source.attributes->attribute(u"bgcolor");
  if (color) cell.background = legacyColor(color->raw);
  cell.width = pointsOf(*source.attributes, u"width");
  applyToBox(*source.declarations, level.style.font.size, &cell);
  if (cell.background) {
    level.style.background.reset();
    level.own |= kBackground;
  }
  NSParagraphStyle style = paragraph();
  if (style.cells.size() < kDeepestTables) style.cells.push_back(cell);
  style.headIndent = style.firstLineIndent = style.tailIndent = 0;
  style.lists.clear();
  setParagraph(std::move(style), &level);
  isFresh_ = false;
}

void Looks::setColumns(uint32_t table, uint16_t columns) {
  if (columns_.size() <= table) columns_.resize(table + size_t{1}, 1);
  columns_[table] = std::max(columns_[table], columns);
}

size_t Looks::depth() const {
  const auto& paragraph = levels_.back().style.paragraph;
  return paragraph ? paragraph->cells.size() : 0;
}

uint32_t Looks::current() {
  if (!isFresh_ && (looks_.empty() || !(*looks_.back() == levels_.back().style))) {
    looks_.push_back(std::make_shared<const NSTextAttributes>(levels_.back().style));
  }
  isFresh_ = true;
  return static_cast<uint32_t>(looks_.size() - 1);
}

uint32_t Looks::withAttachment(std::shared_ptr<const NSTextAttachment> attachment) {
  NSTextAttributes style = levels_.back().style;
  style.attachment = std::move(attachment);
  looks_.push_back(std::make_shared<const NSTextAttributes>(std::move(style)));
  isFresh_ = false;
  return static_cast<uint32_t>(looks_.size() - 1);
}

NSAttributedString Looks::finish(TextLayout::Result&& result) {
  for (const auto& paragraph : inCells_) {
    for (NSTextTableCell& cell : paragraph->cells) {
      if (cell.table < columns_.size()) cell.columns = columns_[cell.table];
    }
  }
  std::vector<NSTextRun> runs;
  runs.reserve(result.runs.size());
  for (size_t i = 0; i < result.runs.size(); ++i) {
    const bool isLast = i + 1 == result.runs.size();
    const size_t end = isLast ? result.text.size() : result.runs[i + 1].start;
    if (end == result.runs[i].start) continue;
    runs.push_back({end - result.runs[i].start, looks_[result.runs[i].look]});
  }
  return NSAttributedString(NSString(std::move(result.text)), std::move(runs));
}

}  // namespace kelspar::html
