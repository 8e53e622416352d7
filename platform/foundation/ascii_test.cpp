#include "platform/foundation/ascii.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

using namespace std::string_view_literals;

TEST(Ascii, LowersLettersAlone) {
  EXPECT_EQ(ascii::lowerCase("@AZ[`az{\xC4"sv), "@az[`az{\xC4");
  EXPECT_EQ(ascii::lowerCase(u"@AZ[\u00C4\u0141"sv), u"@az[\u00C4\u0141");
}

TEST(Ascii, TrimsWhatIsSaid) {
  const auto isBlank = [](auto c) { return ascii::isSpace(c); };
  EXPECT_EQ(ascii::trimmed(" \t\r\n\v\fa b "sv, isBlank), "a b");
  EXPECT_EQ(ascii::trimmed(u"\u00A0a\u2003"sv, isBlank), u"\u00A0a\u2003");
  EXPECT_EQ(ascii::trimmed("  "sv, isBlank), "");
}

TEST(Ascii, IsAll) {
  EXPECT_TRUE(ascii::isAll(""sv));
  EXPECT_TRUE(ascii::isAll("\0\x7F"sv));
  EXPECT_FALSE(ascii::isAll("a\x80"sv));
  EXPECT_TRUE(ascii::isAll(u"a\x7F"sv));
  EXPECT_FALSE(ascii::isAll(u"a\u0080"sv));
  EXPECT_FALSE(ascii::isAll(u"\uFF41"sv));
}

}  // namespace
}  // namespace kelspar
