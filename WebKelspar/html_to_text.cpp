// HTML as plain text by the importer.
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/markup_scan.h"
#include "platform/foundation/utf8.h"
#include "platform/richtext/html_importer.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

using Text = std::u16string_view;

// Runs of blanks and tabs as one blank, three line feeds or more as two, lines trimmed, no line
// feeds at the ends.
std::u16string tidied(Text text) {
  const NSCharacterSet blanks = NSCharacterSet::whitespace();
  std::u16string out;
  out.reserve(text.size());
  size_t lineStart = 0, feeds = 0;
  const auto endLine = [&] {
    while (out.size() > lineStart && blanks.contains(out.back())) out.pop_back();
  };
  for (const char16_t c : text) {
    if (c == u'\n') {
      endLine();
      // Blanks between them keep line feeds apart, though they go afterwards.
      if (++feeds <= 2 && !out.empty()) out.push_back(c);
      lineStart = out.size();
      continue;
    }
    feeds = 0;
    const char16_t unit = c == u'\t' ? u' ' : c;
    const bool isLeading = out.size() == lineStart && blanks.contains(unit);
    if (isLeading || (unit == u' ' && out.back() == u' ')) continue;
    out.push_back(unit);
  }
  endLine();
  out.resize(out.find_last_not_of(u'\n') + 1);
  return out;
}

}  // namespace

NSString stringFromHTML(const NSString& receiver) {
  if (receiver.isEmpty()) return u""_ns;
  NSString decoded = quotedPrintableDecodeWithEncoding(receiver, NSUTF8StringEncoding);
  std::u16string html((decoded ? decoded : receiver).view());
  decoded = nil;
  markup::replaceWord(html, u"</p>", u"\n\n");
  markup::replaceWord(html, u"</div>", u"\n");
  markup::replaceTags(html, u"br", false);
  const NSString page(std::move(html));
  if (!utf8::isWellFormed(page)) return u""_ns;
  return plainTextFromHTML(page);
}

NSString stringByStrippingHTML(const NSString& receiver) {
  if (receiver.isEmpty() || !utf8::isWellFormed(receiver)) return u""_ns;
  const NSString text = plainTextFromHTML(receiver);
  return text ? NSString(tidied(text.view())) : stringByStrippingHTMLFallback(receiver);
}

}  // namespace kelspar::WebKelsparNSStringAdditions
