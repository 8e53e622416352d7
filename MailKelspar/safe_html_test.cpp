#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::u16string_view in, out;
  int removed = 0;
};
class SafeHTML : public testing::TestWithParam<Row> {};
TEST_P(SafeHTML, Gives) {
  const NSDictionary safe = MailKelspar::safeHTML(NSString(GetParam().in));
  EXPECT_EQ(safe.objectForKey<NSString>(u"html"), NSString(GetParam().out));
  EXPECT_EQ(safe.objectForKey<NSNumber>(u"removed").intValue(), GetParam().removed);
}
constexpr Row kRows[] = {
    {"PlainMarkup", u"<p>a <B>b</B></p>", u"<p>a <b>b</b></p>"},
    {"TextIsEscaped", u"a & b &lt;script&gt;", u"a &amp; b &lt;script&gt;"},
    {"Script", u"a<script>alert(1)</script>b", u"ab"},
    {"ScriptWithoutEnd", u"a<script>alert(1)", u"a"},
    {"Handlers", u"<p onclick=\"x()\">a</p>", u"<p>a</p>"},
    {"ScriptLink", u"<a href=\" java\nscript:x()\">a</a>", u"<a>a</a>"},
    {"ScriptLinkByReference", u"<a href=\"&#106;avascript:x\">a</a>", u"<a>a</a>"},
    {"Link", u"<a href=\"https://e.org/?a&amp;b\">a</a>",
     u"<a href=\"https://e.org/?a&amp;b\">a</a>"},
    {"QuotationMarkInAValue", u"<a title='\"><script>'>a</a>",
     u"<a title=\"&quot;&gt;&lt;script&gt;\">a</a>"},
    {"RemoteImage", u"<img src=\"http://e.org/x.gif\" alt=x>", u"<img alt=\"x\">", 1},
    {"InlineImage", u"<img src='cid:a@b'>", u"<img src=\"cid:a@b\">"},
    {"DataImage", u"<img src='data:image/png;base64,AA=='>",
     u"<img src=\"data:image/png;base64,AA==\">"},
    {"DataOfOtherType", u"<img src='data:image/svg+xml;base64,AA=='>", u"<img>"},
    {"Background", u"<td background=//e.org/x>a</td>", u"<td>a</td>", 1},
    {"BodyBackground", u"<body background='https://e.org/x'>a</body>", u"a", 1},
    {"StyleSheetLink", u"<link rel=stylesheet href='https://e.org/x.css'>a", u"a", 1},
    {"Styles", u"<p style='color: red; position: fixed; Margin-Top:2px'>a</p>",
     u"<p style=\"color: red; margin-top: 2px\">a</p>"},
    {"StyleWithAddress", u"<p style=\"background: url('https://e.org/x')\">a</p>", u"<p>a</p>", 1},
    {"StyleEscapes", u"<p style='color: r\\65 d; width: expression(1)'>a</p>", u"<p>a</p>"},
    {"StyleSheet",
     u"<style>p { color: red; behavior: url(x) } @import url(//e); .a{float:left}</style>a",
     u"<style>\np { color: red }\n.a { float: left }\n</style>a", 1},
    {"StyleSheetEscapes", u"<style>p{color:red}</style/><b>a",
     u"<style>\np { color: red }\n</style><b>a</b>"},
    {"Comments", u"a<!-- b --><![if x]>c", u"ac"},
    {"Form", u"<form action=x><input name=a>b</form>", u"b"},
    {"Frame", u"<iframe src=http://e.org>x</iframe>a", u"a", 1},
    {"SVG", u"<svg><script>x</script><a>b</a></svg>c", u"c"},
    {"EndTagsWithoutStart", u"</div></body></table>a", u"a"},
    {"OpenElementsAreClosed", u"<div><b>a", u"<div><b>a</b></div>"},
    {"Empty", u"", u""},
};
INSTANTIATE_TEST_SUITE_P(MailKelspar, SafeHTML, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SafeHTML, IsSafeAlready) {
  for (const Row& row : kRows) {
    const NSString once = MailKelspar::safeHTML(NSString(row.in)).objectForKey<NSString>(u"html");
    EXPECT_EQ(MailKelspar::safeHTML(once).objectForKey<NSString>(u"html"), once) << row.name;
  }
  EXPECT_FALSE(MailKelspar::safeHTML(nil));
}

TEST(SafeHTML, NestingCostsLinearTime) {
  std::u16string hostile;
  for (int i = 0; i < 200000; ++i) hostile += u"<b><i></u>";
  EXPECT_GT(MailKelspar::safeHTML(NSString(hostile)).objectForKey<NSString>(u"html").length(),
            hostile.size());
}

}  // namespace
}  // namespace kelspar
