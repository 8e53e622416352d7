// Addresses: an automaton for each part, one look at each unit.
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

using Text = std::u16string_view;

// Letters in either case. U+017F and U+212A fold to "s" and "k", so the classes hold them too.
constexpr bool isLetter(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == 0x017F || c == 0x212A;
}
constexpr bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
constexpr bool isLetterOrDigit(char16_t c) { return isLetter(c) || isDigit(c); }
constexpr bool isAtomText(char16_t c) {
  return isLetterOrDigit(c) || (c < 0x80 && Text(u"!#$%&'*+/=?^_`{|}~-").find(c) != Text::npos);
}
// What a backslash may stand before.
constexpr bool isEscapable(char16_t c) {
  return isLetter(c) || (c >= 1 && c <= 0x7F && c != u'\n' && c != u'\r');
}
constexpr bool isVisibleOrControl(char16_t c) { return isEscapable(c) && c != u'\t' && c != u' '; }

// The length of the dot-atom at the start, 0 when there is none.
size_t dotAtomLength(Text text) {
  size_t at = 0;
  for (bool wantsAtom = true; at < text.size(); ++at) {
    if (isAtomText(text[at])) {
      wantsAtom = false;
    } else if (text[at] == u'.' && !wantsAtom) {
      wantsAtom = true;
    } else {
      return wantsAtom ? 0 : at;
    }
  }
  return 0;  // no "@" follows
}

// The same for a quoted string, marks included. Blanks count as text between the marks.
size_t quotedLength(Text text) {
  for (size_t at = 1; at < text.size(); ++at) {
    const char16_t c = text[at];
    if (c == u'"') return at + 1;
    if (c == u'\\') {
      ++at;
      if (at == text.size() || !isEscapable(text[at])) return 0;
    } else if (!isVisibleOrControl(c) && c != u' ') {
      return 0;
    }
  }
  return 0;
}

bool isDomain(Text text) {
  size_t labels = 1;
  char16_t previous = u'.';
  for (const char16_t c : text) {
    if (c == u'.') {
      if (!isLetterOrDigit(previous)) return false;
      ++labels;
    } else if (c == u'-') {
      if (previous == u'.') return false;
    } else if (!isLetterOrDigit(c)) {
      return false;
    }
    previous = c;
  }
  return labels >= 2 && isLetterOrDigit(previous);
}

// One to three digits, 255 at most.
bool isOctet(Text text) {
  if (text.empty() || text.size() > 3) return false;
  int value = 0;
  for (const char16_t c : text) {
    if (!isDigit(c)) return false;
    value = value * 10 + (c - u'0');
  }
  return value <= 255;
}

bool isTagAndText(Text text) {
  const size_t colon = text.find(u':');
  if (colon == Text::npos || colon == 0 || colon + 1 == text.size()) return false;
  for (const char16_t c : text.substr(0, colon)) {
    if (!isLetterOrDigit(c) && c != u'-') return false;
  }
  if (text[colon - 1] == u'-') return false;
  // A backslash is text as well; tab and blank need one before them.
  for (size_t at = colon + 1; at < text.size(); ++at) {
    const char16_t c = text[at];
    if (!isVisibleOrControl(c) && !(isEscapable(c) && text[at - 1] == u'\\')) return false;
  }
  return true;
}

// Deliberate: a tag follows three numbers and dots, not the opening bracket (RFC 5321, 4.1.3).
bool isLiteral(Text text) {
  if (text.size() < 2 || text.front() != u'[' || text.back() != u']') return false;
  text = text.substr(1, text.size() - 2);
  for (int i = 0; i < 3; ++i) {
    const size_t dot = text.substr(0, 4).find(u'.');
    if (dot == Text::npos || !isOctet(text.substr(0, dot))) return false;
    text.remove_prefix(dot + 1);
  }
  return isOctet(text) || isTagAndText(text);
}

}  // namespace

bool validateEmailAddress(const NSString& receiver) {
  const Text text = receiver.view();
  if (text.empty()) return false;
  const size_t local = text.front() == u'"' ? quotedLength(text) : dotAtomLength(text);
  if (local == 0 || local == text.size() || text[local] != u'@') return false;
  const Text domain = text.substr(local + 1);
  return isDomain(domain) || isLiteral(domain);
}

NSString cleanEmailAddress(const NSString& receiver) {
  if (!receiver) return nil;
  const Text text = receiver.view();
  NSString candidate = receiver;
  if (const size_t open = text.find(u'<'); open != Text::npos) {
    const size_t close = text.find(u'>');
    if (close == Text::npos || open > close) return nil;
    candidate = receiver.substring(open + 1, close - open - 1);
  }
  candidate = stringByTrimming(candidate, NSCharacterSet::whitespaceAndNewline());
  return validateEmailAddress(candidate) ? candidate : NSString();
}

NSURL buildEmailAddressURL(const NSString& receiver) {
  if (!validateEmailAddress(receiver)) return nil;
  return NSURL::URLWithString(NSString(u"mailto:" + std::u16string(receiver.view())));
}

}  // namespace kelspar::WebKelsparNSStringAdditions
