// HTML to text: stated cases, and the fallback against its expressions.
#include <gtest/gtest.h>

#include <random>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_literal.h"
#include "platform/richtext/html_importer.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSRegularExpression.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::WebKelsparNSStringAdditions {
namespace {

TEST(HTMLToText, Gives) {
  EXPECT_EQ(stringByStrippingHTMLFallback(u"<p>Hi&nbsp;there</p><!-- x --><script>a()</script>"),
            u"\nHi there\n");
  EXPECT_EQ(stringByStrippingHTMLFallback(u"&AMP;lt;"), u"<");
  EXPECT_EQ(stringFromHTML(u"a=3Db"), u"a=b");
  EXPECT_EQ(stringByStrippingHTML(u"<pre>\n\n  a  \n\n\n\n b\n</pre>"), u"a\n\nb");
  EXPECT_EQ(stringFromHTML(u""), u"");
  EXPECT_EQ(stringByStrippingHTML(nil), u"");
}

constexpr std::u16string_view kPieces[] = {u"<",
                                           u">",
                                           u"</",
                                           u"<!--",
                                           u"-->",
                                           u"<style",
                                           u"</STYLE>",
                                           u"<script>",
                                           u"</script>",
                                           u"<p",
                                           u"</P>",
                                           u"<br>",
                                           u"&amp;",
                                           u"lt;",
                                           u"&gt;",
                                           u"x",
                                           u"\n",
                                           u"<BLOC\u212A",
                                           u"-",
                                           u"&",
                                           u"<>",
                                           u"</>",
                                           u"</\u017Ftyle>",
                                           u"<\u017Fcript>",
                                           u"&nb\u017Fp;",
                                           u"<td>",
                                           u"</pre>",
                                           u"<h1 a='b'>",
                                           u"<!-- x -->",
                                           u"<i>",
                                           u"amp;",
                                           u"quot;",
                                           u"&APOS;",
                                           u"copy;",
                                           u"&hellip;",
                                           u"&ldquo;",
                                           u"l\u017Fquo;",
                                           u"&mdash;",
                                           u"ndash;",
                                           u"&rdquo;",
                                           u"reg;",
                                           u"&rsquo;",
                                           u"&Trade;",
                                           u";"};

// Rounds of few kinds of pieces, so that texts without a tag inside a tag occur as well.
TEST(HTMLToText, TheFallbackIsItsPatterns) {
  std::mt19937 random(5);
  for (int round = 0; round < 30000; ++round) {
    std::u16string text;
    const size_t kinds = 2 + random() % 8, first = random() % std::size(kPieces);
    for (size_t i = 1 + random() % 10; i > 0; --i)
      text += kPieces[(first + random() % kinds * 7) % std::size(kPieces)];
    ASSERT_EQ(stringByStrippingHTMLFallback(text), literalStripping(text))
        << NSString(text) << " round " << round;
  }
}

TEST(HTMLToText, WholeTagsInTheFallback) {
  constexpr std::u16string_view kTags[] = {
      u"<p>", u"</div>", u"<td a=1>", u"text ", u"<>",     u"</>",  u"<BR/>",  u"<!doctype html>",
      u"</",  u"&amp;",  u"nbsp;",    u"&lt;",  u"</PRE>", u"<ul>", u"<body>", u"<\u212A>"};
  std::mt19937 random(6);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (size_t i = 1 + random() % 12; i > 0; --i) text += kTags[random() % std::size(kTags)];
    ASSERT_EQ(stringByStrippingHTMLFallback(text), literalStripping(text)) << NSString(text);
  }
}

// What is done with the importer's text, as it is stated.
NSString literallyTidied(const NSString& imported) {
  static const auto blanks = NSRegularExpression::withPattern(u"[ \\t]+");
  static const auto feeds = NSRegularExpression::withPattern(u"\\n{3,}");
  const NSString text =
      feeds.stringByReplacingMatches(blanks.stringByReplacingMatches(imported, u" "), u"\n\n");
  std::u16string joined;
  const std::u16string_view all = text.view();
  for (size_t from = 0; from <= all.size();) {
    const size_t end = std::min(all.find(u'\n', from), all.size());
    joined += stringByTrimming(NSString(all.substr(from, end - from)), NSCharacterSet::whitespace())
                  .view();
    if (end < all.size()) joined += u'\n';
    from = end + 1;
  }
  while (joined.starts_with(u'\n')) joined.erase(0, 1);
  while (joined.ends_with(u'\n')) joined.pop_back();
  return NSString(joined);
}

TEST(HTMLToText, TheImportIsTidiedAsStated) {
  constexpr std::u16string_view kSpaces[] = {u" ",    u"\t", u"\n",     u"a",   u"\u00A0",
                                             u"\n\n", u"  ", u"\u3000", u"b c", u"\u2028"};
  std::mt19937 random(8);
  for (int round = 0; round < 5000; ++round) {
    std::u16string text = u"<pre>";
    for (size_t i = random() % 14; i > 0; --i) text += kSpaces[random() % std::size(kSpaces)];
    text += u"</pre>";
    ASSERT_EQ(stringByStrippingHTML(text), literallyTidied(plainTextFromHTML(NSString(text))))
        << NSString(text);
  }
}

TEST(HTMLToText, LoneSurrogatesGiveNothing) {
  const NSString text(std::u16string(u"<p>a") + char16_t{0xD800} + u"</p>");
  EXPECT_EQ(stringByStrippingHTML(text), u"");
}

// A quadratic scan would take minutes here.
TEST(HTMLToText, TextsOfAHundredThousandOpenings) {
  struct Hostile {
    std::u16string_view piece, left;
  };
  constexpr Hostile kRows[] = {
      {u"<", u"<"},     {u"<!--", u"<!--"},       {u"<style>", u""},       {u"<p", u"<p"},
      {u"&amp;", u"&"}, {u"</style", u"</style"}, {u"<script", u"<script"}};
  for (const Hostile& row : kRows) {
    std::u16string text, left;
    for (int i = 0; i < 100000; ++i) text += row.piece, left += row.left;
    EXPECT_EQ(stringByStrippingHTMLFallback(text).view(), left) << NSString(row.piece);
  }
}

}  // namespace
}  // namespace kelspar::WebKelsparNSStringAdditions
