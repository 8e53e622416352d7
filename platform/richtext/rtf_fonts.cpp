// Charsets to code pages (RTF 1.9.1, "Font Table").
#include "platform/richtext/rtf_fonts.h"

#include <algorithm>
#include <iterator>

namespace kelspar {

namespace {

struct Charset {
  int charset;
  int page;
};

// 2 (Symbol) is read as 1252 here: its bytes name glyphs, not characters.
constexpr Charset kCharsets[] = {
    {0, 1252},   {2, 1252},   {77, 10000}, {78, 10001}, {79, 10003}, {80, 10008}, {81, 10002},
    {83, 10005}, {84, 10004}, {85, 10006}, {86, 10081}, {87, 10021}, {88, 10029}, {89, 10007},
    {128, 932},  {129, 949},  {130, 1361}, {134, 936},  {136, 950},  {161, 1253}, {162, 1254},
    {163, 1258}, {177, 1255}, {178, 1256}, {179, 1256}, {180, 1256}, {181, 1255}, {186, 1257},
    {204, 1251}, {222, 874},  {238, 1250}, {254, 437},  {255, 850},
};
static_assert(std::ranges::is_sorted(kCharsets, {}, &Charset::charset));

}  // namespace

int codePageOfCharset(int charset) {
  const auto* row = std::ranges::lower_bound(kCharsets, charset, {}, &Charset::charset);
  return row != std::end(kCharsets) && row->charset == charset ? row->page : 0;
}

void RTFFontTable::setCharset(int font, int charset) {
  const int page = codePageOfCharset(charset);
  if (page && CodePage::known(page)) byCharset_[font] = &CodePage::numbered(page);
}

void RTFFontTable::setCodePage(int font, int page) {
  if (CodePage::known(page)) byPage_[font] = &CodePage::numbered(page);
}

const CodePage* RTFFontTable::pageOf(int font) const {
  if (const auto found = byCharset_.find(font); found != byCharset_.end()) return found->second;
  const auto found = byPage_.find(font);
  return found == byPage_.end() ? nullptr : found->second;
}

}  // namespace kelspar
