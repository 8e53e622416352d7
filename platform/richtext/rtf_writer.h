// Writes attributed text as an RTF document (RTF 1.9.1).
//
// Kept: characters, fonts, sizes, weights, slants, colours, lines under and through the text,
// raised and lowered text, links, alignment, direction, indents, spacing, line heights, tab stops,
// heading levels, PNG and JPEG images with their sizes. Lists and tables are written as the text
// that they are in the attributed text: markers, and cells with tabs between them. Other images are
// left out. A picture that stands in many places is written at its first one and, while such
// repetitions come to 16 MB at most, at the others; behind that, the text in its place or its name
// stands for it.
#pragma once

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

// nil for nil. ASCII alone. Linear in the text, its runs and the bytes of its pictures, those of
// one NSData counted once (and 16 MB).
[[nodiscard]] NSData rtfFromAttributedString(const NSAttributedString& text);

}  // namespace kelspar
