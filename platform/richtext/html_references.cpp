#include "platform/richtext/html_references.h"

#include <algorithm>

#include "platform/foundation/hex.h"
#include "platform/foundation/scan.h"
#include "platform/richtext/html_reference_table.h"

namespace kelspar::html {

namespace {

constexpr size_t kLongestName = 32;

// Numbers 128 to 159 as Windows-1252 has them; 0 where the number itself stands.
constexpr char16_t kWindows1252[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,       //
    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool isAlphanumeric(char16_t c) { return isDigit(c) || ((c | 0x20) >= u'a' && (c | 0x20) <= u'z'); }
const ReferenceRow* findName(std::u16string_view name) {
  const ReferenceTable& table = referenceTable();
  for (size_t slot = referenceSlot(name);; slot = (slot + 1) % kReferenceSlots) {
    if (table.slots[slot] == 0) return nullptr;
    const ReferenceRow& row = table.rows[table.slots[slot] - 1u];
    if (row.nameLength == name.size() &&
        std::equal(name.begin(), name.end(), table.names + row.nameAt)) {
      return &row;
    }
  }
}

Reference fromRow(const ReferenceRow& row, size_t length) {
  Reference reference;
  reference.length = length;
  reference.count = row.units[1] ? 2 : 1;
  reference.units[0] = row.units[0];
  reference.units[1] = row.units[1];
  return reference;
}

Reference named(std::u16string_view text, size_t at, bool inAttribute) {
  const auto rest = text.substr(at + 1, kLongestName + 1);
  size_t run = 0;
  while (run < rest.size() && isAlphanumeric(rest[run])) ++run;
  if (run < rest.size() && rest[run] == u';') {
    if (const auto* row = findName(rest.substr(0, run))) return fromRow(*row, run + 2);
  }
  // The longest name that needs no ";"; the shortest has two letters, the longest six.
  for (size_t length = std::min<size_t>(run, 6); length >= 2; --length) {
    const auto* row = findName(rest.substr(0, length));
    if (!row || !row->withoutSemicolon) continue;
    const bool goesOn =
        length < rest.size() && (rest[length] == u'=' || isAlphanumeric(rest[length]));
    if (inAttribute && goesOn) return {};
    return fromRow(*row, length + 1);
  }
  return {};
}

Reference numeric(std::u16string_view text, size_t at) {
  size_t digits = at + 2;
  const bool isHex = digits < text.size() && (text[digits] | 0x20) == u'x';
  if (isHex) ++digits;
  uint32_t code = 0;
  size_t end = digits;
  for (; end < text.size(); ++end) {
    const int digit = hexValue(text[end]);
    if (digit < 0 || (!isHex && digit > 9)) break;
    code = std::min<uint32_t>(code * (isHex ? 16 : 10) + static_cast<uint32_t>(digit), 0x110000);
  }
  if (end == digits) return {};
  if (end < text.size() && text[end] == u';') ++end;

  if (code >= 0x80 && code < 0xA0 && kWindows1252[code - 0x80]) code = kWindows1252[code - 0x80];
  if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) code = 0xFFFD;
  Reference reference;
  reference.length = end - at;
  reference.count = code > 0xFFFF ? 2 : 1;
  reference.units[0] = static_cast<char16_t>(code > 0xFFFF ? 0xD7C0 + (code >> 10) : code);
  reference.units[1] = static_cast<char16_t>(code > 0xFFFF ? 0xDC00 + (code & 0x3FF) : 0);
  return reference;
}

}  // namespace

Reference readReference(std::u16string_view text, size_t at, bool inAttribute) {
  if (at + 1 >= text.size()) return {};
  return text[at + 1] == u'#' ? numeric(text, at) : named(text, at, inAttribute);
}

std::u16string decodeAttributeValue(std::u16string_view raw) {
  std::u16string value;
  size_t from = 0;
  for (size_t at; (at = scan::findAny(raw, from, u'&', u'\r', u'\0')) < raw.size();) {
    value.append(raw.substr(from, at - from));
    from = at + 1;
    if (raw[at] == u'\0') {
      value.push_back(0xFFFD);
    } else if (raw[at] == u'\r') {
      value.push_back(u'\n');
      if (from < raw.size() && raw[from] == u'\n') ++from;
    } else if (const Reference reference = readReference(raw, at, true); reference.length) {
      value.append(reference.text());
      from = at + reference.length;
    } else {
      value.push_back(u'&');
    }
  }
  return value.append(raw.substr(from));
}

}  // namespace kelspar::html
