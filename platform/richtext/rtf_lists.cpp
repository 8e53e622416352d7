// List tables (RTF 1.9.1, "List Tables") and paragraph numbering before them ("Bullets and
// Numbering").
#include "platform/richtext/rtf_lists.h"

#include <algorithm>
#include <iterator>

namespace kelspar {

namespace {

constexpr uint32_t kFirstNumbering = 1u << 31;  // identities of \pn lists
constexpr size_t kLongestText = 32;             // of a marker; a longer one is cut

// By \levelnfc.
constexpr std::u16string_view kFormats[] = {u"decimal", u"upper-roman", u"lower-roman",
                                            u"upper-alpha", u"lower-alpha"};
// By depth.
constexpr std::u16string_view kBullets[] = {u"disc", u"circle", u"square"};

}  // namespace

bool RTFLists::word(int32_t word, int32_t parameter, RTFDestination destination) {
  switch (destination) {
    case RTFDestination::listTable:
      inOverrides_ = false;
      return listWord(word, parameter);
    case RTFDestination::overrideTable:
      inOverrides_ = true;
      return overrideWord(word, parameter);
    case RTFDestination::numbering:
      return numberingWord(word, parameter);
    default:
      return false;
  }
}

bool RTFLists::listWord(int32_t word, int32_t parameter) {
  if (word == kList) {
    lists_.emplace_back();
    return true;
  }
  if (lists_.empty()) return false;
  List& list = lists_.back();
  switch (word) {
    case kListLevel:
      if (list.levels.size() < kLevels) list.levels.emplace_back();
      return true;
    case kListId:
      list.id = parameter;
      return true;
    default:
      return levelWord(word, parameter, levelAtHand());
  }
}

bool RTFLists::overrideWord(int32_t word, int32_t parameter) {
  if (word == kOverride) {
    overrides_.emplace_back();
    return true;
  }
  if (overrides_.empty()) return false;
  Override& override = overrides_.back();
  switch (word) {
    case kListId:
      override.listId = parameter;
      return true;
    case kListOverride:
      override.number = parameter;
      return true;
    case kOverrideLevel:
      if (override.levels.size() < kLevels) override.levels.emplace_back();
      return true;
    case kOverrideStart:
      if (!override.levels.empty()) override.levels.back().hasStart = true;
      return true;
    case kOverrideFormat:
      if (!override.levels.empty()) override.levels.back().hasFormat = true;
      return true;
    default:
      return levelWord(word, parameter, levelAtHand());
  }
}

RTFListLevel* RTFLists::levelAtHand() {
  if (inOverrides_) {
    const bool isThere = !overrides_.empty() && !overrides_.back().levels.empty();
    return isThere ? &overrides_.back().levels.back().level : nullptr;
  }
  const bool isThere = !lists_.empty() && !lists_.back().levels.empty();
  return isThere ? &lists_.back().levels.back() : nullptr;
}

bool RTFLists::levelWord(int32_t word, int32_t parameter, RTFListLevel* level) {
  if (!level) return false;
  switch (word) {
    case kNumberFormat:
      level->format = parameter;
      return true;
    case kStartAt:
      level->start = parameter;
      return true;
    case kFollow:
      level->follow = parameter;
      return true;
    case kFont:
      level->font = parameter;
      return true;
    default:
      return false;
  }
}

bool RTFLists::numberingWord(int32_t word, int32_t parameter) {
  const auto format = [&](int32_t value) {
    numbering_.isList = true;
    numbering_.level.format = value;
    return true;
  };
  switch (word) {
    case kBulletNumbering:
      return format(RTFListLevel::kBullet);
    case kDecimal:
      return format(0);
    case kUpperRoman:
      return format(1);
    case kLowerRoman:
      return format(2);
    case kUpperAlpha:
      return format(3);
    case kLowerAlpha:
      return format(4);
    case kNumberingStart:
      numbering_.level.start = parameter;
      return true;
    default:
      return false;
  }
}

void RTFLists::levelText(std::u16string_view units) {
  text_.append(units.substr(0, kLongestText + 1 - std::min(kLongestText + 1, text_.size())));
}

// The first unit counts the others; a semicolon ends them.
void RTFLists::levelTextEnds() {
  const std::u16string text = std::exchange(text_, {});
  RTFListLevel* level = levelAtHand();
  if (!level || text.empty()) return;
  level->text = text.substr(1, text[0]);
}

// Tables may come again, each with more.
void RTFLists::tablesEnd() {
  for (; listsDone_ < lists_.size(); ++listsDone_) {
    listOfId_.try_emplace(lists_[listsDone_].id, listsDone_);
  }
  for (; overridesDone_ < overrides_.size(); ++overridesDone_) {
    overrideOfNumber_.try_emplace(overrides_[overridesDone_].number, overridesDone_);
  }
}

const RTFLists::Override* RTFLists::overrideNumbered(int32_t number) const {
  const auto found = overrideOfNumber_.find(number);
  return found == overrideOfNumber_.end() ? nullptr : &overrides_[found->second];
}

std::optional<int32_t> RTFLists::listIdOf(int32_t override) const {
  const Override* found = overrideNumbered(override);
  return found ? std::optional(found->listId) : std::nullopt;
}

std::optional<int32_t> RTFLists::restartOf(int32_t override, size_t level) const {
  const Override* found = overrideNumbered(override);
  if (!found || level >= found->levels.size()) return {};
  const OverrideLevel& own = found->levels[level];
  return own.hasStart || own.hasFormat ? std::optional(own.level.start) : std::nullopt;
}

const RTFListLevel* RTFLists::levelOf(int32_t override, size_t level) const {
  const Override* found = overrideNumbered(override);
  if (!found) return nullptr;
  if (level < found->levels.size() && found->levels[level].hasFormat) {
    return &found->levels[level].level;
  }
  const auto list = listOfId_.find(found->listId);
  if (list == listOfId_.end()) return nullptr;
  const std::vector<RTFListLevel>& levels = lists_[list->second].levels;
  return level < levels.size() ? &levels[level] : nullptr;
}

NSTextList RTFLists::textList(const RTFListLevel& level, size_t depth, int32_t start,
                              uint32_t identity) {
  NSTextList list;
  list.identity = identity;
  list.ordered = level.format != RTFListLevel::kBullet && level.format != RTFListLevel::kNoNumber;
  const bool named = level.format >= 0 && level.format < static_cast<int32_t>(std::size(kFormats));
  list.marker =
      NSString::fromStatic(list.ordered ? kFormats[named ? static_cast<size_t>(level.format) : 0]
                                        : kBullets[std::min(depth, std::size(kBullets) - 1)]);
  list.startingNumber = std::max(start, 0);
  return list;
}

std::vector<NSTextList> RTFLists::listsOf(int32_t override, int32_t level) const {
  std::vector<NSTextList> lists;
  if (override <= 0) return lists;
  const auto depth = static_cast<size_t>(std::clamp<int32_t>(level, 0, kLevels - 1));
  RTFListLevel unknown;
  unknown.format = RTFListLevel::kBullet;
  for (size_t i = 0; i <= depth; ++i) {
    const RTFListLevel* found = levelOf(override, i);
    const RTFListLevel& at = found ? *found : unknown;
    lists.push_back(textList(at, i, restartOf(override, i).value_or(at.start),
                             static_cast<uint32_t>(override)));
  }
  return lists;
}

NSTextList RTFLists::numbering(uint32_t before) {
  if (!numbering_.isList) return {};
  const RTFListLevel& level = numbering_.level;
  const bool goesOn = before != 0 && lastNumbering_ == level.format;
  lastNumbering_ = level.format;
  return textList(level, 0, level.start, goesOn ? before : kFirstNumbering + ++numberings_);
}

}  // namespace kelspar
