#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "host/eml_reader.h"
#include "host/jobs.h"
#include "host/mbox_reader.h"
#include "host/message_text.h"
#include "host/open_message.h"
#include "host/tnef_reader.h"

namespace kelspar::host {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::string number(uint64_t value, size_t bytes) {
  std::string text;
  for (size_t i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i));
  return text;
}

std::string attribute(char level, uint32_t identifier, std::string_view value) {
  return level + number(identifier, 4) + number(value.size(), 4) + std::string(value) + "\0\0"s;
}

std::string property8(uint16_t identifier, std::string value) {
  std::string text =
      number(0x1E, 2) + number(identifier, 2) + number(1, 4) + number(value.size(), 4);
  value.resize((value.size() + 3) / 4 * 4);
  return text + value;
}

NSData stream(const std::string& attributes) {
  return NSData(number(0x223E9F78, 4) + "\0\0"s + attributes);
}

TEST(TNEF, OldAttributesAreRead) {
  const auto message =
      readTNEF(stream(attribute(1, 0x00069007, number(1251, 4) + number(0, 4)) +
                      attribute(1, 0x00018004, "\xCF\xF0\0"sv) +
                      attribute(1, 0x0002800C, "body\0"sv) + attribute(2, 0x00069002, "") +
                      attribute(2, 0x00018010, "a.txt\0"sv) + attribute(2, 0x0006800F, "bytes")),
               {});
  ASSERT_TRUE(message);
  EXPECT_EQ(message->subject, NSString(u"\u041F\u0440"));
  EXPECT_EQ(message->text, NSString(u"body"));
  ASSERT_EQ(message->attachments.size(), 1u);
  EXPECT_EQ(message->attachments[0].name, NSString(u"a.txt"));
  EXPECT_EQ(message->attachments[0].bytes.chars(), "bytes");
  EXPECT_TRUE(message->faults.empty());
}

TEST(TNEF, PropertiesAreRead) {
  const std::string properties =
      number(2, 4) + property8(0x0037, "hello") + property8(0x1035, "<a@b>");
  const auto message = readTNEF(stream(attribute(1, 0x00069003, properties)), {});
  ASSERT_TRUE(message);
  EXPECT_EQ(message->subject, NSString(u"hello"));
  EXPECT_EQ(message->messageIdentifier, NSString(u"<a@b>"));
}

TEST(TNEF, WhatBreaksOffIsAFault) {
  const std::string whole = attribute(1, 0x00018004, "subject");
  const auto message = readTNEF(stream(whole + attribute(1, 0x0002800C, "body").substr(0, 11)), {});
  ASSERT_TRUE(message);
  EXPECT_EQ(message->subject, NSString(u"subject"));
  EXPECT_FALSE(message->text);
  EXPECT_EQ(message->faults.size(), 1u);
  EXPECT_FALSE(readTNEF(NSData("no TNEF"sv), {}));
}

TEST(TNEF, CountsThatPromiseTooMuchCostNothing) {
  const std::string properties = number(0xFFFFFFFF, 4) + number(0x1102, 2) + number(1, 2) +
                                 number(0xFFFFFFFF, 4) + number(0xFFFFFFFF, 4);
  const auto message = readTNEF(stream(attribute(1, 0x00069003, properties)), {});
  ASSERT_TRUE(message);
  EXPECT_EQ(message->faults.size(), 1u);
}

TEST(Mbox, SplitsBehindEmptyLines) {
  const auto messages = messagesOfMbox(
      NSData("From a\nA: 1\n\ntext\nFrom here on\n>From x\n>>From y\n\nFrom b\r\nB: 2\r\n"sv));
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_EQ(messages[0].chars(), "A: 1\n\ntext\nFrom here on\nFrom x\n>From y\n\n");
  EXPECT_EQ(messages[1].chars(), "B: 2\r\n");
  EXPECT_TRUE(messagesOfMbox(NSData("Subject: x\n"sv)).empty());
}

std::shared_ptr<Message> eml(std::string_view text, const ReadOptions& options = {}) {
  return readEML(NSData(text), options);
}

TEST(EML, AlternativesAreOneBody) {
  const auto message =
      eml("Subject: s\nContent-Type: multipart/alternative; boundary=b\n\n--b\n\nplain\n--b\n"
          "Content-Type: text/html; charset=koi8-r\n\n<p>\xC1\n--b--\n");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->text, NSString(u"plain"));
  EXPECT_EQ(message->html, NSString(u"<p>\u0430"));
  EXPECT_TRUE(message->attachments.empty());
}

TEST(EML, AFooterBehindTheBodyIsReadOn) {
  const auto message =
      eml("Content-Type: multipart/mixed; boundary=b\n\n--b\n\none\n--b\n\ntwo\n--b--\n");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->text, NSString(u"one\ntwo"));
}

TEST(EML, CharsetsThatLieAreOverridden) {
  const auto message =
      eml("Subject: \xC1\nContent-Type: text/plain; charset=utf-8\n\n\xC1", {.charset = "koi8-r"});
  ASSERT_TRUE(message);
  EXPECT_EQ(message->subject, NSString(u"\u0430"));
  EXPECT_EQ(message->text, NSString(u"\u0430"));
}

