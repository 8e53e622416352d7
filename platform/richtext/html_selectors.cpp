#include "platform/richtext/html_selectors.h"

#include <algorithm>

#include "platform/richtext/html_style_values.h"

namespace kelspar::html {

namespace {

using Text = std::u16string_view;

bool isSpace(char16_t c) { return c <= u' '; }

bool isNameUnit(char16_t c) {
  return (c >= u'0' && c <= u'9') || ((c | 0x20) >= u'a' && (c | 0x20) <= u'z') || c == u'-' ||
         c == u'_' || c >= 0x80;
}

Text takeName(Text* text) {
  size_t end = 0;
  while (end < text->size() && isNameUnit((*text)[end])) ++end;
  const Text name = text->substr(0, end);
  text->remove_prefix(end);
  return name;
}

void skipSpace(Text* text) {
  while (!text->empty() && isSpace(text->front())) text->remove_prefix(1);
}

// The compound at the start of the text, taken off it; nothing where there is none.
std::optional<Compound> takeCompound(Text* text) {
  Compound compound;
  const size_t before = text->size();
  if (text->starts_with(u'*')) {
    text->remove_prefix(1);
  } else if (!text->empty() && isNameUnit(text->front())) {
    compound.tag = tagNamed(takeName(text));
    if (compound.tag == Tag::unknown) return {};
  }
  while (!text->empty() && (text->front() == u'.' || text->front() == u'#')) {
    const bool isClass = text->front() == u'.';
    text->remove_prefix(1);
    const Text name = takeName(text);
    if (name.empty()) return {};
    if (isClass) {
      compound.classes.emplace_back(name);
    } else {
      compound.identifier = name;
    }
  }
  if (text->size() == before) return {};
  return compound;
}

bool isPage(const Compound& compound) {
  return (compound.tag == Tag::html || compound.tag == Tag::body) && compound.classes.empty() &&
         compound.identifier.empty();
}

}  // namespace

std::u16string_view takeClass(std::u16string_view* classes) {
  skipSpace(classes);
  size_t end = 0;
  while (end < classes->size() && !isSpace((*classes)[end])) ++end;
  const Text word = classes->substr(0, end);
  classes->remove_prefix(end);
  return word;
}

bool Compound::matches(const Subject& subject) const {
  if (tag != Tag::none && tag != subject.tag) return false;
  if (!identifier.empty() && values::trimmed(subject.identifier) != identifier) return false;
  return std::ranges::all_of(classes, [&](const std::u16string& wanted) {
    Text rest = subject.classes;
    for (Text word = takeClass(&rest); !word.empty(); word = takeClass(&rest)) {
      if (word == wanted) return true;
    }
    return false;
  });
}

std::optional<Selector> Selector::parse(std::u16string_view text) {
  constexpr size_t kMostClasses = 8, kMostParts = 16;
  Selector selector;
  bool isChild = false;
  for (skipSpace(&text); !text.empty();) {
    auto compound = takeCompound(&text);
    if (!compound || compound->classes.size() > kMostClasses) return {};
    selector.parts.push_back({std::move(*compound), isChild});
    if (selector.parts.size() > kMostParts) return {};
    if (!text.empty() && !isSpace(text.front()) && text.front() != u'>') return {};
    skipSpace(&text);
    isChild = text.starts_with(u'>');
    if (!isChild) continue;
    text.remove_prefix(1);
    skipSpace(&text);
    if (text.empty()) return {};
  }
  if (selector.parts.empty()) return {};
  while (selector.parts.size() > 1 && isPage(selector.parts[0].compound)) {
    const bool isHTML = selector.parts[0].compound.tag == Tag::html;
    const bool isDirect = selector.parts[1].isChild;
    const bool isBody = selector.parts[1].compound.tag == Tag::body;
    if (isDirect && !(isHTML && isBody)) break;
    selector.parts.erase(selector.parts.begin());
    selector.parts[0].isChild = false;
  }
  return selector;
}

uint32_t Selector::specificity() const {
  uint32_t identifiers = 0, classes = 0, elements = 0;
  for (const Part& part : parts) {
    identifiers += part.compound.identifier.empty() ? 0 : 1;
    classes += static_cast<uint32_t>(part.compound.classes.size());
    elements += part.compound.tag == Tag::none ? 0 : 1;
  }
  return identifiers << 20 | classes << 10 | elements;
}

}  // namespace kelspar::html
