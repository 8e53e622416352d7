#include <gtest/gtest.h>

#include "StringKelspar/StringKelsparNSStringAdditions.h"

namespace kelspar::StringKelsparNSStringAdditions {
namespace {

struct Row {
  const char* name;
  const char16_t* text;
  bool isHTML;
};
class IsHTML : public testing::TestWithParam<Row> {};
TEST_P(IsHTML, Decides) { EXPECT_EQ(isHTML(GetParam().text), GetParam().isHTML); }
constexpr Row kRows[] = {
    {"Doctype", u"<!doctype html>", true},
    {"DoctypeTooShort", u"<!doctype>", false},
    {"TooShort", u"<html></html", false},
    {"Ends", u"  <HTML>some words here</HTML>\n", true},
    {"EndsButShort", u"<html>ab</html>", false},
    {"EndsAtTwenty", u"<html>abcdefg</html>", true},
    {"ClosingTagTooEarly", u"<html></html> and more words behind", false},
    {"TwoMarkers", u"<HEAD><BODY>hello", true},
    {"OneMarker", u"<body>hello</body>", false},
    {"OneMarkerTwice", u"<body>hello<body>", false},
    {"Plain", u"just some plain text", false},
    {"Empty", u"", false},
};
INSTANTIATE_TEST_SUITE_P(NSString, IsHTML, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(IsValid, CountsWhatIsStrange) {
  const auto text = [](size_t strange) {
    return NSString(std::u16string(strange, u'\u20AC') + std::u16string(100 - strange, u'a'));
  };
  EXPECT_TRUE(isValidNSStringWithStrictCheck(text(5), false));
  EXPECT_FALSE(isValidNSStringWithStrictCheck(text(6), false));
  EXPECT_FALSE(isValidNSStringWithStrictCheck(text(1), true));
  EXPECT_TRUE(isValidNSStringWithStrictCheck(text(0), true));
  EXPECT_TRUE(isValidNSStringWithStrictCheck(
      NSString(u" .,;:-_()[]{}<>!?@#$%^&*+=/\\\"'\n\r\t\u00A0\u00E9\u4E005"), true));
  EXPECT_FALSE(isValidNSStringWithStrictCheck(NSString(u"|"), true));
}

TEST(IsValid, OddValues) {
  EXPECT_TRUE(isValidNSStringWithStrictCheck(NSString(u""), false));
  EXPECT_TRUE(isValidNSStringWithStrictCheck(NSString(u""), true));
  EXPECT_FALSE(isValidNSStringWithStrictCheck(nil, false));
  EXPECT_FALSE(isValidNSStringWithStrictCheck(NSNumber(1), false));
  EXPECT_FALSE(isValidNSStringWithStrictCheck(NSString(u"abc\xD800"), false));
}

}  // namespace
}  // namespace kelspar::StringKelsparNSStringAdditions
