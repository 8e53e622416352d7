// Writes attributed text as an RTF document (RTF 1.9.1).
//
// Kept: characters, fonts, sizes, weights, slants, colours, lines under and through the text,
// raised and lowered text, links, alignment, direction, indents, spacing, line heights, tab stops,
// heading levels, PNG and JPEG images with their sizes. Lists and tables are written as the text
// that they are in the attributed text: markers, and cells with tabs between them. Other images are
// left out.
#pragma once

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

// nil for nil. ASCII alone. Linear in the text, its runs and its images.
[[nodiscard]] NSData rtfFromAttributedString(const NSAttributedString& text);

}  // namespace kelspar
