#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

TEST(BestBody, IsTheOneThatShowsTheMost) {
  const NSString text(u"words"), html(u"<p>words</p>"), noWords(u"<p>&nbsp;</p>");
  const NSData rtf(std::string_view("{\\rtf1 words}"));
  const NSData fromText(std::string_view("{\\rtf1\\fromtext words}"));
  const NSData fromHTML(std::string_view("{\\rtf1\\fromhtml1 {\\*\\htmltag64 <p>}words}"));
  EXPECT_EQ(MailKelspar::bestBody(text, html, rtf), NSString(u"html"));
  EXPECT_EQ(MailKelspar::bestBody(text, nil, rtf), NSString(u"rtf"));
  EXPECT_EQ(MailKelspar::bestBody(text, nil, fromHTML), NSString(u"rtf"));
  EXPECT_EQ(MailKelspar::bestBody(text, nil, fromText), NSString(u"text"));
  EXPECT_EQ(MailKelspar::bestBody(nil, nil, fromText), NSString(u"rtf"));
  EXPECT_EQ(MailKelspar::bestBody(text, noWords, nil), NSString(u"text"));
  EXPECT_EQ(MailKelspar::bestBody(u" ", noWords, nil), NSString(u"html"));
  EXPECT_EQ(MailKelspar::bestBody(text, u"<img src='cid:a'>", nil), NSString(u"html"));
  EXPECT_EQ(MailKelspar::bestBody(u"", nil, nil), NSString(u"text"));
  EXPECT_FALSE(MailKelspar::bestBody(nil, nil, nil));
}

TEST(TextOfHTML, IsWhatIsShown) {
  EXPECT_EQ(MailKelspar::textFromHTML(u"<p>a &amp; b<script>c</script></p>"), NSString(u"a & b"));
  EXPECT_FALSE(MailKelspar::textFromHTML(nil));
}

}  // namespace
}  // namespace kelspar
