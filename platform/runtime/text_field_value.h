// A text field that records what is sent to it: the value {"$textField":true} of the wire protocol.
// Internal.
#pragma once

#include "platform/dispatch/NSTextField.h"
#include "platform/foundation/foundation.h"

namespace kelspar::runtime {

// A new recording field for true; nil for anything else.
[[nodiscard]] id readTextField(const id& content);

// What a recording field has been sent so far, in order: ["setStringValue:","0:01"],
// ["displayIfNeeded"], ["setNeedsDisplay:",true]. nil for nil and for other fields.
[[nodiscard]] NSArray sentToTextField(const NSTextField& field);

}  // namespace kelspar::runtime
