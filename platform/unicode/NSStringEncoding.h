// String encodings by their platform numbers, and decoding with a verdict: bytes that are not valid
// in an encoding give nil, never a replacement character.
#pragma once

#include <span>

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
//
// UTF-16 and UTF-32 without a stated order (10, 0x8C000100): a byte-order mark is obeyed and
// consumed, without one the order is big-endian (RFC 2781, 4.3). A mark elsewhere is U+FEFF. Lone
// surrogates are refused, as is a last unit that is cut short.
[[nodiscard]] NSString stringWithData(const NSData& data, NSStringEncoding encoding);
[[nodiscard]] NSString stringWithBytes(std::string_view bytes, NSStringEncoding encoding);

// The bytes of `text` in `encoding`; nil for nil, for text that the encoding cannot write (lone
// surrogates included) and for a number that is not known. Encodings 10 and 0x8C000100 write a
// byte-order mark and this machine's order.
[[nodiscard]] NSData dataUsingEncoding(const NSString& text, NSStringEncoding encoding);

// Every encoding that can be decoded here, in a fixed order; without an end mark. Built on the
// first call, then shared; any thread may call.
[[nodiscard]] std::span<const NSStringEncoding> availableStringEncodings();

// The English display name ("Western (ISO Latin 1)"); nil for a number that is not known.
[[nodiscard]] NSString localizedNameOfStringEncoding(NSStringEncoding encoding);

}  // namespace kelspar
