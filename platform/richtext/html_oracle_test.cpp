// The tokenizer against another HTML5 parser, over the corpus and cases of our own.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "platform/foundation/NSString.h"
#include "platform/richtext/html_oracle.h"
#include "platform/richtext/html_tokenizer.h"
#include "platform/richtext/html_writer.h"

namespace kelspar {
namespace {

using html::Token;
using oracle::Piece;

// Line ends as the parser's input stream has them (WHATWG HTML, 13.2.3.5).
std::string withPlainLineEnds(std::string_view text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      result += text[i];
    } else if (i + 1 == text.size() || text[i + 1] != '\n') {
      result += '\n';
    }
  }
  return result;
}

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
  return result;
}

// Our tokens of the same source, by the byte that they begin at.
std::map<size_t, Piece> tokensOf(const NSString& html) {
  std::map<size_t, Piece> tokens;
  html::Tokenizer tokenizer(html.view());
  size_t bytes = 0, units = 0;  // the same place
  const auto bytesAt = [&](size_t at) {
    bytes += NSString(html.view().substr(units, at - units)).utf8().size();
    units = at;
    return bytes;
  };
  size_t foreign = 0;
  for (;;) {
    const Token& token = tokenizer.next();
    if (token.kind == Token::Kind::end) return tokens;
    Piece piece{Piece::Kind::comment, bytesAt(token.from), 0, NSString(token.text).utf8(), {}};
    piece.to = bytesAt(token.to);
    const bool isRoot = token.tag == html::Tag::svg || token.tag == html::Tag::math;
    switch (token.kind) {
      case Token::Kind::text:
        piece.kind = Piece::Kind::text;
        break;
      case Token::Kind::startTag:
        piece.kind = Piece::Kind::startTag;
        if (isRoot && !token.selfClosing) ++foreign;
        for (const html::Attribute& attribute : tokenizer.attributes()) {
          const std::string name = lower(NSString(attribute.name).utf8());
          const auto same = [&](const auto& other) { return other.first == name; };
          if (std::ranges::any_of(piece.attributes, same)) continue;
          piece.attributes.emplace_back(name, NSString(attribute.value()).utf8());
        }
        break;
      case Token::Kind::endTag:
        piece.kind = Piece::Kind::endTag;
        if (isRoot && foreign > 0) --foreign;
        break;
      case Token::Kind::comment:
        break;
      default:
        continue;
    }
    if (piece.kind == Piece::Kind::startTag || piece.kind == Piece::Kind::endTag) {
      piece.text = lower(piece.text);
    }
    tokenizer.setForeignContent(foreign > 0);
    tokens.emplace(piece.from, std::move(piece));
  }
}

// Every tag, text and comment in the other parser's tree is a token of ours, in full.
void expectSameTokens(const NSString& html) {
  const oracle::Document document(html.utf8());
  const std::map<size_t, Piece> tokens = tokensOf(html);
  for (const Piece& piece : document.pieces()) {
    const std::string_view source =
        std::string_view(document.source()).substr(piece.from, piece.to - piece.from);
    if (piece.kind == Piece::Kind::text) {
      // Several tokens of ours: references, and text around tags that the tree rules drop.
      std::string text;
      auto token = tokens.lower_bound(piece.from);
      if (token != tokens.begin() && std::prev(token)->second.to > piece.from) {
        const Piece& before = std::prev(token)->second;  // a <pre>'s first line end is dropped
        if (before.kind == Piece::Kind::text) text = before.text.substr(piece.from - before.from);
      }
      for (; token != tokens.end() && token->first < piece.to; ++token) {
        if (token->second.kind == Piece::Kind::text) text += token->second.text;
      }
      // Spaces and other text are two nodes in some places, and both have the whole source then.
      ASSERT_EQ(withPlainLineEnds(text).substr(0, piece.text.size()), piece.text) << source;
      continue;
    }
    size_t from = piece.from;
    while (document.source().compare(from, 3, "</>") == 0) from += 3;  // nothing, taken along
    const auto token = tokens.find(from);
    ASSERT_NE(token, tokens.end()) << source;
    ASSERT_EQ(token->second.kind, piece.kind) << source;
    ASSERT_EQ(withPlainLineEnds(token->second.text), piece.text) << source;
    ASSERT_EQ(token->second.attributes, piece.attributes) << source;
  }
}

