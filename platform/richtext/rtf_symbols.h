// The characters behind the glyphs of symbol fonts. Internal to the library.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelspar {

enum class RTFSymbolFont : uint8_t { none, symbol, wingdings };

// By the font's name, without case.
[[nodiscard]] RTFSymbolFont symbolFontNamed(std::u16string_view name);

// The character that byte 0x20 to 0xFF shows in the font; a glyph that Unicode has no character for
// is U+F000 and the byte, as symbol fonts are encoded.
[[nodiscard]] char16_t unitOfSymbol(RTFSymbolFont font, uint8_t byte);

}  // namespace kelspar
