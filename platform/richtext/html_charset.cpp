#include "platform/richtext/html_charset.h"

#include "platform/richtext/html_tokenizer.h"
#include "platform/unicode/charset_labels.h"

namespace kelspar::html {

namespace {

// "text/html; charset='utf-8'" (WHATWG HTML, "extracting a character encoding").
std::u16string_view charsetIn(std::u16string_view content) {
  constexpr std::u16string_view kName = u"charset", kSpace = u" \t\n\f\r";
  for (size_t at = 0; at + kName.size() <= content.size(); ++at) {
    if (!equalsIgnoringCase(content.substr(at, kName.size()), kName)) continue;
    size_t from = content.find_first_not_of(kSpace, at + kName.size());
    if (from == content.npos || content[from] != u'=') continue;
    from = content.find_first_not_of(kSpace, from + 1);
    if (from == content.npos) return {};
    const char16_t mark = content[from];
    if (mark == u'"' || mark == u'\'') {
      const size_t end = content.find(mark, from + 1);
      return end == content.npos ? std::u16string_view() : content.substr(from + 1, end - from - 1);
    }
    return content.substr(from, content.find_first_of(u" \t\n\f\r;", from) - from);
  }
  return {};
}

NSString labelOf(const Tokenizer& meta) {
  if (const Attribute* const charset = meta.attribute(u"charset")) {
    return NSString(charset->value());
  }
  const Attribute* const pragma = meta.attribute(u"http-equiv");
  const Attribute* const content = meta.attribute(u"content");
  if (!pragma || !content || !equalsIgnoringCase(pragma->value(), u"content-type")) return nil;
  const std::u16string value = content->value();
  return NSString(charsetIn(value));
}

NSString lowerCase(const NSString& label) {
  std::u16string text(label.view());
  for (char16_t& c : text) c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
  return NSString(std::move(text));
}

NSString textOfUTF16(std::span<const uint8_t> bytes, bool isLittle) {
  return NSString::build(bytes.size() / 2, [&](char16_t* units) {
    for (size_t i = 0; i < bytes.size() / 2; ++i) {
      const uint8_t low = bytes[2 * i + (isLittle ? 0 : 1)];
      const uint8_t high = bytes[2 * i + (isLittle ? 1 : 0)];
      units[i] = static_cast<char16_t>(high << 8 | low);
    }
  });
}

}  // namespace

NSString declaredCharset(const NSData& page) {
  constexpr size_t kPrescan = 65'536;
  const std::string_view bytes = page.chars();
  if (bytes.starts_with("\xEF\xBB\xBF")) return u"utf-8";
  if (bytes.starts_with("\xFF\xFE")) return u"utf-16le";
  if (bytes.starts_with("\xFE\xFF")) return u"utf-16be";
  std::u16string head;
  for (const char c : bytes.substr(0, kPrescan)) head.push_back(static_cast<uint8_t>(c));
  Tokenizer tokens(head);
  for (;;) {
    const Token& token = tokens.next();
    if (token.kind == Token::Kind::end) return nil;
    if (token.kind != Token::Kind::startTag || token.tag != Tag::meta) continue;
    const NSString label = labelOf(tokens);
    if (!label) continue;
    const NSString encoding = encodingOfCharsetLabel(label);
    if (encoding.hasPrefix(u"UTF-16")) return u"utf-8";
    if (encoding) return lowerCase(label);
  }
}

NSString decodedPage(const NSData& page) {
  if (!page) return nil;
  std::string_view bytes = page.chars();
  const bool isLittle = bytes.starts_with("\xFF\xFE");
  if (isLittle || bytes.starts_with("\xFE\xFF")) {
    return textOfUTF16(page.span().subspan(2), isLittle);
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  if (NSString text = NSString::fromUTF8(bytes)) return text;
  const NSString label = declaredCharset(page);
  return label ? textUnderCharsetLabel(page, label) : NSString(bytes);
}

}  // namespace kelspar::html
