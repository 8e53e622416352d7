#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "BitKelspar/BitKelspar.h"

namespace kelspar {
namespace {

const NSData kBytes({0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC,
                     0xDD, 0xEE, 0xFF});
constexpr const char16_t* kText = u"33221100-5544-7766-8899-AABBCCDDEEFF";

TEST(GUID, IsMixedEndian) {
  EXPECT_EQ(BitKelspar::formatGUIDFromData(kBytes), NSString(kText));
  EXPECT_EQ(BitKelspar::dataFromGUIDString(kText), kBytes);
}

TEST(GUID, NeedsSixteenBytes) {
  EXPECT_FALSE(BitKelspar::formatGUIDFromData(kBytes.subdata(0, 15)));
  EXPECT_FALSE(BitKelspar::formatGUIDFromData(nil));
  EXPECT_EQ(BitKelspar::formatGUIDFromData(NSData(std::string(20, '\0'))),
            NSString(u"00000000-0000-0000-0000-000000000000"));
}

struct Row {
  const char* name;
  const char16_t* text;
  bool accepted;
};
class GUIDText : public testing::TestWithParam<Row> {};
TEST_P(GUIDText, IsAcceptedOrNot) {
  const NSData data = BitKelspar::dataFromGUIDString(GetParam().text);
  EXPECT_EQ(static_cast<bool>(data), GetParam().accepted);
  if (data) {
    EXPECT_EQ(data, kBytes);
  }
}
constexpr Row kRows[] = {
    {"Canonical", kText, true},
    {"LowerCase", u"33221100-5544-7766-8899-aabbccddeeff", true},
    {"WithoutDashes", u"33221100554477668899AABBCCDDEEFF", true},
    {"DashesAnywhere", u"-3-3-221100554477668899AABBCCDDEEFF--", true},
    {"LigatureInUpperCaseIsTwoLetters", u"33221100-5544-7766-8899-AABBCCDDEE\uFB00", true},
    {"Braces", u"{33221100-5544-7766-8899-AABBCCDDEEFF}", false},
    {"OneShort", u"33221100-5544-7766-8899-AABBCCDDEEF", false},
    {"OneMore", u"33221100-5544-7766-8899-AABBCCDDEEFF0", false},
    {"NoDigit", u"33221100-5544-7766-8899-AABBCCDDEEFG", false},
    {"FullWidthDigit", u"33221100-5544-7766-8899-AABBCCDDEEF\uFF10", false},
    {"DashesOnly", u"--------------------------------", false},
    {"Short", u"3322", false},
};
INSTANTIATE_TEST_SUITE_P(GUID, GUIDText, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(GUIDLaw, ComesBack) {
  std::mt19937 random(12);
  for (int round = 0; round < 5000; ++round) {
    std::string bytes(16, ' ');
    for (char& c : bytes) c = static_cast<char>(random());
    const NSData data(bytes);
    ASSERT_EQ(BitKelspar::dataFromGUIDString(BitKelspar::formatGUIDFromData(data)), data);
  }
  EXPECT_FALSE(BitKelspar::dataFromGUIDString(nil));
}

TEST(DumpBits, LowestBitFirst) {
  EXPECT_EQ(BitKelspar::dumpbits(0x01), NSString(u"01 10000000"));
  EXPECT_EQ(BitKelspar::dumpbits(0x80), NSString(u"80 00000001"));
  EXPECT_EQ(BitKelspar::dumpbits(0x1AB), NSString(u"ab 11010101"));
  EXPECT_EQ(BitKelspar::dumpbits(-1), NSString(u"ff 11111111"));
}

TEST(Identifier, IsInMemoryOrder) {
  EXPECT_STREQ(BitKelspar::stringFromFourByteIdentifier(0x44434241), "ABCD");
  EXPECT_STREQ(BitKelspar::stringFromFourByteIdentifier(0x44004241), "AB");
  const char* first = BitKelspar::stringFromFourByteIdentifier(0x41414141);
  EXPECT_EQ(BitKelspar::stringFromFourByteIdentifier(0x42424242), first) << "one buffer a thread";
}

TEST(Size, IsForPeople) {
  EXPECT_EQ(BitKelspar::formatSize(0), NSString(u"0.00 bytes"));
  EXPECT_EQ(BitKelspar::formatSize(1024), NSString(u"1024.00 bytes"));
  EXPECT_EQ(BitKelspar::formatSize(1536), NSString(u"1.50 KB"));
  EXPECT_EQ(BitKelspar::formatSize(-5000), NSString(u"-5000.00 bytes"));
  EXPECT_EQ(BitKelspar::formatSize(std::pow(1024.0, 5)), NSString(u"1024.00 TB"));
  EXPECT_EQ(BitKelspar::formatSize(std::nan("")), NSString(u" nan bytes"));
}

TEST(Size, BeyondTheUnitsIsARangeError) {
  EXPECT_THROW((void)BitKelspar::formatSize(std::pow(1024.0, 5) * 1.01), NSRangeException);
  EXPECT_THROW((void)BitKelspar::formatSize(static_cast<double>(INFINITY)), NSRangeException);
}

}  // namespace
}  // namespace kelspar
