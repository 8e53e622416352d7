// Case: full Unicode mapping, and search and replacement that ignore case.
#pragma once

#include <string>
#include <vector>

#include "platform/foundation/NSString.h"

namespace kelspar {

// Full, locale-independent case mapping (SpecialCasing included: "ß" becomes "SS"). Lone surrogates
// stay. The receiver itself when nothing changes; nil for nil.
[[nodiscard]] NSString uppercaseString(const NSString& text);
[[nodiscard]] NSString lowercaseString(const NSString& text);

// A text folded once (full case folding, Unicode's C and F mappings), to be searched for several
// needles. A match covers whole units of the text and is reported in them: "SS" is found in "ß",
// "s" is not. The text must outlive this object. All searches are linear in text and needle.
//
//   CaseFoldedText folded(u"Stra\u00DFe");
//   folded.find(u"STRASSE");  // {0, 6}
class CaseFoldedText {
 public:
  explicit CaseFoldedText(std::u16string_view text);

  // The first match at or behind `from`; location NSNotFound when there is none or the needle is
  // empty.
  [[nodiscard]] NSRange find(std::u16string_view needle, size_t from = 0) const;
  [[nodiscard]] NSRange findLast(std::u16string_view needle) const;
  // All matches, left to right, without overlap.
  [[nodiscard]] std::vector<NSRange> findAll(std::u16string_view needle) const;
  [[nodiscard]] bool hasPrefix(std::u16string_view needle) const;

 private:
  [[nodiscard]] bool isBoundary(size_t folded) const;
  [[nodiscard]] size_t sourceOf(size_t folded) const;
  [[nodiscard]] size_t foldedOf(size_t source) const;

  std::u16string folded_;
  // Source position of each folded unit and of the end, filled only when some unit folds to more
  // than one; the units that such a fold adds carry the position of the one they come from.
  std::vector<size_t> sources_;
};

// The fold of a whole text.
[[nodiscard]] std::u16string foldCase(std::u16string_view text);

// The first match; location NSNotFound when there is none.
[[nodiscard]] NSRange rangeOfCaseInsensitiveString(std::u16string_view text,
                                                   std::u16string_view needle, size_t from = 0);

// Every match replaced. The receiver itself when there is none.
[[nodiscard]] NSString stringByReplacingCaseInsensitive(const NSString& text,
                                                        std::u16string_view target,
                                                        std::u16string_view replacement);

}  // namespace kelspar
