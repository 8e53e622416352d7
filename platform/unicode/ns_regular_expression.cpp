// NSRegularExpression on ICU: clones of one compiled expression share its program.
#include "platform/unicode/NSRegularExpression.h"

#include <unicode/uregex.h>
#include <unicode/ustring.h>

#include <algorithm>

namespace kelspar {

namespace {

struct Close {
  void operator()(URegularExpression* expression) const { uregex_close(expression); }
};
using Matcher = std::unique_ptr<URegularExpression, Close>;

// ICU counts steps of its engine, not time: 1,000 of them take about 0.2 s.
constexpr int32_t kMostSteps = 5000;
constexpr int32_t kStackBytes = 8 << 20;

constexpr struct {
  uint32_t option, flag;
} kFlags[] = {
    {NSRegularExpression::caseInsensitive, UREGEX_CASE_INSENSITIVE},
    {NSRegularExpression::allowCommentsAndWhitespace, UREGEX_COMMENTS},
    {NSRegularExpression::ignoreMetacharacters, UREGEX_LITERAL},
    {NSRegularExpression::dotMatchesLineSeparators, UREGEX_DOTALL},
    {NSRegularExpression::anchorsMatchLines, UREGEX_MULTILINE},
    {NSRegularExpression::useUnixLineSeparators, UREGEX_UNIX_LINES},
    {NSRegularExpression::useUnicodeWordBoundaries, UREGEX_UWORD},
};

Matcher matcherFor(const URegularExpression* compiled, std::u16string_view text) {
  if (!compiled || text.size() > INT32_MAX) return nullptr;
  UErrorCode error = U_ZERO_ERROR;
  Matcher matcher(uregex_clone(compiled, &error));
  if (U_FAILURE(error)) return nullptr;
  uregex_setTimeLimit(matcher.get(), kMostSteps, &error);
  uregex_setStackLimit(matcher.get(), kStackBytes, &error);
  const char16_t* units = text.empty() ? u"" : text.data();
  uregex_setText(matcher.get(), units, static_cast<int32_t>(text.size()), &error);
  return U_SUCCESS(error) ? std::move(matcher) : nullptr;
}

NSRegularExpression::Match readMatch(URegularExpression* matcher, size_t groups) {
  NSRegularExpression::Match match(groups + 1);
  for (size_t group = 0; group <= groups; ++group) {
    UErrorCode error = U_ZERO_ERROR;
    const int32_t start = uregex_start(matcher, static_cast<int32_t>(group), &error);
    const int32_t end = uregex_end(matcher, static_cast<int32_t>(group), &error);
    match[group] = U_FAILURE(error) || start < 0
                       ? NSRange{NSNotFound, 0}
                       : NSRange{static_cast<uint64_t>(start), static_cast<uint64_t>(end - start)};
  }
  return match;
}

// As long a group number as there are groups for.
void appendTemplate(std::u16string_view form, std::u16string_view text,
                    const NSRegularExpression::Match& match, std::u16string* out) {
  const auto isDigit = [&](size_t i) {
    return i < form.size() && form[i] >= u'0' && form[i] <= u'9';
  };
  for (size_t i = 0; i < form.size(); ++i) {
    if (form[i] == u'\\' && i + 1 < form.size()) {
      out->push_back(form[++i]);
    } else if (form[i] == u'$' && isDigit(i + 1)) {
      size_t group = form[++i] - u'0';
      while (isDigit(i + 1) && group * 10 + (form[i + 1] - u'0') < match.size()) {
        group = group * 10 + (form[++i] - u'0');
      }
      if (group < match.size() && match[group].location != NSNotFound) {
        out->append(text.substr(match[group].location, match[group].length));
      }
    } else {
      out->push_back(form[i]);
    }
  }
}

}  // namespace

NSRegularExpression NSRegularExpression::withPattern(const NSString& pattern, uint32_t options,
                                                     NSString* error) {
  NSRegularExpression result;
  uint32_t flags = 0;
  for (const auto& row : kFlags) flags |= options & row.option ? row.flag : 0;
  const auto units = pattern.view();
  UErrorCode status =
      units.empty() || units.size() > INT32_MAX ? U_ILLEGAL_ARGUMENT_ERROR : U_ZERO_ERROR;
  UParseError place{};
  URegularExpression* compiled =
      uregex_open(units.data(), U_SUCCESS(status) ? static_cast<int32_t>(units.size()) : 0, flags,
                  &place, &status);
  if (U_FAILURE(status)) {
    if (error) {
      *error = NSString::stringWithFormat(u"%s at offset %d", u_errorName(status), place.offset);
    }
    return result;
  }
  result.compiled_ = std::shared_ptr<URegularExpression>(compiled, Close());
  result.groups_ = static_cast<size_t>(uregex_groupCount(compiled, &status));
  return result;
}

template <class Each>
void NSRegularExpression::enumerate(std::u16string_view text, size_t from, Each each) const {
  if (from > text.size()) return;
  const Matcher matcher = matcherFor(compiled_.get(), text);
  if (!matcher) return;
  UErrorCode error = U_ZERO_ERROR;
  if (from > 0) {
    uregex_setRegion(matcher.get(), static_cast<int32_t>(from), static_cast<int32_t>(text.size()),
                     &error);
    uregex_useTransparentBounds(matcher.get(), true, &error);
    uregex_useAnchoringBounds(matcher.get(), false, &error);
  }
  while (uregex_findNext(matcher.get(), &error) && U_SUCCESS(error)) {
    if (!each(readMatch(matcher.get(), groups_))) return;
  }
}

std::vector<NSRegularExpression::Match> NSRegularExpression::matches(std::u16string_view text,
                                                                     size_t from) const {
  std::vector<Match> found;
  enumerate(text, from, [&](Match&& match) {
    found.push_back(std::move(match));
    return true;
  });
  return found;
}

std::optional<NSRegularExpression::Match> NSRegularExpression::firstMatch(std::u16string_view text,
                                                                          size_t from) const {
  std::optional<Match> found;
  enumerate(text, from, [&](Match&& match) {
    found = std::move(match);
    return false;
  });
  return found;
}

bool NSRegularExpression::matchesWhole(std::u16string_view text, int32_t* steps) const {
  if (steps && *steps <= 0) return false;
  const Matcher matcher = matcherFor(compiled_.get(), text);
  if (!matcher) return false;
  UErrorCode error = U_ZERO_ERROR;
  int32_t taken = 0;
  if (steps) {
    uregex_setTimeLimit(matcher.get(), std::min(*steps, kMostSteps), &error);
    const auto count = [](const void* context, int32_t all) -> UBool {
      *static_cast<int32_t*>(const_cast<void*>(context)) = all;
      return true;
    };
    uregex_setMatchCallback(matcher.get(), count, &taken, &error);
  }
  const bool isMatch = uregex_matches(matcher.get(), -1, &error) && U_SUCCESS(error);
  if (steps) *steps -= taken;
  return isMatch;
}

NSString NSRegularExpression::stringByReplacingMatches(const NSString& text,
                                                       std::u16string_view replacement) const {
  const auto units = text.view();
  std::u16string result;
  size_t from = 0;
  bool changed = false;
  enumerate(units, 0, [&](const Match& match) {
    if (!changed) result.reserve(units.size());
    changed = true;
    result.append(units.substr(from, match[0].location - from));
    appendTemplate(replacement, units, match, &result);
    from = match[0].location + match[0].length;
    return true;
  });
  if (!changed) return text;
  result.append(units.substr(from));
  return NSString(std::move(result));
}

}  // namespace kelspar