struct Row {
  const char* name;
  std::u16string_view html;
};
constexpr Row kRows[] = {
    {"Text", u"a &amp; b &notit; &not; &#x41;&#65 &#0;&#x80; &nosuch; &"},
    {"Tags", u"<p>a<B>b</b><br/><IMG src=a alt='b c' ALT=d \"e\" f=\"g&amp;h\">"},
    {"AttributesWithoutSpace", u"<a href=\"x\"class='y'id=z>a</a>"},
    {"ReferencesInAttributes", u"<a href='?a&lt=b&lt;c&copy=d&copy;e&#65;'>a</a>"},
    {"Comments", u"a<!-- b --><!--><!---><!-- c --!><!-- d -- e ---><!-x><?y><!z></ >b"},
    {"UnclosedComment", u"a<!-- b"},
    {"UnclosedTag", u"a<b c=\"d"},
    {"LessThan", u"a < b <3 <= </3 c"},
    {"Script", u"<script>a<b>'</scr'<!--<script></script>--></script>b"},
    {"Style", u"<style>a</b>&amp;</style>b"},
    {"TextArea", u"<textarea>\na<b>&amp;</textarea>b"},
    {"Title", u"<title>a<b>&lt;</title>b"},
    {"PlainText", u"<plaintext>a</plaintext>&amp;"},
    {"CarriageReturns", u"a\r\nb\rc<p title='a\r\nb\rc'>"},
    {"SVG", u"<svg viewBox='0 0 1 1'><text>a<![CDATA[x<y]]></text></svg>"},
    {"Beyond", u"<p>\U0001F600 \u00E9<i title='\U0001F600'>\u4E2D</i>"},
};
class TokensLikeTheOracle : public testing::TestWithParam<Row> {};
TEST_P(TokensLikeTheOracle, Are) { expectSameTokens(NSString(GetParam().html)); }
INSTANTIATE_TEST_SUITE_P(Rows, TokensLikeTheOracle, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

// Every text over the pieces that the tokenizer branches on.
TEST(TokensLikeTheOracle, OverAllShortTexts) {
  constexpr std::u16string_view kPieces[] = {u"<",  u"/", u">",  u"!--", u"-",
                                             u"a ", u"=", u"\"", u"&lt"};
  constexpr size_t kMost = 5;
  for (size_t length = 1; length <= kMost; ++length) {
    std::vector<size_t> at(length);
    for (bool more = true; more;) {
      std::u16string html = u"<p>";
      for (const size_t piece : at) html += kPieces[piece];
      expectSameTokens(NSString(html));
      ASSERT_FALSE(testing::Test::HasFailure()) << NSString(html);
      more = false;
      for (size_t i = 0; i < length && !more; ++i) {
        at[i] = (at[i] + 1) % std::size(kPieces);
        more = at[i] != 0;
      }
    }
  }
}

#ifdef KELSPAR_CORPUS
// Without controls: the other parser has U+FFFD for them.
NSString contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const NSString text(std::string{std::istreambuf_iterator<char>(file), {}});
  std::u16string units(text.view());
  std::ranges::replace_if(
      units, [](char16_t c) { return (c < 0x20 && (c < u'\t' || c > u'\r')) || c == 0x7F; }, u'?');
  return NSString(std::move(units));
}

TEST(TokensLikeTheOracle, OverTheCorpus) {
  size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KELSPAR_CORPUS "/html")) {
    SCOPED_TRACE(entry.path());
    expectSameTokens(contentsOf(entry.path()));
    ++files;
  }
  EXPECT_GT(files, 200u);
}

TEST(WrittenHTML, HasNoParseErrorOverTheCorpus) {
  for (const char* wrong :
       {"</div>", "<i a=b a=c>", "<table><b>", "<p title=\"a\"b>", "&nosuch;"}) {
    const std::string head = "<!DOCTYPE html><title></title><p>a";
    ASSERT_GT(oracle::Document(head + wrong).errors(), 0u) << wrong;
  }
  ASSERT_EQ(oracle::Document("<!DOCTYPE html><title></title><p>a").errors(), 0u);
  size_t documents = 0;
  for (const char* folder : {"/rtf", "/lzfu"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(KELSPAR_CORPUS + std::string(folder))) {
      if (entry.path().extension() != ".rtf") continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const NSAttributedString text = NSAttributedString::initWithRTF(
          NSData(std::string{std::istreambuf_iterator<char>(file), {}}));
      if (!text) continue;
      const oracle::Document document(htmlFromAttributedString(text).utf8());
      EXPECT_EQ(document.errors(), 0u) << entry.path();
      ++documents;
    }
  }
  EXPECT_GT(documents, 300u);
}
#endif

}  // namespace
}  // namespace kelspar
