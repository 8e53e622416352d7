// Attributed text on pages of a PDF document. Internal to the library.
#pragma once

#include <functional>
#include <string_view>

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

// Lays `text` out on lines of 550 points and cuts it at multiples of 715 points. `write` gets the
// document in pieces, page by page, and says whether it could take them. A text that is not empty
// has a page at least. The creation date is SOURCE_DATE_EPOCH's where that is set. Linear.
void writePDF(const NSAttributedString& text, const std::function<bool(std::string_view)>& write);

}  // namespace kelspar
