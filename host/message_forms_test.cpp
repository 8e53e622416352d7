// One message in each form that it can be shown in.
#include <gtest/gtest.h>

#include "host/body_text.h"
#include "host/inline_images.h"
#include "host/message_html.h"

namespace kelspar::host {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kPNG = "\x89PNG\r\n\x1A\n";
constexpr ShowOptions kBare{.header = false};

Attachment image(const char* identifier, const char* location) {
  Attachment attachment;
  if (identifier) attachment.contentIdentifier = NSString(identifier);
  if (location) attachment.contentLocation = NSString(location);
  attachment.bytes = NSData(kPNG);
  return attachment;
}

bool contains(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

TEST(Text, OfHTMLIsStripped) {
  Message message;
  message.html = u"<p>a  b</p>\n\n<script>x</script><p>\u00E9<br>c</p>";
  EXPECT_EQ(textOf(message, kBare), "a b\n\n\u00E9\nc\n");
}

TEST(Text, OfLoneSurrogatesIsNotLost) {
  EXPECT_EQ(linesOfHTML(NSString(std::u16string(u"<p>a\xD800 b"))), "a\uFFFD b\n");
}

TEST(Lines, AreThoseOfATextFile) {
  EXPECT_EQ(plainLines(u"a\r\nb\rc\u2028d\u2029"), "a\nb\nc\nd\n");
  EXPECT_EQ(plainLines(u"a\tb\fc\vd\u0085e"), "a\tb\fc\nd\ne\n");
  EXPECT_EQ(plainLines(u"a\x1B[31mb\u009B\x7F\x07"
                       u"c"),
            "a[31mbc\n");
  EXPECT_EQ(plainLines(u"\n\n"), "");
  EXPECT_EQ(plainLines(nil), "");
}

TEST(Lines, HoldNothingThatATerminalObeys) {
  Message message;
  message.subject =
      u"a\x1B]0;b\x07"
      u"c\nFormat: forged\u009B";
  message.textCharset = u"x\x1B";
  message.text = u"d\x1B[2J";
  message.attachments.push_back(image("e\x1B", nullptr));
  message.attachments[0].mediaType = u"image/\x1B";
  for (const std::string& shown : {infoOf(message), textOf(message, {})}) {
    EXPECT_FALSE(contains(shown, "\x1B") || contains(shown, "\x07") || contains(shown, "\u009B"));
    EXPECT_FALSE(contains(shown, "\nFormat: forged")) << shown;
  }
}

TEST(Pictures, OfContentLocationsAreInPlace) {
  Message message;
  message.attachments = {image(nullptr, "http://example.org/a.png?x=1&y=2"),
                         image("b@c", "logo.png"), image("d@e", nullptr)};
  message.html =
      u"<IMG SRC='http://example.org/a.png?x=1&amp;y=2'><img src=logo.png><img src=\"cid:d@e\">"
      u"<img src=\"http://example.org/other.png\">";
  const std::string html = htmlOf(message, {});
  EXPECT_FALSE(contains(html, "example.org"));
  EXPECT_TRUE(contains(html, "1 remote content<"));
  size_t count = 0;
  for (size_t at = 0; (at = html.find("data:image/png;base64,iVBORw0KGgo=", at)) != html.npos; ++at)
    ++count;
  EXPECT_EQ(count, 3u);
}

TEST(Pictures, OfContentLocationsCostNothingOtherwise) {
  Message message;
  const NSString html = u"<img src='a.png'>";
  EXPECT_TRUE(withLocationsAsIdentifiers(message, html).isIdenticalTo(html));
  message.attachments = {image(nullptr, "b.png")};
  EXPECT_TRUE(withLocationsAsIdentifiers(message, html).isIdenticalTo(html));
}

Message withMarks() {
  Message message;
  message.subject = u"s";
  message.rtf = NSData("{\\rtf1 one {\\b bold} \\objattph two \\objattph}"sv);
  Attachment file;
  file.name = u"report.pdf";
  file.bytes = NSData("x"sv);
  file.position = 3;
  Attachment picture = image(nullptr, nullptr);
  picture.position = 9;
  message.attachments = {picture, image(nullptr, nullptr), file};
  return message;
}

TEST(RTFBodies, BecomeHTMLWithTheirLooks) {
  const std::string html = htmlOf(withMarks(), kBare);
  EXPECT_TRUE(contains(html, "bold</b>")) << html;
  EXPECT_TRUE(contains(html, "[report.pdf]two")) << html;
}

TEST(RTFBodies, AreWrittenWithHeaderAndPictures) {
  const std::string rtf = rtfOf(withMarks(), {});
  EXPECT_TRUE(contains(rtf, "Subject: s\\par")) << rtf;
  EXPECT_TRUE(contains(rtf, "\\pngblip\n89504e470d0a1a0a")) << rtf;
  EXPECT_FALSE(contains(rtfOf(withMarks(), kBare), "Subject"));
}

TEST(HTMLInputs, AreToldByTagsAndNames) {
  EXPECT_TRUE(isHTMLInput(NSData("\n<!DOCTYPE html>"sv), ""));
  EXPECT_TRUE(isHTMLInput(NSData("<p>x"sv), ""));
  EXPECT_TRUE(isHTMLInput(NSData("text"sv), "A.HTM"));
  EXPECT_TRUE(isHTMLInput(NSData("\xFF\xFE<\0p\0>\0"sv), ""));
  EXPECT_FALSE(isHTMLInput(NSData("1 < 2"sv), ""));
  EXPECT_FALSE(isHTMLInput(NSData(""sv), ""));
}

TEST(HTMLInputs, AreReadUnderTheirCharset) {
  const NSData html("<meta charset=koi8-r><p>\xC1"sv);
  EXPECT_TRUE(contains(htmlOfInput(html, "").utf8(), "\u0430"));
  EXPECT_TRUE(contains(htmlOfInput(html, "iso-8859-1").utf8(), "\u00C1"));
}

TEST(MessageForms, InfoNamesTheCodePageOfRTF) {
  constexpr std::pair<const char*, const char*> kRows[] = {
      {"{\\rtf1\\ansi\\ansicpg1251 x}", ", code page 1251\n"},
      {"{\\rtf1\\ansi\\ansicpg x}", ", no code page stated\n"},
      {"{\\rtf1\\ansi x}", ", no code page stated\n"},
      {"{\\rtf1\\ansicpg", ", no code page stated\n"},
      {"{\\rtf1\\ansicpg12345678 x}", ", code page 12345\n"},
  };
  for (const auto& [rtf, said] : kRows) {
    Message message;
    message.rtf = NSData(std::string_view(rtf));
    EXPECT_TRUE(contains(infoOf(message), said)) << rtf;
  }
}

}  // namespace
}  // namespace kelspar::host
