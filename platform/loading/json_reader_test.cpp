#include "platform/loading/json_reader.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

id parsed(std::string_view text) {
  std::string error;
  return parseJSON(text, &error);
}

TEST(JSONReader, NumbersKeepTheirKind) {
  EXPECT_EQ(parsed("18446744073709551615").as<NSNumber>().unsignedLongValue(), UINT64_MAX);
  EXPECT_EQ(parsed("-9223372036854775808").as<NSNumber>().longValue(), INT64_MIN);
  EXPECT_EQ(parsed("1").as<NSNumber>().isInteger(), true);
  EXPECT_EQ(parsed("1.0").as<NSNumber>().type(), NSNumber::Type::real);
  EXPECT_EQ(parsed("true").as<NSNumber>().type(), NSNumber::Type::boolean);
  EXPECT_TRUE(parsed("null").is<NSNull>());
}

TEST(JSONReader, ContainersNest) {
  const auto value = parsed(R"({"a":[1,{"b":null}],"c":"d","c":"e"})").as<NSDictionary>();
  EXPECT_EQ(value.count(), 2u);
  EXPECT_EQ(value.objectForKey<NSString>(u"c"), NSString(u"e")) << "the last of equal keys counts";
  EXPECT_EQ(value.objectForKey<NSArray>(u"a").count(), 2u);
}

struct Row {
  const char* name;
  std::string_view json;
  std::u16string_view text;
};
class JSONStrings : public testing::TestWithParam<Row> {};
TEST_P(JSONStrings, Give) {
  EXPECT_EQ(parsed(GetParam().json).as<NSString>().view(), GetParam().text);
}

// Each surrogate as its own unit, as a compiler does not write them into literals.
constexpr char16_t kHigh[] = {u'a', 0xD800, u'b'}, kLow[] = {0xDC00},
                   kMixed[] = {0xD83D, 0xDE00, 0xD800},
                   kMark[] = {0xD800, 0xDBFF, 0xDFFD, u'z', 0xDFFD},
                   kMarkOfDigits[] = {0xDFFD, 0xDBFF, 0xDFFD, u'd', u'8', u'0', u'0'};
const Row kRows[] = {
    {"Plain", R"("abc")", u"abc"},
    {"Escapes", R"("\"\\\/\b\f\n\r\t\u00e9")", u"\"\\/\b\f\n\r\t\u00E9"},
    {"Pair", R"("\ud83d\ude00")", u"\U0001F600"},
    {"LoneHigh", R"("a\ud800b")", {kHigh, 3}},
    {"LoneLow", R"("\uDC00")", {kLow, 1}},
    {"PairAndLone", R"("\ud83d\ude00\uD800")", {kMixed, 3}},
    {"EscapedMarkAndLone", R"("\ud800\udbff\udffdz\uDFFD")", {kMark, 5}},
    {"RawMarkAndLone", "\"\\ud800\xF4\x8F\xBF\xBDz\\uDFFD\"", {kMark, 5}},
    {"EscapedMarkBeforeDigits", R"("\udffd\uDBFF\uDFFDd800")", {kMarkOfDigits, 7}},
    {"RawMarkBeforeDigits",
     "\"\\udffd\xF4\x8F\xBF\xBD"
     "d800\"",
     {kMarkOfDigits, 7}},
    {"MarkAlone", "\"\xF4\x8F\xBF\xBD\\udbff\\udffd\"", u"\U0010FFFD\U0010FFFD"},
    {"EscapedBackslashIsNoEscape", R"("\\ud800")", u"\\ud800"},
    {"Nul", R"("a\u0000b")", {u"a\0b", 3}},
};
INSTANTIATE_TEST_SUITE_P(JSONReader, JSONStrings, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

class NoJSON : public testing::TestWithParam<std::string_view> {};
TEST_P(NoJSON, IsNilWithAReason) {
  std::string error;
  EXPECT_FALSE(parseJSON(GetParam(), &error));
  EXPECT_FALSE(error.empty());
  EXPECT_FALSE(parseJSON(GetParam(), nullptr));
}
INSTANTIATE_TEST_SUITE_P(JSONReader, NoJSON,
                         testing::Values("", " ", "{", "[1,]", "{\"a\"}", "nul", "1 2", "'a'",
                                         "\"\x01\"", "\"\xFF\"", "\"\xED\xA0\x80\"", "\"\\ud800",
                                         "\"\\u12\"", std::string_view("[1]\0", 4),
                                         std::string_view("[1]\0x", 5),
                                         std::string_view("\0[1]", 4)));

TEST(JSONReader, KeysKeepLoneSurrogatesToo) {
  const auto value = parsed(R"({"\ud800\udbff\udffdzzzz":1})").as<NSDictionary>();
  constexpr char16_t kKey[] = {0xD800, 0xDBFF, 0xDFFD, u'z', u'z', u'z', u'z'};
  EXPECT_TRUE(value.objectForKey({kKey, 7}));
}

TEST(JSONReader, NestingIsBounded) {
  EXPECT_TRUE(parsed(std::string(512, '[') + std::string(512, ']')));
  EXPECT_FALSE(parsed(std::string(513, '[') + std::string(513, ']')));
  EXPECT_FALSE(parsed(std::string(1'000'000, '[')));
}

}  // namespace
}  // namespace kelspar
