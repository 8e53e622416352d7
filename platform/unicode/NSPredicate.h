// The predicate "SELF MATCHES %@": whether a text as a whole matches a regular expression.
#pragma once

#include "platform/unicode/NSRegularExpression.h"

namespace kelspar {

// Compiled once, to be used by any thread.
//
//   NSPredicate::matches(u"image0+1\\.png", NSPredicate::caseInsensitive)
//       .evaluate(u"IMAGE001.PNG")  // true
class NSPredicate {
 public:
  enum Options : uint8_t { exact = 0, caseInsensitive = 1, diacriticInsensitive = 2 };

  // MATCHES, MATCHES[c], MATCHES[d], MATCHES[cd] by the options. Under [d], combining marks count
  // neither in the pattern nor in the text ("é" is "e").
  //
  // A faulty pattern matches nothing, and neither does a missing one. An empty pattern matches the
  // empty text. Patterns without other metacharacters than "." cost no more than a comparison.
  [[nodiscard]] static NSPredicate matches(const NSString& pattern, uint8_t options = exact);

  // False for nil. `steps`: of the engine, as in NSRegularExpression::matchesWhole.
  [[nodiscard]] bool evaluate(const NSString& text, int32_t* steps = nullptr) const;

 private:
  [[nodiscard]] bool evaluateLiteral(std::u16string_view text) const;

  NSString pattern_;
  uint8_t options_ = exact;
  bool isLiteral_ = false;
  NSRegularExpression expression_;
};

}  // namespace kelspar
