// What headers are read with: the parts of an encoded word over views of the header, and line ends.
// Internal to the unit.
#pragma once

#include <string_view>

#include "platform/foundation/NSString.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar::WebKelsparNSStringAdditions {

// See getCharacterEncodingFromMime.
[[nodiscard]] NSStringEncoding encodingOfLabel(std::u16string_view label);

// See quotedPrintableDecodeWithEncoding and base64DecodeWithEncoding.
[[nodiscard]] NSString textOfQuotedPrintable(std::u16string_view text, NSStringEncoding encoding);
[[nodiscard]] NSString textOfBase64(std::u16string_view text, NSStringEncoding encoding);

// What "." does not match in a regular expression: the line ends of Unicode.
constexpr bool isLineEnd(char16_t c) {
  return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

}  // namespace kelspar::WebKelsparNSStringAdditions
