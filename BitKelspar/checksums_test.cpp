#include "BitKelspar/checksums.h"

#include <gtest/gtest.h>

#include <random>

#include "BitKelspar/BitKelspar.h"
#include "BitKelspar/crc16_by_the_book.h"

namespace kelspar {
namespace {

TEST(CRC16, CheckValue) {
  EXPECT_EQ(BitKelspar::crc16OfData(NSData(std::string_view("123456789"))), 0x29B1);
}

TEST(Checksums, OfNothingAreZero) {
  EXPECT_EQ(BitKelspar::crc16OfData(nil), 0);
  EXPECT_EQ(BitKelspar::crc16OfData(NSData(std::string_view())), 0);
  EXPECT_EQ(BitKelspar::xorChecksumOfData(nil), 0);
  EXPECT_EQ(BitKelspar::xorChecksumOfData(NSData({0x0F, 0xF0, 0x01})), 0xFE);
}

// Every length around the strides, every register, both ways.
TEST(CRC16Law, EqualsTheDefinition) {
  std::mt19937 random(77);
  for (size_t length = 0; length < 1200; ++length) {
    std::vector<uint8_t> bytes(length);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
    const auto crc = static_cast<uint16_t>(random());
    const uint16_t expected = crc16::byTheBook(crc, bytes);
    ASSERT_EQ(crc16::sliced(crc, bytes.data(), length), expected) << length;
    if (crc16::hasCarrylessMultiplication()) {
      ASSERT_EQ(crc16::folded(crc, bytes.data(), length), expected) << length;
    }
  }
}

TEST(XORLaw, EqualsTheDefinition) {
  std::mt19937 random(78);
  for (size_t length = 0; length < 300; ++length) {
    std::vector<uint8_t> bytes(length);
    uint8_t expected = 0;
    for (uint8_t& byte : bytes) expected ^= byte = static_cast<uint8_t>(random());
    ASSERT_EQ(BitKelspar::xorChecksumOfData(NSData(std::span<const uint8_t>(bytes))), expected);
  }
}

}  // namespace
}  // namespace kelspar
