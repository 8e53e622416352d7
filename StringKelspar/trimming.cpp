// Cutting at the ends.
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::StringKelsparNSStringAdditions {

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

}  // namespace kelspar::StringKelsparNSStringAdditions
