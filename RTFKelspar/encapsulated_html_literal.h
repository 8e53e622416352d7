// The extraction of htmltag contents as its description states it, unit by unit: what the real
// scanner is compared with, in tests, fuzzing and benchmarks.
#pragma once

#include <algorithm>

#include "platform/foundation/NSString.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar {

inline NSString extractHTMLLiterally(const NSData& rtf) {
  NSString decoded = stringWithData(rtf, NSUTF8StringEncoding);
  if (!decoded) decoded = stringWithData(rtf, NSWindowsCP1252StringEncoding);
  if (!decoded) return nil;
  const std::u16string_view s = decoded.view();
  const size_t length = s.size();
  size_t p = 0;
  int64_t depth = 0, tagDepth = 0;
  bool inTag = false, suppress = false;
  std::u16string out;
  const auto isDigit = [&](char16_t c) { return NSCharacterSet::decimalDigit().contains(c); };
  const auto isLetter = [](char16_t c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
  };
  while (p < length) {
    const char16_t c = s[p];
    if (c == u'\\') {
      if (p + 8 < length) {
        const auto sub = s.substr(p, std::min<size_t>(length - p, 10));
        if (sub.starts_with(u"\\htmlrtf0")) {
          p += 9;
          suppress = false;
          continue;
        }
        if (sub.starts_with(u"\\htmlrtf")) {
          suppress = true;
          p += s[p + 8] == u' ' ? 9 : 8;
          continue;
        }
      }
      ++p;
      if (!inTag) continue;
      while (p < length && isLetter(s[p])) ++p;
      if (p >= length) break;
      if (s[p] == u'-' || isDigit(s[p])) {
        if (s[p] == u'-') ++p;
        while (p < length && isDigit(s[p])) ++p;
        if (p >= length) break;
      }
      if (s[p] == u' ') ++p;
    } else if (c == u'}') {
      if (inTag && depth == tagDepth) inTag = false;
      --depth;
      ++p;
    } else if (c == u'{') {
      ++depth;
      if (p + 12 >= length) {
        ++p;
      } else if (s.substr(p, 12).starts_with(u"{\\*\\htmltag")) {
        p += 11;
        while (p < length && isDigit(s[p])) ++p;
        if (p < length && s[p] == u' ') ++p;
        inTag = true;
        tagDepth = depth;
      } else {
        ++p;
      }
    } else {
      if (!suppress && inTag && c != u'\r' && c != u'\n') out += c;
      ++p;
    }
  }
  return out.empty() ? NSString() : NSString(std::move(out));
}

}  // namespace kelspar
