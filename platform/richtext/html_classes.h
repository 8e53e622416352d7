// The style rules of a written document: a class for each list of declarations. Internal to the
// HTML writer.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"

namespace kelspar::html {

// No indent is larger than that (22 inches), either way.
inline constexpr double kLargestIndent = 1584;

class Classes {
 public:
  // `font` is what text has that says nothing else.
  explicit Classes(const NSFont& font) : font_(font) {}

  // The class of a paragraph's style, of a list, of a list item's style, of a run's look, of a
  // cell, of an image's size; empty when there is nothing to say. `around` is the style of what the
  // paragraph stands in, whose looks it inherits. Indents count from the cell's edge: `from` is
  // where the list, or the item's list, is. `isInner`: the list holds the item's list only.
  [[nodiscard]] std::u16string paragraph(const NSParagraphStyle& style,
                                         const NSParagraphStyle& around);
  [[nodiscard]] std::u16string list(const NSTextList& list, double indent, bool isInner);
  [[nodiscard]] std::u16string item(const NSParagraphStyle& style, const NSParagraphStyle& around,
                                    double from);
  [[nodiscard]] std::u16string look(const NSTextAttributes& attributes);
  [[nodiscard]] std::u16string cell(const NSTextTableCell& cell);
  [[nodiscard]] std::u16string image(double width, double height);

  // All rules, a line each.
  [[nodiscard]] std::u16string sheet() const;

 private:
  std::u16string named(char16_t kind, std::u16string declarations);

  NSFont font_;
  std::unordered_map<std::u16string, std::u16string> names_;  // by kind and declarations
  std::vector<std::u16string> rules_;
};

// A family's name as a rule can hold it: without what could end the quotation or the element.
[[nodiscard]] std::u16string safeFamily(std::u16string_view family);

// A number as CSS has it: no exponent, three digits behind the point at most.
void appendNumber(double value, std::u16string* out);

[[nodiscard]] double boundedIndent(double indent);
// A font's size: half a point to a thousand points.
[[nodiscard]] double boundedSize(double size);

}  // namespace kelspar::html
