// White space as HTML collapses it. Internal to the HTML importer and writer.
#pragma once

#include <cstddef>
#include <string_view>

namespace kelspar::html {

[[nodiscard]] inline bool isWhiteSpace(char16_t c) {
  return c == u' ' || (c >= u'\t' && c <= u'\r' && c != u'\v');
}

// The first place that does not stay as it is when white space collapses: a blank followed by
// another one, or white space that is no blank. Finds a vertical tab as well, which stays.
[[nodiscard]] size_t findCollapsible(std::u16string_view text, size_t from);

}  // namespace kelspar::html
