// HTML as plain text: by the importer, and by a scanner that knows tags and 16 entities only.
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/richtext/html_importer.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

using Text = std::u16string_view;

constexpr Text kBlockTags[] = {u"p",  u"div", u"br", u"h1", u"h2", u"h3",         u"h4",
                               u"h5", u"h6",  u"li", u"ul", u"ol", u"blockquote", u"pre"};

struct EntityRow {
  Text entity, text;
};
// In the order in which they are replaced: the escaped ampersand first, so entities decode twice.
constexpr EntityRow kEntities[] = {
    {u"&amp;", u"&"},        {u"&apos;", u"'"},        {u"&copy;", u"\u00A9"},
    {u"&gt;", u">"},         {u"&hellip;", u"\u2026"}, {u"&ldquo;", u"\u201C"},
    {u"&lsquo;", u"\u2018"}, {u"&lt;", u"<"},          {u"&mdash;", u"\u2014"},
    {u"&nbsp;", u" "},       {u"&ndash;", u"\u2013"},  {u"&quot;", u"\""},
    {u"&rdquo;", u"\u201D"}, {u"&reg;", u"\u00AE"},    {u"&rsquo;", u"\u2019"},
    {u"&trade;", u"\u2122"},
};

constexpr char16_t fold(char16_t c) {
  if (c >= u'A' && c <= u'Z') return static_cast<char16_t>(c + 32);
  if (c == 0x017F) return u's';
  return c == 0x212A ? u'k' : c;
}

// Where `word` (lower case) ends in the text when it stands at `at` in any case, else npos. The
// ligatures U+FB05 and U+FB06 fold to "st".
size_t endOfWord(Text text, size_t at, Text word) {
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
  for (size_t at = 0; (at = text.find(first, at)) != Text::npos;) {
    const size_t end = endOf(text, at);
    if (end == Text::npos) {
      ++at;
      continue;
    }
    out.append(text.substr(done, at - done)).append(replacement);
    done = at = end;
  }
  if (done == 0) return;
  out.append(text.substr(done));
  units = std::move(out);
}

void replaceWord(std::u16string& units, Text word, Text replacement) {
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

void removeComments(std::u16string& units) {
  ForwardSearch closing;
  replaceParts(units, u'<', u"", [&](Text text, size_t at) {
    if (text.substr(at, 4) != u"<!--") return Text::npos;
    const size_t end = closing.find(text, u"-->", at + 4);
    return end == Text::npos ? end : end + 3;
  });
}

// The end of the closing tag of `name` at or behind `from`.
size_t endOfClosingTag(Text text, size_t from, Text name) {
  for (size_t at = from; (at = text.find(u"</", at)) != Text::npos; ++at) {
    const size_t end = endOfWord(text, at + 2, name);
    if (end != Text::npos && end < text.size() && text[end] == u'>') return end + 1;
  }
  return Text::npos;
}

void removeStylesAndScripts(std::u16string& units) {
  ForwardSearch bracket;
  constexpr Text kNames[] = {u"style", u"script"};
  bool isOver[] = {false, false};
  replaceParts(units, u'<', u"", [&](Text text, size_t at) {
    for (size_t i = 0; i < 2; ++i) {
      const size_t nameEnd = isOver[i] ? Text::npos : endOfWord(text, at + 1, kNames[i]);
      if (nameEnd == Text::npos) continue;
      const size_t open = bracket.find(text, u">", nameEnd);
      if (open == Text::npos) return open;
      const size_t end = endOfClosingTag(text, open + 1, kNames[i]);
      isOver[i] = end == Text::npos;
      return end;
    }
    return Text::npos;
  });
}

// Tags whose names begin with `name`; opening ones only, or closing ones as well.
void replaceTags(std::u16string& units, Text name, bool closingToo) {
  ForwardSearch bracket;
  replaceParts(units, u'<', u"\n", [&](Text text, size_t at) {
    const size_t slash = closingToo && text.substr(at + 1, 1) == u"/" ? 1 : 0;
    const size_t nameEnd = endOfWord(text, at + 1 + slash, name);
    if (nameEnd == Text::npos) return nameEnd;
    const size_t end = bracket.find(text, u">", nameEnd);
    return end == Text::npos ? end : end + 1;
  });
}

void removeTags(std::u16string& units) {
  ForwardSearch bracket;
  replaceParts(units, u'<', u"", [&](Text text, size_t at) {
    if (text.substr(at + 1, 1) == u">") return Text::npos;
    const size_t end = bracket.find(text, u">", at + 1);
    return end == Text::npos ? end : end + 1;
  });
}

// Runs of blanks and tabs as one blank, three line feeds or more as two, lines trimmed.
std::u16string tidied(Text text) {
  std::u16string collapsed;
  collapsed.reserve(text.size());
  size_t feeds = 0;
  for (const char16_t c : text) {
    feeds = c == u'\n' ? feeds + 1 : 0;
    if (feeds > 2) continue;
    const char16_t unit = c == u'\t' ? u' ' : c;
    if (unit == u' ' && !collapsed.empty() && collapsed.back() == u' ') continue;
    collapsed.push_back(unit);
  }
  const NSCharacterSet blanks = NSCharacterSet::whitespace();
  std::u16string out;
  const Text all = collapsed;
  for (size_t from = 0; from <= all.size();) {
    const size_t next = std::min(all.find(u'\n', from), all.size());
    size_t start = from, end = next;
    while (start < end && blanks.contains(all[start])) ++start;
    while (end > start && blanks.contains(all[end - 1])) --end;
    out.append(all.substr(start, end - start));
    if (next < all.size()) out.push_back(u'\n');
    from = next + 1;
  }
  const size_t first = out.find_first_not_of(u'\n');
  if (first == std::u16string::npos) return {};
  return out.substr(first, out.find_last_not_of(u'\n') - first + 1);
}

}  // namespace

NSString stringFromHTML(const NSString& receiver) {
  if (receiver.isEmpty()) return u""_ns;
  const NSString decoded = quotedPrintableDecodeWithEncoding(receiver, NSUTF8StringEncoding);
  std::u16string html((decoded ? decoded : receiver).view());
  replaceWord(html, u"</p>", u"\n\n");
  replaceWord(html, u"</div>", u"\n");
  replaceTags(html, u"br", false);
  const NSString page(std::move(html));
  if (!page.strictUTF8()) return u""_ns;
  return plainTextFromHTML(page);
}

NSString stringByStrippingHTML(const NSString& receiver) {
  if (receiver.isEmpty() || !receiver.strictUTF8()) return u""_ns;
  const NSString text = plainTextFromHTML(receiver);
  return text ? NSString(tidied(text.view())) : stringByStrippingHTMLFallback(receiver);
}

NSString stringByStrippingHTMLFallback(const NSString& receiver) {
  if (receiver.isEmpty()) return u""_ns;
  std::u16string text(receiver.view());
  removeComments(text);
  removeStylesAndScripts(text);
  for (const Text tag : kBlockTags) replaceTags(text, tag, true);
  removeTags(text);
  for (const EntityRow& row : kEntities) replaceWord(text, row.entity, row.text);
  return NSString(std::move(text));
}

}  // namespace kelspar::WebKelsparNSStringAdditions
