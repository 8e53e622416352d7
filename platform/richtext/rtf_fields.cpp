// Instructions of fields: a name, words that may be quoted, switches (RTF 1.9.1, "Fields").
#include "platform/richtext/rtf_fields.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/foundation/hex.h"
#include "platform/richtext/rtf_symbols.h"
#include "platform/unicode/code_pages.h"

namespace kelspar {

namespace {

// The parts of an instruction, one by one.
class Instruction {
 public:
  explicit Instruction(std::u16string_view text) : rest_(text) {}

  // Whether it begins with this name, in any case, which is taken.
  bool takeName(std::u16string_view name) {
    skipSpace();
    if (rest_.size() < name.size()) return false;
    for (size_t i = 0; i < name.size(); ++i) {
      if ((rest_[i] & ~0x20) != name[i]) return false;
    }
    rest_.remove_prefix(name.size());
    return true;
  }

  [[nodiscard]] bool isAtEnd() {
    skipSpace();
    return rest_.empty();
  }

  // The letter of the switch that comes next, in lower case, or nothing.
  std::optional<char16_t> takeSwitch() {
    skipSpace();
    if (rest_.size() < 2 || rest_[0] != u'\\' || rest_[1] == u'\\') return {};
    const char16_t letter = rest_[1] | 0x20;
    rest_.remove_prefix(2);
    return letter;
  }

  // The word that comes next, without its quotation marks; doubled backslashes are one.
  std::u16string takeWord() {
    std::u16string word;
    skipSpace();
    const bool quoted = !rest_.empty() && (rest_[0] == u'"' || rest_[0] == u'\u201C');
    if (quoted) rest_.remove_prefix(1);
    while (!rest_.empty()) {
      const char16_t c = rest_[0];
      rest_.remove_prefix(1);
      if (quoted ? c == u'"' || c == u'\u201D' : kSpace.find(c) != kSpace.npos) break;
      word += c;
      if (c == u'\\' && !rest_.empty() && rest_[0] == u'\\') rest_.remove_prefix(1);
    }
    return word;
  }

 private:
  static constexpr std::u16string_view kSpace = u" \t\r\n\u00A0";
  void skipSpace() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kSpace), rest_.size())); }

  std::u16string_view rest_;
};

// A decimal number, or a hexadecimal one behind "0x", of at most a UTF-16 unit.
uint32_t unitNamed(std::u16string_view digits) {
  const bool isHex = digits.starts_with(u"0x") || digits.starts_with(u"0X");
  if (isHex) digits.remove_prefix(2);
  uint32_t value = 0;
  for (const char16_t c : digits) {
    const int digit = c < 0x80 ? hexValue(static_cast<char>(c)) : -1;
    if (digit < 0 || (!isHex && digit > 9) || value > 0xFFFF) return 0;
    value = value * (isHex ? 16 : 10) + static_cast<uint32_t>(digit);
  }
  return value <= 0xFFFF ? value : 0;
}

}  // namespace

std::u16string targetOfHyperlink(std::u16string_view text) {
  Instruction instruction(text);
  if (!instruction.takeName(u"HYPERLINK")) return {};
  std::u16string target, anchor;
  char16_t before = 0;  // the switch that the word belongs to
  while (!instruction.isAtEnd()) {
    if (const auto letter = instruction.takeSwitch()) {
      before = *letter;
      continue;
    }
    std::u16string word = instruction.takeWord();
    if (before == u'l') {
      anchor = std::move(word);
    } else if (before != u'o' && before != u't' && target.empty()) {
      target = std::move(word);
    }
    before = 0;
  }
  if (anchor.empty()) return target;
  return target + u"#" + anchor;
}

char16_t symbolOfField(std::u16string_view text) {
  Instruction instruction(text);
  if (!instruction.takeName(u"SYMBOL")) return 0;
  uint32_t value = 0;
  bool isUnicode = false;
  std::u16string font;
  char16_t before = 0;
  while (!instruction.isAtEnd()) {
    if (const auto letter = instruction.takeSwitch()) {
      before = *letter;
      isUnicode |= before == u'u';
      continue;
    }
    std::u16string word = instruction.takeWord();
    if (before == u'f') font = std::move(word);
    if (before != u'f' && before != u's' && value == 0) value = unitNamed(word);
    before = 0;
  }
  if (value == 0) return 0;
  const bool isCharacter = value < 0xD800 || value > 0xDFFF;
  if (isUnicode || value > 0xFF) return isCharacter ? static_cast<char16_t>(value) : 0;
  const RTFSymbolFont symbols = symbolFontNamed(font);
  const auto byte = static_cast<uint8_t>(value);
  if (symbols != RTFSymbolFont::none) return unitOfSymbol(symbols, byte);
  const char c = static_cast<char>(byte);
  std::u16string unit;
  CodePage::numbered(1252).append({&c, 1}, &unit);
  return unit.size() == 1 ? unit[0] : 0;
}

}  // namespace kelspar
