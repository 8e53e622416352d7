// HTML as plain text by a scanner that knows tags and 16 entities only.
//
// It stands for a sequence of expressions, each replacing its matches in the whole text. Comments,
// styles and scripts are taken out as the expressions do; tags and entities, thirty-one
// expressions, take one pass each where no "<" stands inside a tag.
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/markup_scan.h"
#include "platform/foundation/scan.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

using markup::endOfWord;
using markup::ForwardSearch;
using markup::replaceParts;
using markup::Text;

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

void removeTags(std::u16string& units) {
  ForwardSearch bracket;
  replaceParts(units, u'<', u"", [&](Text text, size_t at) {
    if (text.substr(at + 1, 1) == u">") return Text::npos;
    const size_t end = bracket.find(text, u">", at + 1);
    return end == Text::npos ? end : end + 1;
  });
}

// Whether one of the block tags' expressions takes the tag whose name stands at `at`.
bool isBlockTag(Text text, size_t at) {
  constexpr Text kInitials = u"pdbhluo";
  if (kInitials.find(markup::fold(text[at])) == Text::npos) return false;
  for (const Text name : kBlockTags)
    if (endOfWord(text, at, name) != Text::npos) return true;
  return false;
}

// All tags at once. Nothing for text with a "<" inside a tag: there, what becomes of it hangs on
// the order of the expressions.
std::optional<std::u16string> withoutTags(Text text) {
  std::u16string out;
  out.reserve(text.size());
  for (size_t at = 0;;) {
    const size_t open = scan::findAny(text, at, u'<');
    out.append(text.substr(at, open - at));
    const size_t close = scan::findAny(text, open + 1, u'<', u'>');
    if (open == text.size() || close >= text.size()) {
      out.append(text.substr(open));
      return out;
    }
    if (text[close] == u'<') return std::nullopt;
    const size_t name = open + (text[open + 1] == u'/' ? 2 : 1);
    if (isBlockTag(text, name)) {
      out.push_back(u'\n');
    } else if (close == open + 1) {
      out.append(u"<>");  // no tag
    }
    at = close + 1;
  }
}

void removeAllTags(std::u16string& units) {
  if (auto text = withoutTags(units)) {
    units = std::move(*text);
    return;
  }
  for (const Text tag : kBlockTags) markup::replaceTags(units, tag, true);
  removeTags(units);
}

// The entity whose name, with its ";", stands at `at`; null for none.
const EntityRow* entityAt(std::span<const EntityRow> rows, Text text, size_t at) {
  for (const EntityRow& row : rows)
    if (endOfWord(text, at, row.entity.substr(1)) != Text::npos) return &row;
  return nullptr;
}

// All entities at once. What the escaped ampersand leaves may be the beginning of one of the
// others; nothing that they leave is.
void replaceEntities(std::u16string& units) {
  const std::span<const EntityRow> all(kEntities), ampersand = all.first(1),
                                                   others = all.subspan(1);
  const Text text = units;
  std::u16string out;
  size_t done = 0;
  for (size_t at = 0; (at = scan::findAny(text, at, u'&')) < text.size();) {
    const bool isEscaped = entityAt(ampersand, text, at + 1) != nullptr;
    const size_t name = at + (isEscaped ? kEntities[0].entity.size() : 1);
    const EntityRow* const entity = entityAt(others, text, name);
    if (!isEscaped && !entity) {
      ++at;
      continue;
    }
    if (done == 0) out.reserve(text.size());
    out.append(text.substr(done, at - done)).append(entity ? entity->text : u"&");
    done = at = entity ? name + entity->entity.size() - 1 : name;
  }
  if (done == 0) return;
  out.append(text.substr(done));
  units = std::move(out);
}

}  // namespace

NSString stringByStrippingHTMLFallback(const NSString& receiver) {
  if (receiver.isEmpty()) return u""_ns;
  std::u16string text(receiver.view());
  removeComments(text);
  removeStylesAndScripts(text);
  removeAllTags(text);
  replaceEntities(text);
  return NSString(std::move(text));
}

}  // namespace kelspar::WebKelsparNSStringAdditions
