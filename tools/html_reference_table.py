#!/usr/bin/env python3
"""Writes platform/richtext/html_reference_table.cpp: the named character references of WHATWG HTML,
13.5, from the facts that Python's own `html.entities.html5` holds.

    tools/html_reference_table.py > platform/richtext/html_reference_table.cpp
"""
from html.entities import html5

HEAD = """\
// The named character references (WHATWG HTML, 13.5). Written by tools/html_reference_table.py.
#include "platform/richtext/html_reference_table.h"

#include <array>

namespace kelspar::html {

namespace {

// Name, ":" or, where it is recognised without ";", "!", and its units in hexadecimal.
// clang-format off
constexpr std::string_view kFacts =
"""

FOOT = """\
// clang-format on

constexpr size_t count(std::string_view marks) {
  size_t count = 0;
  for (const char c : kFacts) count += marks.find(c) != marks.npos;
  return count;
}

constexpr size_t kCount = count(":!");

constexpr size_t nameBytes() {
  size_t bytes = 0;
  bool inName = true;
  for (const char c : kFacts) {
    if (c == ':' || c == '!') inName = false;
    bytes += inName;
    if (c == ' ') inName = true;
  }
  return bytes;
}

constexpr int digitValue(char c) { return c <= '9' ? c - '0' : c - 'A' + 10; }

// What the program holds: the names in one text, eight bytes a row, and where a name's row is.
struct Packed {
  std::array<char, nameBytes()> names{};
  std::array<ReferenceRow, kCount> rows{};
  std::array<uint16_t, kReferenceSlots> slots{};
};

constexpr Packed pack() {
  Packed packed;
  size_t at = 0, fact = 0;
  for (size_t i = 0; i < kCount; ++i) {
    ReferenceRow& row = packed.rows[i];
    const size_t start = fact;
    row.nameAt = static_cast<uint16_t>(at);
    for (; kFacts[fact] != ':' && kFacts[fact] != '!'; ++fact) packed.names[at++] = kFacts[fact];
    const std::string_view name = kFacts.substr(start, fact - start);
    row.nameLength = static_cast<uint8_t>(name.size());
    row.withoutSemicolon = kFacts[fact] == '!';
    size_t unit = 0;
    for (++fact; kFacts[fact] != ' '; ++fact) {
      if (kFacts[fact] == ',') {
        ++unit;
      } else {
        row.units[unit] = static_cast<char16_t>(row.units[unit] * 16 + digitValue(kFacts[fact]));
      }
    }
    ++fact;
    size_t slot = referenceSlot(name);
    while (packed.slots[slot] != 0) slot = (slot + 1) % kReferenceSlots;
    packed.slots[slot] = static_cast<uint16_t>(i + 1);
  }
  return packed;
}

constexpr Packed kPacked = pack();
static_assert(nameBytes() < 65536 && kCount < kReferenceSlots);

}  // namespace

const ReferenceTable& referenceTable() {
  static constexpr ReferenceTable kTable{kPacked.names.data(), kPacked.rows, kPacked.slots};
  return kTable;
}

}  // namespace kelspar::html
"""


def units(text):
    code = text.encode("utf-16-be")
    return ",".join("%X" % int.from_bytes(code[i:i + 2], "big") for i in range(0, len(code), 2))


def facts():
    for name in sorted(n for n in html5 if n.endswith(";")):
        bare = name[:-1]
        yield bare + ("!" if bare in html5 else ":") + units(html5[name]) + " "


def main():
    print(HEAD, end="")
    line, lines = "", []
    for fact in facts():
        if len(line) + len(fact) > 94:
            lines.append(line)
            line = ""
        line += fact
    lines.append(line)
    print("\n".join('    "%s"' % each for each in lines) + ";")
    print(FOOT, end="")


main()
