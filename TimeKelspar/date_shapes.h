// The plain shapes of date texts, read without a formatter. Internal to the unit.
//
// What is not exactly of such a shape is left to the formatters: an answer given here is the one
// that the ordered lists of formats give.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar::dates {

// "Thu, 1 Jan 1970 00:00:00 +0000" with or without the weekday; "1970-01-01T00:00:00+0000", with
// blanks for the letter and before the zone as well; "Thu Jan  1 00:00:00 1970", local. nil for all
// else.
[[nodiscard]] NSDate readHeaderShape(std::u16string_view text);

// "1970-01-01", "1970-01-01 00:00:00" and "19700101T000000Z", all local. nil for all else.
[[nodiscard]] NSDate readGeneralShape(std::u16string_view text);

}  // namespace kelspar::dates
