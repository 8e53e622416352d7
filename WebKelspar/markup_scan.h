// Case-insensitive searches and replacements in markup, as the expressions that they stand for make
// them: letters fold as ICU folds them. Internal to the unit.
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/scan.h"

namespace kelspar::markup {

using Text = std::u16string_view;

[[nodiscard]] constexpr char16_t fold(char16_t c) {
  if (c >= u'A' && c <= u'Z') return static_cast<char16_t>(c + 32);
  if (c == 0x017F) return u's';
  return c == 0x212A ? u'k' : c;
}

// Where `word` (lower case) ends in the text when it stands at `at` in any case, else npos. The
// ligatures U+FB05 and U+FB06 fold to "st".
inline size_t endOfWord(Text text, size_t at, Text word) {
  for (size_t i = 0; i < word.size(); ++i, ++at) {
    if (at >= text.size()) return Text::npos;
    if (fold(text[at]) == word[i]) continue;
    if ((text[at] != 0xFB05 && text[at] != 0xFB06) || word.substr(i, 2) != u"st") {
      return Text::npos;
    }
    ++i;
  }
  return at;
}

// Every part that `endOf(at)` recognises where `first` stands, replaced; an end of npos is none.
template <class EndOf>
void replaceParts(std::u16string& units, char16_t first, Text replacement, EndOf endOf) {
  const Text text = units;
  std::u16string out;
  size_t done = 0;
  for (size_t at = 0; (at = scan::findAny(text, at, first)) < text.size();) {
    const size_t end = endOf(text, at);
    if (end == Text::npos) {
      ++at;
      continue;
    }
    if (done == 0) out.reserve(text.size());
    out.append(text.substr(done, at - done)).append(replacement);
    done = at = end;
  }
  if (done == 0) return;
  out.append(text.substr(done));
  units = std::move(out);
}

inline void replaceWord(std::u16string& units, Text word, Text replacement) {
  replaceParts(units, word.front(), replacement,
               [word](Text text, size_t at) { return endOfWord(text, at, word); });
}

// A search that has once found nothing finds nothing further on.
class ForwardSearch {
 public:
  size_t find(Text text, Text needle, size_t from) {
    if (isOver_) return Text::npos;
    const size_t at = text.find(needle, from);
    isOver_ = at == Text::npos;
    return at;
  }

 private:
  bool isOver_ = false;
};

// Tags whose names begin with `name`; opening ones only, or closing ones as well.
inline void replaceTags(std::u16string& units, Text name, bool closingToo) {
  ForwardSearch bracket;
  replaceParts(units, u'<', u"\n", [&](Text text, size_t at) {
    const size_t slash = closingToo && text.substr(at + 1, 1) == u"/" ? 1 : 0;
    const size_t nameEnd = endOfWord(text, at + 1 + slash, name);
    if (nameEnd == Text::npos) return nameEnd;
    const size_t end = bracket.find(text, u">", nameEnd);
    return end == Text::npos ? end : end + 1;
  });
}

}  // namespace kelspar::markup
