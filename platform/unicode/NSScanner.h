// Reads numbers off the front of a text.
#pragma once

#include <cstdint>

#include "platform/foundation/NSString.h"

namespace kelspar {

// Each scan first skips white space and line ends, then takes the longest number that stands there
// and moves behind it. Without one, it returns false, the result is left alone and the scanner does
// not move.
//
//   NSScanner scanner(u" 0xFFzz");
//   uint32_t value = 0;
//   scanner.scanHexInt(&value);  // true, value == 255, scanLocation() == 5
class NSScanner {
 public:
  explicit NSScanner(const NSString& text) : text_(text) {}

  // Hexadecimal digits, an optional "0x" or "0X" before them; no sign. A number that is too large
  // gives the largest value.
  bool scanHexInt(uint32_t* value);
  bool scanHexLongLong(uint64_t* value);
  // Decimal digits with an optional sign. A number that is too large or too small gives the largest
  // or smallest value.
  bool scanInteger(int64_t* value);
  bool scanInt(int32_t* value);

  [[nodiscard]] size_t scanLocation() const noexcept { return at_; }
  void setScanLocation(size_t location) noexcept { at_ = location; }
  // Whether only white space is left.
  [[nodiscard]] bool isAtEnd() const;

 private:
  [[nodiscard]] size_t start() const;
  bool scanHex(uint64_t most, uint64_t* value);
  bool scanDecimal(int64_t least, int64_t most, int64_t* value);

  NSString text_;
  size_t at_ = 0;
};

}  // namespace kelspar
