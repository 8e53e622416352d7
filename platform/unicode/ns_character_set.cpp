// Character sets as bitmaps over the 65,536 units.
#include "platform/unicode/NSCharacterSet.h"

#include <unicode/uchar.h>

#include <bitset>

namespace kelspar {

const NSKind NSCharacterSet::kKind{"NSCharacterSet"};

class CharacterSetContents final : public NSObject {
 public:
  using Units = std::bitset<65536>;

  explicit CharacterSetContents(const Units& units) : units_(units) {}
  const NSKind& kind() const override { return NSCharacterSet::kKind; }
  bool isEqual(const NSObject& other) const override {
    return &other.kind() == &NSCharacterSet::kKind &&
           static_cast<const CharacterSetContents&>(other).units_ == units_;
  }
  bool contains(char16_t unit) const { return units_[unit]; }

  template <class Belongs>
  static NSCharacterSet make(Belongs belongs) {
    auto* contents = new CharacterSetContents({});
    for (UChar32 unit = 0; unit < 65536; ++unit) contents->units_[unit] = belongs(unit);
    return NSCharacterSet(contents);
  }
  static NSCharacterSet ofCategories(uint32_t mask) {
    return make([mask](UChar32 unit) { return (U_GET_GC_MASK(unit) & mask) != 0; });
  }

 private:
  Units units_;
};

NSCharacterSet NSCharacterSet::withCharacters(std::u16string_view units) {
  CharacterSetContents::Units bits;
  for (const char16_t unit : units) bits.set(unit);
  return NSCharacterSet(new CharacterSetContents(bits));
}

NSCharacterSet NSCharacterSet::whitespace() {
  static const auto set = CharacterSetContents::make(
      [](UChar32 c) { return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR; });
  return set;
}

NSCharacterSet NSCharacterSet::whitespaceAndNewline() {
  static const auto set = CharacterSetContents::make([](UChar32 c) {
    return (c >= '\t' && c <= '\r') || c == 0x85 || (U_GET_GC_MASK(c) & U_GC_Z_MASK) != 0;
  });
  return set;
}

NSCharacterSet NSCharacterSet::alphanumeric() {
  static const auto set =
      CharacterSetContents::ofCategories(U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK);
  return set;
}

NSCharacterSet NSCharacterSet::decimalDigit() {
  static const auto set = CharacterSetContents::ofCategories(U_GC_ND_MASK);
  return set;
}

NSCharacterSet NSCharacterSet::illegal() {
  static const auto set = CharacterSetContents::ofCategories(U_GC_CN_MASK);
  return set;
}

NSCharacterSet NSCharacterSet::named(std::string_view name) {
  if (name == "whitespace") return whitespace();
  if (name == "whitespaceAndNewline") return whitespaceAndNewline();
  if (name == "alphanumeric") return alphanumeric();
  if (name == "decimalDigit") return decimalDigit();
  if (name == "illegal") return illegal();
  return nil;
}

bool NSCharacterSet::contains(char16_t unit) const noexcept {
  return *this && static_cast<const CharacterSetContents*>(contents())->contains(unit);
}

int decimalDigitValue(char16_t unit) {
  return u_charType(unit) == U_DECIMAL_DIGIT_NUMBER ? u_charDigitValue(unit) : -1;
}

NSString stringByTrimming(const NSString& text, const NSCharacterSet& set) {
  const auto units = text.view();
  size_t from = 0, to = units.size();
  while (from < to && set.contains(units[from])) ++from;
  while (from < to && set.contains(units[to - 1])) --to;
  return text ? text.substring(from, to - from) : nil;
}

bool isDecimalDigit(char32_t codePoint) noexcept {
  return u_charType(static_cast<UChar32>(codePoint)) == U_DECIMAL_DIGIT_NUMBER;
}

}  // namespace kelspar
