#include "platform/graphics/pdf_paper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "platform/graphics/pdf_tools.h"

namespace kelspar {
namespace {

using testtools::PDFFile;

TEST(PDFPaper, HasNames) {
  const auto a4 = PDFPaper::named(u"a4");
  ASSERT_TRUE(a4);
  EXPECT_NEAR(a4->width, 595.3, 0.1);
  EXPECT_NEAR(a4->height, 841.9, 0.1);
  EXPECT_EQ(a4->scale, 1);
  EXPECT_NEAR(a4->left, 22.6, 0.1);
  EXPECT_NEAR(PDFPaper::named(u"LETTER")->height, 792, 0.1);
  EXPECT_LT(PDFPaper::named(u"A5")->scale, 0.8);
  EXPECT_NEAR(PDFPaper::named(u"100X200.5")->height, 568.3, 0.1);
}

class NoPaper : public testing::TestWithParam<const char*> {};
TEST_P(NoPaper, IsNamedThis) { EXPECT_FALSE(PDFPaper::named(NSString(GetParam()))); }
INSTANTIATE_TEST_SUITE_P(Names, NoPaper,
                         testing::Values("", "A", "A10", "210", "210x", "x297", "210x297x3",
                                         "nanxnan", "1e2x100", "-100x100", "49x100", "100x2001",
                                         " A4"));

TEST(PDFPaper, HasMargins) {
  const auto a4 = PDFPaper::named(u"A4")->withMargin(72);
  ASSERT_TRUE(a4);
  EXPECT_EQ(a4->left, 72);
  EXPECT_EQ(a4->top, 72);
  EXPECT_NEAR(a4->scale, (595.28 - 144) / 550, 0.001);
  const auto wide = PDFPaper::named(u"A3")->withMargin(10);
  ASSERT_TRUE(wide);
  EXPECT_EQ(wide->scale, 1);
  EXPECT_NEAR(wide->left, (841.9 - 550) / 2, 0.1);
  EXPECT_EQ(PDFPaper().withMargin(0)->textHeight(), 715);
  for (const double bad : {-1.0, 240.0, 1e300, std::numeric_limits<double>::infinity(),
                           std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(PDFPaper().withMargin(bad)) << bad;
  }
}

// A line at each end of a page, a link, on every paper: inside the margins.
TEST(PDFPaper, HoldsItsLinesInsideTheMargins) {
  NSTextAttributes look;
  look.link = u"https://example.org/"_ns;
  NSMutableAttributedString text;
  for (int i = 0; i < 200; ++i) {
    text.append(
        u"word and more words, as many as it takes to go over the end of a line: it ends "
        u"here, and begins another one.\n",
        look);
  }
  for (const char* name : {"A4", "A5", "Letter", "Tabloid", "60x2000"}) {
    const auto paper = PDFPaper::named(NSString(name));
    const PDFFile file(text.copy(), {.keepsLinesWhole = true, .paper = *paper, .title = nil});
    EXPECT_TRUE(file.isSound());
    const auto words = file.words();
    EXPECT_EQ(words.size(), 4800u) << name;
    for (const auto& word : words) {
      EXPECT_GE(word.left, 19.0) << name;
      EXPECT_LE(word.right, paper->width - 19) << name;
      EXPECT_GE(word.top, 35.0) << name;
      EXPECT_LE(word.bottom, paper->height - 35) << name;
    }
    // Areas of links lie over the words.
    const std::string areas = file.output("qpdf --qdf --object-streams=disable % -");
    const std::regex area("/Rect \\[\\s*([0-9.]+)\\s+([0-9.]+)\\s+([0-9.]+)\\s+([0-9.]+)");
    std::smatch found;
    ASSERT_TRUE(std::regex_search(areas, found, area)) << name;
    EXPECT_NEAR(std::stod(found[1]), paper->left, 1) << name;
    EXPECT_LE(std::stod(found[3]), paper->width - 19) << name;
    EXPECT_NEAR(std::stod(found[4]), paper->height - paper->top, 1) << name;
  }
}

}  // namespace
}  // namespace kelspar
