#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "RTFKelspar/RTFKelsparNSAttributedStringAdditions.h"
#include "platform/dispatch/dispatch.h"

namespace kelspar::RTFKelsparNSAttributedStringAdditions {
namespace {

size_t pagesOf(const NSData& pdf) {
  const std::string_view chars = pdf.chars();
  constexpr std::string_view kPage = "/Type /Page ";
  size_t pages = 0;
  for (size_t at = chars.find(kPage); at != chars.npos; at = chars.find(kPage, at + 1)) ++pages;
  return pages;
}

NSAttributedString text(std::u16string_view units) { return NSAttributedString(NSString(units)); }

class AttributedPDF : public testing::Test {
 protected:
  void SetUp() override { setenv("SOURCE_DATE_EPOCH", "1000000000", 1); }
};

TEST_F(AttributedPDF, NothingForTheEmptyText) {
  const std::string path = testing::TempDir() + "kelspar_empty.pdf";
  EXPECT_FALSE(createPdfDataFromAttributedString(nil));
  EXPECT_FALSE(createPdfDataFromAttributedString(text(u"")));
  EXPECT_FALSE(saveRtfAsPdfWithFilepath(text(u""), NSURL::fileURLWithPath(path)));
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(AttributedPDF, PagesFollowTheHeight) {
  EXPECT_EQ(pagesOf(createPdfDataFromAttributedString(text(u"one line"))), 1u);
  EXPECT_GT(pagesOf(createPdfDataFromAttributedString(text(std::u16string(200, u'\n')))), 2u);
}

TEST_F(AttributedPDF, TheSameBytesForTheSameText) {
  const NSData pdf = createPdfDataFromAttributedString(text(u"some text"));
  EXPECT_TRUE(pdf.chars().starts_with("%PDF-"));
  EXPECT_EQ(pdf, createPdfDataFromAttributedString(text(u"some text")));
}

TEST_F(AttributedPDF, LinksAreEscaped) {
  NSTextAttributes look;
  look.link = u"https://example.org/a'b\\c"_ns;
  const NSData pdf = createPdfDataFromAttributedString(NSAttributedString(u"link"_ns, look));
  EXPECT_NE(pdf.chars().find("https://example.org/a%27b%5Cc"), std::string_view::npos);
}

TEST_F(AttributedPDF, OtherThreadsAreServed) {
  NSData pdf;
  std::atomic<bool> isDone = false;
  std::thread caller([&] {
    pdf = createPdfDataFromAttributedString(text(u"some text"));
    isDone = true;
  });
  while (!isDone) dispatch::drainMain(10);
  caller.join();
  EXPECT_EQ(pdf, createPdfDataFromAttributedString(text(u"some text")));
}

TEST_F(AttributedPDF, OtherThreadsWriteFiles) {
  const std::string path = testing::TempDir() + "kelspar_thread.pdf";
  std::atomic<bool> isDone = false, isWritten = false;
  std::thread caller([&] {
    isWritten = saveRtfAsPdfWithFilepath(text(u"some text"), NSURL::fileURLWithPath(path));
    isDone = true;
  });
  while (!isDone) dispatch::drainMain(10);
  caller.join();
  EXPECT_TRUE(isWritten);
  EXPECT_EQ(std::filesystem::file_size(path),
            createPdfDataFromAttributedString(text(u"some text")).length());
  std::filesystem::remove(path);
}

TEST_F(AttributedPDF, AFullDeviceIsNotReported) {
  EXPECT_TRUE(saveRtfAsPdfWithFilepath(text(std::u16string(50'000, u'\n')),
                                       NSURL::fileURLWithPath("/dev/full")));
}

TEST_F(AttributedPDF, AFileThatCannotBeWrittenIsNotReported) {
  EXPECT_TRUE(saveRtfAsPdfWithFilepath(text(u"a"), NSURL::fileURLWithPath("/nowhere/at/all.pdf")));
  const std::string path = testing::TempDir() + "kelspar_text.pdf";
  EXPECT_TRUE(saveRtfAsPdfWithFilepath(text(u"a"), NSURL::fileURLWithPath(path)));
  EXPECT_GT(std::filesystem::file_size(path), 500u);
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace kelspar::RTFKelsparNSAttributedStringAdditions
