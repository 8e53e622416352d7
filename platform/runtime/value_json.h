// The JSON form of values on the wire: plain JSON where it can say it, objects with one "$" key for
// data, dates, URLs and the rest. Internal to the library.
#pragma once

#include <string>

#include "platform/foundation/foundation.h"

namespace kelspar::runtime {

// Appends the JSON form of `value` to `*out`: UTF-8, no line feed. nil and the null object are
// null.
void writeValue(const id& value, std::string* out);

// Appends a JSON string; lone surrogates are written as escapes.
void writeString(std::u16string_view text, std::string* out);

// The value that parsed JSON stands for: objects with a "$" key become what they name, at any
// depth. nil and a reason in `*error` when one of them is not of its form.
[[nodiscard]] id readValue(const id& json, std::string* error);

}  // namespace kelspar::runtime
