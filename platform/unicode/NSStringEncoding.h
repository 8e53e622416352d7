// String encodings by their platform numbers, and decoding with a verdict: bytes that are not valid
// in an encoding give nil, never a replacement character.
#pragma once

#include "platform/foundation/NSData.h"
#include "platform/foundation/NSString.h"

namespace kelspar {

using NSStringEncoding = uint64_t;

inline constexpr NSStringEncoding NSASCIIStringEncoding = 1;
inline constexpr NSStringEncoding NSNEXTSTEPStringEncoding = 2;
inline constexpr NSStringEncoding NSJapaneseEUCStringEncoding = 3;
inline constexpr NSStringEncoding NSUTF8StringEncoding = 4;
inline constexpr NSStringEncoding NSISOLatin1StringEncoding = 5;
inline constexpr NSStringEncoding NSSymbolStringEncoding = 6;
inline constexpr NSStringEncoding NSShiftJISStringEncoding = 8;
inline constexpr NSStringEncoding NSISOLatin2StringEncoding = 9;
inline constexpr NSStringEncoding NSUnicodeStringEncoding = 10;  // UTF-16 with a byte-order mark
inline constexpr NSStringEncoding NSWindowsCP1251StringEncoding = 11;
inline constexpr NSStringEncoding NSWindowsCP1252StringEncoding = 12;
inline constexpr NSStringEncoding NSWindowsCP1253StringEncoding = 13;
inline constexpr NSStringEncoding NSWindowsCP1254StringEncoding = 14;
inline constexpr NSStringEncoding NSWindowsCP1250StringEncoding = 15;
inline constexpr NSStringEncoding NSISO2022JPStringEncoding = 21;
inline constexpr NSStringEncoding NSMacOSRomanStringEncoding = 30;
inline constexpr NSStringEncoding NSUTF16BigEndianStringEncoding = 0x90000100;
inline constexpr NSStringEncoding NSUTF16LittleEndianStringEncoding = 0x94000100;
inline constexpr NSStringEncoding NSUTF32StringEncoding = 0x8C000100;
inline constexpr NSStringEncoding NSUTF32BigEndianStringEncoding = 0x98000100;
inline constexpr NSStringEncoding NSUTF32LittleEndianStringEncoding = 0x9C000100;

// The text of `data` in `encoding`; nil for nil data, for bytes that are not valid in the encoding
// and for an encoding number that is not known. Linear; one pass.
[[nodiscard]] NSString stringWithData(const NSData& data, NSStringEncoding encoding);
[[nodiscard]] NSString stringWithBytes(std::string_view bytes, NSStringEncoding encoding);

}  // namespace kelspar
