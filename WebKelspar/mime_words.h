// What the parts of an encoded word become, over views of the header. Internal to the unit; the
// operations of the same purpose are these.
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

}  // namespace kelspar::WebKelsparNSStringAdditions
