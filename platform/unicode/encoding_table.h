// The string encodings that the library knows: number, English display name, what converts them.
// Internal to the library.
#pragma once

#include <span>
#include <string_view>

#include "platform/unicode/NSStringEncoding.h"

namespace kelspar {

// How an encoding is converted. `windows` pages refuse the C1 controls that ICU gives for the bytes
// which they leave undefined; `pairs` are mostly one or two bytes a character; `own` have a table
// of ours, `system` encodings the C library's converter, on systems that have it.
enum class EncodingShape : uint8_t {
  ascii,
  latin1,
  utf8,
  utf16,
  utf16BE,
  utf16LE,
  utf32,
  utf32BE,
  utf32LE,
  single,
  windows,
  ebcdic,
  own,
  pairs,
  multi,
  system,
};

struct EncodingRow {
  NSStringEncoding number;
  std::u16string_view name;
  EncodingShape shape;
  const char* converter;  // ICU's name, or the C library's; null where there is none
};

// In the order in which the platform lists them: its own numbers first, the extended ones by
// number.
[[nodiscard]] std::span<const EncodingRow> allEncodings();

// Null for a number that is not known.
[[nodiscard]] const EncodingRow* encodingRow(NSStringEncoding number);

}  // namespace kelspar
