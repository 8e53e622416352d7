// What a run of attributed text looks like: font, colours, lines, link, paragraph, attachment.
// Plain values; lengths are points (72 an inch).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/foundation/foundation.h"

namespace kelspar {

struct NSColor {
  uint8_t red = 0, green = 0, blue = 0;
  friend bool operator==(const NSColor&, const NSColor&) = default;
};

struct NSFont {
  NSString family;  // nil: the default family
  double size = 12;
  bool bold = false;
  bool italic = false;
  friend bool operator==(const NSFont&, const NSFont&) = default;
};

enum class NSTextAlignment : uint8_t { natural, left, center, right, justified };

struct NSTextTab {
  double location = 0;  // from the paragraph's left edge
  NSTextAlignment alignment = NSTextAlignment::left;
  bool decimal = false;
  friend bool operator==(const NSTextTab&, const NSTextTab&) = default;
};

// A list that a paragraph is an item of. The item's marker stands in the text, as its first
// characters (marker and tab), so plain text reads well.
struct NSTextList {
  uint32_t identity = 0;  // items of one list share it
  bool ordered = false;
  NSString marker{};  // "disc", "circle", "square", "decimal", "lower-alpha", ...
  int32_t startingNumber = 1;
  friend bool operator==(const NSTextList&, const NSTextList&) = default;
};

// A line along a side of a box.
struct NSTextBorder {
  float width = 0;  // 0: none
  NSColor color{};
  friend bool operator==(const NSTextBorder&, const NSTextBorder&) = default;
};

struct NSTextBorders {
  NSTextBorder top{}, right{}, bottom{}, left{};
  // The same on all sides.
  [[nodiscard]] static NSTextBorders all(const NSTextBorder& border) {
    return {border, border, border, border};
  }
  friend bool operator==(const NSTextBorders&, const NSTextBorders&) = default;
};

// Room on the sides of a box.
struct NSTextEdges {
  float top = 0, right = 0, bottom = 0, left = 0;
  friend bool operator==(const NSTextEdges&, const NSTextEdges&) = default;
};

// The box that a paragraph stands in: a cell of a table, or a block with lines or a ground of its
// own. Cells of one table share `table`, paragraphs of one cell share row and column; paragraphs of
// one block share `table`, and no table has a block's number.
struct NSTextTableCell {
  uint32_t table = 0;
  uint16_t row = 0, column = 0;
  // A rowSpan of 0: a neighbour that spans over this place covers it; such a cell is empty.
  uint16_t rowSpan = 1, columnSpan = 1;
  uint16_t columns = 1;  // of the whole table
  double width = 0;      // 0: a cell by content, a block as wide as there is room
  bool isBlock = false;  // in the first row and column, alone
  NSTextEdges margin{};  // of a block
  std::optional<NSTextEdges> padding{};
  NSTextBorders borders{};
  std::optional<NSColor> background{};
  friend bool operator==(const NSTextTableCell&, const NSTextTableCell&) = default;
};

struct NSParagraphStyle {
  NSTextAlignment alignment = NSTextAlignment::natural;
  bool rightToLeft = false;
  double firstLineIndent = 0;  // from the left edge, as the next two from theirs
  double headIndent = 0;
  double tailIndent = 0;
  double spacingBefore = 0, spacingAfter = 0;
  double lineHeightMultiple = 0;                        // 0: the font's own
  double minimumLineHeight = 0, maximumLineHeight = 0;  // 0: no bound
  int8_t headingLevel = 0;                              // 1 to 6; 0: body text
  bool preformatted = false;  // white space and line ends stand as they are
  int8_t quoteLevel = 0;      // nested block quotes around it
  std::vector<NSTextTab> tabStops{};
  std::vector<NSTextList> lists{};       // outermost first
  std::vector<NSTextTableCell> cells{};  // outermost first
  friend bool operator==(const NSParagraphStyle&, const NSParagraphStyle&) = default;
};

// What stands for the character U+FFFC: an image, usually, as its file's bytes.
struct NSTextAttachment {
  NSData contents;               // nil: not at hand (a remote image), only its place
  NSString type;                 // "image/png"; nil: not known
  NSString name;                 // file name or content identifier
  NSString source;               // what the text referred to ("cid:...", "https:...")
  NSString alternative;          // text in its place
  double width = 0, height = 0;  // 0: as the image has it
  friend bool operator==(const NSTextAttachment&, const NSTextAttachment&) = default;
};

struct NSTextAttributes {
  NSFont font;
  std::optional<NSColor> foreground, background;
  bool underline = false;
  bool strikethrough = false;
  int8_t superscript = 0;                              // 1 raised, -1 lowered
  double baselineOffset = 0;                           // upwards
  NSString link;                                       // nil: none
  std::shared_ptr<const NSParagraphStyle> paragraph;   // null: the default style
  std::shared_ptr<const NSTextAttachment> attachment;  // on U+FFFC only
  // The same look; paragraphs and attachments are compared by what they hold.
  friend bool operator==(const NSTextAttributes& a, const NSTextAttributes& b);
};

}  // namespace kelspar
