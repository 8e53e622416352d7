#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelsparNSAttributedStringAdditions.h"
#include "platform/graphics/pdf_tools.h"

namespace kelspar {
namespace {

using testtools::PDFFile;

NSAttributedString lines(int count) {
  std::u16string text;
  for (int i = 0; i < count; ++i) text += u"line\n";
  return NSAttributedString(NSString(std::move(text)));
}

NSData onPaper(const NSString& paper, double margin) {
  return MailKelspar::createPdfDataFromAttributedString(lines(2), paper, margin);
}

double topOnPage(const NSData& pdf, int page) {
  double top = 1e9;
  for (const auto& word : PDFFile(pdf.chars()).words()) {
    if (word.page == page) top = std::min(top, word.top);
  }
  return top;
}

TEST(Pages, KeepLinesWhole) {
  NSTextAttributes look;
  look.font.size = 100;
  std::u16string text;
  for (int i = 0; i < 9; ++i) text += u"line\n";
  const NSAttributedString high(NSString(text), look);
  const NSData whole = MailKelspar::createPdfDataFromAttributedString(high, nil);
  const NSData cut = RTFKelsparNSAttributedStringAdditions::createPdfDataFromAttributedString(high);
  EXPECT_TRUE(PDFFile(whole.chars()).isSound());
  EXPECT_EQ(PDFFile(whole.chars()).words().size(), 9u);
  EXPECT_NEAR(topOnPage(whole, 2), topOnPage(whole, 1), 1);
  EXPECT_GT(std::abs(topOnPage(cut, 2) - topOnPage(cut, 1)), 1);
}

TEST(Pages, HavePaperAndMargins) {
  struct Row {
    const char* paper;
    double margin, width, height;
  };
  for (const Row& row : {Row{"A4", 72, 595.28, 841.89}, Row{"letter", 36, 612, 792},
                         Row{"100x200", 0, 283.46, 566.93}, Row{"", 50, 550, 715}}) {
    const PDFFile file(onPaper(NSString(row.paper), row.margin).chars());
    const std::string size = file.output("pdfinfo %");
    const size_t at = size.find("Page size:");
    ASSERT_NE(at, size.npos) << row.paper;
    double width = 0, height = 0;
    ASSERT_EQ(std::sscanf(size.c_str() + at, "Page size: %lf x %lf", &width, &height), 2);
    EXPECT_NEAR(width, row.width, 0.1) << row.paper;
    EXPECT_NEAR(height, row.height, 0.1) << row.paper;
    for (const auto& word : file.words()) {
      EXPECT_GE(word.left, row.margin - 1) << row.paper;
      EXPECT_GE(word.top, row.margin - 1) << row.paper;
    }
  }
}

TEST(Pages, OfNothingAreNone) {
  EXPECT_TRUE(onPaper(nil, 0));
  EXPECT_TRUE(MailKelspar::createPdfDataFromAttributedString(lines(1), u"a5"));
  EXPECT_FALSE(MailKelspar::createPdfDataFromAttributedString(nil, u"A4"));
  EXPECT_FALSE(MailKelspar::createPdfDataFromAttributedString(NSAttributedString(u""_ns), u"A4"));
  EXPECT_FALSE(MailKelspar::createPdfDataFromAttributedString(lines(1), u"A9"));
  EXPECT_FALSE(onPaper(u"A9", 10));
  for (const double margin : {-1.0, 300.0, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(onPaper(u"A4", margin)) << margin;
  }
}

}  // namespace
}  // namespace kelspar
