#include "platform/richtext/html_importer.h"

#include "platform/richtext/html_import.h"

namespace kelspar {

namespace {

NSString fromUTF16(std::span<const uint8_t> bytes, bool isLittle) {
  return NSString::build(bytes.size() / 2, [&](char16_t* units) {
    for (size_t i = 0; i < bytes.size() / 2; ++i) {
      const uint8_t low = bytes[2 * i + (isLittle ? 0 : 1)];
      const uint8_t high = bytes[2 * i + (isLittle ? 1 : 0)];
      units[i] = static_cast<char16_t>(high << 8 | low);
    }
  });
}

NSString decoded(const NSData& html) {
  std::string_view bytes = html.chars();
  const bool isLittle = bytes.starts_with("\xFF\xFE");
  if (isLittle || bytes.starts_with("\xFE\xFF")) return fromUTF16(html.span().subspan(2), isLittle);
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return NSString(bytes);
}

}  // namespace

NSString plainTextFromHTML(const NSString& html) {
  if (!html) return nil;
  return html::Import(html.view(), nullptr).plainText();
}

NSString plainTextFromHTML(const NSData& html) {
  if (!html) return nil;
  return plainTextFromHTML(decoded(html));
}

NSAttributedString attributedTextFromHTML(const NSString& html, const HTMLImportOptions& options) {
  if (!html) return nil;
  return html::Import(html.view(), &options).attributedText();
}

NSAttributedString attributedTextFromHTML(const NSData& html, const HTMLImportOptions& options) {
  if (!html) return nil;
  return attributedTextFromHTML(decoded(html), options);
}

NSAttributedString NSAttributedString::initWithHTML(const NSData& html) {
  return attributedTextFromHTML(html);
}

}  // namespace kelspar
