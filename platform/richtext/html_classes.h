// The style rules of a written document: a class for each list of declarations. Internal to the
// HTML writer.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"

namespace kelspar::html {

class Classes {
 public:
  // `font` is what text has that says nothing else.
  explicit Classes(const NSFont& font) : font_(font) {}

  // The class of a paragraph's style, of a list, of its item's style, of a run's look, of a cell;
  // empty when there is nothing to say. `indent`: of a list within what is around it (0: as lists
  // are), of an item within its list.
  [[nodiscard]] std::u16string paragraph(const NSParagraphStyle& style);
  [[nodiscard]] std::u16string list(const NSTextList& list, double indent);
  [[nodiscard]] std::u16string item(const NSParagraphStyle& style, double indent);
  [[nodiscard]] std::u16string look(const NSTextAttributes& attributes);
  [[nodiscard]] std::u16string cell(const NSTextTableCell& cell);

  // All rules, a line each.
  [[nodiscard]] std::u16string sheet() const;

 private:
  std::u16string named(char16_t kind, std::u16string declarations);

  NSFont font_;
  std::unordered_map<std::u16string, std::u16string> names_;  // by kind and declarations
  std::vector<std::u16string> rules_;
};

// A number as CSS has it: no exponent, three digits behind the point at most.
void appendNumber(double value, std::u16string* out);

}  // namespace kelspar::html
