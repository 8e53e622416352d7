// ICU itself takes names without digits; all else becomes the machine's zone or a bare offset.
#include "platform/calendar/zones.h"

#include <unicode/timezone.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/calendar/zone_rules.h"

namespace kelspar::calendar {

namespace {

std::unique_ptr<icu::TimeZone> namedZone(std::string_view name) {
  for (const std::string_view folder : {"posix/", "right/"}) {
    if (name.starts_with(folder)) name.remove_prefix(folder.size());
  }
  const auto id = icu::UnicodeString::fromUTF8({name.data(), static_cast<int32_t>(name.size())});
  icu::UnicodeString canonical;
  UBool isKnown = false;
  UErrorCode error = U_ZERO_ERROR;
  icu::TimeZone::getCanonicalID(id, canonical, isKnown, error);
  if (U_FAILURE(error) || !isKnown) return nullptr;
  return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone(id));
}

// "/usr/share/zoneinfo/Europe/Berlin" and links to it.
std::unique_ptr<icu::TimeZone> zoneOfFile(const std::string& path) {
  constexpr std::string_view kFolder = "/zoneinfo/";
  std::error_code error;
  for (const std::string& file : {path, std::filesystem::canonical(path, error).string()}) {
    const size_t folder = file.find(kFolder);
    if (folder == file.npos) continue;
    if (auto zone = namedZone(std::string_view(file).substr(folder + kFolder.size()))) return zone;
  }
  return nullptr;
}

}  // namespace

template <class Zone>
std::unique_ptr<Zone> zoneOfVariable(std::string_view value) {
  constexpr size_t kLongest = 4096, kLongestAbbreviation = 4;
  if (value.starts_with(':')) value.remove_prefix(1);
  if (value.empty() || value.size() > kLongest) return nullptr;
  if (value.starts_with('/')) return zoneOfFile(std::string(value));
  // ICU compares what it takes shorter names for with the C library, by itself.
  if (value.size() > kLongestAbbreviation) {
    if (auto zone = namedZone(value)) return zone;
  }
  return zoneOfRule<Zone>(value);
}

template <class Zone>
const Zone& processZone() {
  static const std::unique_ptr<icu::TimeZone> zone = [] {
    const char* variable = std::getenv("TZ");
    auto named = variable ? zoneOfVariable<Zone>(variable) : nullptr;
    return named ? std::move(named)
                 : std::unique_ptr<icu::TimeZone>(icu::TimeZone::createDefault());
  }();
  return *zone;
}

template std::unique_ptr<icu::TimeZone> zoneOfVariable(std::string_view value);
template const icu::TimeZone& processZone();

}  // namespace kelspar::calendar
