// One thing put in the place of another: units, texts, members of a set.
#include <algorithm>

#include "StringKelspar/StringKelsparNSMutableStringAdditions.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/unicode/NSStringCase.h"
#include "platform/unicode/text_search.h"

namespace kelspar {

namespace StringKelsparNSStringAdditions {

namespace {

// Every occurrence of `target`; the text itself when there is none.
NSString replaceAll(const NSString& text, std::u16string_view target,
                    std::u16string_view replacement) {
  const auto units = text.view();
  TextSearch search(target, units);
  size_t at = search.next();
  if (at == TextSearch::npos) return text;
  std::u16string result;
  result.reserve(units.size());
  size_t from = 0;
  for (; at != TextSearch::npos; at = search.next()) {
    result.append(units.substr(from, at - from)).append(replacement);
    from = at + target.size();
  }
  result.append(units.substr(from));
  return NSString(std::move(result));
}

// Each unit that belongs; the text itself when none does.
template <class Belongs>
NSString replaceUnits(const NSString& text, Belongs belongs, std::u16string_view replacement) {
  const auto units = text.view();
  size_t at = 0;
  while (at < units.size() && !belongs(units[at])) ++at;
  if (at == units.size()) return text;
  std::u16string result;
  result.reserve(units.size());
  size_t from = 0;
  for (; at < units.size(); ++at) {
    if (!belongs(units[at])) continue;
    result.append(units.substr(from, at - from)).append(replacement);
    from = at + 1;
  }
  result.append(units.substr(from));
  return NSString(std::move(result));
}

}  // namespace

NSString stringByReplacingOccurrencesOfCharactersInString(const NSString& receiver,
                                                          const NSString& characters,
                                                          const NSString& replacement) {
  if (characters.isEmpty() || receiver.isEmpty()) return receiver;
  // A set costs 8 KiB: for the usual handful of characters a look at each is cheaper.
  if (characters.length() <= 8) {
    const auto list = characters.view();
    return replaceUnits(
        receiver, [list](char16_t unit) { return list.find(unit) != list.npos; }, replacement);
  }
  const auto set = NSCharacterSet::withCharacters(characters);
  return replaceUnits(
      receiver, [&set](char16_t unit) { return set.contains(unit); }, replacement);
}

NSString stringByReplacingOccurrencesOfStringsInArray(const NSString& receiver,
                                                      const NSArray& strings,
                                                      const NSString& replacement) {
  if (strings.count() == 0 || receiver.isEmpty()) return receiver;
  NSString result = receiver;
  for (const id& element : strings) {
    if (!element.is<NSString>()) {
      NSLog(u"Warning: Non-string object encountered in array: %@", element);
      continue;
    }
    const auto target = element.as<NSString>();
    if (target.view() == replacement.view()) continue;
    result = replaceAll(result, target, replacement);
  }
  return result;
}

NSString stringByReplacingOccurencesOfCaseInsensitiveString(const NSString& receiver,
                                                            const NSString& target,
                                                            const NSString& replacement) {
  return stringByReplacingCaseInsensitive(receiver, target, replacement);
}

}  // namespace StringKelsparNSStringAdditions

namespace StringKelsparNSMutableStringAdditions {

void replaceCharactersInSet(NSMutableString& receiver, const NSCharacterSet& set,
                            const NSString& replacement) {
  if (!set) return;
  const auto belongs = [&set](char16_t unit) { return set.contains(unit); };
  const auto text = receiver.view();
  const auto hits = static_cast<size_t>(std::ranges::count_if(text, belongs));
  if (hits == 0) return;
  std::u16string result;
  result.reserve(text.size() + hits * replacement.length() - hits);
  for (const char16_t unit : text) {
    belongs(unit) ? result.append(replacement.view()) : result.append(1, unit);
  }
  receiver = NSMutableString(std::move(result));
}

}  // namespace StringKelsparNSMutableStringAdditions

}  // namespace kelspar
