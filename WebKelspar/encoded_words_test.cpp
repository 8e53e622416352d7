// Encoded words of headers and escaped character references, against the stated expressions.
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_literal.h"

namespace kelspar::WebKelsparNSStringAdditions {
namespace {

TEST(EncodedWords, Give) {
  EXPECT_EQ(decodeMimeHeader(u"=?UTF-8?Q?hello_world?="), u"hello_world");
  EXPECT_EQ(decodeMimeHeader(u"=?utf-8?b?SGVsbG8=?= =?utf-8?b?V29ybGQ=?="), u"Hello World");
  EXPECT_EQ(decodeMimeHeader(u"Re: =?ISO-8859-1?Q?caf=E9?= ok"), u"Re: café ok");
  EXPECT_EQ(decodeMimeHeader(u"=?UTF-8?X?abc?="), u"");
  EXPECT_EQ(decodeMimeHeader(u"plain"), u"plain");
  EXPECT_EQ(decodeMimeHeader(u"=?UTF-8?Q?a?=, =?UTF-8?Q?b?= c"), u" c");
  EXPECT_EQ(decodeMimeHeader(nil), u"");
}

TEST(EncodedWords, EqualTheStatedSteps) {
  constexpr std::u16string_view kPieces[] = {
      u"=",       u"?",      u"=?", u"?=",         u" ",   u"\n",  u"x",
      u"\u2028",  u"\u3000", u"\v", u"=?utf-8?Q?", u"=E9", u"?b?", u"=?ISO-8859-1?q?",
      u"SGVsbG8", u"=C3=A9", u"_",  u", "};
  std::mt19937 random(3);
  for (int round = 0; round < 30000; ++round) {
    std::u16string text;
    for (size_t i = 1 + random() % 10; i > 0; --i) text += kPieces[random() % std::size(kPieces)];
    ASSERT_EQ(decodeMimeHeader(text), literalHeader(text)) << NSString(text) << " round " << round;
  }
}

TEST(FormattingTags, Give) {
  EXPECT_EQ(decodeHTMLFormattingTags(u"&amp;#233;"), u"é");
  EXPECT_EQ(decodeHTMLFormattingTags(u"&AMP;65;&amp;#65;"), u"AA");
  EXPECT_EQ(decodeHTMLFormattingTags(u"&amp;#70000;"), std::u16string(1, 4464));
  for (const char16_t* same : {u"&amp;#0;", u"&amp;#x41;", u"&amp;lt;", u"a"}) {
    EXPECT_EQ(decodeHTMLFormattingTags(same), same);
  }
}

TEST(FormattingTags, EqualTheStatedSteps) {
  EXPECT_EQ(decodeHTMLFormattingTags(u"&amp;#38;amp;65; &amp;65;"), u"A A");
  EXPECT_EQ(decodeHTMLFormattingTags(u"&amp;65;&amp;#38;amp;65;&amp;65;"), u"AAA");
  EXPECT_EQ(decodeHTMLFormattingTags(u"&amp;#38;amp;#38; &amp;#38;"), u"& &");
  const std::u16string_view pieces[] = {
      u"&amp;", u"#", u"65", u"38",    u"59", u";",  u"amp;",     u"&",         u"233",    u" ",
      u"-",     u"+", u"x",  u"&AMP;", u"\n", u"35", u"&amp;65;", u"&amp;#38;", u"amp;65;"};
  std::mt19937 random(9);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (size_t i = 1 + random() % 14; i > 0; --i) text += pieces[random() % std::size(pieces)];
    ASSERT_EQ(decodeHTMLFormattingTags(text), literalFormattingTags(text)) << NSString(text);
  }
}

// Long chains, in which units put in complete references that complete others.
TEST(FormattingTags, EqualTheStatedStepsInLongTexts) {
  std::mt19937 random(19);
  const std::u16string_view units[] = {u"38", u"59", u"97",  u"109", u"112", u"35",
                                       u"54", u"53", u"#38", u"65",  u"32",  u"48"};
  for (int round = 0; round < 300; ++round) {
    std::u16string text;
    for (size_t i = 100 + random() % 200; i > 0; --i) {
      if (random() % 4 == 0) text += u"&amp;"[random() % 5];
      text += u"&amp;";
      text += units[random() % std::size(units)];
      if (random() % 8 != 0) text += u';';
    }
    ASSERT_EQ(decodeHTMLFormattingTags(text), literalFormattingTags(text)) << "round " << round;
  }
}

// Each reference its own turn: by the stated steps a day's work.
TEST(FormattingTags, ManyDifferentReferences) {
  std::u16string text = u"&amp;#38;amp;65; &amp;65; ", expected = u"A A ";
  for (int value = 200; value < 55'000; ++value) {
    text += u"&amp;" + std::u16string(NSString(std::to_string(value)).view()) + u";" +
            std::u16string(20, u'x');
    expected += static_cast<char16_t>(value) + std::u16string(20, u'x');
  }
  EXPECT_EQ(decodeHTMLFormattingTags(text), expected);
}

#ifdef KELSPAR_CORPUS
TEST(EncodedWordsCorpus, HeadersDecodeByTheStatedSteps) {
  std::ifstream file(KELSPAR_CORPUS "/headers/encoded-words.txt");
  size_t decoded = 0;
  for (std::string line; std::getline(file, line);) {
    const NSString text(line), header = decodeMimeHeader(text);
    ASSERT_EQ(header, literalHeader(text)) << line;
    decoded += header != text;
  }
  EXPECT_GT(decoded, 30u);
}
#endif

}  // namespace
}  // namespace kelspar::WebKelsparNSStringAdditions
