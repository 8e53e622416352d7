// List tables (RTF 1.9.1, "List Tables") and paragraph numbering before them ("Bullets and
// Numbering").
#include "platform/richtext/rtf_lists.h"

#include <algorithm>
#include <iterator>

namespace kelspar {

namespace {

constexpr size_t kLevels = 9;
constexpr int32_t kBulletFormat = 23;
constexpr uint32_t kFirstNumbering = 1u << 31;  // identities of \pn lists

// By \levelnfc.
constexpr std::u16string_view kFormats[] = {u"decimal", u"upper-roman", u"lower-roman",
                                            u"upper-alpha", u"lower-alpha"};
// By depth.
constexpr std::u16string_view kBullets[] = {u"disc", u"circle", u"square"};

}  // namespace

bool RTFLists::word(int32_t word, int32_t parameter, RTFDestination destination) {
  const bool numbering = destination == RTFDestination::numbering;
  const auto format = [&](int32_t value) {
    if (numbering) numbering_ = {true, {value, numbering_.level.start}};
    return numbering;
  };
  switch (word) {
    case kList:
      lists_.emplace_back();
      return true;
    case kListLevel:
      if (!lists_.empty() && lists_.back().levels.size() < kLevels) {
        lists_.back().levels.emplace_back();
      }
      return true;
    case kNumberFormat:
    case kStartAt:
      if (!lists_.empty() && !lists_.back().levels.empty() &&
          destination == RTFDestination::listTable) {
        Level& level = lists_.back().levels.back();
        (word == kNumberFormat ? level.format : level.start) = parameter;
      }
      return true;
    case kListId:
      if (destination == RTFDestination::overrideTable) {
        if (!overrides_.empty()) overrides_.back().second = parameter;
      } else if (!lists_.empty()) {
        lists_.back().id = parameter;
      }
      return true;
    case kOverride:
      overrides_.emplace_back();
      return true;
    case kListOverride:
      if (destination != RTFDestination::overrideTable) return false;
      if (!overrides_.empty()) overrides_.back().first = parameter;
      return true;
    case kBulletNumbering:
      return format(kBulletFormat);
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
      if (numbering) numbering_.level.start = parameter;
      return true;
    default:
      return false;
  }
}

void RTFLists::tablesEnd() {
  for (size_t i = 0; i < lists_.size(); ++i) listOfId_.try_emplace(lists_[i].id, i);
  for (const auto& [override, listId] : overrides_) idOfOverride_.try_emplace(override, listId);
}

NSTextList RTFLists::textList(const Level& level, size_t depth, uint32_t identity) {
  NSTextList list;
  list.identity = identity;
  list.ordered = level.format != kBulletFormat && level.format != 255;
  const bool named = level.format >= 0 && level.format < static_cast<int32_t>(std::size(kFormats));
  list.marker =
      NSString::fromStatic(list.ordered ? kFormats[named ? static_cast<size_t>(level.format) : 0]
                                        : kBullets[std::min(depth, std::size(kBullets) - 1)]);
  list.startingNumber = std::max(level.start, 0);
  return list;
}

std::vector<NSTextList> RTFLists::listsOf(int32_t override, int32_t level) const {
  std::vector<NSTextList> lists;
  if (override <= 0) return lists;
  const auto id = idOfOverride_.find(override);
  const auto found = id == idOfOverride_.end() ? listOfId_.end() : listOfId_.find(id->second);
  const List* list = found == listOfId_.end() ? nullptr : &lists_[found->second];
  const auto depth = static_cast<size_t>(std::clamp<int32_t>(level, 0, kLevels - 1));
  const Level unknown{kBulletFormat, 1};
  for (size_t i = 0; i <= depth; ++i) {
    const Level& at = list && i < list->levels.size() ? list->levels[i] : unknown;
    lists.push_back(textList(at, i, static_cast<uint32_t>(override)));
  }
  return lists;
}

NSTextList RTFLists::numbering(uint32_t before) {
  if (!numbering_.isList) return {};
  const bool goesOn = before != 0 && lastNumbering_.format == numbering_.level.format;
  lastNumbering_ = numbering_.level;
  return textList(numbering_.level, 0, goesOn ? before : kFirstNumbering + ++numberings_);
}

}  // namespace kelspar
