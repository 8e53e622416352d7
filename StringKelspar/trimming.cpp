// Cutting at the ends, splitting, and replacing one thing by another.
#include <algorithm>

#include "StringKelspar/StringKelsparNSMutableStringAdditions.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/unicode/NSStringCase.h"
#include "platform/unicode/text_search.h"

namespace kelspar {

namespace StringKelsparNSStringAdditions {

NSString trimTrailingNulls(const NSString& receiver) {
  const auto text = receiver.view();
  const size_t last = text.find_last_not_of(u'\0');
  return receiver ? receiver.substring(0, last + 1) : nil;
}

NSString stringByTrimmingLeadingCharactersInSet(const NSString& receiver,
                                                const NSCharacterSet& set) {
  const auto text = receiver.view();
  size_t from = 0;
  while (from < text.size() && set.contains(text[from])) ++from;
  return receiver ? receiver.substring(from) : u""_ns;
}

NSString stringByTrimmingLeadingAndTrailingCharactersInSet(const NSString& receiver,
                                                           const NSCharacterSet& set) {
  return receiver ? stringByTrimming(receiver, set) : u""_ns;
}

NSString removeTrailingString(const NSString& receiver, const NSString& string) {
  const auto text = receiver.view();
  if (string.isEmpty() || !text.ends_with(string.view())) return receiver;
  return receiver.substring(0, text.size() - string.length());
}

NSString removeLeadingString(const NSString& receiver, const NSString& string) {
  if (string.isEmpty() || !receiver.hasPrefix(string)) return receiver;
  return receiver.substring(string.length());
}

NSMutableArray componentsSeparatedByCaseInsensitiveString(const NSString& receiver,
                                                          const NSString& separator) {
  NSMutableArray pieces;
  const auto matches =
      separator.isEmpty() ? std::vector<NSRange>() : CaseFoldedText(receiver).findAll(separator);
  if (matches.empty()) {
    pieces.addObject(receiver ? receiver : u""_ns);
    return pieces;
  }
  size_t from = 0;
  for (const NSRange& match : matches) {
    pieces.addObject(receiver.substring(from, match.location - from));
    from = match.location + match.length;
  }
  pieces.addObject(receiver.substring(from));
  return pieces;
}

namespace {

NSArray componentsSeparatedByString(const NSString& text, const NSString& separator) {
  std::vector<id> pieces;
  size_t from = 0;
  TextSearch search(separator, text);
  for (size_t at; (at = search.next()) != TextSearch::npos; from = at + separator.length()) {
    pieces.push_back(text.substring(from, at - from));
  }
  pieces.push_back(text.substring(from));
  return NSArray(std::move(pieces));
}

}  // namespace

NSArray stringSeparatedWithComponents(const NSString& receiver, const NSArray& separators) {
  return stringSeparatedWithComponents(receiver, separators, false);
}

NSArray stringSeparatedWithComponents(const NSString& receiver, const NSArray& separators,
                                      bool preserveCase) {
  if (separators.count() == 0) return nil;
  if (receiver.isEmpty()) return {u""_ns};
  const NSString text = preserveCase ? receiver : uppercaseString(receiver);
  for (const id& element : separators) {
    const auto separator = element.as<NSString>();
    if (separator.isEmpty()) continue;
    NSArray pieces = preserveCase
                         ? componentsSeparatedByCaseInsensitiveString(text, separator).copy()
                         : componentsSeparatedByString(text, uppercaseString(separator));
    if (pieces.count() > 1) return pieces;
  }
  return {text};
}

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
