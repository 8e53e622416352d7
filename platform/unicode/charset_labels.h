// Charset labels by the table of the WHATWG Encoding Standard (4.2), mail's own labels and numbers
// of code pages, and text under a label. Internal to the library.
#pragma once

#include "platform/foundation/NSData.h"
#include "platform/foundation/NSString.h"

namespace kelspar {

// The name of the encoding that a label means ("gb2312": "GBK"), in any case, blanks around it
// ignored. nil for a label that is none.
[[nodiscard]] NSString encodingOfCharsetLabel(const NSString& label);

// Text under that label. Bytes that are not valid in it are read as UTF-8 when they are that, and
// else become U+FFFD one by one; so are bytes over 127 under an ASCII label. Without a usable
// label: UTF-8, or else Windows-1252. A byte-order mark is dropped. nil for nil.
[[nodiscard]] NSString textUnderCharsetLabel(const NSData& bytes, const NSString& label);

}  // namespace kelspar
