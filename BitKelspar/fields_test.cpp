#include <gtest/gtest.h>

#include <random>

#include "BitKelspar/BitKelspar.h"
#include "platform/runtime/Operations.h"

namespace kelspar {
namespace {

TEST(Readers, AreLittleEndianAndNeedNoAlignment) {
  const uint8_t bytes[] = {0xFF, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0xF8};
  EXPECT_EQ(BitKelspar::readU16(bytes + 1), 0x0201);
  EXPECT_EQ(BitKelspar::readU32(bytes + 1), 0x04030201u);
  EXPECT_EQ(BitKelspar::readU64LE(bytes + 1), 0xF807060504030201u);
  EXPECT_LT(BitKelspar::readS64LE(bytes + 1), 0);
  EXPECT_EQ(BitKelspar::readU64LE(nullptr), 0u);
  EXPECT_EQ(BitKelspar::readU16(nullptr), 0u);
}

TEST(Readers, StayInsideTheData) {
  const NSData data({1, 2, 3, 4});
  EXPECT_EQ(BitKelspar::readU32FromData(data, 0), 0x04030201u);
  EXPECT_EQ(BitKelspar::readU32FromData(data, 1), 0u);
  EXPECT_EQ(BitKelspar::readU16FromData(data, 2), 0x0403u);
  EXPECT_EQ(BitKelspar::readU16FromData(data, 3), 0u);
  EXPECT_EQ(BitKelspar::readU64FromData(data, 0), 0u);
  for (uint64_t offset = UINT64_MAX; offset > UINT64_MAX - 10; --offset) {
    EXPECT_EQ(BitKelspar::readU16FromData(data, offset), 0u);
    EXPECT_EQ(BitKelspar::readU32FromData(data, offset), 0u);
    EXPECT_EQ(BitKelspar::readU64FromData(data, offset), 0u);
  }
  EXPECT_EQ(BitKelspar::readU16FromData(nil, 0), 0u);
}

TEST(Writers, StoreTheLowBits) {
  uint16_t small = 0;
  uint32_t large = 0;
  BitKelspar::writeData(0x12345678, &small);
  BitKelspar::writeData(0x12345678, &large);
  EXPECT_EQ(small, 0x5678);
  EXPECT_EQ(large, 0x12345678u);
  BitKelspar::writeData(1, static_cast<uint16_t*>(nullptr));
}

TEST(Writers, OverTheWireTakeNumbersAndBytes) {
  const Operation* operation = Operations::shared().find("BitKelspar", "writeData:toU16:");
  EXPECT_EQ(jsonFromAnswer(operation->call({nil, {NSNumber(0x14142), NSNumber(0)}})),
            R"({"value":null,"out":[null,16706]})");
  EXPECT_EQ(
      jsonFromAnswer(operation->call({nil, {NSNumber(0x4142), NSData(std::string_view("xyz"))}})),
      R"({"value":null,"out":[null,{"$data":"QkF6"}]})");
}

TEST(ByteSwap, ReversesTheBytes) {
  EXPECT_EQ(BitKelspar::ByteSwap16BitNumber(0x0080), INT16_MIN);
  EXPECT_EQ(BitKelspar::ByteSwap32BitNumber(0x01020304), 0x04030201u);
  EXPECT_EQ(BitKelspar::ByteSwap64BitNumber(0x0102030405060708), 0x0807060504030201u);
}

TEST(Bits, AreTestedAndExtracted) {
  EXPECT_TRUE(BitKelspar::isBitSet(0x80000000, 31));
  EXPECT_FALSE(BitKelspar::isBitSet(0x80000000, 30));
  EXPECT_FALSE(BitKelspar::isBitSet(UINT32_MAX, 32));
  EXPECT_EQ(BitKelspar::extractBitsFromValue(0xF0, 4, 7), 15u);
  EXPECT_EQ(BitKelspar::extractBitsFromValue(0xDEADBEEF, 0, 31), 0xDEADBEEFu);
  EXPECT_EQ(BitKelspar::extractBitsFromValue(UINT32_MAX, 31, 31), 1u);
  EXPECT_EQ(BitKelspar::extractBitsFromValue(UINT32_MAX, 5, 4), 0u);
  EXPECT_EQ(BitKelspar::extractBitsFromValue(UINT32_MAX, -1, 4), 0u);
  EXPECT_EQ(BitKelspar::extractBitsFromValue(UINT32_MAX, 4, 32), 0u);
  EXPECT_EQ(BitKelspar::extractBitsFromValue(UINT32_MAX, INT32_MIN, INT32_MAX), 0u);
}

// The definition, loop and all.
uint64_t varintByTheBook(std::span<const uint8_t> data, uint64_t* offset) {
  if (*offset >= data.size()) return 0;
  uint64_t value = 0, at = *offset;
  for (unsigned shift = 0;; shift += 7) {
    if (at == data.size() || shift > 63) break;
    const uint8_t byte = data[at++];
    value |= static_cast<uint64_t>(byte & 0x7F) << shift;
    if (!(byte & 0x80)) break;
  }
  *offset = at;
  return value;
}

TEST(Varint, EdgeCases) {
  uint64_t at = 0;
  EXPECT_EQ(BitKelspar::readVarintFromData(NSData({0xAC, 0x02}), &at), 300u);
  EXPECT_EQ(at, 2u);
  EXPECT_EQ(BitKelspar::readVarintFromData(NSData({0xAC, 0x02}), &at), 0u);
  EXPECT_EQ(at, 2u) << "at the end it stays";
  at = 0;
  EXPECT_EQ(BitKelspar::readVarintFromData(NSData({0x80}), &at), 0u);
  EXPECT_EQ(at, 1u);
  at = 7;
  EXPECT_EQ(BitKelspar::readVarintFromData(nil, &at), 0u);
  EXPECT_EQ(at, 7u);
  EXPECT_EQ(BitKelspar::readVarintFromData(NSData({1}), nullptr), 0u);
}

TEST(Varint, TenBytesAtMost) {
  uint64_t at = 0;
  EXPECT_EQ(BitKelspar::readVarintFromData(NSData(std::string(12, '\xFF')), &at), UINT64_MAX);
  EXPECT_EQ(at, 10u);
}

TEST(VarintLaw, EqualsTheDefinition) {
  std::mt19937 random(8);
  for (int round = 0; round < 20000; ++round) {
    std::vector<uint8_t> bytes(random() % 14);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random() | (random() % 3 ? 0x80 : 0));
    uint64_t at = random() % 4, expectedAt = at;
    const uint64_t expected = varintByTheBook(bytes, &expectedAt);
    ASSERT_EQ(BitKelspar::readVarintFromData(NSData(std::span<const uint8_t>(bytes)), &at),
              expected);
    ASSERT_EQ(at, expectedAt);
  }
}

struct Push {
  const char* name;
  uint32_t number, nibble;
  bool fromLeft;
  uint32_t result;
};
class PushNibble : public testing::TestWithParam<Push> {};
TEST_P(PushNibble, Gives) {
  uint32_t number = GetParam().number;
  BitKelspar::pushNibble(GetParam().nibble, &number, GetParam().fromLeft);
  EXPECT_EQ(number, GetParam().result);
}
constexpr Push kPushes[] = {
    {"LeftOfItsDigits", 0x321, 4, true, 0x4321},
    {"HighestPlace", 0x321, 4, false, 0x40000321},
    {"Empty", 0, 7, true, 7},
    {"EmptyFromTheRight", 0, 7, false, 0x70000000},
    {"FullGoesToPlace0", 0x11111111, 2, true, 0x11111113},
    {"IsNotMasked", 0x1, 0x23, true, 0x231},
    {"GapIsFilled", 0x3021, 4, true, 0x3421},
};
INSTANTIATE_TEST_SUITE_P(Nibbles, PushNibble, testing::ValuesIn(kPushes),
                         [](const auto& row) { return std::string(row.param.name); });

struct Pop {
  const char* name;
  uint32_t number;
  bool fromLeft;
  uint32_t nibble, left;
};
class PopNibble : public testing::TestWithParam<Pop> {};
TEST_P(PopNibble, Gives) {
  uint32_t number = GetParam().number;
  EXPECT_EQ(BitKelspar::popNibbleFromNumber(&number, GetParam().fromLeft), GetParam().nibble);
  EXPECT_EQ(number, GetParam().left);
}
constexpr Pop kPops[] = {
    {"BelowTheLowestFree", 0x4321, true, 4, 0x321},
    {"AboveTheHighestFree", 0x43000000, false, 3, 0x40000000},
    {"LowestFreeAtTheBottomWraps", 0x50004320, true, 5, 0x00004320},
    {"HighestFreeAtTheTopWraps", 0x00000327, false, 7, 0x320},
    {"FullTakesPlace0", 0x12345678, true, 8, 0x12345670},
    {"FullTakesPlace0FromTheRight", 0x12345678, false, 8, 0x12345670},
    {"Empty", 0, true, 0, 0},
};
INSTANTIATE_TEST_SUITE_P(Nibbles, PopNibble, testing::ValuesIn(kPops),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Nibbles, NullIsNothing) {
  BitKelspar::pushNibble(1, nullptr, true);
  EXPECT_EQ(BitKelspar::popNibbleFromNumber(nullptr, true), 0u);
}

TEST(BitBytes, ComeBack) {
  for (int byte = 0; byte < 256; ++byte) {
    uint8_t bits[8];
    BitKelspar::convertByte(static_cast<uint8_t>(byte), bits);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(bits[i], byte >> i & 1);
    EXPECT_EQ(BitKelspar::convertToByte(bits), static_cast<int8_t>(byte));
  }
  const uint8_t anything[8] = {0, 7, 0, 0, 0, 0, 0, 200};
  EXPECT_EQ(BitKelspar::convertToByte(anything), -126);
}

}  // namespace
}  // namespace kelspar
