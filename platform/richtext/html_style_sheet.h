// The rules of style elements whose selectors are simple: an element, a class, an identifier, an
// element with one of these, or all. Rules behind other selectors and for other media are passed
// over. Internal to the library.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/richtext/html_style.h"
#include "platform/richtext/html_tags.h"

namespace kelspar::html {

class StyleSheet {
 public:
  // With `layoutOnly` the declarations that only change the look are not kept.
  explicit StyleSheet(bool layoutOnly) : layoutOnly_(layoutOnly) {}

  // The text of a style element; each one adds to the ones before. Linear.
  void add(std::u16string_view css);

  [[nodiscard]] bool isEmpty() const { return order_ == 0; }

  // Adds what applies to an element, the weaker rules first. `classes` and `identifier` are the
  // values of its attributes. Constant time for each class.
  void apply(Tag tag, std::u16string_view classes, std::u16string_view identifier,
             Declarations* declarations) const;

  // Whether a style element's `media` or an "@media" rule's condition is met by any screen.
  [[nodiscard]] static bool appliesToMedia(std::u16string_view condition);

 private:
  struct Rule {
    Tag tag = Tag::none;  // none: any element
    uint32_t order = 0;
    Declarations declarations;
  };
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::u16string_view text) const {
      return std::hash<std::u16string_view>()(text);
    }
  };
  using Rules = std::unordered_map<std::u16string, std::vector<Rule>, Hash, std::equal_to<>>;

  void addRule(std::u16string_view selectors, const Declarations& declarations);
  void addSelector(std::u16string_view selector, const Declarations& declarations);
  void enter(std::vector<Rule>* rules, Tag tag, const Declarations& declarations);
  static void collect(const Rules& rules, std::u16string_view name, Tag tag,
                      std::vector<const Rule*>* found);

  bool layoutOnly_;
  uint32_t order_ = 0;
  std::vector<Rule> byTag_;  // Tag::none stands for "*"
  Rules byClass_, byIdentifier_;
};

}  // namespace kelspar::html
