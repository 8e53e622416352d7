// Plain text as HTML, against the stated replacements.
#include <gtest/gtest.h>

#include <random>

#include "WebKelspar/WebKelsparNSStringAdditions.h"

namespace kelspar::WebKelsparNSStringAdditions {
namespace {

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

// The stated replacements, one after the other.
NSString literallyConverted(const NSString& receiver, bool flows) {
  NSMutableString text(receiver.view());
  text.replaceOccurrences(u"&", u"&amp;");
  text.replaceOccurrences(u"<", u"&lt;");
  text.replaceOccurrences(u">", u"&gt;");
  text.replaceOccurrences(u"\"", u"&quot;");
  text.replaceOccurrences(u"'", u"&#39;");
  if (!flows) return text.copy();
  text.replaceOccurrences(u"\r\n", u"<br>");
  text.replaceOccurrences(u"\n", u"<br>");
  text.replaceOccurrences(u"\r", u"<br>");
  text.replaceOccurrences(u"\t", u"&nbsp;&nbsp;&nbsp;&nbsp;");
  text.replaceOccurrences(u"  ", u" &nbsp;");
  return text.copy();
}

TEST(TextToHTML, EqualsTheStatedReplacements) {
  constexpr std::u16string_view kUnits = u"&<>\"' \t\r\na;\u00E9";
  std::mt19937 random(10);
  for (int round = 0; round < 20000; ++round) {
    std::u16string text(1 + random() % 12, u' ');
    for (char16_t& unit : text) unit = kUnits[random() % kUnits.size()];
    ASSERT_EQ(stringByConvertingToHTML(text), literallyConverted(text, true));
    ASSERT_EQ(stringByConvertingToHTMLWithPreTag(text),
              NSString::stringWithFormat(u"<pre>%@</pre>", literallyConverted(text, false)));
  }
}

TEST(TextToHTML, NothingGivesNothingButThePreformattedElement) {
  EXPECT_EQ(stringByConvertingToHTML(nil), u"");
  EXPECT_EQ(stringByConvertingToHTMLWithWrapAtColumn(u"", 72), u"");
  EXPECT_EQ(stringByConvertingToHTMLWithPreTag(nil), u"<pre></pre>");
  EXPECT_EQ(stringByConvertingToHTMLWithPreTagAndWrapAtColumn(u"", 72), u"<pre></pre>");
}

}  // namespace
}  // namespace kelspar::WebKelsparNSStringAdditions
