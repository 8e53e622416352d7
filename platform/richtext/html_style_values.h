// Words, numbers and lengths in the values of style declarations. Internal to the style parser.
#pragma once

#include <optional>
#include <string_view>

#include "platform/richtext/html_style.h"
#include "platform/richtext/html_tags.h"

namespace kelspar::html::values {

using Text = std::u16string_view;

// Without white space at its ends.
[[nodiscard]] Text trimmed(Text text);
// Letters in either case; `lower` is in lower case.
[[nodiscard]] inline bool is(Text text, Text lower) { return equalsIgnoringCase(text, lower); }
[[nodiscard]] bool contains(Text text, Text lower);
// The first word of a value, taken off it; empty at the end.
[[nodiscard]] Text takeWord(Text* text);

// The number at the text's start, at most a million, and in `*end` where it ends.
[[nodiscard]] std::optional<double> number(Text text, size_t* end);
// A number without a unit is pixels.
[[nodiscard]] std::optional<Length> length(Text text);
// False, and `*target` as it was, for what is no length.
bool setLength(Text text, Length* target);

}  // namespace kelspar::html::values
