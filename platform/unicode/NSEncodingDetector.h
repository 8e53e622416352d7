// Finds out in which encoding the bytes of a text are.
#pragma once

#include <span>

#include "platform/unicode/NSStringEncoding.h"

namespace kelspar {

struct EncodingDetection {
  NSStringEncoding encoding = 0;     // 0: none fits
  NSString text;                     // the whole data decoded; nil when none fits
  bool usedLossyConversion = false;  // what was not valid became U+FFFD
};

// In this order: a byte-order mark (UTF-8, UTF-16, UTF-32), which is consumed; UTF-16 and UTF-32
// without one, by their zero bytes, in eight bytes at least; whole text with escape sequences
// (ISO 2022, HZ) and characters of two bytes; valid UTF-8, which is never anything else, plain
// ASCII included; then the code page and language whose letters fit the bytes best, among some
// forty. Bytes that are mostly UTF-8 with damage are decoded with loss.
//
// `suggested` tips the balance between guesses that are about as good, and further the fewer bytes
// there are to tell them apart; with `useOnlySuggested` nothing else is considered, and the first
// that fits with loss is taken when none fits without.
// Data without bytes is ASCII and the empty text; nil data fits nothing.
//
// Guessing looks at 16 KiB at most; the cost beyond that is one decoding. Any thread may call.
[[nodiscard]] EncodingDetection stringEncodingForData(
    const NSData& data, std::span<const NSStringEncoding> suggested = {},
    bool useOnlySuggested = false);

}  // namespace kelspar
