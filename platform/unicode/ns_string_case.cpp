// Case mapping by ICU; case folding by a table of the BMP that is built on first use.
#include "platform/unicode/NSStringCase.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <memory>

#include "platform/foundation/ascii.h"
#include "platform/unicode/text_search.h"

namespace kelspar {

namespace {

using Mapping = int32_t (*)(char16_t*, int32_t, const char16_t*, int32_t, const char*, UErrorCode*);

NSString mapCase(const NSString& text, Mapping map, char16_t first) {
  const auto units = text.view();
  const auto changes = [first](char16_t c) { return c >= first && c < first + 26; };
  if (ascii::isAll(units)) {
    if (std::ranges::none_of(units, changes)) return text;
    return NSString::build(units.size(), [&](char16_t* out) {
      for (const char16_t c : units) *out++ = static_cast<char16_t>(c ^ (changes(c) ? 0x20 : 0));
    });
  }
  if (units.size() > INT32_MAX / 3) return text;
  std::u16string mapped(units.size() + 16, u'\0');
  const auto length = static_cast<int32_t>(units.size());
  for (;;) {
    UErrorCode error = U_ZERO_ERROR;
    const auto room = static_cast<int32_t>(mapped.size());
    const int32_t needed = map(mapped.data(), room, units.data(), length, "", &error);
    mapped.resize(static_cast<size_t>(needed));
    if (error != U_BUFFER_OVERFLOW_ERROR) break;
  }
  return mapped == units ? text : NSString(std::move(mapped));
}

// Simple folds of the BMP by unit; those that fold to several units are marked.
class FoldTable {
 public:
  static const FoldTable& shared() {
    static const FoldTable& table = *new FoldTable;
    return table;
  }
  // False for a unit that folds to several.
  bool isSimple(char16_t unit) const { return folds_[unit] != kSeveral || unit == kSeveral; }
  char16_t fold(char16_t unit) const { return unit == kSeveral ? unit : folds_[unit]; }

  // The several; there are about a hundred such units.
  std::u16string_view several(char16_t unit) const {
    const auto row = std::ranges::lower_bound(several_, unit, {}, &Several::first);
    return row->second;
  }

 private:
  static constexpr char16_t kSeveral = 0xFFFF;  // a noncharacter: nothing folds to it
  FoldTable() {
    for (uint32_t c = 0; c < 65536; ++c) {
      const auto unit = static_cast<char16_t>(c);
      folds_[c] = static_cast<char16_t>(u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT));
      if (c < 0x80 || U16_IS_SURROGATE(unit)) continue;
      char16_t full[8];
      UErrorCode error = U_ZERO_ERROR;
      const int32_t count = u_strFoldCase(full, 8, &unit, 1, U_FOLD_CASE_DEFAULT, &error);
      if (count == 1) continue;
      folds_[c] = kSeveral;
      several_.emplace_back(unit, std::u16string(full, static_cast<size_t>(count)));
    }
  }
  using Several = std::pair<char16_t, std::u16string>;
  std::vector<Several> several_;  // sorted by unit
  char16_t folds_[65536];
};

// Appends the fold of `text`. `*sources` gets the map once there is need of one.
void fold(std::u16string_view text, std::u16string* out, std::vector<size_t>* sources) {
  out->resize(text.size());
  if (ascii::isAll(text)) {
    std::ranges::transform(text, out->begin(), ascii::lower<char16_t>);
    return;
  }
  const FoldTable& table = FoldTable::shared();
  const auto isLead = [](char16_t c) { return (c & 0xFC00) == 0xD800; };
  size_t i = 0;
  for (; i < text.size() && table.isSimple(text[i]); ++i) {
    (*out)[i] = table.fold(text[i]);
    if (isLead(text[i]) && i + 1 < text.size() && U16_IS_TRAIL(text[i + 1])) {
      const UChar32 folded = u_foldCase(U16_GET_SUPPLEMENTARY(text[i], text[i + 1]), 0);
      (*out)[i] = U16_LEAD(folded);
      (*out)[++i] = U16_TRAIL(folded);
    }
  }
  if (i == text.size()) return;
  out->resize(i);
  if (sources) {
    sources->reserve(text.size() + 16);
    for (size_t at = 0; at < i; ++at) sources->push_back(at);
  }
  for (; i < text.size(); ++i) {
    if (!table.isSimple(text[i])) {
      const auto several = table.several(text[i]);
      out->append(several);
      if (sources) sources->insert(sources->end(), several.size(), i);
      continue;
    }
    out->push_back(table.fold(text[i]));
    if (sources) sources->push_back(i);
    if (isLead(text[i]) && i + 1 < text.size() && U16_IS_TRAIL(text[i + 1])) {
      const UChar32 folded = u_foldCase(U16_GET_SUPPLEMENTARY(text[i], text[i + 1]), 0);
      out->back() = U16_LEAD(folded);
      out->push_back(U16_TRAIL(folded));
      ++i;
      if (sources) sources->push_back(i);
    }
  }
  if (sources) sources->push_back(text.size());
}

}  // namespace

