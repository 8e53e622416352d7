// Values of CSS properties in a line's first span start tag. Over bytes for ASCII, over units for
// everything else: the answers are the same. Internal to the unit.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "RTFKelspar/white_space.h"
#include "platform/foundation/NSString.h"
#include "platform/foundation/scan.h"

namespace kelspar {

// The first place at or behind `from` where `word` stands, ASCII in either kind of text; npos when
// there is none. The word is short and its first unit does not come again in it, so this is linear.
template <class Char>
[[nodiscard]] size_t findWord(std::basic_string_view<Char> text, std::string_view word,
                              size_t from = 0) {
  for (size_t at = from; at + word.size() <= text.size(); ++at) {
    at = scan::findAny(text, at, word.front());
    size_t same = 0;
    while (same < word.size() && at + same < text.size() &&
           text[at + same] == static_cast<Char>(word[same])) {
      ++same;
    }
    if (same == word.size()) return at;
  }
  return text.npos;
}

// What `<span([^>]*)>` takes at or behind `from`: the attributes of the first span start tag that
// is closed. Empty when there is none.
template <class Char>
[[nodiscard]] std::basic_string_view<Char> spanAttributes(std::basic_string_view<Char> line,
                                                          size_t from = 0) {
  constexpr std::string_view kStart = "<span";
  const size_t start = findWord(line, kStart, from);
  if (start == line.npos) return {};
  const size_t inside = start + kStart.size();
  const size_t end = scan::findAny(line, inside, '>');
  return end == line.size() ? line.substr(0, 0) : line.substr(inside, end - inside);
}

// What `item\s*:\s*([^;'"\s]+)` takes in `attributes`, where the item is a plain text without
// surrogates, the places of which `next()` gives one after another; empty when there is no value.
//
// What may follow one part never begins the next, so nothing is taken back; and white space that
// led to no value is not looked at again, however often an item of blanks stands in it.
template <class Char, class Next>
[[nodiscard]] std::basic_string_view<Char> valueBehindItem(std::basic_string_view<Char> attributes,
                                                           size_t itemLength, Next&& next) {
  const auto skipSpaces = [&](size_t at) {
    while (at < attributes.size() && isSpace(attributes[at])) ++at;
    return at;
  };
  const auto endsValue = [](Char c) { return c == ';' || c == '\'' || c == '"' || isSpace(c); };
  size_t inVain = 0;
  for (size_t at; (at = next()) != attributes.npos;) {
    if (at + itemLength <= inVain) continue;
    const size_t colon = skipSpaces(at + itemLength);
    inVain = colon;
    if (colon == attributes.size() || attributes[colon] != ':') continue;
    const size_t value = skipSpaces(colon + 1);
    size_t end = value;
    while (end < attributes.size() && !endsValue(attributes[end])) ++end;
    if (end > value) return attributes.substr(value, end - value);
  }
  return {};
}

// The value of "color", the property that the pipeline asks for.
template <class Char>
[[nodiscard]] std::basic_string_view<Char> spanColour(std::basic_string_view<Char> attributes) {
  constexpr std::string_view kItem = "color";
  size_t from = 0;
  return valueBehindItem(attributes, kItem.size(), [&] {
    const size_t at = findWord(attributes, kItem, from);
    from = at + 1;
    return at;
  });
}

}  // namespace kelspar
