// Writes attributed text as an HTML document. Internal to the library.
//
// Structure is said by elements (p, h1 to h6, pre, blockquote, ul, ol, table, a, b, i, u, s, img,
// br), looks by classes whose rules stand in the head. Every character is escaped; controls that
// HTML forbids and lone surrogates become U+FFFD. Links and images refer to http, https, mailto,
// tel, ftp and cid only, other links are left out and their text stays; images that are at hand are
// data: URLs. One that stands in many places is written at its first one and, while such
// repetitions come to 16 MB at most, at the others; behind that, what the text referred to, or the
// text in its place or its name, stands for it. No HTML5 parser finds an error in it.
//
// The space before and after a paragraph is padding: a margin would read as a blank line.
#pragma once

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

// nil for nil. Linear in the text, its runs and the bytes of its pictures, those of one NSData
// counted once (and 16 MB).
[[nodiscard]] NSString htmlFromAttributedString(const NSAttributedString& text);

// Whether a link begins with one of the schemes that may be linked to: http, https, mailto, tel,
// ftp and cid, in any case.
[[nodiscard]] bool hasSafeScheme(std::u16string_view link);

// Whether text may be linked to this: one of the schemes above, or a place in the document ("#"),
// without controls, line ends and what is no character.
[[nodiscard]] bool isSafeLink(std::u16string_view link);

}  // namespace kelspar
