// The document as others see it: qpdf checks it, poppler reads it.
#include "platform/graphics/pdf_pages.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "platform/graphics/pdf_tools.h"

namespace kelspar {
namespace {

using testtools::documentOf;
using testtools::PDFFile;

NSAttributedString text(std::u16string_view units, const NSTextAttributes& look = {}) {
  return NSAttributedString(NSString(units), look);
}

NSTextAttributes lookOf(const NSParagraphStyle& style) {
  NSTextAttributes look;
  look.font.family = u"DejaVu Sans"_ns;
  look.paragraph = std::make_shared<const NSParagraphStyle>(style);
  return look;
}

std::u16string numberedLines(int count) {
  std::u16string lines;
  for (int i = 0; i < count; ++i) {
    lines += NSString("line" + std::to_string(i) + ".").view();
    if (i + 1 < count) lines += u'\n';
  }
  return lines;
}

NSTextAttributes linesOf(double height) {
  return lookOf({.minimumLineHeight = height, .maximumLineHeight = height});
}

TEST(PDFPages, TheTextComesBack) {
  const struct {
    const char* name;
    std::u16string_view units;
  } kRows[] = {
      {"Latin", u"The office flies \u2014 caf\u00E9, na\u00EFve, \u201Cquoted\u201D"},
      {"Greek", u"\u039A\u03B1\u03BB\u03B7\u03BC\u03AD\u03C1\u03B1"},
      {"Cyrillic", u"\u0434\u043E\u0431\u0440\u044B\u0439 \u0434\u0435\u043D\u044C"},
      {"Combining", u"e\u0301 o\u0308\u0304"},
      {"Lines", u"one\ntwo\r\nthree\u2028four\u2029five\n\n"},
      {"Controls",
       u"a\tb\x01"
       u"c"},
      {"NoFont", u"a\U0001F984\U0010F123\U000F1234z"},
      {"NoFontAtTheEdge",
       u"\U0010F123\U0010F124\n\U0010F124\U0010F123\n\U0001F984\U0001F600\n\U0010F123"},
  };
  for (const auto& row : kRows) {
    NSTextAttributes look;
    look.font.family = u"DejaVu Sans"_ns;
    const PDFFile file(text(row.units, look));
    EXPECT_TRUE(file.isSound()) << row.name;
    std::string letters;
    for (const char c : NSString(row.units).utf8()) {
      if (static_cast<uint8_t>(c) > ' ') letters += c;
    }
    for (const char* separator : {"\u2028", "\u2029"}) {
      const size_t at = letters.find(separator);
      if (at != letters.npos) letters.erase(at, 3);
    }
    EXPECT_EQ(std::regex_replace(file.letters(), std::regex("\u200B"), ""), letters) << row.name;
  }
}

TEST(PDFPages, PagesAreCutAtMultiplesOfTheirHeight) {
  EXPECT_EQ(PDFFile(text(numberedLines(55), linesOf(13))).pages(), 1);  // 715 points
  EXPECT_EQ(PDFFile(text(numberedLines(56), linesOf(13))).pages(), 2);
  EXPECT_EQ(PDFFile(text(numberedLines(143), linesOf(5))).pages(), 1);
  EXPECT_EQ(PDFFile(text(numberedLines(144), linesOf(5))).pages(), 2);
  EXPECT_EQ(PDFFile(text(numberedLines(1), linesOf(715))).pages(), 1);
  const PDFFile file(text(numberedLines(110), linesOf(13)));
  EXPECT_EQ(file.pages(), 2);
  EXPECT_NE(file.output("pdfinfo -box %").find("550 x 715 pts"), std::string::npos);
}

TEST(PDFPages, ACutLineIsTextOnce) {
  // Line 52 reaches from 702 to 715.5 points, line 53 onwards; every page ends in another place.
  const std::u16string lines = numberedLines(300);
  std::string letters;
  for (const char c : NSString(lines).utf8())
    letters += c == '\n' ? std::string() : std::string(1, c);
  for (const bool keeps : {false, true}) {
    const PDFFile file(text(lines, linesOf(13.5)), {.keepsLinesWhole = keeps, .title = nil});
    EXPECT_EQ(file.letters(), letters) << keeps;
    EXPECT_EQ(file.pages(), 6) << keeps;
    EXPECT_EQ(file.word("line53.").page, 2);
    EXPECT_NEAR(file.word("line53.").top, keeps ? 13.5 : 0.5, 2);
    for (const auto& word : file.words())
      EXPECT_LE(word.bottom, keeps ? 715.0 : 718.0) << word.text;
  }
}

// No font has private characters: boxes stand for them, and the text is theirs.
TEST(PDFPages, CharactersWithoutAFontStayText) {
  const NSAttributedString mixed(u"ab\U0010F123\U0010F124cd \U000F0001\U0010F125.",
                                 NSTextAttributes());
  const PDFFile file(mixed);
  EXPECT_EQ(file.letters(), "ab\U0010F123\U0010F124cd\U000F0001\U0010F125.");
  EXPECT_EQ(file.word("\U0010F123\U0010F124").page, 1) << "no blank between them";
  EXPECT_TRUE(file.isSound());
  std::u16string many;
  for (int i = 0; i < 10'000; ++i) many += u"\U0010F123";
  size_t bytes = 0;
  writePDF(NSAttributedString(NSString(many), NSTextAttributes()), {},
           [&bytes](std::string_view piece) {
             bytes += piece.size();
             return true;
           });
  EXPECT_LT(bytes, 500'000u) << "boxes of a page are drawn together";
}

TEST(PDFPages, ScriptsWithoutAFontAreTold) {
  const auto scriptsOf = [](std::u16string_view units) {
    return writePDF(NSAttributedString(NSString(units), NSTextAttributes()), {},
                    [](std::string_view) { return true; })
        .scriptsWithoutFont;
  };
  EXPECT_EQ(scriptsOf(u"plain"), std::vector<NSString>{});
  EXPECT_EQ(scriptsOf(u"a\U0010F123b\U0010F124"), (std::vector<NSString>{u"symbols"}));
  // Hardly a machine has fonts for both.
  EXPECT_EQ(scriptsOf(u"\U00016B6A \U0010F123 \U00011F04 \U00011F05"),
            (std::vector<NSString>{u"Kawi", u"Pahawh_Hmong", u"symbols"}));
}

TEST(PDFPages, ComplaintsAreSentences) {
  EXPECT_FALSE(PDFReport().complaint());
  EXPECT_EQ((PDFReport{{u"Han", u"Thai"}, false}.complaint()),
            u"no font has the letters of Han, Thai: boxes stand for them"_ns);
  EXPECT_EQ((PDFReport{{}, true}.complaint()), u"no font is installed: there are no letters"_ns);
}

TEST(PDFPages, ALineHigherThanAPageIsCutAnyhow) {
  NSTextAttributes look;
  look.font.size = 1'500;
  const PDFFile file(text(u"A", look), {.keepsLinesWhole = true, .title = nil});
  EXPECT_GT(file.pages(), 1);
  EXPECT_TRUE(file.isSound());
}

TEST(PDFPages, FontsAreEmbedded) {
  NSTextAttributes serif;
  serif.font.family = u"DejaVu Serif"_ns;
  NSMutableAttributedString both(text(u"one "));
  both.append(text(u"two \u0416", serif));
  const std::string fonts = PDFFile(both.copy()).output("pdffonts %");
  const std::regex row("[A-Z]{6}\\+\\S+ .* (yes|no) (yes|no) (yes|no) +[0-9]+ +[0-9]+");
  int count = 0;
  for (std::sregex_iterator at(fonts.begin(), fonts.end(), row), end; at != end; ++at, ++count) {
    for (size_t i = 1; i <= 3; ++i) EXPECT_EQ((*at)[i], "yes") << fonts;
  }
  EXPECT_GE(count, 2) << fonts;
}

TEST(PDFPages, LinksAreClickable) {
  NSTextAttributes look;
  look.link = u"https://example.org/a'b\\c d"_ns;
  NSMutableAttributedString linked(text(u"see "));
  linked.append(text(std::u16string(300, u'x') + u" and more words than go onto a line", look));
  NSTextAttributes local;
  local.link = u"file:///etc/passwd"_ns;
  linked.append(text(u" no link", local));
  const PDFFile file(linked.copy());
  EXPECT_TRUE(file.isSound());
  const std::string links = file.output("pdfinfo -url %");
  EXPECT_NE(links.find("https://example.org/a%27b%5Cc%20d"), std::string::npos) << links;
  EXPECT_EQ(links.find("passwd"), std::string::npos);
  EXPECT_NE(file.output("pdfinfo %").find("Tagged:          yes"), std::string::npos);
}

TEST(PDFPages, TitleIsTheCallersOrTheFirstLine) {
  const auto titleOf = [](std::u16string_view units, const NSString& title) {
    const PDFFile file(text(units), {.keepsLinesWhole = false, .title = title});
    return PDFFile::found(file.output("pdfinfo %"), "Title: +([^\\n]*)", "none");
  };
  EXPECT_EQ(titleOf(u"\n  \nFirst line\nsecond", nil), "First line");
  EXPECT_EQ(titleOf(u"First line", u"Subject: \u00E9t\u00E9"_ns), "Subject: \u00E9t\u00E9");
}

TEST(PDFPages, TheSameTextGivesTheSameBytes) {
  setenv("SOURCE_DATE_EPOCH", "1000000000", 1);
  const NSAttributedString lines = text(numberedLines(3'000));
  const std::string document = documentOf(lines);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(documentOf(lines) == document) << i;
  unsetenv("SOURCE_DATE_EPOCH");
  EXPECT_NE(PDFFile(document).output("pdfinfo %").find("2001"), std::string::npos);
}

TEST(PDFPages, NothingMoreIsWrittenAfterANo) {
  int calls = 0;
  writePDF(text(numberedLines(20'000)), {}, [&calls](std::string_view) { return ++calls < 3; });
  EXPECT_LE(calls, 3);
}

// In the middle of a document, and where nothing is written before its end.
TEST(PDFPages, WhatWritingRaisesComesToTheCaller) {
  for (const int lines : {1, 20'000}) {
    for (const int last : {0, 1, 3}) {
      int calls = 0;
      const auto write = [&](std::string_view) -> bool {
        if (calls++ == last) throw std::bad_alloc();
        return true;
      };
      EXPECT_THROW(writePDF(text(numberedLines(lines)), {}, write), std::bad_alloc) << lines;
      EXPECT_EQ(calls, last + 1) << "nothing more is written";
    }
  }
}

// More fonts than Cairo keeps open, in threads that open, measure, draw and close them at once.
TEST(PDFPages, AreMadeInManyThreadsWithManyFonts) {
  NSMutableAttributedString both;
  for (const char16_t* family : {u"DejaVu Sans", u"DejaVu Serif", u"DejaVu Sans Mono",
                                 u"Liberation Sans", u"Liberation Serif", u"Liberation Mono"}) {
    for (int style = 0; style < 4; ++style) {
      NSTextAttributes look;
      look.font.family = NSString(family);
      look.font.bold = style % 2 == 1;
      look.font.italic = style >= 2;
      both.append(text(u"word \u0416 ", look));
    }
  }
  const NSAttributedString content = both.copy();
  std::atomic<int> made = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 6; ++i) {
      threads.emplace_back([&] {
        for (int n = 0; n < 12; ++n) made += documentOf(content).size() > 10'000;
      });
    }
  }
  EXPECT_EQ(made, 72);
}

}  // namespace
}  // namespace kelspar
