// Escaping and unescaping of lines that an mbox reader would take for a message's first
// (">*From "). Line by line: what stands behind a line's first units is copied as a block.
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/foundation/scan.h"

namespace kelspar::StringKelsparNSStringAdditions {

namespace {

// Calls `each(start of line, first unit behind the ">" run)` for every line that begins with any
// number of ">" and "From ".
template <class Each>
void forEachFromLine(std::u16string_view text, Each each) {
  size_t line = 0;
  while (line < text.size()) {
    size_t word = line;
    while (word < text.size() && text[word] == u'>') ++word;
    if (text.substr(word, 5) == u"From ") each(line, word);
    // A CR that a LF follows ends its line twice; the empty line between holds nothing.
    line = scan::findAny(text, word, u'\n', u'\r') + 1;
  }
}

}  // namespace

NSString escapeFromLines(const NSString& receiver) {
  if (!receiver) return u""_ns;
  const auto text = receiver.view();
  std::u16string escaped;
  size_t from = 0;
  forEachFromLine(text, [&](size_t line, size_t) {
    if (from == 0) escaped.reserve(text.size() + 16);
    escaped.append(text.substr(from, line - from)).push_back(u'>');
    from = line;
  });
  if (escaped.empty()) return receiver;
  escaped.append(text.substr(from));
  return NSString(std::move(escaped));
}

NSString unescapeFromLines(const NSString& receiver) {
  if (!receiver) return u""_ns;
  const auto text = receiver.view();
  std::u16string unescaped;
  size_t from = 0;
  forEachFromLine(text, [&](size_t line, size_t word) {
    if (word == line) return;
    if (from == 0) unescaped.reserve(text.size());
    unescaped.append(text.substr(from, line - from));
    from = line + 1;
  });
  if (from == 0) return receiver;
  unescaped.append(text.substr(from));
  return NSString(std::move(unescaped));
}

}  // namespace kelspar::StringKelsparNSStringAdditions
