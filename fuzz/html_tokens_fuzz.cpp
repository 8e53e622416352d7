// The tokens of any units cover them without a gap, and the views in them point into the input.
#include <cstdint>
#include <cstdlib>

#include "platform/foundation/NSString.h"
#include "platform/richtext/html_tokenizer.h"

using namespace kelspar;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

bool isInside(std::u16string_view part, std::u16string_view whole) {
  return part.empty() ||
         (part.data() >= whole.data() && part.data() + part.size() <= whole.data() + whole.size());
}

void check(std::u16string_view html, bool foreign) {
  html::Tokenizer tokenizer(html);
  tokenizer.setForeignContent(foreign);
  size_t at = 0;
  for (;;) {
    const html::Token& token = tokenizer.next();
    require(token.from == at);
    if (token.kind == html::Token::Kind::end) break;
    require(token.to > token.from && token.to <= html.size());
    at = token.to;
    const auto source = html.substr(token.from, token.to - token.from);
    if (token.kind == html::Token::Kind::text) {
      require(token.isReference || token.text == u"\uFFFD" || isInside(token.text, source));
      require(!token.isReference || source[0] == u'&');
    }
    if (token.kind != html::Token::Kind::startTag && token.kind != html::Token::Kind::endTag) {
      continue;
    }
    require(!token.text.empty() && isInside(token.text, source));
    require(source.front() == u'<' && source.back() == u'>');
    require(token.tag == html::tagNamed(token.text));
    for (const html::Attribute& attribute : tokenizer.attributes()) {
      require(!attribute.name.empty() && isInside(attribute.name, source));
      require(isInside(attribute.raw, source));
      require(attribute.value().size() <= attribute.raw.size());
    }
  }
  require(at == html.size());
  require(tokenizer.next().kind == html::Token::Kind::end);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSString html(std::string_view(reinterpret_cast<const char*>(bytes), size));
  check(html, false);
  check(html, true);
  return 0;
}
