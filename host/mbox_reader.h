// Splits mail folders in one file (RFC 4155) into their messages.
#pragma once

#include <vector>

#include "platform/foundation/NSData.h"

namespace kelspar::host {

// Whether the bytes begin with a "From " line.
[[nodiscard]] bool isMbox(const NSData& bytes);

// The messages, without their "From " lines; ">From " loses its first ">". A message begins at a
// "From " line at the start of the file or behind an empty line. Linear; only messages with quoted
// lines are copied.
[[nodiscard]] std::vector<NSData> messagesOfMbox(const NSData& bytes);

}  // namespace kelspar::host
