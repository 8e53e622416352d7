// Identifiers are weighed part by part against the locales that ICU has data for.
#include "platform/calendar/locales.h"

#include <unicode/locid.h>
#include <unicode/region.h>
#include <unicode/uloc.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>

namespace kelspar::calendar {

namespace {

constexpr const char* kPosix = "en_US_POSIX";
constexpr const char* kUnknownLanguage = "xx";
constexpr const char* kUnknownRegion = "XX";

// ICU's locales with data, its old names for some, of each the language alone, and the root.
const std::set<std::string, std::less<>>& names() {
  static const auto all = [] {
    std::set<std::string, std::less<>> list{""};
    UErrorCode error = U_ZERO_ERROR;
    UEnumeration* locales = uloc_openAvailableByType(ULOC_AVAILABLE_WITH_LEGACY_ALIASES, &error);
    while (const char* name = uenum_next(locales, nullptr, &error)) {
      list.emplace(name);
      list.emplace(name, std::strcspn(name, "_"));
    }
    uenum_close(locales);
    return list;
  }();
  return all;
}

// A country or a group of them.
bool isRegion(const char* code) {
  UErrorCode error = U_ZERO_ERROR;
  return icu::Region::getInstance(code, error) && U_SUCCESS(error);
}

bool isKnownLanguage(const icu::Locale& locale) { return names().contains(locale.getLanguage()); }

icu::Locale withLikelyParts(icu::Locale locale) {
  UErrorCode error = U_ZERO_ERROR;
  locale.addLikelySubtags(error);
  return locale;
}

// Language, script and region, of each what ICU knows. A script that the language is not written in
// makes it an unknown one. Also without data of its own a region tells the first day of the week.
std::string knownName(const icu::Locale& locale) {
  std::string name = isKnownLanguage(locale) ? locale.getLanguage() : kUnknownLanguage;
  std::string region = locale.getCountry();
  const std::string script = locale.getScript();
  if (!script.empty() && names().contains(name + "_" + script)) {
    name += "_" + script;
  } else if (!script.empty() &&
             (name.empty() || script != withLikelyParts(icu::Locale(name.c_str())).getScript())) {
    name = kUnknownLanguage;
    if (region.empty()) region = withLikelyParts(locale).getCountry();
  }
  if (!region.empty()) name += "_" + (isRegion(region.c_str()) ? region : kUnknownRegion);
  return name;
}

}  // namespace

std::string knownLocale(std::string_view identifier) {
  // Longer ones than ICU's own capacity are none.
  if (identifier.size() > ULOC_FULLNAME_CAPACITY) return "";
  const auto locale = icu::Locale::createCanonical(std::string(identifier).c_str());
  if (locale.isBogus()) return "";
  const std::string base = locale.getBaseName();
  if (base.empty() || names().contains(base)) return locale.getName();
  const std::string keywords = std::string(locale.getName()).substr(base.size());
  return knownName(locale) + keywords;
}

std::string localeOfDates(const std::function<const char*(const char*)>& variable) {
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = variable(name);
    if (!value || !*value) continue;
    // Behind "." stands the charset, behind "@" what ICU has no word for.
    const std::string_view identifier(value, std::strcspn(value, ".@"));
    if (identifier == "C" || identifier == "POSIX") return kPosix;
    const std::string locale = knownLocale(identifier);
    const bool isKnown = !locale.empty() && isKnownLanguage(icu::Locale(locale.c_str()));
    return isKnown ? locale : kPosix;
  }
  return kPosix;
}

const std::string& processLocale() {
  static const std::string locale = localeOfDates([](const char* name) -> const char* {
    const char* set = std::setlocale(LC_TIME, nullptr);
    const bool isSet = set && std::strcmp(set, "C") != 0 && std::strcmp(set, "POSIX") != 0;
    return isSet ? set : std::getenv(name);
  });
  return locale;
}

}  // namespace kelspar::calendar
