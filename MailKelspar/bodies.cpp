// Which body shows a message best, and the text of HTML.
#include <algorithm>

#include "MailKelspar/MailKelspar.h"
#include "platform/richtext/html_importer.h"
#include "platform/richtext/rtf_reader.h"

namespace kelspar {

namespace {

bool hasWords(const NSString& text) {
  return std::ranges::any_of(text.view(), [](char16_t c) {
    return c > u' ' && c != u'\u00A0' && c != u'\uFEFF' && c != u'\u200B' && c != u'\u2028';
  });
}

bool htmlShowsSomething(const NSString& html) {
  return hasWords(plainTextFromHTML(html)) || html.rangeOfString(u"<img").length > 0 ||
         html.rangeOfString(u"<IMG").length > 0;
}

// "\fromtext" in the document's header: the store made the RTF from the plain body.
bool isMadeFromText(const NSData& rtf) {
  constexpr size_t kHead = 500;
  return rtf.chars().substr(0, kHead).find("\\fromtext") != std::string_view::npos;
}

}  // namespace

NSString MailKelspar::textFromHTML(const NSString& html) { return plainTextFromHTML(html); }

NSString MailKelspar::bestBody(const NSString& text, const NSString& html, const NSData& rtf) {
  const bool textHasWords = hasWords(text);
  if (html && htmlShowsSomething(html)) return u"html";
  if (rtf && !isMadeFromText(rtf)) {
    if (const NSString encapsulated = encapsulatedHTMLFromRTF(rtf)) {
      if (!html && htmlShowsSomething(encapsulated)) return u"rtf";
    } else if (hasWords(plainTextFromRTF(rtf))) {
      return u"rtf";
    }
  }
  if (textHasWords) return u"text";
  if (rtf && hasWords(plainTextFromRTF(rtf))) return u"rtf";
  if (html) return u"html";
  if (text) return u"text";
  return rtf ? NSString(u"rtf") : NSString();
}

}  // namespace kelspar
