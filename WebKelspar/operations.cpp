// The unit's operations, as hosts call them.
#include "WebKelspar/WebKelspar.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/runtime/regex_value.h"
#include "platform/runtime/registry.h"

namespace kelspar {

namespace {

void enterStringAdditions(OperationRegistry& registry) {
  namespace Category = WebKelsparNSStringAdditions;
  auto string = registry.forCategory("WebKelsparNSStringAdditions", "NSString");
  string.add("getCharacterEncodingFromMime", &Category::getCharacterEncodingFromMime);
  string.add("quotedPrintableDecodeWithEncoding:", &Category::quotedPrintableDecodeWithEncoding);
  string.add("forceQuotedPrintableDecode", &Category::forceQuotedPrintableDecode);
  string.add("base64DecodeWithEncoding:", &Category::base64DecodeWithEncoding);
  string.add("createQuotedPrintable", &Category::createQuotedPrintable);
  string.add("decodeMimeHeader", &Category::decodeMimeHeader);
  string.add("decodeHTMLFormattingTags", &Category::decodeHTMLFormattingTags);
  string.add("stringFromHTML", &Category::stringFromHTML);
  string.add("stringByStrippingHTML", &Category::stringByStrippingHTML);
  string.add("stringByStrippingHTMLFallback", &Category::stringByStrippingHTMLFallback);
  string.add("stringByConvertingToHTML", &Category::stringByConvertingToHTML);
  string.add("stringByConvertingToHTMLWithWrapAtColumn:",
             &Category::stringByConvertingToHTMLWithWrapAtColumn);
  string.add("stringByConvertingToHTMLWithPreTag", &Category::stringByConvertingToHTMLWithPreTag);
  string.add("stringByConvertingToHTMLWithPreTagAndWrapAtColumn:",
             &Category::stringByConvertingToHTMLWithPreTagAndWrapAtColumn);
  string.add("validateEmailAddress", &Category::validateEmailAddress);
  string.add("cleanEmailAddress", &Category::cleanEmailAddress);
  string.add("buildEmailAddressURL", &Category::buildEmailAddressURL);
}

}  // namespace

KELSPAR_OPERATIONS(WebKelspar) {
  enterStringAdditions(registry);
  using Class = WebKelspar;
  auto web = registry.forClass("WebKelspar");
  web.add("imageLocationsFromRTF:", &Class::imageLocationsFromRTF);
  web.add("htmlFromRTFData:", &Class::htmlFromRTFData);
  web.add("getCharset:forHTML:withSize:andPattern:", &Class::getCharset).sized(1, 3);
  web.add("getJSONArrayFromURL:", &Class::getJSONArrayFromURL);
}

}  // namespace kelspar
