#include <gtest/gtest.h>

#include "RTFKelspar/RTFKelsparNSDataAdditions.h"

namespace kelspar {
namespace {

using namespace RTFKelsparNSDataAdditions;

TEST(RTFString, TriesUTF8ThenLatin1) {
  EXPECT_EQ(rtfStringFromData(NSData(std::string_view("caf\xC3\xA9"))), NSString(u"caf\u00E9"));
  EXPECT_EQ(rtfStringFromData(NSData(std::string_view("caf\xE9\x81"))),
            NSString(u"caf\u00E9\u0081"));
  EXPECT_EQ(rtfStringFromData(NSData(std::string_view())), NSString(u""));
  EXPECT_FALSE(rtfStringFromData(nil));
}

TEST(StringFromRTF, GivesThePlainCharacters) {
  EXPECT_EQ(stringFromRTFData(NSData(std::string_view("{\\rtf1 one\\par two}"))),
            NSString(u"one\ntwo"));
  EXPECT_FALSE(stringFromRTFData(NSData(std::string_view("no rtf"))));
  EXPECT_FALSE(stringFromRTFData(nil));
}

TEST(RTFAsPlainText, ReadsTheFirstHalf) {
  // 22 units; the first 11 are "{\rtf1 abcd".
  EXPECT_EQ(rtfAsPlainText(NSData(std::string_view("{\\rtf1 abcdefghijklmn}"))), NSString(u"abcd"));
}

TEST(RTFAsPlainText, RoundsDown) {
  EXPECT_EQ(rtfAsPlainText(NSData(std::string_view("{\\rtf1 abc-------------"))),
            NSString(u"abc-"));
}

TEST(RTFAsPlainText, NeedsUTF8AndRTF) {
  EXPECT_FALSE(rtfAsPlainText(nil));
  EXPECT_FALSE(rtfAsPlainText(NSData(std::string_view("{"))));
  EXPECT_FALSE(rtfAsPlainText(NSData(std::string_view("{\\rtf1 caf\xE9 au lait}"))));
}

TEST(RTFAsPlainText, HalfASurrogatePairCannotBeRead) {
  // 16 units: the middle one splits the pair.
  EXPECT_FALSE(rtfAsPlainText(NSData(std::string_view("{\\rtf1 \xF0\x9F\x98\x80zzzzzzz"))));
}

}  // namespace
}  // namespace kelspar
