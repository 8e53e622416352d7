// The date inside a data record.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar::TimeKelsparNSDataAdditions {

// The stamp YYMMDDhhmmss before the last "-" of the fourth field of an ASCII record whose fields
// end in ";", as local time, in the medium date and short time style of the process's locale.
//
// nil for nil and empty data, for bytes that are not ASCII and for a stamp that is no time. A
// record without a fourth field, a field without "-" and a stamp under twelve characters raise
// NSRangeException.
[[nodiscard]] NSString formatDataAsDate(const NSData& receiver);

}  // namespace kelspar::TimeKelsparNSDataAdditions
