// Character references whose ampersand was escaped.
#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_words.h"
#include "WebKelspar/reference_text.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSScanner.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::WebKelsparNSStringAdditions {

namespace {

using Text = std::u16string_view;

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

// The stated sequence: one replacement after the other over the whole text, each seeing what the
// ones before it made.
NSString replacedInTurn(const NSString& text, const std::vector<Reference>& references) {
  constexpr size_t kMostUnits = size_t{1} << 30;
  if (text.length() > kMostUnits) {
    NSString result = text;
    for (const Reference& one : references) {
      result = stringByReplacingCaseInsensitive(result, one.whole, Text(&one.unit, 1));
    }
    return result;
  }
  std::vector<Text> bodies;
  for (const Reference& one : references) bodies.push_back(one.body);
  ReferenceText chain(text.view(), bodies);
  for (const Reference& one : references) chain.replace(one.body, one.unit);
  return NSString(chain.text());
}

// The references of the text in its order, those that have a value.
std::vector<Reference> findReferences(Text text) {
  std::vector<Reference> found;
  for (size_t at = 0; (at = findReference(text, at)) != Text::npos;) {
    const size_t from = at + kEscapedAmpersand.size();
    size_t end = from;
    while (end < text.size() && text[end] != u';' && !isLineEnd(text[end])) ++end;
    if (end == text.size()) break;
    if (text[end] == u';') {
      const Text body = text.substr(from, end - from);
      if (const auto value = valueOf(body)) {
        found.push_back({text.substr(at, end + 1 - at), body, *value});
      }
    }
    at = end;
  }
  return found;
}

// What is replaced is replaced wherever it stands, even inside what the search took for the body of
// another. Sees nothing of what it puts in.
NSString replacedInOnePass(Text text, const std::vector<Reference>& references) {
  std::unordered_map<Text, char16_t> values;
  for (const Reference& reference : references) values.emplace(reference.body, reference.unit);
  std::u16string out;
  size_t done = 0;
  for (size_t at = 0; (at = findReference(text, at)) != Text::npos;) {
    const size_t from = at + kEscapedAmpersand.size();
    const size_t end = text.find_first_of(u";&", from);
    if (end == Text::npos) break;
    const auto value =
        text[end] == u';' ? values.find(text.substr(from, end - from)) : values.end();
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

}  // namespace

NSString decodeHTMLFormattingTags(const NSString& receiver) {
  if (!receiver) return nil;
  const std::vector<Reference> found = findReferences(receiver.view());
  if (found.empty()) return receiver;
  if (std::ranges::any_of(found, [](const auto& one) { return formsReferences(one.unit); })) {
    return replacedInTurn(receiver, found);
  }
  return replacedInOnePass(receiver.view(), found);
}

}  // namespace kelspar::WebKelsparNSStringAdditions
