// Selectors of style rules: elements, classes and identifiers, one inside or directly in another.
// Internal to the style sheet.
#pragma once

#include <bitset>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/richtext/html_tags.h"

namespace kelspar::html {

// An element as selectors see it: the values of its `class` and `id` attributes.
struct Subject {
  Tag tag = Tag::none;
  std::u16string_view classes, identifier;
};

// "td.a.b#c": everything that is asked of one element.
struct Compound {
  Tag tag = Tag::none;  // none: any
  std::u16string identifier;
  std::vector<std::u16string> classes;

  [[nodiscard]] bool matches(const Subject& subject) const;
  friend bool operator==(const Compound&, const Compound&) = default;
};

// "table.a > tr td": compounds, outermost first.
struct Selector {
  struct Part {
    Compound compound;
    bool isChild = false;  // of the part before: directly in it
    friend bool operator==(const Part&, const Part&) = default;
  };
  std::vector<Part> parts;  // never empty

  // Nothing for selectors that say more than that (":hover", "a + b", "[href]") and for elements
  // that HTML does not know: such a rule applies to nothing. An outermost "html" or "body" around
  // anything is left out: everything stands in them.
  [[nodiscard]] static std::optional<Selector> parse(std::u16string_view text);

  // Identifiers, then classes, then elements.
  [[nodiscard]] uint32_t specificity() const;
};

// Which outer parts of selectors an element matches, and which one of those around it does. A part
// counts only where the parts outside of it are matched, too.
struct Ancestry {
  static constexpr size_t kMostParts = 128;
  std::bitset<kMostParts> self, around;
};

// The words of a `class` attribute, one after the other; empty at the end.
[[nodiscard]] std::u16string_view takeClass(std::u16string_view* classes);

}  // namespace kelspar::html
