#include "platform/runtime/value_json.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/runtime/Operations.h"
#include "platform/runtime/regex_value.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  id value;
  std::string_view json;
};
class ValueJSON : public testing::TestWithParam<Row> {};
TEST_P(ValueJSON, IsWrittenAndComesBack) {
  EXPECT_EQ(jsonFromValue(GetParam().value), GetParam().json);
  std::string error;
  const id back = valueFromJSON(GetParam().json, &error);
  EXPECT_EQ(error, "");
  EXPECT_TRUE(back.isIdenticalTo(GetParam().value) || back.isEqual(GetParam().value));
}
constexpr char16_t kLone[] = {u'a', 0xD800};
const Row kRows[] = {
    {"Nil", nil, "null"},
    {"True", NSNumber(true), "true"},
    {"Integer", NSNumber(-5), "-5"},
    {"LargestUnsigned", NSNumber(UINT64_MAX), "18446744073709551615"},
    {"SmallestSigned", NSNumber(INT64_MIN), "-9223372036854775808"},
    {"Double", NSNumber(0.1), "0.1"},
    {"WholeDouble", NSNumber(5.0), "5.0"},
    {"LargeDouble", NSNumber(1e300), "1e+300"},
    {"Infinity", NSNumber(static_cast<double>(INFINITY)), R"({"$double":"Infinity"})"},
    {"MinusInfinity", NSNumber(static_cast<double>(-INFINITY)), R"({"$double":"-Infinity"})"},
    {"String", NSString(u"a\"\\\n\t\u00E9\U0001F600"),
     "\"a\\\"\\\\\\n\\u0009\xC3\xA9\xF0\x9F\x98\x80\""},
    {"LoneSurrogate", NSString(std::u16string_view(kLone, 2)), R"({"$utf16":"YQAA2A=="})"},
    {"Data", NSData({1, 2, 3}), R"({"$data":"AQID"})"},
    {"EmptyData", NSData(std::string_view()), R"({"$data":""})"},
    {"Date", NSDate::since1970(1.5), R"({"$date":1.5})"},
    {"URL", NSURL::URLWithString(u"mailto:a@b.cd"), R"({"$url":"mailto:a@b.cd"})"},
    {"Array", NSArray{NSNumber(1), nil, NSString(u"x")}, R"([1,null,"x"])"},
    {"Empty", NSArray::empty(), "[]"},
    {"Dictionary", NSDictionary{{u"k", NSArray{NSData({0})}}}, R"({"k":[{"$data":"AA=="}]})"},
};
INSTANTIATE_TEST_SUITE_P(Values, ValueJSON, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ValueJSON, NaNIsWritten) {
  EXPECT_EQ(jsonFromValue(NSNumber(std::nan(""))), R"({"$double":"NaN"})");
  std::string error;
  EXPECT_TRUE(
      std::isnan(valueFromJSON(R"({"$double":"NaN"})", &error).as<NSNumber>().doubleValue()));
}

TEST(ValueJSON, RequestOnlyForms) {
  std::string error;
  EXPECT_TRUE(valueFromJSON(R"({"$characters":"ab"})", &error).as<NSCharacterSet>().contains(u'a'));
  EXPECT_TRUE(valueFromJSON(R"({"$characterSet":"decimalDigit"})", &error)
                  .as<NSCharacterSet>()
                  .contains(u'7'));
  const id regex =
      valueFromJSON(R"({"$regex":{"pattern":"a.b","flags":["REG_EXTENDED","REG_ICASE"]}})", &error);
  EXPECT_TRUE(regex.is<runtime::RegexValue>());
  EXPECT_EQ(valueFromJSON(R"({"$date":0})", &error).as<NSDate>(), NSDate::since1970(0));
  EXPECT_EQ(error, "");
}

class BadForms : public testing::TestWithParam<std::string_view> {};
TEST_P(BadForms, AreRefusedWithAReason) {
  std::string error;
  EXPECT_FALSE(valueFromJSON(GetParam(), &error));
  EXPECT_NE(error, "");
}
INSTANTIATE_TEST_SUITE_P(ValueJSON, BadForms,
                         testing::Values(R"({"$unknown":1})", R"({"$data":"A"})", R"({"$data":1})",
                                         R"({"$utf16":"AA=="})", R"({"$date":"x"})",
                                         R"({"$date":true})", R"({"$url":"a b"})",
                                         R"({"$double":"x"})", R"({"$characterSet":"x"})",
                                         R"({"$data":"","x":1})", R"([{"$data":7}])",
                                         R"({"$regex":{"pattern":"["}})",
                                         R"({"$regex":{"pattern":"a","flags":["X"]}})"));

TEST(ValueJSON, AnswersHaveTheirParts) {
  EXPECT_EQ(jsonFromAnswer({.value = NSNumber(1), .out = {}, .receiver = nil}), R"({"value":1})");
  EXPECT_EQ(jsonFromAnswer({.value = nil,
                            .hasOut = true,
                            .out = {nil, NSNumber(2)},
                            .changesReceiver = true,
                            .receiver = NSString(u"r")}),
            R"({"value":null,"out":[null,2],"receiver":"r"})");
}

}  // namespace
}  // namespace kelspar
