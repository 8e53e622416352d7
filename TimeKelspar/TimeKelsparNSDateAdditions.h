// Dates as clock hands and as text.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar::TimeKelsparNSDateAdditions {

// Radians of the hands at the receiver's time of day. Deliberate: the hour hand follows the 24-hour
// value and ignores minutes, so 15:00 is at 2.5 pi. Null pointers are left out; nil writes nothing.
void calculateAngleOfHourHand(const NSDate& receiver, float* hourHand, float* minuteHand,
                              float* secondHand);

// By a Unicode date pattern (UTS 35), in the process's time zone; in `locale` (an identifier) or,
// when that is nil or empty, the process's. nil for nil.
[[nodiscard]] NSString convertDateToStringWithFormat(const NSDate& receiver,
                                                     const NSString& pattern,
                                                     const NSString& locale);
[[nodiscard]] NSString convertDateToStringWithFormat(const NSDate& receiver,
                                                     const NSString& pattern);

}  // namespace kelspar::TimeKelsparNSDateAdditions
