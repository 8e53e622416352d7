// Tables of single-byte and of one-or-two-byte encodings, made from ICU's converters on first use.
// Internal to the library.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "platform/foundation/NSData.h"
#include "platform/foundation/NSString.h"
#include "platform/unicode/encoding_table.h"

namespace kelspar {

// One byte is one character.
class SingleByteTable {
 public:
  // For rows of the shapes single, windows, ebcdic and own; lives as long as the process.
  static const SingleByteTable& of(const EncodingRow& row);

  // U+FFFD where the byte is undefined.
  [[nodiscard]] char16_t unit(uint8_t byte) const { return units_[byte]; }
  // nil when a byte is undefined.
  [[nodiscard]] NSString decode(std::string_view bytes) const;
  // nil when a unit is not in the table.
  [[nodiscard]] NSData encode(std::u16string_view text) const;

 private:
  explicit SingleByteTable(const EncodingRow& row);
  [[nodiscard]] bool isDefined(std::string_view bytes) const;

  std::array<char16_t, 256> units_;
  bool isAsciiBelow128_ = true;
  std::vector<uint8_t> holes_;
  std::vector<std::pair<char16_t, uint8_t>> bytes_;  // sorted by unit
};

// One byte below 0x80 (ASCII) or a few single ones above; otherwise two bytes, all in the BMP.
class PairTable {
 public:
  // For rows of the shape pairs; lives as long as the process.
  static const PairTable& of(const EncodingRow& row);

  // nil when a sequence is undefined or cut short.
  [[nodiscard]] NSString decode(std::string_view bytes) const;
  // The unit of a pair; 0 when there is none.
  [[nodiscard]] char16_t pair(uint8_t lead, uint8_t trail) const {
    return pairs_[(lead & 0x7F) << 8 | trail];
  }
  // The unit of a byte that stands alone; 0 when it does not.
  [[nodiscard]] char16_t alone(uint8_t byte) const { return singles_[byte]; }

 private:
  explicit PairTable(const EncodingRow& row);

  std::array<char16_t, 256> singles_{};
  std::array<char16_t, 128 * 256> pairs_{};
};

}  // namespace kelspar
