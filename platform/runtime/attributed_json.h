// The wire forms of attributed text: {"$attributed":{"string":...,"runs":[...]}} both ways, and
// {"$rtf":"BASE64"} in requests. Internal to the library.
#pragma once

#include "platform/richtext/NSAttributedString.h"

namespace kelspar::runtime {

// What "$attributed" holds: the text and, for each run, its length and attributes. What an
// attribute does not say is left out; lengths and indents are points.
[[nodiscard]] NSDictionary contentOfAttributed(const NSAttributedString& text);

// Back again; "runs" may be missing. An attachment's bytes may be given as "contents", data. nil
// when the content is not of the form.
[[nodiscard]] id readAttributed(const id& content);

// Attributed text from RTF in base64; nil when it is none.
[[nodiscard]] id readRTF(const id& content);

}  // namespace kelspar::runtime
