#include "platform/richtext/html_importer.h"

#include "platform/richtext/html_import.h"

namespace kelspar {

namespace {

NSString decoded(const NSData& html) {
  std::string_view bytes = html.chars();
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

}  // namespace kelspar
