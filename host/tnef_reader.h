// Reads TNEF, the "winmail.dat" of messages that left their own system (MS-OXTNEF).
#pragma once

#include "host/message.h"

namespace kelspar::host {

// Whether the bytes begin with TNEF's signature.
[[nodiscard]] bool isTNEF(const NSData& bytes);

// Everything up to the first attribute that does not fit is read; what is behind it is a fault of
// the message. Checksums are not insisted upon: streams whose checksums are wrong are common.
// Linear; nesting is bounded. Null for bytes that are no TNEF.
[[nodiscard]] std::shared_ptr<Message> readTNEF(const NSData& bytes, const ReadOptions& options,
                                                int depth = 0);

}  // namespace kelspar::host
