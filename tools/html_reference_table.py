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

struct Fact {
  std::string_view name;       // without "&" and ";"
  std::u16string_view units;   // what it stands for
  bool withoutSemicolon = false;
};

// clang-format off
constexpr Fact kFacts[] = {
"""

FOOT = """\
};
// clang-format on

constexpr size_t kCount = std::size(kFacts);

constexpr size_t nameBytes() {
  size_t bytes = 0;
  for (const Fact& fact : kFacts) bytes += fact.name.size();
  return bytes;
}

// What the program holds: the names in one text, eight bytes a row, and where a name's row is.
struct Packed {
  std::array<char, nameBytes()> names{};
  std::array<ReferenceRow, kCount> rows{};
  std::array<uint16_t, kReferenceSlots> slots{};
};

constexpr Packed pack() {
  Packed packed;
  size_t at = 0;
  for (size_t i = 0; i < kCount; ++i) {
    const Fact& fact = kFacts[i];
    ReferenceRow& row = packed.rows[i];
    row.nameAt = static_cast<uint16_t>(at);
    row.nameLength = static_cast<uint8_t>(fact.name.size());
    row.withoutSemicolon = fact.withoutSemicolon;
    row.units[0] = fact.units[0];
    row.units[1] = fact.units.size() > 1 ? fact.units[1] : 0;
    for (const char c : fact.name) packed.names[at++] = c;
    size_t slot = referenceSlot(fact.name);
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


def literal(text):
    units = text.encode("utf-16-be")
    pairs = [units[i:i + 2].hex().upper() for i in range(0, len(units), 2)]
    return 'u"' + "".join("\\x" + pair for pair in pairs) + '"'


def rows():
    for name in sorted(n for n in html5 if n.endswith(";")):
        bare = name[:-1]
        legacy = ", true" if bare in html5 else ""
        yield '{"%s", %s%s},' % (bare, literal(html5[name]), legacy)


def main():
    print(HEAD, end="")
    line = "   "
    for row in rows():
        if len(line) + 1 + len(row) > 100:
            print(line)
            line = "   "
        line += " " + row
    print(line)
    print(FOOT, end="")


main()
