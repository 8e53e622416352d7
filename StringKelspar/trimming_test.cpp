#include <gtest/gtest.h>

#include "StringKelspar/StringKelsparNSStringAdditions.h"

namespace kelspar::StringKelsparNSStringAdditions {
namespace {

TEST(Trimming, LeadingAndBoth) {
  const auto blanks = NSCharacterSet::whitespace();
  EXPECT_EQ(stringByTrimmingLeadingCharactersInSet(u" \ta b ", blanks), NSString(u"a b "));
  EXPECT_EQ(stringByTrimmingLeadingCharactersInSet(u"  ", blanks), NSString(u""));
  EXPECT_EQ(stringByTrimmingLeadingCharactersInSet(u"", blanks), NSString(u""));
  EXPECT_EQ(stringByTrimmingLeadingAndTrailingCharactersInSet(u" a b ", blanks), NSString(u"a b"));
  const NSString clean(u"a ");
  EXPECT_TRUE(stringByTrimmingLeadingCharactersInSet(clean, blanks).isIdenticalTo(clean));
  EXPECT_TRUE(stringByTrimmingLeadingCharactersInSet(clean, nil).isIdenticalTo(clean));
}

TEST(Trimming, MissingReceiversCountAsEmpty) {
  for (const NSCharacterSet& set : {NSCharacterSet::whitespace(), NSCharacterSet()}) {
    EXPECT_EQ(stringByTrimmingLeadingCharactersInSet(nil, set), NSString(u""));
    EXPECT_EQ(stringByTrimmingLeadingAndTrailingCharactersInSet(nil, set), NSString(u""));
  }
}

TEST(Trimming, RemovesStringsAtTheEnds) {
  EXPECT_EQ(removeTrailingString(u"a.txt.txt", u".txt"), NSString(u"a.txt"));
  EXPECT_EQ(removeLeadingString(u"Re: Re: a", u"Re: "), NSString(u"Re: a"));
  EXPECT_EQ(removeTrailingString(u"ab", u"ab"), NSString(u""));
  const NSString text(u"abc");
  for (const NSString& other : {NSString(u"ABC"), NSString(u""), NSString(), NSString(u"abcd")}) {
    EXPECT_TRUE(removeTrailingString(text, other).isIdenticalTo(text));
    EXPECT_TRUE(removeLeadingString(text, other).isIdenticalTo(text));
  }
  EXPECT_FALSE(removeLeadingString(nil, u"a"));
}

}  // namespace
}  // namespace kelspar::StringKelsparNSStringAdditions
