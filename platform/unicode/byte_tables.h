// Tables of single-byte and of one-or-two-byte encodings, made from ICU's converters on first use.
// Internal to the library.
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "platform/foundation/NSData.h"
#include "platform/foundation/NSString.h"
#include "platform/unicode/byte_vector.h"
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
  // The plain loop of it, for other processors and what is left behind the last block; false when a
  // byte is undefined. `out` has room for a unit a byte.
  bool decodePlainly(std::string_view bytes, char16_t* out) const;
  // nil when a unit is not in the table.
  [[nodiscard]] NSData encode(std::u16string_view text) const;

 private:
  explicit SingleByteTable(const EncodingRow& row);

  std::array<char16_t, 256> units_;
  ByteRows rows_;
  bool isAsciiBelow128_ = true;
  std::vector<std::pair<char16_t, uint8_t>> bytes_;  // sorted by unit
};

// One byte below 0x80 (ASCII) or a few single ones above; otherwise two bytes, all in the BMP.
// EUC-JP has sequences of three bytes besides, GB 18030 of four.
class PairTable {
 public:
  // For rows of the shape pairs, and those of the shape system that are like them; lives as long as
  // the process.
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
  enum class Longer : uint8_t { none, threeBytes, fourBytes };
  static constexpr size_t kFourByteUnits = 39'420;  // what stands in the BMP

  explicit PairTable(const EncodingRow& row);
  bool decodeFourPairs(const uint8_t* in, char16_t* out) const;
  size_t decodeOther(const uint8_t* in, size_t size, char16_t** out) const;
  size_t decodeLonger(const uint8_t* in, size_t size, char16_t** out) const;
  [[nodiscard]] std::span<const char16_t> longerUnits() const;

  const EncodingRow& row_;
  Longer longer_ = Longer::none;
  std::array<char16_t, 256> singles_{};
  std::array<char16_t, 128 * 256> pairs_{};
  mutable std::once_flag longerOnce_;
  mutable std::vector<char16_t> longerUnits_;
};

}  // namespace kelspar
