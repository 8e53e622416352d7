// Time zones as environments name them. Internal to the library.
//
// `Zone` is icu::TimeZone, which headers do not name.
#pragma once

#include <memory>
#include <string_view>

namespace kelspar::calendar {

// The zone that a value of TZ names (POSIX, 8.3), with or without ":" before it: a zone of ICU's, a
// file in a folder of zone data by the zone's name, or a rule such as "CET-1CEST,M3.5.0,M10.5.0/3".
// Null for what is none of these, and for names of up to four letters. ICU's data count, not the
// machine's.
//
// Daylight time without rules changes as in the United States. Days counted from 0 with leap days
// ("59/2") are not read.
template <class Zone>
[[nodiscard]] std::unique_ptr<Zone> zoneOfVariable(std::string_view value);

// The process's, looked at once: that of TZ, else ICU's own idea of it.
template <class Zone>
[[nodiscard]] const Zone& processZone();

}  // namespace kelspar::calendar
