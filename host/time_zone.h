// The time zone in which dates are shown.
#pragma once

#include <string>

namespace kelspar::host {

// Makes it the process's zone; an empty name keeps the one there is. Throws Failure (kUsage) for a
// name that the system does not know. To be called before threads start.
void setTimeZone(const std::string& name);

}  // namespace kelspar::host
