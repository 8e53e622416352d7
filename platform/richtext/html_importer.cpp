#include "platform/richtext/html_importer.h"

#include "platform/richtext/html_charset.h"
#include "platform/richtext/html_import.h"

namespace kelspar {

NSString plainTextFromHTML(const NSString& html) {
  if (!html) return nil;
  html::Import import(html.view(), nullptr);
  if (import.run()) return import.plainText();
  const auto sheet = html::StyleSheet::ofPage(html.view(), /*layoutOnly=*/true);
  html::Import again(html.view(), nullptr, &sheet);
  (void)again.run();
  return again.plainText();
}

NSString plainTextFromHTML(const NSData& html) {
  if (!html) return nil;
  return plainTextFromHTML(html::decodedPage(html));
}

NSAttributedString attributedTextFromHTML(const NSString& html, const HTMLImportOptions& options) {
  if (!html) return nil;
  html::Import import(html.view(), &options);
  if (import.run()) return import.attributedText();
  const auto sheet = html::StyleSheet::ofPage(html.view(), /*layoutOnly=*/false);
  html::Import again(html.view(), &options, &sheet);
  (void)again.run();
  return again.attributedText();
}

NSAttributedString attributedTextFromHTML(const NSData& html, const HTMLImportOptions& options) {
  if (!html) return nil;
  return attributedTextFromHTML(html::decodedPage(html), options);
}

NSAttributedString NSAttributedString::initWithHTML(const NSData& html) {
  return attributedTextFromHTML(html);
}

}  // namespace kelspar
