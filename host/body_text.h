// Bodies as the lines of a text file.
#pragma once

#include <string>

#include "platform/foundation/NSData.h"

namespace kelspar::host {

// UTF-8 with line feeds alone, lines inside paragraphs as lines, one line feed at the end, no
// control characters (a terminal would obey them) but tabs and form feeds; empty for a text of line
// ends alone, and for nil.
[[nodiscard]] std::string plainLines(const NSString& text);

// UTF-8 with a blank for each control character.
[[nodiscard]] std::string oneLine(const NSString& text);

// What `stringByStrippingHTML` gives, as such lines. Lone surrogates count as U+FFFD.
[[nodiscard]] std::string linesOfHTML(const NSString& html);

// HTML that is an input of its own: by a name that ends in ".html" or ".htm", by a tag at its
// start, or because it `isHTML`.
[[nodiscard]] bool isHTMLInput(const NSData& input, const std::string& name);

// Its text: under `charset` where that is given, else under the one that it declares.
[[nodiscard]] NSString htmlOfInput(const NSData& input, const std::string& charset);

}  // namespace kelspar::host
