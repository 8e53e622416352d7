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

// 2 (symbols): 1252 counts only for fonts whose glyphs are not known.
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

RTFFontTable::Font& RTFFontTable::font(int number) {
  constexpr int kLow = 1024;
  if (number < 0 || number >= kLow) return high_[number];
  const auto index = static_cast<size_t>(number);
  if (index >= low_.size()) low_.resize(index + 1);
  return low_[index];
}

const RTFFontTable::Font* RTFFontTable::find(int number) const {
  if (number >= 0 && static_cast<size_t>(number) < low_.size()) {
    return &low_[static_cast<size_t>(number)];
  }
  const auto found = high_.find(number);
  return found == high_.end() ? nullptr : &found->second;
}

void RTFFontTable::setCharset(int number, int charset) {
  constexpr int kSymbolCharset = 2;
  Font& described = font(number);
  described.hasSymbols = charset == kSymbolCharset;
  const int page = codePageOfCharset(charset);
  if (page && CodePage::known(page)) described.byCharset = &CodePage::numbered(page);
}

void RTFFontTable::setCodePage(int number, int page) {
  if (CodePage::known(page)) font(number).byPage = &CodePage::numbered(page);
}

void RTFFontTable::setName(int number, std::u16string_view name) {
  Font& described = font(number);
  described.name = NSString(name);
  described.symbolFont = described.hasSymbols ? symbolFontNamed(name) : RTFSymbolFont::none;
}

const CodePage* RTFFontTable::pageOf(int number) const {
  const Font* found = find(number);
  if (!found) return nullptr;
  // No charset says UTF-8: a font that has both means the page.
  constexpr int kUTF8 = 65001;
  static const CodePage& utf8 = CodePage::numbered(kUTF8);
  if (found->byPage == &utf8) return found->byPage;
  return found->byCharset ? found->byCharset : found->byPage;
}

RTFSymbolFont RTFFontTable::symbolFontOf(int number) const {
  const Font* found = find(number);
  return found ? found->symbolFont : RTFSymbolFont::none;
}

NSString RTFFontTable::nameOf(int number) const {
  const Font* found = find(number);
  return found ? found->name : nil;
}

}  // namespace kelspar
