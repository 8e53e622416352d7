// Reads HTML into text, or into text with attributes. Internal to the library.
//
// One pass over the tokens, no tree, no recursion: linear in the input, whatever it nests. A page
// with style elements behind what they style is passed twice. Nothing is ever fetched. Both entries
// give the same characters, but that a <br> inside a paragraph is U+2028 in attributed text and LF
// in plain text; where there are images, attributed text holds a U+FFFC for each, and the white
// space around it, and plain text nothing.
//
// The text is what a browser's innerText gives of the page, with scripting off:
// - white space collapses, but in <pre> and under "white-space"; <br> ends a line, a block stands
//   on lines of its own, a <p> has a blank line around it unless its margin there is 0;
// - the cells of a row are separated by tabs and each row ends its line, but in tables made for
//   layout empty ones leave nothing; the items of a list begin with marker and tab;
// - what is not displayed is left out: head, scripts, styles, templates, comments, the "hidden"
//   attribute, "display: none", "opacity: 0", no height with hidden overflow, and text under
//   "visibility: hidden" and "font-size: 0", in style attributes and through style elements;
// - text that strays between the parts of a table stands in front of it.
#pragma once

#include <functional>

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

// nil for nil.
[[nodiscard]] NSString plainTextFromHTML(const NSString& html);
// From UTF-8, or UTF-16 behind its mark; bytes that are neither are in the charset that the page
// declares in its first 65,536 bytes, and without one what is not valid UTF-8 becomes U+FFFD. Who
// knows the charset from elsewhere decodes first and hands over text.
[[nodiscard]] NSString plainTextFromHTML(const NSData& html);

struct HTMLImportOptions {
  // The bytes of the part with that content identifier ("cid:" taken off, percent escapes
  // decoded); nil when they are not at hand. May be empty.
  std::function<NSData(const NSString& contentIdentifier)> dataForContentIdentifier;
};

// Kept as attributes: fonts, sizes, weights, slants, colours, underline and strikethrough, raised
// and lowered text, links (but scripts), alignment, indents, line height, direction, headings,
// quotes, lists, table cells, vertical margins of blocks other than <p>, and images: with their
// bytes when they come in a data: URL or through the options, else their place only. nil for nil.
[[nodiscard]] NSAttributedString attributedTextFromHTML(const NSString& html,
                                                        const HTMLImportOptions& options = {});
[[nodiscard]] NSAttributedString attributedTextFromHTML(const NSData& html,
                                                        const HTMLImportOptions& options = {});

}  // namespace kelspar
