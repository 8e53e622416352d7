// Where a group of RTF stands. Over bytes for ASCII, over units for everything else: the answers
// are the same. Internal to the unit.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/foundation/scan.h"
#include "platform/unicode/text_search.h"

namespace kelspar {

// From the opening brace at `from` up to behind the closing one at `to`.
struct RTFGroup {
  size_t from = 0, to = 0;
  [[nodiscard]] bool isFound() const { return to > from; }
  template <class Char>
  [[nodiscard]] std::basic_string_view<Char> in(std::basic_string_view<Char> text) const {
    return text.substr(from, to - from);
  }
};

// Behind the brace that closes a group whose content goes on at `at`; 0 when none does.
template <class Char>
[[nodiscard]] size_t endOfGroup(std::basic_string_view<Char> text, size_t at) {
  // A backslash takes the unit behind it out of account, and so does one that ends the group's
  // name; the name's own backslashes count in pairs.
  size_t before = at;
  while (before > 0 && text[before - 1] == '\\') --before;
  if ((at - before) % 2 == 1) ++at;
  size_t depth = 1;
  while (at < text.size()) {
    at = scan::findAny(text, at, '\\', '{', '}');
    if (at == text.size()) return 0;
    if (text[at] == '\\') {
      at += 2;
      continue;
    }
    depth += text[at] == '{' ? 1 : -1;
    ++at;
    if (depth == 0) return at;
  }
  return 0;
}

// The first group that begins with `opening`, a brace, a backslash and a name.
template <class Char>
[[nodiscard]] RTFGroup findGroup(std::basic_string_view<Char> text,
                                 std::basic_string_view<Char> opening) {
  const size_t from = BasicTextSearch<Char>(opening, text).next();
  if (from == text.npos) return {};
  const size_t to = endOfGroup(text, from + opening.size());
  return to == 0 ? RTFGroup{} : RTFGroup{from, to};
}

// Replaces each occurrence of the text of `group` in `text`; the group is the first one.
template <class Char>
void replaceGroup(std::basic_string<Char>& text, RTFGroup group,
                  std::basic_string_view<Char> replacement) {
  const std::basic_string<Char> target(group.in(std::basic_string_view<Char>(text)));
  BasicTextSearch<Char> search(target, text);
  size_t next = search.next();  // the group itself
  next = search.next();
  if (next == text.npos) {
    text.replace(group.from, target.size(), replacement);
    return;
  }
  std::basic_string<Char> result(text, 0, group.from);
  size_t from = group.to;
  for (; next != text.npos; next = search.next()) {
    result.append(replacement).append(text, from, next - from);
    from = next + target.size();
  }
  result.append(replacement).append(text, from);
  text = std::move(result);
}

}  // namespace kelspar
