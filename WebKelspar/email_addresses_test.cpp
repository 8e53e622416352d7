// Addresses: stated cases, and the automaton against the pattern it stands for.
#include <gtest/gtest.h>

#include <random>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_literal.h"

namespace kelspar::WebKelsparNSStringAdditions {
namespace {

TEST(EmailAddresses, Validate) {
  for (const char16_t* good : {u"A@B.CD", u"a@[192.168.0.1]", u"\"john doe\"@b.cd", u"a.b@c-d.e"}) {
    EXPECT_TRUE(validateEmailAddress(good)) << NSString(good);
  }
  for (const char16_t* bad : {u"", u"a@b", u"a@[256.1.1.1]", u".a@b.cd", u"a@b.cd ", u"a@-b.cd"}) {
    EXPECT_FALSE(validateEmailAddress(bad)) << NSString(bad);
  }
  EXPECT_FALSE(validateEmailAddress(nil));
}

TEST(EmailAddresses, Clean) {
  EXPECT_EQ(cleanEmailAddress(u"Ann <a@b.cd>"), u"a@b.cd");
  EXPECT_EQ(cleanEmailAddress(u" a@b.cd "), u"a@b.cd");
  for (const char16_t* bad : {u"<>", u"Bob <a@b.cd", u"a > b <c@d.e>"}) {
    EXPECT_FALSE(cleanEmailAddress(bad)) << NSString(bad);
  }
  EXPECT_EQ(buildEmailAddressURL(u"a@b.cd").absoluteString(), u"mailto:a@b.cd");
  EXPECT_FALSE(buildEmailAddressURL(u"not an address"));
}

TEST(EmailAddresses, TheAutomatonIsThePattern) {
  const std::u16string_view pieces[] = {
      u"a",  u"Z",  u"9",      u".",      u"-",  u"@",        u"\"",   u"\\", u" ",    u"\t",
      u"[",  u"]",  u":",      u"1.2.3.", u"25", u"a@b.c",    u"@[",   u"x:", u"\x7f", u"\n",
      u"\r", u"\1", u"\u017f", u"\u212a", u"é",  u"@[1.2.3.", u"255.", u"_",  u"(",    u"\\ "};
  std::mt19937 random(7);
  size_t valid = 0;
  for (int round = 0; round < 40000; ++round) {
    std::u16string text;
    for (size_t i = random() % 9; i > 0; --i) text += pieces[random() % std::size(pieces)];
    if (round % 3 == 0) text = u"a@[1.2.3." + text + u"]";
    if (round % 3 == 1) text = u"\"" + text + u"\"@a.b";
    const bool expected = literallyValid(text);
    valid += expected;
    ASSERT_EQ(validateEmailAddress(text), expected) << NSString(text) << " round " << round;
  }
  EXPECT_GT(valid, 500u);
}

TEST(EmailAddresses, AMillionUnits) {
  EXPECT_FALSE(validateEmailAddress(std::u16string(1000000, u'a')));
  EXPECT_TRUE(validateEmailAddress(u"\"" + std::u16string(1000000, u' ') + u"\"@a.b"));
  EXPECT_FALSE(validateEmailAddress(u"a@" + std::u16string(1000000, u'-')));
}

}  // namespace
}  // namespace kelspar::WebKelsparNSStringAdditions