TEST(EML, AttachedMessagesAreOpened) {
  const auto message =
      eml("Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: message/rfc822\n\n"
          "Subject: inner\n\nbody\n--b--\n");
  ASSERT_TRUE(message);
  ASSERT_EQ(message->attachments.size(), 1u);
  ASSERT_TRUE(message->attachments[0].message);
  EXPECT_EQ(message->attachments[0].message->subject, NSString(u"inner"));
}

TEST(EML, AttachedMessagesWithoutSubjectHaveNoName) {
  const auto message = eml("Content-Type: message/rfc822\n\nFrom: a@b.c\n\nbody");
  ASSERT_TRUE(message);
  ASSERT_EQ(message->attachments.size(), 1u);
  EXPECT_TRUE(message->attachments[0].name.isEmpty());
  EXPECT_NE(textOf(*message, {}).find("Attachments: unnamed"), std::string::npos);
}

TEST(EML, NoBytesAreNoMessage) {
  EXPECT_FALSE(eml(""));
  const auto message = eml("\rno field");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->text, NSString(u"\rno field"));
}

TEST(EML, RTFThatIsNoneIsAFile) {
  const auto message =
      eml("Content-Type: multipart/mixed; boundary=b\n\n--b\nContent-Type: text/rtf\n\n"
          "no RTF\n--b\nContent-Type: text/rtf\n\n{\\rtf1 a}\n--b--\n");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->rtf.chars(), "{\\rtf1 a}");
  ASSERT_EQ(message->attachments.size(), 1u);
  EXPECT_EQ(message->attachments[0].bytes.chars(), "no RTF");
}

// Each is copied once: as many that were joined one by one would keep the test busy for long.
TEST(EML, ManyBodiesAreOne) {
  std::string text = "Content-Type: multipart/mixed; boundary=b\n";
  for (int i = 0; i < 4000; ++i) {
    text += "\n--b\nContent-Type: text/" + std::string(i % 2 == 0 ? "html" : "plain") + "\n\n" +
            std::string(1000, 'x');
  }
  const auto message = eml(text + "\n--b--\n");
  ASSERT_TRUE(message);
  EXPECT_GT(message->html.length(), 4'000'000u);
}

TEST(EML, DeepNestingIsNoTrouble) {
  std::string text;
  for (int i = 0; i < 5000; ++i) {
    const std::string name = "b" + std::to_string(i);
    text += "Content-Type: multipart/mixed; boundary=" + name + "\n\n--" + name + "\n";
  }
  EXPECT_TRUE(eml(text + "\nhello"));
}

TEST(OpenMessages, NamesPromiseInEitherCase) {
  const NSData anything(std::string_view("anything"));
  for (const char* name : {"a.eml", "a.EML", "a.Eml", "a.mbox", "A.MBOX"}) {
    EXPECT_TRUE(promisesMessages(anything, name)) << name;
  }
  EXPECT_FALSE(promisesMessages(anything, "eml.txt"));
}

TEST(Jobs, ResultsComeInOrder) {
  int given = 0;
  std::vector<int> results;
  inOrder<int, int>(
      3,
      [&]() -> std::optional<int> { return given < 1000 ? std::optional(given++) : std::nullopt; },
      [](const int& input) { return 2 * input; }, [&](int result) { results.push_back(result); });
  ASSERT_EQ(results.size(), 1000u);
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(results[static_cast<size_t>(i)], 2 * i);
}

#ifdef KELSPAR_CORPUS

NSData contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return NSData(std::string{std::istreambuf_iterator<char>(file), {}});
}

std::string textOfCorpus(const char* name) {
  const auto path = std::filesystem::path(KELSPAR_CORPUS) / "messages" / name;
  const auto messages = openMessages(contentsOf(path), path.string(), {});
  return messages.empty() ? "" : textOf(*messages.front(), {});
}

TEST(Corpus, EveryMessageIsShownInEveryForm) {
  size_t read = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(KELSPAR_CORPUS) / "messages")) {
    const auto messages = openMessages(contentsOf(entry.path()), entry.path().string(), {});
    EXPECT_FALSE(messages.empty()) << entry.path();
    for (const auto& message : messages) {
      EXPECT_FALSE(htmlOf(*message, {}).empty());
      EXPECT_TRUE(NSString::fromUTF8(textOf(*message, {}))) << entry.path();
      EXPECT_TRUE(NSString::fromUTF8(jsonOf(*message))) << entry.path();
      EXPECT_FALSE(infoOf(*message).empty());
    }
    ++read;
  }
  EXPECT_GT(read, 400u);
}

TEST(Corpus, StringsUnderUTF8MayBeInTheLanguagesPage) {
  const std::string text = textOfCorpus("poi__ASCII_UTF-8_CP1252_LCID1031.msg");
  EXPECT_NE(text.find("Subject: Subject \u00F6\u00E4\u00FC Subject"), std::string::npos) << text;
}

TEST(Corpus, EightBitStringsOfMsgFilesAreDecoded) {
  const std::string text = textOfCorpus("poi__cyrillic_message.msg");
  EXPECT_NE(text.find("Subject: \u0410\u0432\u0442\u043E\u043C\u0430\u0442\u0438\u0447"),
            std::string::npos);
}

#endif

}  // namespace
}  // namespace kelspar::host
