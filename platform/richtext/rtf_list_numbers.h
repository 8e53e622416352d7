// The markers of list items whose writer left them out. Internal.
#pragma once

#include <array>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "platform/richtext/rtf_fonts.h"
#include "platform/richtext/rtf_lists.h"

namespace kelspar {

// Counts the items of every list of a document.
class RTFListNumbers {
 public:
  RTFListNumbers(const RTFLists* lists, const RTFFontTable* fonts)
      : lists_(*lists), fonts_(*fonts) {}

  // A paragraph of that \ls and \ilvl stands in the text.
  void count(int32_t override, int32_t level);

  // The marker of the paragraph counted last, with the tab or space behind it: "2.1.\t". Empty when
  // the tables do not tell, or when the level shows none. Of bounded length.
  [[nodiscard]] std::u16string marker(int32_t override, int32_t level) const;

 private:
  struct Counters {
    std::array<int32_t, RTFLists::kLevels> numbers{};
    uint32_t begun = 0;  // a bit a level
  };
  static size_t depth(int32_t level);
  [[nodiscard]] int32_t numberAt(const Counters& counters, int32_t override, size_t level) const;
  [[nodiscard]] char16_t bullet(char16_t unit, int32_t font) const;

  const RTFLists& lists_;
  const RTFFontTable& fonts_;
  std::unordered_map<int32_t, Counters> counters_;  // by list
  std::unordered_set<int32_t> used_;                // \ls numbers
};

// A number in a \levelnfc format, as word processors write it: "iv", "aa" behind "z". Formats that
// are not known, and numbers that a format cannot say, are decimal.
[[nodiscard]] std::u16string textOfListNumber(int32_t number, int32_t format);

}  // namespace kelspar
