#include "platform/unicode/NSScanner.h"

#include <gtest/gtest.h>

#include <string>

namespace kelspar {
namespace {

struct HexRow {
  const char* name;
  const char16_t* text;
  bool found;
  uint32_t value;
  size_t location;
};
class HexInt : public testing::TestWithParam<HexRow> {};
TEST_P(HexInt, Scans) {
  const HexRow& row = GetParam();
  NSScanner scanner(row.text);
  uint32_t value = 77;
  EXPECT_EQ(scanner.scanHexInt(&value), row.found);
  EXPECT_EQ(value, row.found ? row.value : 77);
  EXPECT_EQ(scanner.scanLocation(), row.location);
}
constexpr HexRow kHexRows[] = {
    {"Digits", u"ff00AA", true, 0xFF00AA, 6},
    {"Mark", u"0x1F", true, 0x1F, 4},
    {"BlanksBefore", u" \n\t2a", true, 0x2A, 5},
    {"StopsAtOther", u"12zz", true, 0x12, 2},
    {"MarkWithoutDigits", u"0xg", true, 0, 1},
    {"TooLarge", u"123456789a", true, UINT32_MAX, 10},
    {"Largest", u"FFFFFFFF", true, UINT32_MAX, 8},
    {"Nothing", u"xyz", false, 0, 0},
    {"NoSign", u"-1", false, 0, 0},
    {"NoWideDigits", u"\uFF11", false, 0, 0},
    {"Empty", u"", false, 0, 0},
};
INSTANTIATE_TEST_SUITE_P(NSScanner, HexInt, testing::ValuesIn(kHexRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct IntegerRow {
  const char* name;
  const char16_t* text;
  bool found;
  int64_t value;
};
class Integer : public testing::TestWithParam<IntegerRow> {};
TEST_P(Integer, Scans) {
  NSScanner scanner(GetParam().text);
  int64_t value = 77;
  EXPECT_EQ(scanner.scanInteger(&value), GetParam().found);
  EXPECT_EQ(value, GetParam().found ? GetParam().value : 77);
}
constexpr IntegerRow kIntegerRows[] = {
    {"Plain", u"42", true, 42},
    {"Negative", u" -42x", true, -42},
    {"Plus", u"+7", true, 7},
    {"Largest", u"9223372036854775807", true, INT64_MAX},
    {"Smallest", u"-9223372036854775808", true, INT64_MIN},
    {"TooLarge", u"9223372036854775808", true, INT64_MAX},
    {"FarTooLarge", u"99999999999999999999999", true, INT64_MAX},
    {"TooSmall", u"-9999999999999999999", true, INT64_MIN},
    {"SignAlone", u"-", false, 0},
    {"Letters", u"a1", false, 0},
};
INSTANTIATE_TEST_SUITE_P(NSScanner, Integer, testing::ValuesIn(kIntegerRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Scanner, GoesOn) {
  NSScanner scanner(u"1 2 3 ");
  int32_t value = 0;
  for (int32_t wanted = 1; wanted <= 3; ++wanted) {
    EXPECT_FALSE(scanner.isAtEnd());
    ASSERT_TRUE(scanner.scanInt(&value));
    EXPECT_EQ(value, wanted);
  }
  EXPECT_TRUE(scanner.isAtEnd());
  EXPECT_TRUE(NSScanner(nil).isAtEnd());
  NSScanner large(u"3000000000");
  ASSERT_TRUE(large.scanInt(&value));
  EXPECT_EQ(value, INT32_MAX);
}

}  // namespace
}  // namespace kelspar
