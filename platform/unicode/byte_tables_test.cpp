#include "platform/unicode/byte_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/foundation/utf8.h"
#include "platform/unicode/icu_converter.h"

namespace kelspar {
namespace {

bool isSingleByte(EncodingShape shape) {
  return shape == EncodingShape::single || shape == EncodingShape::windows ||
         shape == EncodingShape::ebcdic || shape == EncodingShape::own;
}

std::string randomBytes(std::mt19937& random, size_t length, unsigned highInHundred) {
  std::string bytes(length, ' ');
  for (char& c : bytes) {
    c = static_cast<char>(random() % 100 < highInHundred ? 128 + random() % 128 : random() % 128);
  }
  return bytes;
}

// Blocks and what is left behind them, against one look-up a byte.
TEST(SingleByteTables, DecodeAsByteByByte) {
  std::mt19937 random(256);
  for (const EncodingRow& row : allEncodings()) {
    if (!isSingleByte(row.shape)) continue;
    const SingleByteTable& table = SingleByteTable::of(row);
    for (int round = 0; round < 300; ++round) {
      const std::string bytes = randomBytes(random, random() % 150, round % 3 * 20);
      std::u16string expected;
      for (const char c : bytes) expected += table.unit(static_cast<uint8_t>(c));
      const bool defined = expected.find(utf8::kReplacement) == expected.npos;
      const NSString text = table.decode(bytes);
      ASSERT_EQ(text, defined ? NSString(expected) : NSString()) << row.number;
      std::u16string plain(bytes.size(), u' ');
      ASSERT_EQ(table.decodePlainly(bytes, plain.data()), defined) << row.number;
      ASSERT_EQ(plain, expected) << row.number;
    }
  }
}

// Pieces that are valid on the whole, so that runs and their ends are met.
std::string randomPairs(std::mt19937& random) {
  std::string bytes;
  for (size_t pieces = random() % 6; pieces > 0; --pieces) {
    const auto byte = [&random](unsigned first, unsigned last) {
      return static_cast<char>(first + random() % (last - first + 1));
    };
    switch (random() % 7) {
      case 0:
        // ICU's Japanese page swaps three control characters.
        for (size_t n = random() % 40; n > 0; --n) bytes += byte(' ', '~');
        break;
      case 1:  // GB 18030
        bytes += {byte(0x81, 0x84), byte(0x30, 0x39), byte(0x81, 0xFE), byte(0x30, 0x39)};
        break;
      case 2:
        bytes += {byte(0x81, 0xFE), byte(0x30, 0x39), byte(0x81, 0xFE), byte(0x30, 0x39)};
        break;
      case 3:  // JIS X 0212
        bytes += {'\x8F', byte(0xA1, 0xFE), byte(0xA1, 0xFE)};
        break;
      case 4:
        bytes += byte(0x80, 0xFF);
        break;
      default:
        for (size_t n = random() % 12; n > 0; --n) bytes += {byte(0xB0, 0xC8), byte(0xA1, 0xFE)};
        break;
    }
  }
  return bytes;
}

// ICU takes C1 controls and private use where the narrow sets have nothing.
bool isRefused(std::u16string_view text) {
  return std::ranges::any_of(text, [](char16_t unit) {
    return (unit >= 0x80 && unit < 0xA0) || (unit >= 0xF8F0 && unit < 0xF900);
  });
}

TEST(PairTables, DecodeAsICUDoes) {
  std::mt19937 random(94);
  size_t valid = 0;
  for (const EncodingRow& row : allEncodings()) {
    if (row.shape != EncodingShape::pairs) continue;
    for (int round = 0; round < 4000; ++round) {
      const std::string bytes = randomPairs(random);
      std::u16string units;
      const bool taken = convertWithICU(row.converter, bytes, Malformed::stop, &units);
      const NSString text = PairTable::of(row).decode(bytes);
      if (!text && taken && isRefused(units)) continue;
      ASSERT_EQ(text, taken ? NSString(units) : NSString())
          << row.number << " " << testing::PrintToString(bytes);
      valid += taken;
    }
  }
  EXPECT_GT(valid, 10'000u);
}

}  // namespace
}  // namespace kelspar
