#include "platform/richtext/html_importer.h"

#include "platform/richtext/html_import.h"

namespace kelspar {

NSString plainTextFromHTML(const NSString& html) {
  if (!html) return nil;
  return NSString(html::Import(html.view()).run().text);
}

NSString plainTextFromHTML(const NSData& html) {
  if (!html) return nil;
  std::string_view bytes = html.chars();
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return plainTextFromHTML(NSString(bytes));
}

}  // namespace kelspar
