// Text as it stands in a written HTML document. Internal to the HTML writer.
#pragma once

#include <string>
#include <string_view>

namespace kelspar::html {

// Appends the text escaped: "&", "<", ">", the quotation mark and the no-break space as references,
// line ends as <br> (in an attribute: a space). Controls that HTML forbids, noncharacters and lone
// surrogates become U+FFFD. Linear; text without such units is copied in blocks.
void appendEscaped(std::u16string_view text, bool inAttribute, std::u16string* out);

// Whether every unit would stand as it is: no control, line end, noncharacter or lone surrogate.
[[nodiscard]] bool isWritable(std::u16string_view text);

}  // namespace kelspar::html
