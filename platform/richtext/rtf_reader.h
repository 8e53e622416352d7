// Reads an RTF document (RTF 1.9.1) into its characters. Internal to the library.
//
// Any bytes are read to their end: missing braces, unknown words and damaged escapes cost at most
// the text that they hide. Linear in the input; nesting is a counter.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar {

// The plain characters. Paragraphs end in "\n", lines inside them in U+2028, pages in U+000C; the
// cells of a row are separated by tabs and the row ends in "\n". Hidden and deleted text, notes,
// headers, footers, pictures and htmltag groups are left out.
//
// nil for nil and for bytes that do not begin an RTF document.
[[nodiscard]] NSString plainTextFromRTF(const NSData& rtf);

// The HTML that the document encapsulates (MS-OXRTFEX 2.2): htmltag contents and the text between
// the groups, without what \htmlrtf hides. nil, too, for RTF without \fromhtml.
[[nodiscard]] NSString encapsulatedHTMLFromRTF(const NSData& rtf);

}  // namespace kelspar
