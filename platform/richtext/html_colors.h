// Colours as HTML and CSS write them. Internal to the library.
#pragma once

#include <optional>
#include <string_view>

#include "platform/richtext/NSTextAttributes.h"

namespace kelspar::html {

// "#RGB", "#RRGGBB" (with an alpha behind it as well), "rgb(1, 2, 3)", "rgba(...)" and the named
// colours of CSS Color 4; nothing for "transparent", an alpha of 0 and what is no colour.
[[nodiscard]] std::optional<NSColor> colorNamed(std::u16string_view text);

// The same, and digits without "#" as `<font color>` has them.
[[nodiscard]] std::optional<NSColor> legacyColor(std::u16string_view text);

}  // namespace kelspar::html
