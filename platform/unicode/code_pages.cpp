// The table of code pages and their ICU converters; single-byte pages become tables on first use.
#include "platform/unicode/code_pages.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <mutex>
#include <unordered_map>

#include "platform/unicode/byte_tables.h"
#include "platform/unicode/icu_converter.h"

namespace kelspar {

namespace {

// ICU has no Johab: it is the C library's.
enum class Shape : uint8_t { single, dbcs, shiftJIS, multi, johab };

struct Row {
  int number;
  const char* converter;
  Shape shape;
};

// gb2312 (936) and euc-kr (949) mean their Windows supersets in mail. 10000 and up are Macintosh's.
constexpr Row kRows[] = {
    {37, "ibm-37", Shape::single},           {437, "ibm-437", Shape::single},
    {708, "ibm-1089", Shape::single},        {720, "ibm-720", Shape::single},
    {737, "ibm-737", Shape::single},         {775, "ibm-775", Shape::single},
    {850, "ibm-850", Shape::single},         {852, "ibm-852", Shape::single},
    {855, "ibm-855", Shape::single},         {857, "ibm-857", Shape::single},
    {858, "ibm-858", Shape::single},         {860, "ibm-860", Shape::single},
    {861, "ibm-861", Shape::single},         {862, "ibm-862", Shape::single},
    {863, "ibm-863", Shape::single},         {864, "ibm-864", Shape::single},
    {865, "ibm-865", Shape::single},         {866, "ibm-866", Shape::single},
    {869, "ibm-869", Shape::single},         {874, "windows-874", Shape::single},
    {932, "windows-932", Shape::shiftJIS},   {936, "windows-936", Shape::dbcs},
    {949, "windows-949", Shape::dbcs},       {950, "windows-950", Shape::dbcs},
    {1250, "windows-1250", Shape::single},   {1251, "windows-1251", Shape::single},
    {1252, "windows-1252", Shape::single},   {1253, "windows-1253", Shape::single},
    {1254, "windows-1254", Shape::single},   {1255, "windows-1255", Shape::single},
    {1256, "windows-1256", Shape::single},   {1257, "windows-1257", Shape::single},
    {1258, "windows-1258", Shape::single},   {1361, nullptr, Shape::johab},
    {10000, "macintosh", Shape::single},     {10001, "windows-932", Shape::shiftJIS},
    {10002, "windows-950", Shape::dbcs},     {10003, "windows-949", Shape::dbcs},
    {10006, "x-mac-greek", Shape::single},   {10007, "x-mac-cyrillic", Shape::single},
    {10008, "windows-936", Shape::dbcs},     {10029, "x-mac-centraleurroman", Shape::single},
    {10081, "x-mac-turkish", Shape::single}, {20127, "us-ascii", Shape::single},
    {20866, "koi8-r", Shape::single},        {20932, "euc-jp", Shape::multi},
    {21866, "koi8-u", Shape::single},        {28591, "iso-8859-1", Shape::single},
    {28592, "iso-8859-2", Shape::single},    {28593, "iso-8859-3", Shape::single},
    {28594, "iso-8859-4", Shape::single},    {28595, "iso-8859-5", Shape::single},
    {28596, "iso-8859-6", Shape::single},    {28597, "iso-8859-7", Shape::single},
    {28598, "iso-8859-8", Shape::single},    {28599, "iso-8859-9", Shape::single},
    {28603, "iso-8859-13", Shape::single},   {28605, "iso-8859-15", Shape::single},
    {50220, "iso-2022-jp", Shape::multi},    {50221, "iso-2022-jp", Shape::multi},
    {50222, "iso-2022-jp", Shape::multi},    {50225, "iso-2022-kr", Shape::multi},
    {51932, "euc-jp", Shape::multi},         {51936, "windows-936", Shape::dbcs},
    {51949, "windows-949", Shape::dbcs},     {52936, "hz-gb-2312", Shape::multi},
    {54936, "gb18030", Shape::multi},        {65000, "utf-7", Shape::multi},
    {65001, "utf-8", Shape::multi},
};
static_assert(std::ranges::is_sorted(kRows, {}, &Row::number));

const Row* rowFor(int number) {
  const auto* row = std::ranges::lower_bound(kRows, number, {}, &Row::number);
  return row != std::end(kRows) && row->number == number ? row : nullptr;
}

// What is no pair becomes U+FFFD, and ASCII behind it stays.
void appendJohab(std::string_view bytes, std::u16string* out) {
  constexpr NSStringEncoding kJohab = 0x80000510;
  static const PairTable& table = PairTable::of(*encodingRow(kJohab));
  for (size_t at = 0; at < bytes.size(); ++at) {
    const auto lead = static_cast<uint8_t>(bytes[at]);
    const auto trail = static_cast<uint8_t>(at + 1 < bytes.size() ? bytes[at + 1] : 0);
    const char16_t pair = lead < 0x80 ? 0 : table.pair(lead, trail);
    const char16_t unit = pair != 0 ? pair : table.alone(lead);
    out->push_back(unit != 0 || lead == 0 ? unit : u'\xFFFD');
    at += pair != 0 || (unit == 0 && trail >= 0x80);
  }
}

}  // namespace

CodePage::CodePage(int number, const char* converter) : number_(number), converter_(converter) {
  const Shape shape = rowFor(number)->shape;
  singleByte_ = shape == Shape::single;
  for (int byte = 0; byte < 256; ++byte) {
    if (singleByte_) {
      const char text = static_cast<char>(byte);
      std::u16string units;
      convertWithICU(converter, {&text, 1}, Malformed::replace, &units);
      units_[byte] = units.empty() ? u'\xFFFD' : units[0];
    }
    // 0xA1 to 0xDF are half-width katakana in Shift_JIS, one byte each.
    lead_[byte] = !singleByte_ && byte > 0x80;
    if (shape == Shape::shiftJIS && byte >= 0xA0 && byte <= 0xDF) lead_[byte] = false;
  }
}

const CodePage* makeCodePage(int number) { return new CodePage(number, rowFor(number)->converter); }

bool CodePage::known(int number) { return rowFor(number) != nullptr; }

const CodePage& CodePage::numbered(int number) {
  static std::mutex lock;
  static auto& pages = *new std::unordered_map<int, const CodePage*>;
  if (!rowFor(number)) number = 1252;
  const std::lock_guard guard(lock);
  const CodePage*& page = pages[number];
  if (!page) page = makeCodePage(number);
  return *page;
}

void CodePage::append(std::string_view bytes, std::u16string* out) const {
  if (!converter_) {
    appendJohab(bytes, out);
    return;
  }
  if (!singleByte_) {
    convertWithICU(converter_, bytes, Malformed::replace, out);
    return;
  }
  const size_t start = out->size();
  out->resize(start + bytes.size());
  for (size_t i = 0; i < bytes.size(); ++i) {
    (*out)[start + i] = units_[static_cast<uint8_t>(bytes[i])];
  }
}

}  // namespace kelspar
