// Exact search of units, or of bytes, in linear time, whatever needle and text are. Internal to the
// library.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kelspar {

// The occurrences of `needle` in `text`, left to right. Both must outlive the search.
//
//   TextSearch search(u"aa", u"aaaa", TextSearch::overlapping);
//   search.next();  // 0, then 1, then 2, then npos
//
// Candidates are found sixteen bytes at a time by the needle's first and last units and compared
// in place. When comparing has cost more than a few looks at each unit, the rest is searched with
// Knuth, Morris and Pratt's automaton, so hostile texts stay linear.
template <class Char>
class BasicTextSearch {
 public:
  using View = std::basic_string_view<Char>;
  enum Kind : bool { separate, overlapping };
  static constexpr size_t npos = View::npos;

  BasicTextSearch(View needle, View text, Kind kind = separate)
      : needle_(needle), text_(text), step_(kind == overlapping ? 1 : needle.size()) {}

  // The next occurrence, or npos. An empty needle never occurs.
  [[nodiscard]] size_t next();

 private:
  size_t nextByComparing();
  size_t nextByAutomaton();
  void buildAutomaton();

  View needle_, text_;
  size_t step_;
  size_t at_ = 0;                  // where to look next
  size_t compared_ = 0;            // units compared so far
  std::vector<uint32_t> borders_;  // the automaton: the longest border of each prefix
  size_t matched_ = 0;             // its state: how much of the needle stands before at_
};

using TextSearch = BasicTextSearch<char16_t>;
extern template class BasicTextSearch<char16_t>;
extern template class BasicTextSearch<char>;

// The first occurrence at or behind `from`; npos when there is none.
[[nodiscard]] size_t findText(std::u16string_view needle, std::u16string_view text,
                              size_t from = 0);

}  // namespace kelspar
