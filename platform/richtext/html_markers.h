// The markers of list items, as HTML's lists show them: "•", "12.", "iv.". Internal to the HTML
// importer and writer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelspar::html {

// Marker and tab of the item of that number; nothing for "none". Letters and numerals below what
// they can say are decimal.
//
//   markerText(u"lower-roman", 4)  // u"iv.\t"
[[nodiscard]] std::u16string markerText(std::u16string_view style, int32_t value);

// The number of the item whose marker and tab a list of that style shows as `marker`; 0 when none
// does, any number where the style shows the same for all.
[[nodiscard]] int32_t valueOfMarker(std::u16string_view style, std::u16string_view marker);

}  // namespace kelspar::html
