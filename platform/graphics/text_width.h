// How wide attributed text is on lines without bounds. Internal to the library.
#pragma once

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

// The width in points of the widest line; lines end where the text has line ends. Fonts are those
// of the runs, as far as the system has them, without rounding to pixels. 0 for nil and the empty
// text. Linear; any thread may call, each has layout objects of its own.
[[nodiscard]] double widthOfText(const NSAttributedString& text);

}  // namespace kelspar
