// Lists of an RTF document: the list table, its overrides, and the older \pn groups. Internal.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/rtf_keywords.h"

namespace kelspar {

// A level of a list, as \listlevel describes it.
struct RTFListLevel {
  static constexpr int32_t kBullet = 23, kNoNumber = 255;  // formats
  int32_t format = 0;                                      // \levelnfc
  int32_t start = 1;
  int32_t font = -1;
  int32_t follow = 0;   // behind the marker: 0 a tab, 1 a space, 2 nothing
  std::u16string text;  // the marker; a unit n below 9 stands for the number of level n
};

class RTFLists {
 public:
  static constexpr size_t kLevels = 9;

  // A word of the list table, the override table or a \pn group; false for any other.
  bool word(int32_t word, int32_t parameter, RTFDestination destination);
  // Units of \leveltext: a count, the marker, a semicolon.
  void levelText(std::u16string_view units);
  void levelTextEnds();

  // Makes what was read the tables that paragraphs refer to.
  void tablesEnd();

  // A paragraph's lists, outermost first, by its \ls and \ilvl.
  [[nodiscard]] std::vector<NSTextList> listsOf(int32_t override, int32_t level) const;

  // What a level of an \ls looks like; null when the tables do not tell.
  [[nodiscard]] const RTFListLevel* levelOf(int32_t override, size_t level) const;
  // The list that an \ls stands for: those of one list are numbered on.
  [[nodiscard]] std::optional<int32_t> listIdOf(int32_t override) const;
  // The number that this \ls begins the level with, when it does not go on.
  [[nodiscard]] std::optional<int32_t> restartOf(int32_t override, size_t level) const;

  // \pn: begins a list of one level, or goes on with the one before when it is of the same kind.
  void numberingBegins() { numbering_ = {}; }
  // The list of the group that has been read; `identity` is 0 when it says nothing.
  [[nodiscard]] NSTextList numbering(uint32_t before);

 private:
  struct List {
    int32_t id = 0;
    std::vector<RTFListLevel> levels;
  };
  struct OverrideLevel {
    bool hasStart = false, hasFormat = false;
    RTFListLevel level;
  };
  struct Override {
    int32_t number = 0, listId = 0;
    std::vector<OverrideLevel> levels;
  };
  bool listWord(int32_t word, int32_t parameter);
  bool overrideWord(int32_t word, int32_t parameter);
  static bool levelWord(int32_t word, int32_t parameter, RTFListLevel* level);
  bool numberingWord(int32_t word, int32_t parameter);
  [[nodiscard]] RTFListLevel* levelAtHand();
  [[nodiscard]] const Override* overrideNumbered(int32_t number) const;
  static NSTextList textList(const RTFListLevel& level, size_t depth, int32_t start,
                             uint32_t identity);

  std::vector<List> lists_;
  std::vector<Override> overrides_;
  bool inOverrides_ = false;  // the level at hand is one of an override
  std::unordered_map<int32_t, size_t> listOfId_, overrideOfNumber_;
  size_t listsDone_ = 0, overridesDone_ = 0;  // those that stand in the maps
  std::u16string text_;                       // of the \leveltext at hand
  struct Numbering {
    bool isList = false;
    RTFListLevel level;
  } numbering_;
  uint32_t numberings_ = 0;
  int32_t lastNumbering_ = 0;  // its format
};

}  // namespace kelspar
