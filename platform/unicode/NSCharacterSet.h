// Sets of UTF-16 code units. Membership is by unit: each half of a surrogate pair on its own.
#pragma once

#include "platform/foundation/NSString.h"

namespace kelspar {

class NSCharacterSet : public id {
 public:
  static const NSKind kKind;

  NSCharacterSet() noexcept = default;  // nil: no unit belongs to it
  NSCharacterSet(std::nullptr_t) noexcept {}
  [[nodiscard]] static NSCharacterSet withCharacters(std::u16string_view units);

  // The named sets, by the general categories of ICU's Unicode version. Each is built once.
  [[nodiscard]] static NSCharacterSet whitespace();            // Zs, tab
  [[nodiscard]] static NSCharacterSet whitespaceAndNewline();  // Z*, tab, U+000A-000D, U+0085
  [[nodiscard]] static NSCharacterSet alphanumeric();          // L*, M*, N*
  [[nodiscard]] static NSCharacterSet decimalDigit();          // Nd
  [[nodiscard]] static NSCharacterSet illegal();               // Cn: unassigned, noncharacters
  // By the name that hosts use: "whitespace", "whitespaceAndNewline", "alphanumeric",
  // "decimalDigit", "illegal"; nil for another name.
  [[nodiscard]] static NSCharacterSet named(std::string_view name);

  // Constant time.
  [[nodiscard]] bool contains(char16_t unit) const noexcept;

 private:
  explicit NSCharacterSet(const NSObject* contents) noexcept : id(contents) {}
  friend class CharacterSetContents;
};

// The value of a decimal digit of any script (general category Nd); -1 for other units.
[[nodiscard]] int decimalDigitValue(char16_t unit);

// The text without the units of `set` at both ends. The receiver itself when there are none; nil
// for nil.
[[nodiscard]] NSString stringByTrimming(const NSString& text, const NSCharacterSet& set);

// Whether a code point is a decimal digit of some script (category Nd). Unlike the sets, it knows
// those beyond U+FFFF.
[[nodiscard]] bool isDecimalDigit(char32_t codePoint) noexcept;

}  // namespace kelspar
