// CSS by an allow-list of properties (WHATWG and CSS 2.2 names).
#include "MailKelspar/safe_css.h"

#include <algorithm>
#include <iterator>

#include "platform/foundation/ascii.h"

namespace kelspar::safe {

namespace {

constexpr std::u16string_view kProperties[] = {
    u"background-color",
    u"border",
    u"border-bottom",
    u"border-bottom-color",
    u"border-bottom-style",
    u"border-bottom-width",
    u"border-collapse",
    u"border-color",
    u"border-left",
    u"border-left-color",
    u"border-left-style",
    u"border-left-width",
    u"border-radius",
    u"border-right",
    u"border-right-color",
    u"border-right-style",
    u"border-right-width",
    u"border-spacing",
    u"border-style",
    u"border-top",
    u"border-top-color",
    u"border-top-style",
    u"border-top-width",
    u"border-width",
    u"clear",
    u"color",
    u"direction",
    u"display",
    u"float",
    u"font",
    u"font-family",
    u"font-size",
    u"font-style",
    u"font-variant",
    u"font-weight",
    u"height",
    u"letter-spacing",
    u"line-height",
    u"list-style-type",
    u"margin",
    u"margin-bottom",
    u"margin-left",
    u"margin-right",
    u"margin-top",
    u"max-height",
    u"max-width",
    u"min-height",
    u"min-width",
    u"padding",
    u"padding-bottom",
    u"padding-left",
    u"padding-right",
    u"padding-top",
    u"table-layout",
    u"text-align",
    u"text-decoration",
    u"text-indent",
    u"text-transform",
    u"unicode-bidi",
    u"vertical-align",
    u"visibility",
    u"white-space",
    u"width",
    u"word-break",
    u"word-spacing",
    u"word-wrap",
};
static_assert(std::ranges::is_sorted(kProperties));

bool isBlank(char16_t c) { return ascii::isSpace(c); }

std::u16string_view trimmed(std::u16string_view text) { return ascii::trimmed(text, isBlank); }

std::u16string withoutComments(std::u16string_view css) {
  std::u16string plain;
  while (!css.empty()) {
    const size_t open = std::min(css.find(u"/*"), css.size());
    plain.append(css.substr(0, open));
    css.remove_prefix(open);
    if (css.empty()) break;
    const size_t close = css.find(u"*/", 2);
    css.remove_prefix(close == css.npos ? css.size() : close + 2);
    plain += u' ';
  }
  return plain;
}

// Whether every string in it ends (escapes are refused before).
bool hasWholeStrings(std::u16string_view value) {
  for (size_t at = 0; (at = value.find_first_of(u"'\"", at)) != value.npos; ++at) {
    at = value.find(value[at], at + 1);
    if (at == value.npos) return false;
  }
  return true;
}

// Escapes hide names, "(" calls functions: of these the colours' are harmless.
bool isSafeValue(std::u16string_view lower) {
  if (lower.find_first_of(u"\\<>{}@&;") != lower.npos || lower.find(u'\0') != lower.npos) {
    return false;
  }
  if (!hasWholeStrings(lower)) return false;
  for (size_t at = 0; (at = lower.find(u'(', at)) != lower.npos; ++at) {
    const auto before = lower.substr(0, at);
    if (!before.ends_with(u"rgb") && !before.ends_with(u"rgba") && !before.ends_with(u"hsl") &&
        !before.ends_with(u"hsla")) {
      return false;
    }
  }
  return lower.find(u"expression") == lower.npos && lower.find(u"javascript") == lower.npos;
}

// Addresses of the network that the text names, in any notation: "url(http://", "url('//",
// "image-set(\"https://", "@import 'ftp://".
size_t remoteAddresses(std::u16string_view css) {
  size_t count = 0;
  for (size_t at = 0; (at = css.find(u"//", at)) != css.npos; at += 2) {
    const auto before = css.substr(0, at);
    count +=
        before.ends_with(u':') ||
        (at > 0 && std::u16string_view(u"(\"' \t").find(css[at - 1]) != std::u16string_view::npos);
  }
  return count;
}

void appendDeclaration(std::u16string_view declaration, std::u16string* out, size_t* removed) {
  const size_t colon = declaration.find(u':');
  if (colon == declaration.npos) return;
  const std::u16string property = ascii::lowerCase(trimmed(declaration.substr(0, colon)));
  const std::u16string_view value = trimmed(declaration.substr(colon + 1));
  const std::u16string lower = ascii::lowerCase(value);
  const size_t remote = remoteAddresses(value);
  *removed += remote;
  if (remote > 0) return;
  // "background" is often but a colour.
  const bool isColour = property == u"background" && lower.find(u'(') == lower.npos;
  if (!isColour && !std::ranges::binary_search(kProperties, std::u16string_view(property))) return;
  // Nothing of the message is to stand where the reader's own program is.
  if (property.starts_with(u"margin") && lower.find(u'-') != lower.npos) return;
  if (!isSafeValue(lower)) return;
  if (!out->empty()) out->append(u"; ");
  out->append(isColour ? u"background-color" : property).append(u": ").append(value);
}

// Names, combinators, attributes without quotation marks; nothing that calls or escapes.
bool isSafeSelector(std::u16string_view selector) {
  return !selector.empty() && std::ranges::all_of(selector, [](char16_t c) {
    const char16_t lower = c | 0x20;
    return (lower >= u'a' && lower <= u'z') || (c >= u'0' && c <= u'9') || c >= 0xA0 ||
           isBlank(c) ||
           std::u16string_view(u"-_.#:,>+~*[]=|^$").find(c) != std::u16string_view::npos;
  });
}

// The place behind the block that opens at `at`; blocks inside it are counted, not entered.
size_t endOfBlock(std::u16string_view css, size_t at) {
  int depth = 0;
  for (; at < css.size(); ++at) {
    if (css[at] == u'{') ++depth;
    if (css[at] == u'}' && --depth <= 0) return at + 1;
  }
  return at;
}

}  // namespace

std::u16string declarations(std::u16string_view css, size_t* removed) {
  const std::u16string plain = withoutComments(css);
  std::u16string_view rest = plain;
  std::u16string out;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find(u';'), rest.size());
    appendDeclaration(rest.substr(0, end), &out, removed);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return out;
}

std::u16string styleSheet(std::u16string_view css, size_t* removed) {
  std::u16string plain = withoutComments(css);
  std::u16string_view rest = plain;
  std::u16string out;
  while (!rest.empty()) {
    rest = trimmed(rest);
    if (rest.starts_with(u"<!--")) {
      rest.remove_prefix(4);
      continue;
    }
    if (rest.starts_with(u"-->")) {
      rest.remove_prefix(3);
      continue;
    }
    const size_t open = rest.find_first_of(u"{;");
    if (open == rest.npos) break;
    const auto selector = trimmed(rest.substr(0, open));
    if (rest[open] == u';') {  // "@import ...;"
      *removed += remoteAddresses(selector);
      rest.remove_prefix(open + 1);
      continue;
    }
    const size_t end = endOfBlock(rest, open);
    if (isSafeSelector(selector)) {
      auto inside = rest.substr(open + 1, end - open - 1);
      if (inside.ends_with(u'}')) inside.remove_suffix(1);
      const std::u16string kept = declarations(inside, removed);
      if (!kept.empty()) out.append(selector).append(u" { ").append(kept).append(u" }\n");
    } else {
      *removed += remoteAddresses(rest.substr(0, end));
    }
    rest.remove_prefix(end);
  }
  return out;
}

}  // namespace kelspar::safe
