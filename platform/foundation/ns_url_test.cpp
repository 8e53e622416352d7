#include "platform/foundation/NSURL.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::u16string_view text;
  bool accepted;
};
class URLText : public testing::TestWithParam<Row> {};
TEST_P(URLText, IsAcceptedOrNot) {
  const NSURL url = NSURL::URLWithString(GetParam().text);
  EXPECT_EQ(static_cast<bool>(url), GetParam().accepted);
  if (url) {
    EXPECT_EQ(url.absoluteString().view(), GetParam().text);
  }
}
constexpr Row kRows[] = {
    {"Web", u"https://example.org:8080/a/b?q=1#top", true},
    {"Mail", u"mailto:a@b.cd", true},
    {"MailWithOddLocalPart", u"mailto:a+b=c!#$%25@b.cd", true},
    {"Relative", u"a/b", true},
    {"File", u"file:///tmp/x%20y", true},
    {"HostLiteral", u"http://[::1]:80/", true},
    {"Empty", u"", false},
    {"Blank", u"http://a b", false},
    {"NotAscii", u"http://\u00E9.org", false},
    {"Angle", u"<http://a>", false},
    {"HalfAnEscape", u"http://a/%4", false},
    {"NoEscape", u"http://a/%zz", false},
    {"BracketInPath", u"http://a/[b]", false},
    {"ColonWithoutScheme", u"1a:b", false},
    {"Backslash", u"http://a\\b", false},
    {"QuotedLocalPart", u"mailto:\"a b\"@c.de", false},
};
INSTANTIATE_TEST_SUITE_P(NSURL, URLText, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(NSURL, TellsItsScheme) {
  EXPECT_EQ(NSURL::URLWithString(u"HTTPS://a").scheme(), "https");
  EXPECT_EQ(NSURL::URLWithString(u"a/b").scheme(), "");
  EXPECT_EQ(NSURL().scheme(), "");
}

TEST(NSURL, HoldsPaths) {
  const NSURL url = NSURL::fileURLWithPath("/tmp/a b#c\xC3\xA9");
  EXPECT_EQ(url.absoluteString(), NSString(u"file:///tmp/a%20b%23c%C3%A9"));
  EXPECT_EQ(url.fileSystemPath(), "/tmp/a b#c\xC3\xA9");
  EXPECT_EQ(NSURL::URLWithString(u"http://a/b").fileSystemPath(), "");
}

}  // namespace
}  // namespace kelspar
