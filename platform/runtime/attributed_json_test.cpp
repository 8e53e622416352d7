#include "platform/runtime/attributed_json.h"

#include <gtest/gtest.h>

#include "platform/runtime/Operations.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::string_view json;
};
class AttributedJSON : public testing::TestWithParam<Row> {};

// {"string":"ab","runs":[{"length":2,"attributes":...}]}
std::string wrapped(std::string_view attributes) {
  return R"({"$attributed":{"string":"ab","runs":[{"length":2,"attributes":)" +
         std::string(attributes) + "}]}}";
}

TEST_P(AttributedJSON, ComesBackAsItWent) {
  std::string error;
  const id text = valueFromJSON(wrapped(GetParam().json), &error);
  ASSERT_TRUE(text.is<NSAttributedString>()) << error;
  EXPECT_EQ(jsonFromValue(text), wrapped(GetParam().json));
}
constexpr Row kRows[] = {
    {"Font", R"({"font":{"family":"Arial","size":10.5,"bold":true,"italic":true}})"},
    {"Colors", R"({"font":{"size":12},"foregroundColor":"#FF0080","backgroundColor":"#000000"})"},
    {"Lines", R"({"font":{"size":12},"underline":true,"strikethrough":true})"},
    {"Raised", R"({"font":{"size":12},"superscript":-1,"baselineOffset":3})"},
    {"Link", R"({"font":{"size":12},"link":"https://example.com/"})"},
    {"Paragraph",
     R"({"font":{"size":12},"paragraph":{"alignment":"center","rightToLeft":true,)"
     R"("firstLineIndent":18,"tailIndent":-9.5,"lineHeightMultiple":1.5,"headingLevel":2,)"
     R"("quoteLevel":1,"preformatted":true,)"
     R"("tabStops":[{"location":36,"alignment":"right","decimal":true}],)"
     R"("lists":[{"identity":7,"ordered":true,"marker":"decimal","startingNumber":3}],)"
     R"("cells":[{"table":1,"row":2,"column":3,"rowSpan":1,"columnSpan":2,"columns":5,)"
     R"("width":72,"border":1,"background":"#EEEEEE"}]}})"},
    {"Borders",
     R"({"font":{"size":12},"paragraph":{"cells":[{"table":1,"row":0,"column":0,"rowSpan":1,)"
     R"("columnSpan":1,"columns":1,"border":0.1,"borderColor":"#FF0000"},{"table":2,"row":0,)"
     R"("column":0,"rowSpan":1,"columnSpan":1,"columns":1,"borderTop":1.5,)"
     R"("borderBottom":2,"borderBottomColor":"#010203"}]}})"},
    {"Block",
     R"({"font":{"size":12},"paragraph":{"cells":[{"table":3,"row":0,"column":0,"rowSpan":1,)"
     R"("columnSpan":1,"columns":1,"block":true,"marginTop":1.5,"marginLeft":20,"paddingTop":0,)"
     R"("paddingRight":2,"paddingBottom":0,"paddingLeft":4,"borderLeft":1}]}})"},
    {"Attachment",
     R"({"font":{"size":12},"attachment":{"type":"image/png","width":3,"height":4,"size":0,)"
     R"("name":"a.png"}})"},
};
INSTANTIATE_TEST_SUITE_P(Attributes, AttributedJSON, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

id read(std::string_view json) {
  std::string error;
  return valueFromJSON(json, &error);
}

TEST(AttributedJSONForms, RunsMayBeMissing) {
  EXPECT_EQ(read(R"({"$attributed":{"string":"ab"}})").as<NSAttributedString>(),
            NSAttributedString(u"ab"));
  EXPECT_EQ(jsonFromValue(NSAttributedString::empty()),
            R"({"$attributed":{"string":"","runs":[]}})");
}

TEST(AttributedJSONForms, LoneSurrogatesUseTheirForm) {
  constexpr char16_t kLone[] = {0xD800, 0};
  const std::string json = jsonFromValue(NSAttributedString(kLone));
  EXPECT_NE(json.find(R"("string":{"$utf16":"ANg="})"), json.npos) << json;
  EXPECT_EQ(read(json).as<NSAttributedString>(), NSAttributedString(kLone));
}

TEST(AttributedJSONForms, ContentsOfAnAttachmentAreItsSize) {
  const std::string json =
      jsonFromValue(read(wrapped(R"({"attachment":{"contents":{"$data":"AAEC"}}})")));
  EXPECT_NE(json.find(R"("size":3)"), json.npos) << json;
}

TEST(AttributedJSONForms, RTFIsRead) {
  // {\rtf1 hi}
  EXPECT_EQ(read(R"({"$rtf":"e1xydGYxIGhpfQ=="})").as<NSAttributedString>().string(),
            NSString(u"hi"));
}

TEST(AttributedJSONForms, WhatIsNotOfTheFormIsRefused) {
  for (const char* json : {
           R"({"$rtf":"aGk="})",
           R"({"$rtf":5})",
           R"({"$attributed":"ab"})",
           R"({"$attributed":{}})",
           R"({"$attributed":{"string":5}})",
           R"({"$attributed":{"string":"ab","runs":5}})",
           R"({"$attributed":{"string":"ab","runs":[]}})",
           R"({"$attributed":{"string":"ab","runs":[{"length":1}]}})",
           R"({"$attributed":{"string":"ab","runs":[{"length":3}]}})",
           R"({"$attributed":{"string":"ab","runs":[{"length":-1},{"length":3}]}})",
           R"({"$attributed":{"string":"ab","runs":[{"length":2,"attributes":5}]}})",
           R"({"$attributed":{"string":"ab","runs":[{"length":2,"attributes":{"font":5}}]}})",
       }) {
    EXPECT_FALSE(read(json)) << json;
  }
  for (const char* attributes : {
           R"({"foregroundColor":"red"})",
           R"({"underline":"yes"})",
           R"({"superscript":1.5})",
           R"({"paragraph":{"alignment":"middle"}})",
           R"({"paragraph":{"cells":[{"row":70000}]}})",
       }) {
    EXPECT_FALSE(read(wrapped(attributes))) << attributes;
  }
}

}  // namespace
}  // namespace kelspar
