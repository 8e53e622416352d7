// Span start tags in lines of text: the value of a property, and the lines that give it one.
#include <algorithm>

#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "RTFKelspar/span_items.h"
#include "platform/unicode/NSRegularExpression.h"
#include "platform/unicode/text_search.h"

namespace kelspar::RTFKelsparNSStringAdditions {

namespace {

// An item that stands for itself in a pattern. Surrogates are left to the engine, which matches
// code points and never half of one.
bool isLiteral(std::u16string_view item) {
  constexpr std::u16string_view kSyntax = u"\\^$.|?*+()[]{}";
  return std::ranges::none_of(item, [=](char16_t unit) {
    return kSyntax.find(unit) != kSyntax.npos || (unit & 0xF800) == 0xD800;
  });
}

// One property, looked for in many lines.
class SpanItem {
 public:
  explicit SpanItem(const NSString& item) : item_(item), isLiteral_(isLiteral(item)) {
    if (isLiteral_) return;
    std::u16string pattern(item.view());
    pattern_ = NSRegularExpression::withPattern(pattern += u"\\s*:\\s*([^;'\"\\s]+)");
  }

  [[nodiscard]] NSString valueIn(std::u16string_view line) const {
    const auto attributes = spanAttributes(line);
    const auto value = isLiteral_ ? literalValue(attributes) : patternValue(attributes);
    return value.empty() ? nil : NSString(value);
  }

 private:
  [[nodiscard]] std::u16string_view literalValue(std::u16string_view attributes) const {
    TextSearch places(item_, attributes, TextSearch::overlapping);
    return valueBehindItem(attributes, item_.length(), [&] { return places.next(); });
  }

  // What the first group took, which is the item's own where it has one.
  [[nodiscard]] std::u16string_view patternValue(std::u16string_view attributes) const {
    if (attributes.empty()) return {};
    const auto match = pattern_.firstMatch(attributes);
    if (!match || match->size() < 2 || (*match)[1].location == NSNotFound) return {};
    return trimmed(attributes.substr((*match)[1].location, (*match)[1].length));
  }

  NSString item_;
  bool isLiteral_;
  NSRegularExpression pattern_;  // of an item that is not literal
};

}  // namespace

NSString searchLineForSpanItem(const NSString& receiver, const NSString& item) {
  return item.isEmpty() ? nil : SpanItem(item).valueIn(receiver);
}

NSArray getLineNumbersForTag(const NSString& receiver, const NSString& tag,
                             const NSString& searchString) {
  NSMutableArray records;
  if (tag.isEmpty() || searchString.isEmpty()) return std::move(records).copy();
  const SpanItem item(searchString);
  const auto text = receiver.view();
  uint64_t number = 0;
  for (size_t from = 0; from < text.size(); ++number) {
    const size_t end = scan::findAny(text, from, '\n');
    const auto line = text.substr(from, end - from);
    from = end + 1;
    const NSString colour = item.valueIn(line);
    if (!colour) continue;
    if (findText(tag, line) == line.npos) continue;
    records.addObject(NSDictionary{{u"LineContent"_ns, NSString(line)},
                                   {u"LineNumber"_ns, NSNumber(number)},
                                   {u"LineColour"_ns, colour}});
  }
  return std::move(records).copy();
}

}  // namespace kelspar::RTFKelsparNSStringAdditions
