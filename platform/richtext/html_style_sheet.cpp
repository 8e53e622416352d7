#include "platform/richtext/html_style_sheet.h"

#include <algorithm>

#include "platform/foundation/scan.h"

namespace kelspar::html {

namespace {

using Text = std::u16string_view;

bool isSpace(char16_t c) { return c <= u' '; }

Text trimmed(Text text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  return text;
}

bool isNameUnit(char16_t c) {
  return (c >= u'0' && c <= u'9') || ((c | 0x20) >= u'a' && (c | 0x20) <= u'z') || c == u'-' ||
         c == u'_' || c >= 0x80;
}

bool isName(Text text) { return !text.empty() && std::ranges::all_of(text, isNameUnit); }

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
      Declarations declarations;
      parseDeclarations(all.substr(stop + 1, close - stop - 1), layoutOnly_, &declarations);
      if (declarations.set) addRule(prelude, declarations);
      at = std::min(close + 1, all.size());
    }
  }
}

void StyleSheet::addRule(std::u16string_view selectors, const Declarations& declarations) {
  for (size_t from = 0; from < selectors.size();) {
    const size_t end = scan::findAny(selectors, from, u',');
    addSelector(trimmed(selectors.substr(from, end - from)), declarations);
    from = end + 1;
  }
}

void StyleSheet::addSelector(std::u16string_view selector, const Declarations& declarations) {
  if (selector == u"*") return enter(&byTag_, Tag::none, declarations);
  const size_t mark = std::min(selector.find_first_of(u".#"), selector.size());
  const Text element = selector.substr(0, mark);
  Tag tag = Tag::none;
  if (!element.empty() && element != u"*") {
    tag = tagNamed(element);
    if (tag == Tag::unknown) return;
  }
  if (mark == selector.size()) {
    if (tag != Tag::none) enter(&byTag_, tag, declarations);
    return;
  }
  const Text name = selector.substr(mark + 1);
  if (!isName(name)) return;
  Rules& rules = selector[mark] == u'.' ? byClass_ : byIdentifier_;
  enter(&rules[std::u16string(name)], tag, declarations);
}

// One rule for each element: those that come later add to it.
void StyleSheet::enter(std::vector<Rule>* rules, Tag tag, const Declarations& declarations) {
  auto rule = std::ranges::find(*rules, tag, &Rule::tag);
  if (rule == rules->end()) rule = rules->insert(rule, Rule{tag, 0, {}});
  rule->order = ++order_;
  rule->declarations.add(declarations);
}

void StyleSheet::collect(const Rules& rules, std::u16string_view name, Tag tag,
                         std::vector<const Rule*>* found) {
  const auto entry = rules.find(name);
  if (entry == rules.end()) return;
  for (const Rule& rule : entry->second) {
    if (rule.tag == Tag::none || rule.tag == tag) found->push_back(&rule);
  }
}

void StyleSheet::apply(Tag tag, std::u16string_view classes, std::u16string_view identifier,
                       Declarations* declarations) const {
  constexpr size_t kMostRules = 64;
  for (const Tag each : {Tag::none, tag}) {
    const auto rule = std::ranges::find(byTag_, each, &Rule::tag);
    if (rule != byTag_.end()) declarations->add(rule->declarations);
  }
  std::vector<const Rule*> found;
  for (size_t from = 0; from < classes.size() && found.size() < kMostRules;) {
    while (from < classes.size() && isSpace(classes[from])) ++from;
    size_t end = from;
    while (end < classes.size() && !isSpace(classes[end])) ++end;
    if (end > from && !byClass_.empty()) {
      collect(byClass_, classes.substr(from, end - from), tag, &found);
    }
    from = end;
  }
  const auto weight = [](const Rule* rule) {
    return std::pair(rule->tag != Tag::none, rule->order);
  };
  std::ranges::sort(found, {}, weight);
  const size_t ofClasses = found.size();
  if (!identifier.empty()) collect(byIdentifier_, trimmed(identifier), tag, &found);
  std::ranges::sort(found.begin() + static_cast<ptrdiff_t>(ofClasses), found.end(), {}, weight);
  for (const Rule* rule : found) declarations->add(rule->declarations);
}

}  // namespace kelspar::html
