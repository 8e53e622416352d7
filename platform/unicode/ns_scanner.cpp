// NSScanner: hexadecimal and decimal numbers that saturate.
#include "platform/unicode/NSScanner.h"

#include "platform/foundation/hex.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar {

namespace {

constexpr bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

}  // namespace

size_t NSScanner::start() const {
  static const NSCharacterSet blanks = NSCharacterSet::whitespaceAndNewline();
  const auto text = text_.view();
  size_t at = at_;
  while (at < text.size() && blanks.contains(text[at])) ++at;
  return at;
}

bool NSScanner::isAtEnd() const { return start() >= text_.length(); }

bool NSScanner::scanHex(uint64_t most, uint64_t* value) {
  const auto text = text_.view();
  size_t at = start();
  const auto digitAt = [&](size_t i) { return i < text.size() ? hexValue(text[i]) : -1; };
  const bool hasMark = at + 1 < text.size() && text[at] == u'0' && (text[at + 1] | 0x20) == u'x' &&
                       text[at + 1] < 0x80;
  if (hasMark && digitAt(at + 2) >= 0) at += 2;
  if (digitAt(at) < 0) return false;
  uint64_t number = 0;
  for (; digitAt(at) >= 0; ++at) {
    const auto digit = static_cast<uint64_t>(digitAt(at));
    number = number > (most - digit) / 16 ? most : number * 16 + digit;
  }
  *value = number;
  at_ = at;
  return true;
}

bool NSScanner::scanDecimal(int64_t least, int64_t most, int64_t* value) {
  const auto text = text_.view();
  size_t at = start();
  const bool negative = at < text.size() && text[at] == u'-';
  if (at < text.size() && (text[at] == u'-' || text[at] == u'+')) ++at;
  if (at >= text.size() || !isDigit(text[at])) return false;
  // Counted below zero, where there is room for the smallest number.
  const int64_t bound = negative ? least : -most;
  int64_t number = 0;
  for (; at < text.size() && isDigit(text[at]); ++at) {
    const int64_t digit = text[at] - u'0';
    number = number < (bound + digit) / 10 ? bound : number * 10 - digit;
    if (number < bound) number = bound;
  }
  *value = negative ? number : -number;
  at_ = at;
  return true;
}

bool NSScanner::scanHexInt(uint32_t* value) {
  uint64_t number = 0;
  if (!scanHex(UINT32_MAX, &number)) return false;
  *value = static_cast<uint32_t>(number);
  return true;
}

bool NSScanner::scanHexLongLong(uint64_t* value) { return scanHex(UINT64_MAX, value); }

bool NSScanner::scanInteger(int64_t* value) { return scanDecimal(INT64_MIN, INT64_MAX, value); }

bool NSScanner::scanInt(int32_t* value) {
  int64_t number = 0;
  if (!scanDecimal(INT32_MIN, INT32_MAX, &number)) return false;
  *value = static_cast<int32_t>(number);
  return true;
}

}  // namespace kelspar
