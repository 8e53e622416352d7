// Charset labels, encoded words, HTML to text and back.
#include <gtest/gtest.h>

#include <random>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/unicode/NSRegularExpression.h"
#include "platform/unicode/NSScanner.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::WebKelsparNSStringAdditions {
namespace {

TEST(CharsetLabels, Resolve) {
  for (const char16_t* label : {u"utf-8", u"Utf-8", u"us-ascii", u" utf-16le", u"latin1", u""}) {
    EXPECT_EQ(getCharacterEncodingFromMime(label), NSUTF8StringEncoding) << NSString(label);
  }
  EXPECT_EQ(getCharacterEncodingFromMime(u"ascii"), 1u);
  EXPECT_EQ(getCharacterEncodingFromMime(u"utf-16"), 10u);
  EXPECT_EQ(getCharacterEncodingFromMime(u"UTF-16LE"), 0x94000100u);
  for (const char16_t* label :
       {u"windows-1255", u"windows-1256", u"windows-1257", u"windows-1258", u"windows-874",
        u"iso-8859-5", u"iso-8859-6", u"iso-8859-7", u"iso-8859-8", u"iso-8859-11", u"koi8-r",
        u"koi8-u", u"shift_jis", u"euc-kr", u"big5", u"gb2312", u"gb18030"}) {
    EXPECT_NE(getCharacterEncodingFromMime(label), NSUTF8StringEncoding) << NSString(label);
  }
}

TEST(EncodedWords, Give) {
  EXPECT_EQ(decodeMimeHeader(u"=?UTF-8?Q?hello_world?="), u"hello_world");
  EXPECT_EQ(decodeMimeHeader(u"=?utf-8?b?SGVsbG8=?= =?utf-8?b?V29ybGQ=?="), u"Hello World");
  EXPECT_EQ(decodeMimeHeader(u"Re: =?ISO-8859-1?Q?caf=E9?= ok"), u"Re: café ok");
  EXPECT_EQ(decodeMimeHeader(u"=?UTF-8?X?abc?="), u"");
  EXPECT_EQ(decodeMimeHeader(u"plain"), u"plain");
  EXPECT_EQ(decodeMimeHeader(u"=?UTF-8?Q?a?=, =?UTF-8?Q?b?= c"), u" c");
  EXPECT_EQ(decodeMimeHeader(nil), u"");
}

TEST(EncodedWords, AreWhereThePatternMatches) {
  const NSRegularExpression pattern = NSRegularExpression::withPattern(
      u"=\\?(.*?)\\?=(?!\\S)", NSRegularExpression::caseInsensitive);
  const std::u16string_view pieces[] = {u"=",  u"?", u"=?",     u"?=",     u" ",
                                        u"\n", u"x", u"\u2028", u"\u3000", u"\v"};
  std::mt19937 random(3);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (size_t i = 1 + random() % 10; i > 0; --i) text += pieces[random() % std::size(pieces)];
    // No piece makes a word that can be decoded: what matches is dropped.
    const NSString expected = pattern.stringByReplacingMatches(text, u"");
    ASSERT_EQ(decodeMimeHeader(text), expected) << NSString(text) << " round " << round;
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

// The stated steps: every match of the text replaced in the result, one after the other.
TEST(FormattingTags, EqualTheStatedSteps) {
  const auto pattern =
      NSRegularExpression::withPattern(u"&amp;(.*?);", NSRegularExpression::caseInsensitive);
  const auto literally = [&](const NSString& text) {
    NSString result = text;
    for (const auto& match : pattern.matches(text)) {
      NSMutableString body(text.view().substr(match[1].location, match[1].length));
      body.replaceOccurrences(u"#", u"");
      NSScanner scanner(body.copy());
      int64_t value = 0;
      if (!scanner.scanInteger(&value) || scanner.scanLocation() != body.length() || value < 1)
        continue;
      const auto unit = static_cast<char16_t>(value);
      result = stringByReplacingCaseInsensitive(
          result, text.view().substr(match[0].location, match[0].length), {&unit, 1});
    }
    return result;
  };
  EXPECT_EQ(decodeHTMLFormattingTags(u"&amp;#38;amp;65; &amp;65;"), u"A A");
  const std::u16string_view pieces[] = {u"&amp;", u"#",     u"65",  u"38", u"59", u";",
                                        u"amp;",  u"&",     u"233", u" ",  u"-",  u"+",
                                        u"x",     u"&AMP;", u"\n",  u"35"};
  std::mt19937 random(9);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (size_t i = 1 + random() % 14; i > 0; --i) text += pieces[random() % std::size(pieces)];
    ASSERT_EQ(decodeHTMLFormattingTags(text), literally(text)) << NSString(text);
  }
}

TEST(HTMLToText, Gives) {
  EXPECT_EQ(stringByStrippingHTMLFallback(u"<p>Hi&nbsp;there</p><!-- x --><script>a()</script>"),
            u"\nHi there\n");
  EXPECT_EQ(stringByStrippingHTMLFallback(u"&AMP;lt;"), u"<");
  EXPECT_EQ(stringFromHTML(u"a=3Db"), u"a=b");
  EXPECT_EQ(stringByStrippingHTML(u"<pre>\n\n  a  \n\n\n\n b\n</pre>"), u"a\n\nb");
  EXPECT_EQ(stringFromHTML(u""), u"");
  EXPECT_EQ(stringByStrippingHTML(nil), u"");
}

// The patterns in their order, compiled once.
struct Step {
  NSRegularExpression pattern;
  std::u16string_view replacement;
};
const std::vector<Step>& fallbackSteps() {
  static const std::vector<Step> steps = [] {
    constexpr auto kAnyCase = NSRegularExpression::caseInsensitive;
    std::vector<Step> made{
        {NSRegularExpression::withPattern(u"<!--[\\s\\S]*?-->"), u""},
        {NSRegularExpression::withPattern(u"<(style|script)[^>]*?>[\\s\\S]*?</\\1>", kAnyCase),
         u""}};
    for (const char16_t* tag : {u"p", u"div", u"br", u"h1", u"h2", u"h3", u"h4", u"h5", u"h6",
                                u"li", u"ul", u"ol", u"blockquote", u"pre"}) {
      const std::u16string pattern = u"</?" + std::u16string(tag) + u"[^>]*>";
      made.push_back({NSRegularExpression::withPattern(NSString(pattern), kAnyCase), u"\n"});
    }
    made.push_back({NSRegularExpression::withPattern(u"<[^>]+>"), u""});
    return made;
  }();
  return steps;
}

NSString literalFallback(NSString text) {
  for (const Step& step : fallbackSteps()) {
    text = step.pattern.stringByReplacingMatches(text, step.replacement);
  }
  const std::pair<const char16_t*, const char16_t*> entities[] = {
      {u"&amp;", u"&"}, {u"&gt;", u">"}, {u"&lt;", u"<"}, {u"&nbsp;", u" "}};
  for (const auto& [entity, by] : entities) {
    text = stringByReplacingCaseInsensitive(text, entity, by);
  }
  return text;
}

TEST(HTMLToText, TheFallbackIsItsPatterns) {
  const std::u16string_view pieces[] = {u"<",
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
                                        u"<BLOC\u212A",
                                        u"&amp;",
                                        u"lt;",
                                        u"&gt;",
                                        u"x",
                                        u"\n",
                                        u"</\u017Ftyle>",
                                        u"-",
                                        u"<\u017Fcript>",
                                        u"&nb\u017Fp;",
                                        u"&"};
  std::mt19937 random(5);
  for (int round = 0; round < 5000; ++round) {
    std::u16string text;
    for (size_t i = 1 + random() % 10; i > 0; --i) text += pieces[random() % std::size(pieces)];
    ASSERT_EQ(stringByStrippingHTMLFallback(text), literalFallback(text))
        << NSString(text) << " round " << round;
  }
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

TEST(TextToHTML, Gives) {
  EXPECT_EQ(stringByConvertingToHTML(u"a<b> & \"c\" 'd'"),
            u"a&lt;b&gt; &amp; &quot;c&quot; &#39;d&#39;");
  EXPECT_EQ(stringByConvertingToHTML(u"x\r\ny\nz\rw"), u"x<br>y<br>z<br>w");
  EXPECT_EQ(stringByConvertingToHTML(u"\r\r\n"), u"<br><br>");
  EXPECT_EQ(stringByConvertingToHTML(u"a\tb"), u"a&nbsp;&nbsp;&nbsp;&nbsp;b");
  EXPECT_EQ(stringByConvertingToHTML(u"a   b"), u"a &nbsp; b");
  EXPECT_EQ(stringByConvertingToHTMLWithWrapAtColumn(u"hi", 72),
            u"<div style=\"max-width: 72ch; word-wrap: break-word; overflow-wrap: break-word; "
            u"white-space: pre-wrap;\">hi</div>");
  EXPECT_EQ(stringByConvertingToHTMLWithWrapAtColumn(u"hi", -5), u"hi");
  EXPECT_EQ(stringByConvertingToHTMLWithPreTag(u""), u"<pre></pre>");
  EXPECT_EQ(stringByConvertingToHTMLWithPreTag(u"a\nb"), u"<pre>a\nb</pre>");
  EXPECT_EQ(stringByConvertingToHTMLWithPreTagAndWrapAtColumn(u"&amp;", 9),
            u"<pre style=\"max-width: 9ch; white-space: pre-wrap; word-wrap: break-word; "
            u"overflow-wrap: break-word;\">&amp;amp;</pre>");
}

}  // namespace
}  // namespace kelspar::WebKelsparNSStringAdditions
