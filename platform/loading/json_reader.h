// JSON text (RFC 8259) to values: objects become NSDictionary, arrays NSArray, strings NSString,
// numbers NSNumber (integers over the whole signed and unsigned 64-bit range, else doubles), true
// and false booleans, null the null object. Internal to the library.
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/foundation.h"

namespace kelspar {

inline constexpr int kDeepestJSON = 512;

// nil and a reason in `*error` (which may be null) for text that is no JSON, that is not valid
// UTF-8, or that nests deeper than kDeepestJSON. Escapes of lone surrogates are kept as they are.
// Of equal keys the last counts. Linear; no recursion.
[[nodiscard]] id parseJSON(std::string_view text, std::string* error);

}  // namespace kelspar
