// How the catalogue of encodings is put together. Internal to the unit.
#pragma once

#include <functional>
#include <span>

#include "platform/foundation/foundation.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar {

// Display name to number, for each encoding of the list; what is odd (an encoding twice, two of one
// name, a name that is missing or raises) is logged and kept as far as possible.
[[nodiscard]] NSDictionary buildEncodingCatalogue(
    std::span<const NSStringEncoding> encodings,
    const std::function<NSString(NSStringEncoding)>& nameOf);

}  // namespace kelspar
