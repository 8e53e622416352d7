#include <gtest/gtest.h>

#include "StringKelspar/StringKelspar.h"

namespace kelspar {
namespace {

struct CStringRow {
  const char *name, *bytes;
  const char16_t* text;
};
class FromCString : public testing::TestWithParam<CStringRow> {};
TEST_P(FromCString, Gives) {
  EXPECT_EQ(StringKelspar::stringFromCString(GetParam().bytes), NSString(GetParam().text));
}
constexpr CStringRow kCStrings[] = {
    {"Null", nullptr, u""},
    {"Empty", "", u""},
    {"Ascii", "abc", u"abc"},
    {"UTF8", "caf\xC3\xA9", u"caf\u00E9"},
    {"EvenBytesAreUTF16", "\x4E\xE9", u"\u4EE9"},
    {"UTF16WithMark", "\xFE\xFF\x4E\xE9", u"\u4EE9"},
    {"OddBytesAreWindows1252", "ab\xE9", u"ab\u00E9"},
    {"NothingFits", "ab\x81", u""},
};
INSTANTIATE_TEST_SUITE_P(StringKelspar, FromCString, testing::ValuesIn(kCStrings),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(IsValidDecoded, AllowsOneInFive) {
  const auto valid = [](size_t replaced, size_t length) {
    return StringKelspar::isValidDecodedString(
        NSString(std::u16string(replaced, u'\xFFFD') + std::u16string(length - replaced, u'a')));
  };
  EXPECT_TRUE(valid(2, 10));
  EXPECT_FALSE(valid(3, 10));
  EXPECT_TRUE(valid(20, 500));
  EXPECT_FALSE(valid(21, 500));
  EXPECT_FALSE(StringKelspar::isValidDecodedString(u""));
  EXPECT_FALSE(StringKelspar::isValidDecodedString(nil));
  EXPECT_TRUE(StringKelspar::isValidDecodedString(
      NSString(std::u16string(100, u'a') + std::u16string(900, u'\xFFFD'))));
}

TEST(FromData, TakesAnyValue) {
  const NSString text(u"abc");
  EXPECT_TRUE(StringKelspar::stringFromNSData(text).isIdenticalTo(text));
  EXPECT_EQ(StringKelspar::stringFromNSData(nil), NSString(u""));
  EXPECT_EQ(StringKelspar::stringFromNSData(NSNumber(5)), NSString(u""));
  EXPECT_EQ(StringKelspar::stringFromNSData(NSNull::null()), NSString(u""));
  EXPECT_EQ(StringKelspar::stringFromNSData(NSData(std::string_view())), NSString(u""));
}

struct DataRow {
  const char* name;
  std::string_view bytes;
  const char16_t* text;
};
class FromBytes : public testing::TestWithParam<DataRow> {};
TEST_P(FromBytes, Gives) {
  EXPECT_EQ(StringKelspar::stringFromNSData(NSData(GetParam().bytes)), NSString(GetParam().text));
}
constexpr DataRow kData[] = {
    {"UTF8", "caf\xC3\xA9", u"caf\u00E9"},
    {"UTF8MarkIsConsumed",
     "\xEF\xBB\xBF"
     "a",
     u"a"},
    {"ShortUTF8", "\xC2\xA9", u"\u00A9"},
    {"Latin1", "\xE9", u"\u00E9"},
};
INSTANTIATE_TEST_SUITE_P(StringKelspar, FromBytes, testing::ValuesIn(kData),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar
