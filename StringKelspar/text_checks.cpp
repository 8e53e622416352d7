// Questions about a text: is it HTML, is it clean?
#include <algorithm>

#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/foundation/utf8.h"
#include "platform/unicode/NSStringCase.h"

namespace kelspar::StringKelsparNSStringAdditions {

bool isHTML(const NSString& receiver) {
  static const NSCharacterSet blanks = NSCharacterSet::whitespaceAndNewline();
  const NSString trimmed = stringByTrimming(receiver, blanks);
  if (trimmed.length() < 13) return false;
  const CaseFoldedText text(trimmed);
  if (text.hasPrefix(u"<!DOCTYPE")) return true;
  if (text.hasPrefix(u"<html")) {
    const NSRange end = text.findLast(u"</html>");
    // Deliberate: below 20 units the bound wraps around, and nothing lies beyond it.
    const uint64_t bound = uint64_t{trimmed.length()} - 20;
    if (end.location != NSNotFound && end.location > bound) return true;
  }
  const std::u16string_view markers[] = {u"<head", u"<body", u"<html"};
  return std::ranges::count_if(markers, [&text](std::u16string_view marker) {
           return text.find(marker).location != NSNotFound;
         }) >= 2;
}

namespace {

const NSCharacterSet& cleanPunctuation() {
  static const NSCharacterSet set =
      NSCharacterSet::withCharacters(u" .,;:-_()[]{}<>!?@#$%^&*+=/\\\"'\n\r\t\u00A0");
  return set;
}

}  // namespace

bool isValidNSStringWithStrictCheck(const id& receiver, bool strict) {
  const auto text = receiver.as<NSString>();
  if (!text || !utf8::isWellFormed(text)) return false;
  static const NSCharacterSet alphanumeric = NSCharacterSet::alphanumeric();
  const auto units = text.view();
  const auto strange = std::ranges::count_if(units, [](char16_t unit) {
    return !alphanumeric.contains(unit) && !cleanPunctuation().contains(unit);
  });
  if (strict || units.empty()) return strange == 0;
  return static_cast<double>(strange) / static_cast<double>(units.size()) <= 0.05;
}

}  // namespace kelspar::StringKelsparNSStringAdditions
