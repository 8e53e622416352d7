// The packed table of named character references: names in one text, a row a name, and a hash of
// names. Internal to html_references.cpp and the table itself.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kelspar::html {

struct ReferenceRow {
  uint16_t nameAt;
  uint8_t nameLength;
  bool withoutSemicolon;  // recognised without ";" as well
  char16_t units[2]{};    // the second is 0 when there is one unit only
};

inline constexpr size_t kReferenceSlots = 4096;

struct ReferenceTable {
  const char* names;
  std::span<const ReferenceRow> rows;
  std::span<const uint16_t, kReferenceSlots> slots;  // row + 1; 0: empty
};

[[nodiscard]] const ReferenceTable& referenceTable();

// The slot at which the search for `name` begins.
template <class Char>
constexpr size_t referenceSlot(std::basic_string_view<Char> name) {
  uint32_t hash = 2166136261u;
  for (const Char c : name) hash = (hash ^ static_cast<uint32_t>(c)) * 16777619u;
  return (hash ^ (hash >> 15)) % kReferenceSlots;
}

}  // namespace kelspar::html
