#include "platform/richtext/html_tokenizer.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/foundation/NSString.h"

namespace kelspar::html {
namespace {

// The tokens in a short form: text as it is, "{p a=b}", "{/p}", "{!comment}", "{?}" for nothing.
std::u16string tokensOf(std::u16string_view html, bool foreign = false) {
  Tokenizer tokenizer(html);
  tokenizer.setForeignContent(foreign);
  std::u16string form;
  for (;;) {
    const Token& token = tokenizer.next();
    switch (token.kind) {
      case Token::Kind::end:
        return form;
      case Token::Kind::text:
        form += token.text;
        break;
      case Token::Kind::null:
        form += u"{0}";
        break;
      case Token::Kind::startTag:
        form.append(u"{").append(token.text);
        for (const Attribute& attribute : tokenizer.attributes()) {
          form.append(u" ").append(attribute.name).append(u"=").append(attribute.value());
        }
        form += token.selfClosing ? u"/}" : u"}";
        break;
      case Token::Kind::endTag:
        form.append(u"{/").append(token.text).append(u"}");
        break;
      case Token::Kind::comment:
        form.append(u"{!").append(token.text).append(u"}");
        break;
      case Token::Kind::doctype:
        form += u"{D}";
        break;
      case Token::Kind::nothing:
        form += u"{?}";
        break;
    }
  }
}

struct Row {
  const char* name;
  std::u16string_view in, out;
};

constexpr Row kRows[] = {
    {"PlainText", u"a > b", u"a > b"},
    {"LessThanBeforeABlank", u"1 < 2", u"1 < 2"},
    {"LessThanAtTheEnd", u"a<", u"a<"},
    {"EndTagOpenAtTheEnd", u"a</", u"a</"},
    {"EmptyEndTag", u"a</>b", u"a{?}b"},
    {"EndTagWithABlankIsAComment", u"a</ p>b", u"a{! p}b"},
    {"TagsInCapitals", u"<P>x</P>", u"{P}x{/P}"},
    {"SelfClosing", u"<br/><br />", u"{br/}{br/}"},
    {"SlashInsideATag", u"<a / b>", u"{a b=}"},
    {"AttributesInAllQuotes", u"<a b=\"1\" c='2' d=3 e>", u"{a b=1 c=2 d=3 e=}"},
    {"AttributesWithoutBlanks", u"<a b=\"1\"c='2'>", u"{a b=1 c=2}"},
    {"GreaterThanInQuotes", u"<a b=\">\">x", u"{a b=>}x"},
    {"MissingValue", u"<a b=>x", u"{a b=}x"},
    {"EqualsBeginsAName", u"<a =b>", u"{a =b=}"},
    {"BlanksAroundEquals", u"<a b\n=\t1>", u"{a b=1}"},
    {"UnquotedValueKeepsASlash", u"<a href=x/>", u"{a href=x/}"},
    {"TagCutOff", u"x<a b", u"x{?}"},
    {"ValueCutOff", u"x<a b='c>d", u"x{?}"},
    {"ReferencesInText", u"&amp;&lt;&#65;&#x42;&eacute;", u"&<AB\u00E9"},
    {"ReferenceWithoutSemicolon", u"&ampx&notit;&copy2", u"&x\u00ACit;\u00A92"},
    {"LongestReferenceWins", u"&notin;&not;", u"\u2209\u00AC"},
    {"UnknownReference", u"&nosuch; & &; &#; &#x;", u"&nosuch; & &; &#; &#x;"},
    {"TwoUnitReferences", u"&fjlig;&Afr;", u"fj\U0001D504"},
    {"NumbersAsWindows1252", u"&#128;&#153;&#x81;", u"\u20AC\u2122\u0081"},
    {"NumbersThatAreNone", u"&#0;&#xD800;&#x110000;&#99999999999;", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"NumbersBeyondThePlane", u"&#x1F600;", u"\U0001F600"},
    {"ReferencesInAttributes", u"<a b='&amp;&copy=1&copy;&copy'>", u"{a b=&&copy=1\u00A9\u00A9}"},
    {"Comment", u"a<!-- b -- c -->d", u"a{! b -- c }d"},
    {"ShortComments", u"<!--><!---><!---->x", u"{!}{!}{!}x"},
    {"CommentEndBang", u"<!--a--!>b", u"{!a}b"},
    {"CommentStartBang", u"<!---!>b-->c", u"{!-!>b}c"},
    {"CommentWithManyDashes", u"<!--a----->b", u"{!a---}b"},
    {"CommentCutOff", u"a<!-- b", u"a{! b}"},
    {"ConditionalComment", u"<!--[if mso]><p><![endif]-->x", u"{![if mso]><p><![endif]}x"},
    {"RevealedConditional", u"<![if !mso]>x<![endif]>", u"{![if !mso]}x{![endif]}"},
    {"ProcessingInstruction", u"<?xml version='1'?>x", u"{!?xml version='1'?}x"},
    {"Doctype", u"<!DOCTYPE html>x<!doctype>", u"{D}x{D}"},
    {"CDataIsACommentInHTML", u"<![CDATA[a]]>b", u"{![CDATA[a]]}b"},
    {"TitleKeepsTags", u"<title><b>&amp;</title>x", u"{title}<b>&{/title}x"},
    {"StyleKeepsAll", u"<style><!-- &amp; </b></style >x", u"{style}<!-- &amp; </b>{/style}x"},
    {"RawTextNeedsItsOwnEnd", u"<style></styles></style>", u"{style}</styles>{/style}"},
    {"RawTextCutOff", u"<style>a<b", u"{style}a<b"},
    {"TextareaInCapitals", u"<TEXTAREA><p></TextArea>", u"{TEXTAREA}<p>{/TextArea}"},
    {"Script", u"<script>if(a<b)</script>x", u"{script}if(a<b){/script}x"},
    {"ScriptInComment", u"<script><!--<script></script>--></script>x",
     u"{script}<!--<script></script>-->{/script}x"},
    {"ScriptCommentWithoutScript", u"<script><!--</script>x", u"{script}<!--{/script}x"},
    {"ScriptShortComment", u"<script><!--><script></script>x", u"{script}<!--><script>{/script}x"},
    {"Plaintext", u"<plaintext><b></plaintext>", u"{plaintext}<b></plaintext>"},
    {"NullInText", {u"a\0b", 3}, u"a{0}b"},
    {"NullInRawText", {u"<xmp>\0</xmp>", 12}, u"{xmp}\uFFFD{/xmp}"},
    {"NullInAttribute", {u"<a b='\0'>", 9}, u"{a b=\uFFFD}"},
    {"CarriageReturnInAttribute", u"<a b='1\r\n2\r3'>", u"{a b=1\n2\n3}"},
    {"NameThatIsNone", u"<o:p>x</o:p><x-y>", u"{o:p}x{/o:p}{x-y}"},
};

class HTMLTokens : public testing::TestWithParam<Row> {};
TEST_P(HTMLTokens, Give) { EXPECT_EQ(NSString(tokensOf(GetParam().in)), NSString(GetParam().out)); }
INSTANTIATE_TEST_SUITE_P(Rows, HTMLTokens, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(HTMLTokenizer, ForeignContentHasCDataAndNoRawText) {
  EXPECT_EQ(tokensOf(u"<![CDATA[a<b>]]>c", true), u"a<b>c");
  EXPECT_EQ(tokensOf(u"<style><b></style>", true), u"{style}{b}{/style}");
}

TEST(HTMLTokenizer, TokensCoverEveryShortTextWithoutGaps) {
  const std::u16string_view pieces[] = {u"<",    u"/",  u">", u"a", u"!--",    u"-",     u"&",
                                        u"amp;", u"\"", u"=", u" ", u"script", u"<style"};
  std::vector<std::u16string> texts{u""};
  for (size_t from = 0, length = 1; length <= 4; ++length) {
    const size_t to = texts.size();
    for (size_t i = from; i < to; ++i) {
      for (const auto piece : pieces) texts.push_back(texts[i] + std::u16string(piece));
    }
    from = to;
  }
  for (const std::u16string& text : texts) {
    Tokenizer tokenizer(text);
    size_t at = 0;
    for (;;) {
      const Token& token = tokenizer.next();
      ASSERT_EQ(token.from, at) << NSString(text);
      if (token.kind == Token::Kind::end) break;
      ASSERT_GT(token.to, token.from) << NSString(text);
      at = token.to;
    }
    ASSERT_EQ(at, text.size()) << NSString(text);
  }
}

TEST(HTMLTags, EveryNameIsFoundInEitherCase) {
  for (uint16_t i = 1; i < static_cast<uint16_t>(Tag::count); ++i) {
    const Tag tag = static_cast<Tag>(i);
    std::u16string name(nameOf(tag));
    EXPECT_EQ(tagNamed(name), tag) << NSString(name);
    for (char16_t& c : name) c = c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 0x20) : c;
    EXPECT_EQ(tagNamed(name), tag) << NSString(name);
  }
  EXPECT_EQ(tagNamed(u"nosuch"), Tag::unknown);
  EXPECT_EQ(tagNamed(u""), Tag::unknown);
}

}  // namespace
}  // namespace kelspar::html
