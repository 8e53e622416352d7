// What the instructions of fields say (RTF 1.9.1, "Fields"). Internal.
#pragma once

#include <string>
#include <string_view>

namespace kelspar {

// The target of a HYPERLINK field's instruction; empty when it is another field or has none.
[[nodiscard]] std::u16string targetOfHyperlink(std::u16string_view instruction);

// The character that a SYMBOL field shows: SYMBOL 183 \f "Symbol". 0 when it is another field or
// names no character. Numbers are bytes of the font's charset, with \u characters of Unicode.
[[nodiscard]] char16_t symbolOfField(std::u16string_view instruction);

}  // namespace kelspar
