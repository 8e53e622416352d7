// MATCHES: by comparison where pattern and text are plain, by ICU otherwise.
#include "platform/foundation/ascii.h"
#include "platform/unicode/NSPredicate.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace kelspar {

namespace {

// What "." does not match in ICU, as far as it is ASCII.
bool isLineEnd(char16_t c) { return c >= u'\n' && c <= u'\r'; }

NSString withoutMarks(const NSString& text) {
  const auto units = text.view();
  if (ascii::isAll(units) || units.size() > INT32_MAX / 4) return text;
  UErrorCode error = U_ZERO_ERROR;
  const auto* decomposer = icu::Normalizer2::getNFDInstance(error);
  if (U_FAILURE(error)) return text;
  const icu::UnicodeString source(false, units.data(), static_cast<int32_t>(units.size()));
  const icu::UnicodeString decomposed = decomposer->normalize(source, error);
  if (U_FAILURE(error)) return text;
  icu::UnicodeString result;
  for (int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1)) {
    const UChar32 c = decomposed.char32At(i);
    if (u_charType(c) != U_NON_SPACING_MARK) result.append(c);
  }
  return NSString(std::u16string_view(result.getBuffer(), static_cast<size_t>(result.length())));
}

}  // namespace

NSPredicate NSPredicate::matches(const NSString& pattern, uint8_t options) {
  NSPredicate result;
  result.options_ = options;
  result.pattern_ = options & diacriticInsensitive ? withoutMarks(pattern) : pattern;
  const auto units = result.pattern_.view();
  constexpr std::u16string_view kMetacharacters = u"*?+[](){}^$|\\";
  result.isLiteral_ =
      result.pattern_ && ascii::isAll(units) && units.find_first_of(kMetacharacters) == units.npos;
  const bool ignoresCase = options & caseInsensitive;
  result.expression_ = NSRegularExpression::withPattern(
      result.pattern_,
      ignoresCase ? NSRegularExpression::caseInsensitive : NSRegularExpression::none);
  return result;
}

bool NSPredicate::evaluateLiteral(std::u16string_view text) const {
  const auto units = pattern_.view();
  const bool ignoresCase = options_ & caseInsensitive;
  return text.size() == units.size() &&
         std::equal(text.begin(), text.end(), units.begin(), [&](char16_t c, char16_t wanted) {
           if (wanted == u'.') return !isLineEnd(c);
           return ignoresCase ? ascii::lower(c) == ascii::lower(wanted) : c == wanted;
         });
}

bool NSPredicate::evaluate(const NSString& text, int32_t* steps) const {
  if (!text) return false;
  const NSString subject = options_ & diacriticInsensitive ? withoutMarks(text) : text;
  if (isLiteral_ && ascii::isAll(subject)) return evaluateLiteral(subject);
  return expression_.matchesWhole(subject, steps);
}

}  // namespace kelspar
