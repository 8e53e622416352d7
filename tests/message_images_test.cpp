// Real messages whose RTF body refers to images, put together with their own attachments.
#include <gtest/gtest.h>

#ifdef KELSPAR_CORPUS

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "MailKelspar/MailKelspar.h"
#include "WebKelspar/WebKelspar.h"
#include "host/open_message.h"
#include "host/pdf_output.h"

namespace kelspar::host {
namespace {

NSData fileOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return NSData(std::string{std::istreambuf_iterator<char>(in), {}});
}

std::u16string without(std::u16string_view units, std::u16string_view dropped) {
  std::u16string kept;
  for (const char16_t c : units) {
    if (dropped.find(c) == dropped.npos) kept += c;
  }
  return kept;
}

size_t pictures(const NSAttributedString& text) {
  size_t count = 0;
  for (const NSTextRun& run : text.runs()) {
    if (run.attributes->attachment && run.attributes->attachment->contents) count += run.length;
  }
  return count;
}

// How many of its images a message's text shows. The sources of the last one are groups of
// \htmlbase, which no attachment has for its identifier.
struct Row {
  std::string_view name;
  size_t pictures;
};
constexpr Row kRows[] = {
    {"hfig__sample.msg", 1},
    {"hiraokahypertools__attachAndInline.msg", 1},
    {"poi__attachment_msg_inlineImg.msg", 0},
};

// The text is the body's, each new picture stands where a line begins, behind its line's end.
void expectAssembled(const Message& message, const std::string& name) {
  const NSArray records = WebKelspar::imageLocationsFromRTF(message.rtf);
  const NSAttributedString body = NSAttributedString::initWithRTF(message.rtf);
  const NSAttributedString content = assembledText(message.rtf, message.attachments);
  EXPECT_EQ(without(content.string().view(), u"\r\xFFFC"),
            without(body.string().view(), u"\r\xFFFC"))
      << name;
  EXPECT_EQ(content.string().view().find(u"\r\n"), std::u16string_view::npos) << name;
  const size_t added = pictures(content) - pictures(body);
  EXPECT_LE(added, records.count()) << name;
  const auto row = std::ranges::find(kRows, name, &Row::name);
  if (row != std::end(kRows)) {
    EXPECT_EQ(added, row->pictures) << name;
  }
  if (added == 0) return;
  const std::string document = pdfOf(content, nil, {}, name);
  EXPECT_TRUE(document.ends_with("%%EOF\n")) << name;
}

TEST(MessageImages, BodiesOfRealMessages) {
  size_t messages = 0, referring = 0, known = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KELSPAR_CORPUS "/messages")) {
    const std::string name = entry.path().filename();
    const NSData bytes = fileOf(entry.path());
    if (!promisesMessages(bytes, name)) continue;
    for (const auto& message : openMessages(bytes, name, {})) {
      if (message->rtf.isEmpty()) continue;
      ++messages;
      if (WebKelspar::imageLocationsFromRTF(message->rtf).count() == 0) continue;
      ++referring;
      for (Attachment& attachment : message->attachments) {
        attachment.contentIdentifier =
            MailKelspar::bareContentIdentifier(attachment.contentIdentifier);
      }
      expectAssembled(*message, name);
      known += std::ranges::count(kRows, name, &Row::name);
    }
  }
  EXPECT_GT(messages, 50u);
  EXPECT_GE(referring, 5u);
  EXPECT_EQ(known, std::size(kRows));
}

}  // namespace
}  // namespace kelspar::host

#endif
