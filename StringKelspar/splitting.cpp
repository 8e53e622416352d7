// Pieces between separators.
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/unicode/NSStringCase.h"
#include "platform/unicode/text_search.h"

namespace kelspar::StringKelsparNSStringAdditions {

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

}  // namespace kelspar::StringKelsparNSStringAdditions
