// Clock times and dates out of text.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar::TimeKelsparNSStringAdditions {

// "1:05 pm" gives "13:05". nil for nil, for text without ":", for hours beyond 23 and minutes
// beyond 60 (60 is accepted, on purpose). What is no number counts as 0.
[[nodiscard]] NSString create24HourStringFrom12HourString(const NSString& receiver);

// "13:45" gives "1:45PM", "24:00" gives "12:00PM". nil as above, for hours beyond 24.
[[nodiscard]] NSString create12HourStringFrom24HourString(const NSString& receiver);

// The date of a text in one of eleven forms, tried in order, in the process's time zone unless the
// text names another: "yyyy-MM-dd", "EEE MMM dd HH:mm:ss yyyy", "yyyy-MM-dd HH:mm:ss",
// "yyyyMMdd'T'HHmmss'Z'", "d MMM YYYY hh:mm", "dd MMM YYYY hh:mm", "dd MMM yyyy 'at' HH:mm",
// "EEE, dd MMM yyyy HH:mm:ss Z", "dd/MM/yyyy, HH:mm", "dd/MM/yyyy HH:mm", "MM/dd/yyyy, HH:mm".
// Deliberate: the week-based year and the 12-hour clock of the fifth and sixth.
//
// The whole text must be of the form. nil for nil and for any other text.
[[nodiscard]] NSDate convertStringToDate(const NSString& receiver);

}  // namespace kelspar::TimeKelsparNSStringAdditions
