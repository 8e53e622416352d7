// What stored bytes give as RTF, as text, as plain characters.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar::RTFKelsparNSDataAdditions {

// The RTF bytes of a compressed RTF blob. A blob of the uncompressed type ("MELA") gives nil; its
// readable sibling is MailKelspar's.
//
// nil for nil and for a type that is not RTF's; nil and a line in the log for an empty blob, for
// one under 16 bytes that is of RTF's type, and when the memory cannot be had.
[[nodiscard]] NSData getRTFForData(const NSData& receiver);

// The bytes as text: UTF-8, else Latin-1 (which takes every byte), else Windows-1251. nil for nil.
[[nodiscard]] NSString rtfStringFromData(const NSData& receiver);

// The plain characters of an RTF document. nil for nil and for data that is no RTF.
[[nodiscard]] NSString stringFromRTFData(const NSData& receiver);

// The plain characters of the first half (of the UTF-16 units, rounded down) of an RTF document in
// UTF-8. nil for nil, for data that is not UTF-8, and when the half is no RTF.
[[nodiscard]] NSString rtfAsPlainText(const NSData& receiver);

}  // namespace kelspar::RTFKelsparNSDataAdditions
