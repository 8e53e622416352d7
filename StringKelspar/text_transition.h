// The transition of a text field from a placeholder to its text. Internal to the unit.
#pragma once

#include <functional>

#include "platform/dispatch/NSTextField.h"

namespace kelspar {

// What the worker pauses with.
using Rest = std::function<void(uint64_t tenthsOfASecond)>;

// See StringKelspar::transitionText. `finished`, if any, runs on the main queue after the final
// setting; without `rest` the thread sleeps.
void startTransition(const NSString& target, int32_t style, uint64_t duration, float interval,
                     const NSTextField& field, std::function<void()> finished,
                     const Rest& rest = nullptr);

}  // namespace kelspar
