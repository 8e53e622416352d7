// The instruction of a HYPERLINK field (RTF 1.9.1, fields): words, quoted or not, and switches.
#include <algorithm>
#include <string>

#include "platform/richtext/rtf_formatter.h"

namespace kelspar {

std::u16string targetOfHyperlink(std::u16string_view instruction) {
  constexpr std::u16string_view kHyperlink = u"HYPERLINK";
  constexpr std::u16string_view kSpace = u" \t\r\n\u00A0";
  const auto skipSpace = [&] {
    instruction.remove_prefix(std::min(instruction.find_first_not_of(kSpace), instruction.size()));
  };
  skipSpace();
  for (const char16_t c : kHyperlink) {
    if (instruction.empty() || (instruction[0] & ~0x20) != c) return {};
    instruction.remove_prefix(1);
  }
  std::u16string target, anchor;
  bool isAnchor = false, isOther = false;
  for (skipSpace(); !instruction.empty(); skipSpace()) {
    std::u16string argument;
    const char16_t first = instruction[0];
    if (first == u'\\' && instruction.size() > 1 && instruction[1] != u'\\') {
      isAnchor = (instruction[1] | 0x20) == u'l';
      isOther = (instruction[1] | 0x20) == u'o' || (instruction[1] | 0x20) == u't';
      instruction.remove_prefix(2);
      continue;
    }
    const bool quoted = first == u'"' || first == u'\u201C';
    if (quoted) instruction.remove_prefix(1);
    while (!instruction.empty()) {
      const char16_t c = instruction[0];
      instruction.remove_prefix(1);
      if (quoted ? c == u'"' || c == u'\u201D' : kSpace.find(c) != kSpace.npos) break;
      argument += c;
      if (c == u'\\' && !instruction.empty() && instruction[0] == u'\\') {
        instruction.remove_prefix(1);
      }
    }
    if (isAnchor) {
      anchor = argument;
    } else if (!isOther && target.empty()) {
      target = argument;
    }
    isAnchor = isOther = false;
  }
  if (anchor.empty()) return target;
  return target + u"#" + anchor;
}

}  // namespace kelspar
