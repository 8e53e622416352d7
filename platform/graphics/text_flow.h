// A text from top to bottom: paragraphs below each other, cells of tables side by side. Internal to
// the library.
#pragma once

#include <functional>
#include <vector>

#include "platform/graphics/page_line.h"
#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

// Lays `text` out on lines of a page's width and hands on lines as they are ready: `take` gets them
// in reading order with a y that nothing later begins above, and says whether it wants more. Not
// for the empty text.
void layOut(const NSAttributedString& text,
            const std::function<bool(std::vector<PageLine> lines, double y)>& take);

}  // namespace kelspar
