// Encoded words of headers.
#include <string>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_words.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

using Text = std::u16string_view;

// Unicode's White_Space.
constexpr bool isSpace(char16_t c) {
  return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
         (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
         c == 0x3000;
}

// The text of an encoded word without its marks; empty when it is to be dropped.
NSString decodeWord(Text word) {
  const size_t first = word.find(u'?');
  if (first == Text::npos) return nil;
  const size_t second = word.find(u'?', first + 1);
  if (second == Text::npos || word.find(u'?', second + 1) != Text::npos) return nil;
  const Text letter = word.substr(first + 1, second - first - 1);
  const Text text = word.substr(second + 1);
  const bool isBase64 = letter == u"B" || letter == u"b";
  if (!isBase64 && letter != u"Q" && letter != u"q") return nil;
  const NSStringEncoding encoding = encodingOfLabel(word.substr(0, first));
  return isBase64 ? textOfBase64(text, encoding) : textOfQuotedPrintable(text, encoding);
}

}  // namespace

NSString decodeMimeHeader(const NSString& receiver) {
  if (receiver.isEmpty()) return u""_ns;
  const Text text = receiver.view();
  std::u16string out;
  size_t done = 0;
  bool isFound = false;
  for (size_t from = 0;;) {
    const size_t start = text.find(u"=?", from);
    if (start == Text::npos) break;
    // The first closing mark of this line with white space or the end behind it.
    size_t end = start + 2;
    for (; end < text.size() && !isLineEnd(text[end]); ++end) {
      if (text[end] == u'?' && end + 1 < text.size() && text[end + 1] == u'=' &&
          (end + 2 == text.size() || isSpace(text[end + 2]))) {
        break;
      }
    }
    from = end;  // no other start before the line's end could do better
    if (end == text.size() || text[end] != u'?') continue;
    isFound = true;
    out.append(text.substr(done, start - done));
    out.append(decodeWord(text.substr(start + 2, end - start - 2)).view());
    done = from = end + 2;
  }
  if (!isFound) return receiver;
  out.append(text.substr(done));
  return NSString(std::move(out));
}

}  // namespace kelspar::WebKelsparNSStringAdditions
