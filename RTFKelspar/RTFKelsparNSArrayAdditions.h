// Lists of records: what they hold under one key.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar::RTFKelsparNSArrayAdditions {

// The value under `key` of each dictionary in the receiver, in order; the null object where a
// dictionary has no such key, so that positions still line up. Elements that are no dictionaries
// are left out.
//
// The empty list for a nil or empty key and for a nil or empty receiver.
[[nodiscard]] NSArray generateArrayForDictionaryKey(const NSArray& receiver, const NSString& key);

}  // namespace kelspar::RTFKelsparNSArrayAdditions
