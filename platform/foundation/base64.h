// Base64 (RFC 4648, 4). Internal to the library.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelspar::base64 {

// With padding, without line breaks. Appends to `*out`.
void encode(std::string_view bytes, std::string* out);

// The bytes of well-formed base64, padding included or left out; nothing for any other text.
[[nodiscard]] std::optional<std::string> decodeStrict(std::u16string_view text);

// The bytes of base64 in whatever shape: other characters are skipped, "=" ends the text, a lone
// last character is dropped.
[[nodiscard]] std::string decodeLenient(std::u16string_view text);

}  // namespace kelspar::base64
