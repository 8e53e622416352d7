// Zones by the system's database.
#include "host/time_zone.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "host/files.h"

namespace kelspar::host {

void setTimeZone(const std::string& name) {
  if (name.empty()) return;
  const bool isPath = name.front() == '/' || name.find("..") != name.npos;
  const std::string file = "/usr/share/zoneinfo/" + name;
  if (name != "UTC" && (isPath || !std::filesystem::is_regular_file(file))) {
    throw Failure(kUsage, name + ": is no time zone that is known here");
  }
  ::setenv("TZ", name.c_str(), 1);
  ::tzset();
}

}  // namespace kelspar::host
