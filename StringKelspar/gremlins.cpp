// Misdecoded tails and other gremlins.
#include <algorithm>

#include "StringKelspar/StringKelsparNSMutableStringAdditions.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/foundation/hex.h"
#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"

namespace kelspar::StringKelsparNSStringAdditions {

NSString truncateAtGarbageCharacters(const NSString& receiver) {
  constexpr char16_t kHigh = 0x3001;
  const auto text = receiver.view();
  size_t high = 0, good = 0;
  bool ended = false;
  for (const char16_t unit : text) {
    const bool isHigh = unit >= kHigh;
    if (isHigh && good < 4) return receiver;
    ended = unit == 0 && good != 0;
    // Behind the third high unit nothing is counted any more.
    if (ended || high >= 3) break;
    ++(isHigh ? high : good);
  }
  if (!ended && high < 3) return receiver;
  // Deliberate: the low units are counted, wherever high ones stood among them.
  return good < text.size() ? receiver.substring(0, good) : receiver;
}

namespace {

// All escapes decoded as UTF-8; nil when one is not "%XX" or the bytes are not UTF-8.
NSString removingPercentEncoding(const NSString& text) {
  const auto units = text.view();
  size_t at = scan::findAny(units, 0, u'%');
  if (at == units.size()) return text;
  std::string bytes;
  bytes.reserve(units.size());
  size_t from = 0;
  for (; at < units.size(); at = scan::findAny(units, from, u'%')) {
    const int high = at + 2 < units.size() ? hexValue(units[at + 1]) : -1;
    const int low = at + 2 < units.size() ? hexValue(units[at + 2]) : -1;
    if (high < 0 || low < 0) return nil;
    if (!utf8::append(units.substr(from, at - from), &bytes)) return nil;
    bytes.push_back(static_cast<char>(high << 4 | low));
    from = at + 3;
  }
  if (!utf8::append(units.substr(from), &bytes)) return nil;
  return NSString::fromUTF8(bytes);
}

}  // namespace

NSString zapGremlins(const NSString& receiver) {
  if (receiver.isEmpty()) return receiver;
  static const NSCharacterSet illegal = NSCharacterSet::illegal();
  static const NSCharacterSet blanks = NSCharacterSet::whitespaceAndNewline();
  NSString text = truncateAtGarbageCharacters(receiver);
  if (const NSString decoded = removingPercentEncoding(text)) text = decoded;
  const auto isIllegal = [](char16_t unit) { return illegal.contains(unit); };
  const auto units = text.view();
  if (std::any_of(units.begin(), units.end(), isIllegal)) {
    NSMutableString legal(units);
    StringKelsparNSMutableStringAdditions::replaceCharactersInSet(legal, illegal, u"");
    text = std::move(legal).copy();
  }
  return stringByTrimming(text, blanks);
}

}  // namespace kelspar::StringKelsparNSStringAdditions
