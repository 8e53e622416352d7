// Time zones written as rules (POSIX, 8.3). Internal to the library.
//
// `Zone` is icu::TimeZone, which headers do not name.
#pragma once

#include <memory>
#include <string_view>

namespace kelspar::calendar {

// "IST-5:30", "<-03>3", "CET-1CEST,M3.5.0,M10.5.0/3", "EST5EDT4,J60/2,J300". Null for all else.
template <class Zone>
[[nodiscard]] std::unique_ptr<Zone> zoneOfRule(std::string_view rule);

}  // namespace kelspar::calendar
