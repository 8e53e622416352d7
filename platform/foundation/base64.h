// Base64 (RFC 4648, 4). Internal to the library.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/NSData.h"

namespace kelspar::base64 {

// With padding, without line breaks. Appends to `*out`.
void encode(std::string_view bytes, std::string* out);

// The bytes of well-formed base64, padding included or left out; nothing for any other text.
[[nodiscard]] std::optional<std::string> decodeStrict(std::u16string_view text);

// What a "=" means: the text's end, or the end of one text of several.
enum class AtPadding { stop, goOn };

// The bytes of base64 in whatever shape: other characters are skipped, a lone last character is
// dropped. Holds nothing beyond its result.
[[nodiscard]] NSData decodeLenient(std::u16string_view text, AtPadding = AtPadding::stop);
[[nodiscard]] NSData decodeLenient(std::string_view text, AtPadding = AtPadding::stop);

// Whole groups of four characters with line ends between them, decoded until something else
// comes; `out` has room for 32 bytes more than they give. The portable form and the one for
// processors with AVX2 give the same answers; which is used is decided on the first call.
struct Groups {
  size_t read, written;
  friend bool operator==(const Groups&, const Groups&) = default;
};
template <class Char>
using DecodeGroups = Groups (*)(std::basic_string_view<Char> text, uint8_t* out);
template <class Char>
[[nodiscard]] Groups decodeGroupsPortably(std::basic_string_view<Char> text, uint8_t* out);
// Null on other processors.
template <class Char>
[[nodiscard]] DecodeGroups<Char> decodeGroupsVectorised();

}  // namespace kelspar::base64