NSString uppercaseString(const NSString& text) { return mapCase(text, &u_strToUpper, u'a'); }
NSString lowercaseString(const NSString& text) { return mapCase(text, &u_strToLower, u'A'); }

std::u16string foldCase(std::u16string_view text) {
  std::u16string folded;
  fold(text, &folded, nullptr);
  return folded;
}

CaseFoldedText::CaseFoldedText(std::u16string_view text) { fold(text, &folded_, &sources_); }

bool CaseFoldedText::isBoundary(size_t folded) const {
  return folded == 0 || sources_.empty() || folded >= folded_.size() ||
         sources_[folded] != sources_[folded - 1];
}

size_t CaseFoldedText::sourceOf(size_t folded) const {
  return sources_.empty() ? folded : sources_[folded];
}

size_t CaseFoldedText::foldedOf(size_t source) const {
  if (sources_.empty()) return source;
  return static_cast<size_t>(std::ranges::lower_bound(sources_, source) - sources_.begin());
}

NSRange CaseFoldedText::find(std::u16string_view needle, size_t from) const {
  const std::u16string wanted = foldCase(needle);
  const size_t start = foldedOf(from);
  if (start > folded_.size()) return {NSNotFound, 0};
  const auto rest = std::u16string_view(folded_).substr(start);
  TextSearch search(wanted, rest, TextSearch::overlapping);
  for (size_t at; (at = search.next()) != TextSearch::npos;) {
    at += start;
    const size_t end = at + wanted.size();
    if (isBoundary(at) && isBoundary(end)) return {sourceOf(at), sourceOf(end) - sourceOf(at)};
  }
  return {NSNotFound, 0};
}

std::vector<NSRange> CaseFoldedText::findAll(std::u16string_view needle) const {
  const std::u16string wanted = foldCase(needle);
  std::vector<NSRange> matches;
  size_t behind = 0;  // the end of the last match
  TextSearch search(wanted, folded_,
                    sources_.empty() ? TextSearch::separate : TextSearch::overlapping);
  for (size_t at; (at = search.next()) != TextSearch::npos;) {
    const size_t end = at + wanted.size();
    if (at < behind || !isBoundary(at) || !isBoundary(end)) continue;
    matches.push_back({sourceOf(at), sourceOf(end) - sourceOf(at)});
    behind = end;
  }
  return matches;
}

NSRange CaseFoldedText::findLast(std::u16string_view needle) const {
  const std::u16string wanted = foldCase(needle);
  const std::u16string reversedNeedle(wanted.rbegin(), wanted.rend());
  const std::u16string reversed(folded_.rbegin(), folded_.rend());
  TextSearch search(reversedNeedle, reversed, TextSearch::overlapping);
  for (size_t at; (at = search.next()) != TextSearch::npos;) {
    const size_t end = folded_.size() - at, start = end - wanted.size();
    if (isBoundary(start) && isBoundary(end)) {
      return {sourceOf(start), sourceOf(end) - sourceOf(start)};
    }
  }
  return {NSNotFound, 0};
}

bool CaseFoldedText::hasPrefix(std::u16string_view needle) const {
  const std::u16string wanted = foldCase(needle);
  return !wanted.empty() && folded_.starts_with(wanted) && isBoundary(wanted.size());
}

NSRange rangeOfCaseInsensitiveString(std::u16string_view text, std::u16string_view needle,
                                     size_t from) {
  return CaseFoldedText(text).find(needle, from);
}

NSString stringByReplacingCaseInsensitive(const NSString& text, std::u16string_view target,
                                          std::u16string_view replacement) {
  if (target.empty()) return text;
  const auto matches = CaseFoldedText(text).findAll(target);
  if (matches.empty()) return text;
  const auto units = text.view();
  std::u16string result;
  result.reserve(units.size());
  size_t from = 0;
  for (const NSRange& match : matches) {
    result.append(units.substr(from, match.location - from)).append(replacement);
    from = match.location + match.length;
  }
  result.append(units.substr(from));
  return NSString(std::move(result));
}

}  // namespace kelspar
