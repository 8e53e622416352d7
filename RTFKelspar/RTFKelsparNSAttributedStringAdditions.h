// Attributed text as PDF.
#pragma once

#include "platform/richtext/NSAttributedString.h"

namespace kelspar::RTFKelsparNSAttributedStringAdditions {

// Lines of 550 points, pages of 715 points, cut at multiples of 715 from the top: a line at a
// page's end may be cut in two. Both operations work on the main thread; other threads wait for it,
// so the main thread must not wait for them.

// The document; nil for nil and for the empty text.
[[nodiscard]] NSData createPdfDataFromAttributedString(const NSAttributedString& receiver);

// Writes the document to a file URL, page by page. True when there was text to write, false
// otherwise. Deliberate: a file that cannot be written is not reported.
bool saveRtfAsPdfWithFilepath(const NSAttributedString& receiver, const NSURL& filepath);

}  // namespace kelspar::RTFKelsparNSAttributedStringAdditions
