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
    {"BodyLooks",
     u"<body style='font-family:A' bgcolor=#eee text='red;position:fixed' class=x onload=y><p>a"
     u"</div>b<body style=color:blue>c",
     u"<div class=\"x\" style=\"background-color: #eee; color: red; font-family: "
     u"A\"><p>abc</p></div>"},
    {"BodyInsideABlock", u"<p><body style=color:red>a", u"<p>a</p>"},
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
    {"TabInAScheme", u"<a href='java\tscript:x()'>a</a>", u"<a>a</a>"},
    {"ReferenceToATabInAScheme", u"<a href='java&Tab;script&colon;x()'>a</a>", u"<a>a</a>"},
    {"HexadecimalReferenceInAScheme", u"<a href='&#x6a;avascript:x()'>a</a>", u"<a>a</a>"},
    {"ControlBeforeAScheme", u"<a href='&#1;javascript:x()'>a</a>", u"<a>a</a>"},
    {"SchemesOfScripts", u"<a href=vbscript:x>a</a><a href='data:text/html,x'>b</a>",
     u"<a>a</a><a>b</a>"},
    {"SchemeInUpperCase", u"<a href='JaVaScRiPt:x'>a</a><a href='HTTP://e.org'>b</a>",
     u"<a>a</a><a href=\"HTTP://e.org\">b</a>"},
    {"RelativeLink", u"<a href='/x'>a</a><a href='//e.org'>b</a><a href='#c'>c</a>",
     u"<a>a</a><a>b</a><a>c</a>"},
    {"HandlersOfManyKinds", u"<p ONCLICK=x onmouseover\n=x oN=x formaction=x action=x ping=x>a</p>",
     u"<p>a</p>"},
    {"SlashesBetweenAttributes", u"<img/src=cid:a/onerror=x()/alt=b>",
     u"<img src=\"cid:a/onerror=x()/alt=b\">"},
    {"SlashesBehindQuotedAttributes", u"<img/src='cid:a'/onerror=x()/alt=b>",
     u"<img src=\"cid:a\">"},
    {"CommentsInAttributes", u"<p title='--><script>x</script>' class=\"<!--\">a</p>",
     u"<p title=\"--&gt;&lt;script&gt;x&lt;/script&gt;\" class=\"&lt;!--\">a</p>"},
    {"CommentsThatEndEarly", u"<!--><script>x</script>-->a<!-- --!><script>y</script>", u"--&gt;a"},
    {"Mutation", u"<svg></p><style><a id=\"</style><img src=1 onerror=x()>\"></svg>b", u"b"},
    {"MutationInMathematics",
     u"<math><mtext><table><mglyph><style><!--</style><img title=\"--&gt;&lt;img src=1 "
     u"onerror=x()&gt;\"></math>b",
     u"b"},
    {"NoScript", u"<noscript><p title=\"</noscript><img src=x onerror=x()>\">a</noscript>",
     u"<p title=\"&lt;/noscript&gt;&lt;img src=x onerror=x()&gt;\">a</p>"},
    {"Template", u"<template><img src=http://e.org/x onerror=x()></template>a", u"a", 1},
    {"RawTextElements", u"<xmp><script>x</script></xmp><textarea><b></textarea><title><i></title>a",
     u"&lt;script&gt;x&lt;/script&gt;a"},
    {"Meta", u"<meta http-equiv=refresh content='0;url=http://e.org'><base href=http://e.org>a",
     u"a"},
    {"Object", u"<object data=http://e.org/x><embed src=//e.org/y>a</object>", u"a", 2},
    {"CandidateSources", u"<img srcset='http://e.org/a 1x, //e.org/b 2x, c 3x' src=cid:d>",
     u"<img src=\"cid:d\">", 2},
    {"PictureSources",
     u"<picture><source srcset=https://e.org/a><img src=https:/e.org/b alt=c></picture>",
     u"<img alt=\"c\">", 2},
    {"VideoFallsBack", u"<video src=http://e.org/a poster=http://e.org/b><img src=cid:c></video>d",
     u"<img src=\"cid:c\">d", 2},
    {"ImageInSVG", u"<svg><image xlink:href='http://e.org/a'/><use href='//e.org/b#c'/></svg>d",
     u"d", 2},
    {"BackslashesInAnAddress", u"<img src='\\\\e.org\\a'>", u"<img>", 1},
    {"Expression", u"<p style='width: expression(x()); width: EXPRESS/**/ION(x())'>a</p>",
     u"<p>a</p>"},
    {"StyleCommentsSplitNames",
     u"<p style='background-color: u/**/rl(//e.org); color: r/**/ed'>a</p>",
     u"<p style=\"color: r ed\">a</p>", 1},
    {"StyleBindings",
     u"<p style='-moz-binding: url(//e.org); behavior: url(x); content: \"a\"'>a</p>", u"<p>a</p>",
     1},
    {"StyleVariables", u"<p style='--a: url(//e.org); color: var(--a); width: calc(1px)'>a</p>",
     u"<p>a</p>", 1},
    {"StyleImageSet", u"<p style='background: image-set(\"https://e.org/a\" 1x)'>a</p>",
     u"<p>a</p>", 1},
    {"StyleValueClosesTheSheet", u"<style>p{font-family:'</style><script>x()</script>'}</style>a",
     u"'}a"},
    {"StyleSheetFonts",
     u"<style>@font-face { font-family: a; src: url(https://e.org/a), url('//e.org/b') } "
     u"@media print { p { background: url(http://e.org/c) } } p{color:red}</style>a",
     u"<style>\np { color: red }\n</style>a", 3},
    {"StyleSheetImports",
     u"<style>@import 'http://e.org/a'; @\\69mport \"//e.org/b\"; @import c;</style>a", u"a", 2},
    {"StyleSheetWithoutEnd", u"<style>p{color:red", u"<style>\np { color: red }\n</style>"},
    {"Selectors",
     u"<style>a:hover > .b *, c[d=e] { color: red } f\\67 { color: red }"
     u"g['] { color: red } h(i) { color: red }</style>j",
     u"<style>\na:hover > .b *, c[d=e] { color: red }\n</style>j"},
    {"NULs", std::u16string_view(u"<scr\0ipt>a</scr\0ipt>\0b", 22), u"ab"},
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
