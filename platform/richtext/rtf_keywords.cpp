// The keyword table, and a hash over it that the compiler builds.
#include "platform/richtext/rtf_keywords.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace kelspar {

namespace {

using enum RTFAction;

constexpr RTFKeyword kKeywords[] = {
    {"af", assocFont, 0},
    {"annotation", skip, 0},
    {"ansi", codePage, 1252},
    {"ansicpg", codePage, 0},
    {"atnauthor", skip, 0},
    {"atnicn", skip, 0},
    {"atnid", skip, 0},
    {"atnref", skip, 0},
    {"atntime", skip, 0},
    {"atrfend", skip, 0},
    {"atrfstart", skip, 0},
    {"author", skip, 0},
    {"bkmkend", skip, 0},
    {"bkmkstart", skip, 0},
    {"bullet", emit, 0x2022},
    {"category", skip, 0},
    {"cell", cell, 0},
    {"colorschememapping", skip, 0},
    {"colortbl", skip, 0},
    {"comment", skip, 0},
    {"company", skip, 0},
    {"cpg", fontPage, 0},
    {"creatim", skip, 0},
    {"datafield", skip, 0},
    {"datastore", skip, 0},
    {"deff", defaultFont, 0},
    {"deleted", hidden, 0},
    {"do", skip, 0},
    {"doccomm", skip, 0},
    {"emdash", emit, 0x2014},
    {"emspace", emit, 0x2003},
    {"endash", emit, 0x2013},
    {"enspace", emit, 0x2002},
    {"f", font, 0},
    {"falt", skip, 0},
    {"fcharset", charset, 0},
    {"fldinst", skip, 0},
    {"fldrslt", show, 0},
    {"fname", skip, 0},
    {"fontemb", skip, 0},
    {"fonttbl", fontTable, 0},
    {"footer", skip, 0},
    {"footerf", skip, 0},
    {"footerl", skip, 0},
    {"footerr", skip, 0},
    {"footnote", skip, 0},
    {"fromhtml", fromHTML, 0},
    {"ftncn", skip, 0},
    {"ftnsep", skip, 0},
    {"ftnsepc", skip, 0},
    {"generator", skip, 0},
    {"header", skip, 0},
    {"headerf", skip, 0},
    {"headerl", skip, 0},
    {"headerr", skip, 0},
    {"hlinkbase", skip, 0},
    {"htmlrtf", htmlRTF, 0},
    {"htmltag", htmlTag, 0},
    {"info", skip, 0},
    {"keywords", skip, 0},
    {"latentstyles", skip, 0},
    {"ldblquote", emit, 0x201C},
    {"line", line, 0},
    {"listoverridetable", skip, 0},
    {"listtable", skip, 0},
    {"listtext", show, 0},
    {"lquote", emit, 0x2018},
    {"ltrch", direction, 0},
    {"ltrmark", emit, 0x200E},
    {"mac", codePage, 10000},
    {"manager", skip, 0},
    {"mhtmltag", skip, 0},
    {"nestcell", cell, 0},
    {"nestrow", row, 0},
    {"nesttableprops", show, 0},
    {"nonesttables", skip, 0},
    {"nonshppict", skip, 0},
    {"objclass", skip, 0},
    {"objdata", skip, 0},
    {"objname", skip, 0},
    {"objsect", skip, 0},
    {"operator", skip, 0},
    {"page", emit, 0x000C},
    {"panose", skip, 0},
    {"par", paragraph, 0},
    {"pc", codePage, 437},
    {"pca", codePage, 850},
    {"pict", skip, 0},
    {"plain", plain, 0},
    {"pn", skip, 0},
    {"pntext", show, 0},
    {"pntxta", skip, 0},
    {"pntxtb", skip, 0},
    {"printim", skip, 0},
    {"private", skip, 0},
    {"qmspace", emit, 0x2005},
    {"rdblquote", emit, 0x201D},
    {"result", show, 0},
    {"revtbl", skip, 0},
    {"revtim", skip, 0},
    {"row", row, 0},
    {"rquote", emit, 0x2019},
    {"rsidtbl", skip, 0},
    {"rtlch", direction, 1},
    {"rtlmark", emit, 0x200F},
    {"rxe", skip, 0},
    {"sect", paragraph, 0},
    {"shppict", skip, 0},
    {"shptxt", show, 0},
    {"stylesheet", skip, 0},
    {"subject", skip, 0},
    {"tab", emit, 0x0009},
    {"tc", skip, 0},
    {"tcn", skip, 0},
    {"template", skip, 0},
    {"themedata", skip, 0},
    {"title", skip, 0},
    {"txe", skip, 0},
    {"u", unicode, 0},
    {"uc", skipCount, 0},
    {"ud", ud, 0},
    {"upr", upr, 0},
    {"userprops", skip, 0},
    {"v", hidden, 0},
    {"xe", skip, 0},
    {"xmlnstbl", skip, 0},
    {"zwbo", emit, 0x200B},
    {"zwj", emit, 0x200D},
    {"zwnbo", emit, 0x2060},
    {"zwnj", emit, 0x200C},
};
static_assert(std::ranges::adjacent_find(kKeywords, std::ranges::greater_equal{},
                                         &RTFKeyword::word) == std::ranges::end(kKeywords),
              "sorted, each word once");

constexpr size_t kSlots = 1024;
static_assert(std::size(kKeywords) * 2 < kSlots);

constexpr size_t slotOf(std::string_view word) {
  uint32_t hash = 2166136261u;
  for (const char c : word) hash = (hash ^ static_cast<uint8_t>(c)) * 16777619u;
  return (hash ^ hash >> 15) % kSlots;
}

// Open addressing; 0 is an empty slot, n stands for the row n - 1.
constexpr auto kIndex = [] {
  std::array<uint16_t, kSlots> index{};
  for (size_t row = 0; row < std::size(kKeywords); ++row) {
    size_t slot = slotOf(kKeywords[row].word);
    while (index[slot]) slot = (slot + 1) % kSlots;
    index[slot] = static_cast<uint16_t>(row + 1);
  }
  return index;
}();

}  // namespace

const RTFKeyword* findRTFKeyword(std::string_view word) {
  constexpr size_t kLongest = 32;  // a longer word is none of the format's
  if (word.size() > kLongest) return nullptr;
  for (size_t slot = slotOf(word); kIndex[slot]; slot = (slot + 1) % kSlots) {
    const RTFKeyword& keyword = kKeywords[kIndex[slot] - 1];
    if (keyword.word == word) return &keyword;
  }
  return nullptr;
}

}  // namespace kelspar
