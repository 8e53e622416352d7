// String cleanup: operations that change a string in place.
#pragma once

#include "platform/foundation/foundation.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar::StringKelsparNSMutableStringAdditions {

// Replaces each unit of the set on its own, so that a run of three gives three replacements. A
// missing replacement is the empty string; without a set nothing happens. Linear.
void replaceCharactersInSet(NSMutableString& receiver, const NSCharacterSet& set,
                            const NSString& replacement);

}  // namespace kelspar::StringKelsparNSMutableStringAdditions
