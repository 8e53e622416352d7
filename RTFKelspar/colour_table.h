// The definitions inside a colour-table group (RTF 1.9.1, "Color Table"). Over bytes for ASCII,
// over units for everything else: the answers are the same. Internal to the unit.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "RTFKelspar/span_items.h"
#include "RTFKelspar/white_space.h"

namespace kelspar {

// The group without braces, then without "\colortbl", then without white space at its ends.
template <class Char>
[[nodiscard]] std::basic_string<Char> colourDefinitions(std::basic_string_view<Char> group) {
  constexpr std::string_view kName = "\\colortbl";
  using View = std::basic_string_view<Char>;
  std::basic_string<Char> unbraced(group);
  std::erase_if(unbraced, [](Char c) { return c == '{' || c == '}'; });
  const View text = unbraced;
  std::basic_string<Char> definitions;
  size_t from = 0;
  for (size_t at; (at = findWord(text, kName, from)) != View::npos; from = at + kName.size()) {
    definitions.append(text, from, at - from);
  }
  definitions.append(text, from);
  return std::basic_string<Char>(trimmed(View(definitions)));
}

// The entries of `definitions`, parts of it, trimmed. An empty one counts only as the first of all:
// it is the automatic colour.
template <class Char>
[[nodiscard]] std::vector<std::basic_string_view<Char>> colourEntries(
    std::basic_string_view<Char> definitions) {
  std::vector<std::basic_string_view<Char>> entries;
  if (definitions.empty()) return entries;
  for (size_t from = 0; from <= definitions.size();) {
    const size_t end = scan::findAny(definitions, from, ';');
    const auto entry = trimmed(definitions.substr(from, end - from));
    if (!entry.empty() || entries.empty()) entries.push_back(entry);
    from = end + 1;
  }
  return entries;
}

}  // namespace kelspar
