// The complete de-encapsulation of HTML from RTF, and what has to be done to show the result.
#include <algorithm>

#include "MailKelspar/MailKelspar.h"
#include "platform/foundation/ascii.h"
#include "platform/richtext/rtf_reader.h"

namespace kelspar {

namespace {

bool startsWithIgnoringCase(std::u16string_view text, std::u16string_view lowerCase) {
  return text.size() >= lowerCase.size() &&
         std::equal(lowerCase.begin(), lowerCase.end(), text.begin(),
                    [](char16_t l, char16_t c) { return l == ascii::lower(c); });
}

bool isLabelCharacter(char16_t c) {
  return (c >= u'0' && c <= u'9') || ((c | 0x20) >= u'a' && (c | 0x20) <= u'z') || c == u'-' ||
         c == u'_' || c == u':' || c == u'.' || c == u'+';
}

// The label behind "charset=" in a meta tag's text; empty at its end when there is none.
std::u16string_view charsetLabel(std::u16string_view tag) {
  for (size_t at = 0; (at = tag.find(u'=', at)) != tag.npos; ++at) {
    size_t wordEnd = at;
    while (wordEnd > 0 && (tag[wordEnd - 1] == u' ' || tag[wordEnd - 1] == u'\t')) --wordEnd;
    if (wordEnd < 7 || !startsWithIgnoringCase(tag.substr(wordEnd - 7), u"charset")) continue;
    size_t from = at + 1;
    while (from < tag.size() && (tag[from] == u' ' || tag[from] == u'"' || tag[from] == u'\'')) {
      ++from;
    }
    size_t to = from;
    while (to < tag.size() && isLabelCharacter(tag[to])) ++to;
    return tag.substr(from, to - from);
  }
  return tag.substr(tag.size());
}

}  // namespace

NSString MailKelspar::htmlFromEncapsulatedRTF(const NSData& rtf) {
  return encapsulatedHTMLFromRTF(rtf);
}

NSString MailKelspar::htmlDeclaringUTF8(const NSString& html) {
  const auto text = html.view();
  std::u16string result;
  size_t copied = 0;
  for (size_t at = 0; (at = text.find(u'<', at)) != text.npos; ++at) {
    if (!startsWithIgnoringCase(text.substr(at), u"<meta")) continue;
    const size_t end = std::min(text.find(u'>', at), text.size());
    const auto label = charsetLabel(text.substr(at, end - at));
    if (!label.empty()) {
      const auto from = static_cast<size_t>(label.data() - text.data());
      result.append(text.substr(copied, from - copied)).append(u"utf-8");
      copied = from + label.size();
    }
    if (end == text.size()) break;
    at = end;
  }
  if (copied == 0) return html;
  return NSString(std::move(result.append(text.substr(copied))));
}

}  // namespace kelspar
