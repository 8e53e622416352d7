#include <gtest/gtest.h>

#include <cmath>

#include "StringKelspar/StringKelspar.h"

namespace kelspar {
namespace {

NSAttributedString styled(const NSString& text) {
  NSTextAttributes look;
  look.font.size = 20;
  return NSAttributedString(text, look);
}

TEST(Width, IsWhole) {
  const float width = StringKelspar::getWidthForMutableString(styled(u"some words"));
  EXPECT_GT(width, 0);
  EXPECT_EQ(width, std::ceil(width));
  EXPECT_EQ(StringKelspar::getWidthForMutableString(nil), 0);
  EXPECT_EQ(StringKelspar::getWidthForMutableString(NSAttributedString::empty()), 0);
}

TEST(Fit, GivesTheTextBackWhereItFits) {
  const auto text = styled(u"short");
  EXPECT_TRUE(StringKelspar::fitAttributedString(text, 10'000).isIdenticalTo(text));
  const auto empty = NSAttributedString::empty();
  EXPECT_TRUE(StringKelspar::fitAttributedString(empty, 10).isIdenticalTo(empty));
  EXPECT_FALSE(StringKelspar::fitAttributedString(nil, 10));
}

TEST(Fit, NothingFitsIntoNothing) {
  EXPECT_EQ(StringKelspar::fitAttributedString(styled(u"abc"), 0).length(), 0u);
  EXPECT_EQ(StringKelspar::fitAttributedString(styled(u"abc"), -1).length(), 0u);
  EXPECT_EQ(StringKelspar::fitAttributedString(styled(u"abcdef"), 1).length(), 0u);
}

TEST(Fit, TakesTheLongestPrefixWithItsEllipsis) {
  const auto text = styled(u"The quick brown fox jumps over the lazy dog");
  for (const float maximum : {30.f, 80.f, 200.f}) {
    const auto fitted = StringKelspar::fitAttributedString(text, maximum);
    const size_t kept = fitted.length() - 1;
    ASSERT_EQ(fitted.string().view()[kept], u'\u2026');
    EXPECT_EQ(fitted.string().substring(0, kept), text.string().substring(0, kept));
    EXPECT_EQ(fitted.attributesAtIndex(kept), text.attributesAtIndex(0));
    EXPECT_LE(StringKelspar::getWidthForMutableString(fitted), maximum);
    NSMutableAttributedString longer(text.attributedSubstring({0, kept + 1}));
    longer.append(styled(u"\u2026"));
    EXPECT_GT(StringKelspar::getWidthForMutableString(longer.copy()), maximum);
  }
}

}  // namespace
}  // namespace kelspar
