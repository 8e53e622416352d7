// The charset that an HTML page declares (WHATWG HTML, 13.2.3.2). Internal to the library.
#pragma once

#include "platform/foundation/NSData.h"
#include "platform/foundation/NSString.h"

namespace kelspar::html {

// The label of the byte-order mark; else that of the first <meta charset>, or <meta
// http-equiv="Content-Type" content="...; charset=...">, in the first 65,536 bytes whose label is
// one: browsers look at 1,024 before they parse, and change their mind over a later one. A label of
// UTF-16 is read as "utf-8": the declaration could not be read otherwise. nil for none.
[[nodiscard]] NSString declaredCharset(const NSData& page);

// The page as text: UTF-16 behind its mark; UTF-8 when that is what the bytes are; else as the page
// declares; else UTF-8 with U+FFFD for what is not valid. nil for nil.
[[nodiscard]] NSString decodedPage(const NSData& page);

}  // namespace kelspar::html
