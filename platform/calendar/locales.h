// Locales as ICU can use them. Internal to the library.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kelspar::calendar {

// The name of an identifier's locale with all left out that makes no difference to ICU: it keeps a
// name in its caches for ever, also one that it does not know. An unknown language is one unknown
// language for all, and in ICU falls back to its own default; what is no identifier at all is the
// root, "".
[[nodiscard]] std::string knownLocale(std::string_view identifier);

// The locale that an environment asks dates to be in (POSIX, 8.2: LC_ALL, LC_TIME, LANG; empty is
// unset): en_US_POSIX where it names none, "C", "POSIX" or one that ICU does not know.
// `variable` gives a variable's value or null.
[[nodiscard]] std::string localeOfDates(const std::function<const char*(const char*)>& variable);

// The process's, looked at once: what its program has set for dates by setlocale(), else its
// environment's.
[[nodiscard]] const std::string& processLocale();

}  // namespace kelspar::calendar
