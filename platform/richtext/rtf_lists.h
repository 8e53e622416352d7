// Lists of an RTF document: the list table, its overrides, and the older \pn groups. Internal.
#pragma once

#include <unordered_map>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/rtf_keywords.h"

namespace kelspar {

class RTFLists {
 public:
  // A word of the list table, the override table or a \pn group; false for any other.
  bool word(int32_t word, int32_t parameter, RTFDestination destination);

  // Makes what was read the tables that paragraphs refer to.
  void tablesEnd();

  // A paragraph's lists, outermost first, by its \ls and \ilvl.
  [[nodiscard]] std::vector<NSTextList> listsOf(int32_t override, int32_t level) const;

  // \pn: begins a list of one level, or goes on with the one before when it is of the same kind.
  void numberingBegins() { numbering_ = {}; }
  // The list of the group that has been read; `identity` is 0 when it says nothing.
  [[nodiscard]] NSTextList numbering(uint32_t before);

 private:
  struct Level {
    int32_t format = 0;  // \levelnfc
    int32_t start = 1;
  };
  struct List {
    int32_t id = 0;
    std::vector<Level> levels;
  };
  static NSTextList textList(const Level& level, size_t depth, uint32_t identity);

  std::vector<List> lists_;
  std::vector<std::pair<int32_t, int32_t>> overrides_;  // \ls, \listid
  std::unordered_map<int32_t, size_t> listOfId_;
  std::unordered_map<int32_t, int32_t> idOfOverride_;
  struct Numbering {
    bool isList = false;
    Level level;
  } numbering_;
  uint32_t numberings_ = 0;
  Level lastNumbering_;
};

}  // namespace kelspar
