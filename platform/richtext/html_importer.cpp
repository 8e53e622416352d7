#include "platform/richtext/html_importer.h"

#include "platform/richtext/html_charset.h"
#include "platform/richtext/html_import.h"

namespace kelspar {

NSString plainTextFromHTML(const NSString& html) {
  if (!html) return nil;
  return html::Import(html.view(), nullptr).plainText();
}

NSString plainTextFromHTML(const NSData& html) {
  if (!html) return nil;
  return plainTextFromHTML(html::decodedPage(html));
}

NSAttributedString attributedTextFromHTML(const NSString& html, const HTMLImportOptions& options) {
  if (!html) return nil;
  return html::Import(html.view(), &options).attributedText();
}

NSAttributedString attributedTextFromHTML(const NSData& html, const HTMLImportOptions& options) {
  if (!html) return nil;
  return attributedTextFromHTML(html::decodedPage(html), options);
}

NSAttributedString NSAttributedString::initWithHTML(const NSData& html) {
  return attributedTextFromHTML(html);
}

}  // namespace kelspar
