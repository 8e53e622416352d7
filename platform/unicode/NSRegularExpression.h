// Regular expressions in ICU's syntax. An expression is compiled once and may be used by any number
// of threads at a time: each call has a matcher of its own.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/foundation/NSString.h"

struct URegularExpression;

namespace kelspar {

class NSRegularExpression {
 public:
  enum Options : uint32_t {
    none = 0,
    caseInsensitive = 1 << 0,
    allowCommentsAndWhitespace = 1 << 1,
    ignoreMetacharacters = 1 << 2,
    dotMatchesLineSeparators = 1 << 3,
    anchorsMatchLines = 1 << 4,
    useUnixLineSeparators = 1 << 5,
    useUnicodeWordBoundaries = 1 << 6,
  };

  NSRegularExpression() = default;  // nil: matches nothing
  // nil for a missing, empty or faulty pattern, with the reason in `*error` when it is given.
  [[nodiscard]] static NSRegularExpression withPattern(const NSString& pattern,
                                                       uint32_t options = none,
                                                       NSString* error = nullptr);
  [[nodiscard]] explicit operator bool() const noexcept { return compiled_ != nullptr; }
  // 0 for nil.
  [[nodiscard]] size_t numberOfCaptureGroups() const noexcept { return groups_; }

  // Where a match lies: the whole match first, then its groups; a group that took no part has its
  // location at NSNotFound.
  using Match = std::vector<NSRange>;

  // Matches do not overlap; anchors and boundaries see the whole text. Matching has a limit on time
  // (about a second for the text) and on memory; a search that reaches one ends there, as if no
  // further match were found.
  [[nodiscard]] std::vector<Match> matches(std::u16string_view text, size_t from = 0) const;
  [[nodiscard]] std::optional<Match> firstMatch(std::u16string_view text, size_t from = 0) const;
  // Whether the expression matches the text from its beginning to its end. With `steps`, it takes
  // no more of the engine's steps than those (1,000 are about 0.2 s) and subtracts what it took; a
  // match that needs less than one is free.
  [[nodiscard]] bool matchesWhole(std::u16string_view text, int32_t* steps = nullptr) const;
  // Every match replaced by the template: "$1" stands for a group, "\" takes the next unit as it
  // is. The receiver itself when nothing matches.
  [[nodiscard]] NSString stringByReplacingMatches(const NSString& text,
                                                  std::u16string_view replacement) const;

 private:
  template <class Each>
  void enumerate(std::u16string_view text, size_t from, Each each) const;

  std::shared_ptr<URegularExpression> compiled_;
  size_t groups_ = 0;
};

}  // namespace kelspar
