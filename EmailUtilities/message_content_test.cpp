#include <gtest/gtest.h>

#include <algorithm>

#include "EmailUtilities/EmailUtilities.h"
#include "platform/dispatch/dispatch.h"

namespace kelspar {
namespace {

NSData dot() {
  return NSData({'G', 'I',  'F', '8', '9', 'a', 1, 0, 1, 0, 0x80, 0, 0, 0,    0, 0, 255, 255,
                 255, 0x2C, 0,   0,   0,   0,   1, 0, 1, 0, 0,    2, 2, 0x44, 1, 0, 0x3B});
}

NSAttributedString build(std::string_view rtf, const NSArray& attachments) {
  NSAttributedString result;
  bool isDone = false;
  EmailUtilities::buildRTFMessageContent(NSData(rtf), attachments, [&](NSAttributedString text) {
    EXPECT_TRUE(dispatch::isMainThread());
    result = std::move(text);
    isDone = true;
  });
  EXPECT_FALSE(isDone);
  for (int i = 0; i < 1000 && !isDone; ++i) dispatch::drainMain(10);
  EXPECT_TRUE(isDone);
  return result;
}

NSArray attachment(const NSString& identifier, const NSData& data = dot()) {
  return {NSDictionary{{u"AttachContentID"_ns, identifier}, {u"data"_ns, data}}};
}

// The markup stands in a destination that readers skip.
std::string body(const std::string& markup) {
  return "{\\rtf1 a\\par b\\par c{\\*\\htmltag64 " + markup + "}}";
}

struct Row {
  const char* name;
  std::string markup;
  NSString identifier;
  const char16_t* text;
};

TEST(MessageContent, ImagesStandBehindTheirLineEnd) {
  const Row rows[] = {
      {"first paragraph", "<img src=\"cid:x\"></p>", u"x"_ns,
       u"a\n\xFFFC"
       u"b\nc"},
      {"second paragraph", "</p><img src=\"cid:x\"></p>", u"x"_ns,
       u"a\nb\n\xFFFC"
       u"c"},
      {"beyond the last", "</p></p></p><img src=\"cid:x\"></p>", u"x"_ns,
       u"a\nb\n\xFFFC"
       u"c"},
      {"two beyond the last", "</p></p></p><img src=\"cid:x\"></p><img src=\"cid:x\"></p>", u"x"_ns,
       u"a\nb\n\xFFFC\xFFFC"
       u"c"},
      {"either case", "<img src=\"cid:image\"></p>", u"IMAGE"_ns,
       u"a\n\xFFFC"
       u"b\nc"},
      {"as an expression", "<img src=\"cid:im.ge\"></p>", u"imxge"_ns,
       u"a\n\xFFFC"
       u"b\nc"},
      {"a broken expression", "<img src=\"cid:(x\"></p>", u"(x"_ns, u"a\nb\nc"},
      {"no attachment", "<img src=\"cid:x\"></p>", u"y"_ns, u"a\nb\nc"},
      {"remote", "<img src=\"http://x\"></p>", u"http://x"_ns, u"a\nb\nc"},
      {"seven units are not remote", "<img src=\"http://\"></p>", u"http://"_ns,
       u"a\n\xFFFC"
       u"b\nc"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(build(body(row.markup), attachment(row.identifier)).string(), NSString(row.text))
        << row.name;
  }
}

TEST(MessageContent, WhatIsNoImageIsPassedOver) {
  const std::string rtf = body("<img src=\"cid:x\"></p>");
  EXPECT_EQ(build(rtf, attachment(u"x"_ns, NSData(std::string_view("no")))).string(),
            u"a\nb\nc"_ns);
  EXPECT_EQ(build(rtf, nil).string(), u"a\nb\nc"_ns);
}

TEST(MessageContent, UnreadableBodiesGiveTheEmptyText) {
  for (const char* rtf : {"", "no rtf", "{\\rtf1}"}) {
    const NSAttributedString text = build(rtf, nil);
    EXPECT_TRUE(text) << rtf;
    EXPECT_EQ(text.length(), 0u) << rtf;
  }
}

// Each pair alone would take as long as an expression is given.
TEST(MessageContent, HostileSourcesHaveOneBudget) {
  NSMutableArray attachments;
  const NSString hostile{std::u16string(29, u'a')};
  for (int i = 0; i < 1'000; ++i) attachments.addObject(attachment(hostile).objectAtIndex(0));
  attachments.addObject(attachment(u"x"_ns).objectAtIndex(0));
  std::string markup;
  for (const char* source : {"x", "(a*)*b", "(a*)*b", "(a*)*c"})
    markup += "<img src=\"cid:" + std::string(source) + "\"></p>";
  EXPECT_EQ(build(body(markup), attachments.copy()).string(),
            u"a\n\xFFFC"
            u"b\nc"_ns)
      << "plain sources need no expression";
}

TEST(MessageContent, OneSourceInManyPlaces) {
  std::string markup;
  for (int i = 0; i < 50; ++i) markup += "<img src=\"cid:x+\"></p>";
  const NSAttributedString text = build(body(markup), attachment(u"xxx"_ns));
  EXPECT_EQ(std::ranges::count(text.string().view(), u'\xFFFC'), 50);
}

TEST(MessageContent, WithoutLineEndsNoImage) {
  EXPECT_EQ(
      build("{\\rtf1 a{\\*\\htmltag64 <img src=\"cid:x\"></p>}}", attachment(u"x"_ns)).string(),
      u"a"_ns);
}

TEST(MessageContent, ACompletionMayBeLeftOut) {
  EmailUtilities::buildRTFMessageContent(NSData(std::string_view("{\\rtf1 a}")), nil, nullptr);
  EXPECT_EQ(build("{\\rtf1 a}", nil).string(), u"a"_ns);
}

}  // namespace
}  // namespace kelspar
