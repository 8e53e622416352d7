// Dates by the ordered lists of formats alone: what the plain shapes are compared with. Internal.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar::dates {

// The first of the header formats, or of the general ones, that describes the whole text.
[[nodiscard]] NSDate readByHeaderFormats(const NSString& text);
[[nodiscard]] NSDate readByGeneralFormats(const NSString& text);

}  // namespace kelspar::dates
