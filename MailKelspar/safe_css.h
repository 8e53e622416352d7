// Style sheets and declarations that cannot fetch, cover or run anything. Internal to the unit.
#pragma once

#include <string>
#include <string_view>

namespace kelspar::safe {

// The declarations whose properties are on the list and whose values name nothing outside. What
// would be fetched is counted in `*removed`. Linear.
[[nodiscard]] std::u16string declarations(std::u16string_view css, size_t* removed);

// A sheet's plain rules; rules with "@" are left out.
[[nodiscard]] std::u16string styleSheet(std::u16string_view css, size_t* removed);

}  // namespace kelspar::safe
