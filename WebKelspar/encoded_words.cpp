// Encoded words of headers, and character references whose ampersand was escaped.
#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_words.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSScanner.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

using Text = std::u16string_view;

// What "." does not match.
constexpr bool isLineEnd(char16_t c) {
  return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
}

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

// The value of a reference's body; nothing when the reference stays.
std::optional<char16_t> valueOf(Text body) {
  std::u16string digits(body);
  std::erase(digits, u'#');
  const NSString number(digits);
  NSScanner scanner(number);
  int64_t value = 0;
  if (!scanner.scanInteger(&value) || scanner.scanLocation() != digits.size()) return std::nullopt;
  if (value < 1) return std::nullopt;
  return static_cast<char16_t>(value);
}

constexpr Text kEscapedAmpersand = u"&amp;";

// The next "&amp;" in any case.
size_t findReference(Text text, size_t from) {
  for (size_t at = from; (at = text.find(u'&', at)) != Text::npos; ++at) {
    const Text here = text.substr(at, kEscapedAmpersand.size());
    if (here.size() == kEscapedAmpersand.size() && (here[1] | 0x20) == u'a' &&
        (here[2] | 0x20) == u'm' && (here[3] | 0x20) == u'p' && here[4] == u';') {
      return at;
    }
  }
  return Text::npos;
}

// A match: the whole, its body, and the unit that it stands for.
struct Reference {
  Text whole, body;
  char16_t unit;
};

// Whether a unit can be part of a reference, so that putting it in may complete another one.
bool formsReferences(char16_t unit) {
  constexpr Text kUnits = u"&#;+-0123456789aAmMpP";
  return kUnits.find(unit) != Text::npos || NSCharacterSet::whitespaceAndNewline().contains(unit);
}

// One replacement after the other over the whole text, each seeing what the ones before it made. A
// match whose text had its turn before has another one only when something was put in since that
// may complete it. Each turn costs the text's length; beyond this work, which is no mail's, nothing
// is given, and one pass has to do.
constexpr size_t kMostWork = 500'000'000;
std::optional<NSString> replacedInTurn(NSString text, const std::vector<Reference>& references) {
  size_t work = 0, changes = 0;
  std::unordered_map<Text, size_t> changesAtTurn;
  for (const Reference& reference : references) {
    const auto [turn, isFirst] = changesAtTurn.try_emplace(reference.body, changes);
    if (!isFirst && turn->second == changes) continue;
    work += text.length();
    if (work > kMostWork) return std::nullopt;
    turn->second = changes;
    const size_t length = text.length();
    text = stringByReplacingCaseInsensitive(text, reference.whole, Text(&reference.unit, 1));
    if (text.length() != length && formsReferences(reference.unit)) ++changes;
  }
  return text;
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

NSString decodeHTMLFormattingTags(const NSString& receiver) {
  if (!receiver) return nil;
  const Text text = receiver.view();
  // References by their bodies: what is replaced is replaced wherever it stands, even inside what
  // the search took for the body of another.
  std::unordered_map<std::u16string, char16_t> values;
  std::vector<Reference> found;
  for (size_t at = 0; (at = findReference(text, at)) != Text::npos;) {
    size_t end = at + kEscapedAmpersand.size();
    while (end < text.size() && text[end] != u';' && !isLineEnd(text[end])) ++end;
    if (end == text.size()) break;
    if (text[end] == u';') {
      const size_t from = at + kEscapedAmpersand.size();
      const Text body = text.substr(from, end - from);
      const auto value = valueOf(body);
      if (value) {
        values.emplace(body, *value);
        found.push_back({text.substr(at, end + 1 - at), body, *value});
      }
    }
    at = end;
  }
  if (values.empty()) return receiver;
  if (std::ranges::any_of(found, [](const auto& one) { return formsReferences(one.unit); })) {
    if (const auto replaced = replacedInTurn(receiver, found)) return *replaced;
  }
  std::u16string out;
  size_t done = 0;
  for (size_t at = 0; (at = findReference(text, at)) != Text::npos;) {
    const size_t from = at + kEscapedAmpersand.size();
    const size_t end = text.find_first_of(u";&", from);
    if (end == Text::npos) break;
    const auto value = text[end] == u';'
                           ? values.find(std::u16string(text.substr(from, end - from)))
                           : values.end();
    if (value == values.end()) {
      at = end;
      continue;
    }
    out.append(text.substr(done, at - done));
    out.push_back(value->second);
    done = at = end + 1;
  }
  out.append(text.substr(done));
  return NSString(std::move(out));
}

}  // namespace kelspar::WebKelsparNSStringAdditions
