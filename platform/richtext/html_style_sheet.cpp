#include "platform/richtext/html_style_sheet.h"

#include <algorithm>

#include "platform/foundation/scan.h"
#include "platform/richtext/html_style_values.h"

namespace kelspar::html {

namespace {

using values::Text;
using values::trimmed;

// The text without "/* ... */", "<!--" and "-->".
std::u16string withoutComments(Text css) {
  std::u16string result;
  for (size_t from = 0; from < css.size();) {
    const size_t at = scan::findAny(css, from, u'/', u'<', u'-');
    result.append(css.substr(from, at - from));
    const Text rest = css.substr(at);
    if (rest.starts_with(u"/*")) {
      from = css.find(u"*/", at + 2);
      from = from == css.npos ? css.size() : from + 2;
      result.push_back(u' ');
    } else if (rest.starts_with(u"<!--") || rest.starts_with(u"-->")) {
      from = at + (rest[0] == u'<' ? 4 : 3);
    } else {
      result.append(rest.substr(0, 1));
      from = at + 1;
    }
  }
  return result;
}

// Behind the "}" that closes the block whose inside begins at `from`.
size_t endOfBlock(Text css, size_t from) {
  size_t depth = 1;
  for (size_t at = from; (at = scan::findAny(css, at, u'{', u'}')) < css.size();) {
    depth += css[at++] == u'{' ? 1 : -1;
    if (depth == 0) return at;
  }
  return css.size();
}

}  // namespace

// "screen", "all", "only screen" and nothing; conditions on sizes are for other screens.
bool StyleSheet::appliesToMedia(std::u16string_view condition) {
  condition = trimmed(condition);
  if (condition.empty()) return true;
  for (size_t from = 0; from <= condition.size();) {
    const size_t end = std::min(condition.find(u',', from), condition.size());
    Text medium = trimmed(condition.substr(from, end - from));
    if (equalsIgnoringCase(medium.substr(0, 5), u"only ")) medium = trimmed(medium.substr(5));
    if (equalsIgnoringCase(medium, u"screen") || equalsIgnoringCase(medium, u"all")) return true;
    from = end + 1;
  }
  return false;
}

void StyleSheet::add(std::u16string_view text) {
  forEachRule(text, [this](Text selectors, Text body) {
    Declarations declarations;
    parseDeclarations(body, layoutOnly_, &declarations);
    if (declarations.set) addRule(selectors, declarations);
  });
}

void StyleSheet::forEachRule(
    std::u16string_view text,
    const std::function<void(std::u16string_view, std::u16string_view)>& rule) {
  const std::u16string css = withoutComments(text);
  const Text all = css;
  size_t at = 0;
  while (at < all.size()) {
    const size_t stop = scan::findAny(all, at, u'{', u';', u'}');
    if (stop == all.size()) return;
    const Text prelude = trimmed(all.substr(at, stop - at));
    const bool isAtRule = prelude.starts_with(u'@');
    if (all[stop] == u'}') {  // of an "@media" whose rules were taken
      at = stop + 1;
    } else if (all[stop] == u';') {  // "@import ...;"
      at = stop + 1;
    } else if (isAtRule && equalsIgnoringCase(prelude.substr(0, 6), u"@media") &&
               appliesToMedia(prelude.substr(6))) {
      at = stop + 1;
    } else if (isAtRule) {
      at = endOfBlock(all, stop + 1);
    } else {
      const size_t close = scan::findAny(all, stop + 1, u'}');
      rule(prelude, all.substr(stop + 1, close - stop - 1));
      at = std::min(close + 1, all.size());
    }
  }
}

void StyleSheet::addRule(std::u16string_view selectors, const Declarations& declarations) {
  for (size_t from = 0; from < selectors.size();) {
    const size_t end = scan::findAny(selectors, from, u',');
    if (const auto selector = Selector::parse(selectors.substr(from, end - from))) {
      addSelector(*selector, declarations);
    }
    from = end + 1;
  }
}

// Each part but the last gets a number, unless that very part has one.
void StyleSheet::addSelector(const Selector& selector, const Declarations& declarations) {
  Entry entry;
  for (const Selector::Part& part : selector.parts) {
    entry.compound = part.compound;
    entry.isChild = part.isChild;
    if (&part == &selector.parts.back()) break;
    if (outerParts_ == Ancestry::kMostParts) return;
    entry.outer = static_cast<int16_t>(outerParts_);
    const Entry* const entered = enter(entry);
    if (!entered) return;
    outerParts_ = std::max<size_t>(outerParts_, static_cast<size_t>(entered->outer) + 1);
    entry.around = entered->outer;
    entry.outer = -1;
  }
  entry.specificity = selector.specificity();
  Entry* const rule = enter(std::move(entry));
  if (!rule) return;
  rule->order = ++order_;
  rule->declarations.add(declarations);
}

// By what is rarest: the identifier, a class, the element.
StyleSheet::Entries& StyleSheet::entriesFor(const Compound& compound) {
  if (!compound.identifier.empty()) return byIdentifier_[compound.identifier];
  if (!compound.classes.empty()) return byClass_[compound.classes.front()];
  if (compound.tag == Tag::none) return anywhere_;
  byTag_.resize(static_cast<size_t>(Tag::count));
  return byTag_[static_cast<size_t>(compound.tag)];
}

// The entry of that very part, new or old: what comes later adds to it. Null when its name has more
// parts than are kept: an element's cost stays constant.
StyleSheet::Entry* StyleSheet::enter(Entry entry) {
  constexpr size_t kMostOfAName = 64;
  Entries& entries = entriesFor(entry.compound);
  const auto same =
      std::ranges::find_if(entries, [&](const Entry& each) { return each.isSamePart(entry); });
  if (same != entries.end()) return &*same;
  if (entries.size() >= kMostOfAName) return nullptr;
  return &entries.emplace_back(std::move(entry));
}

void StyleSheet::collect(const Entries& entries, const Subject& subject, const Ancestry& parent,
                         Ancestry* own, std::vector<Match>* found) {
  for (const Entry& entry : entries) {
    if (entry.around >= 0) {
      const auto number = static_cast<size_t>(entry.around);
      if (!parent.self[number] && (entry.isChild || !parent.around[number])) continue;
    }
    if (!entry.compound.matches(subject)) continue;
    if (entry.outer >= 0) {
      own->self.set(static_cast<size_t>(entry.outer));
    } else {
      found->push_back({&entry, entry.specificity, entry.order});
    }
  }
}

void StyleSheet::apply(const Subject& subject, const Ancestry& parent, Ancestry* own,
                       Declarations* declarations) const {
  constexpr size_t kMostRules = 256;
  own->self.reset();
  own->around = parent.around | parent.self;
  std::vector<Match> found;
  collect(anywhere_, subject, parent, own, &found);
  if (const auto tag = static_cast<size_t>(subject.tag); tag < byTag_.size()) {
    collect(byTag_[tag], subject, parent, own, &found);
  }
  const auto collectNamed = [&](const Named& named, std::u16string_view name) {
    const auto entries = named.find(name);
    if (entries != named.end()) collect(entries->second, subject, parent, own, &found);
  };
  if (!byClass_.empty()) {
    std::u16string_view rest = subject.classes;
    for (auto word = takeClass(&rest); !word.empty() && found.size() < kMostRules;
         word = takeClass(&rest)) {
      collectNamed(byClass_, word);
    }
  }
  if (!byIdentifier_.empty() && !subject.identifier.empty()) {
    std::u16string_view identifier = subject.identifier;
    collectNamed(byIdentifier_, takeClass(&identifier));
  }
  if (found.empty()) return;
  std::ranges::sort(found, {}, [](const Match& m) { return std::pair(m.specificity, m.order); });
  for (const Match& match : found) declarations->add(match.entry->declarations);
}

StyleSheet StyleSheet::ofPage(std::u16string_view html, bool layoutOnly) {
  StyleSheet sheet(layoutOnly);
  Tokenizer tokens(html);
  for (;;) {
    const Token& token = tokens.next();
    if (token.kind == Token::Kind::end) return sheet;
    if (token.kind == Token::Kind::startTag && token.tag == Tag::style) sheet.readElement(&tokens);
  }
}

// It is raw text: its end tag, or the input's end, is the next token that is no text.
void StyleSheet::readElement(Tokenizer* tokens) {
  const Attribute* const media = tokens->attribute(u"media");
  const bool applies = !media || appliesToMedia(media->raw);
  std::u16string css;
  for (;;) {
    const Token& token = tokens->next();
    if (token.kind != Token::Kind::text) break;
    if (applies) css.append(token.text);
  }
  if (applies) add(css);
}

}  // namespace kelspar::html
