// The rules of style elements: selectors of elements, classes and identifiers, descendants and
// children. Rules behind other selectors and for other media are passed over. Internal to the
// library.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/richtext/html_selectors.h"
#include "platform/richtext/html_style.h"
#include "platform/richtext/html_tokenizer.h"

namespace kelspar::html {

class StyleSheet {
 public:
  // With `layoutOnly` the declarations that only change the look are not kept.
  explicit StyleSheet(bool layoutOnly) : layoutOnly_(layoutOnly) {}

  // All style elements of a page.
  [[nodiscard]] static StyleSheet ofPage(std::u16string_view html, bool layoutOnly);

  // The text of a style element; each one adds to the ones before. Linear.
  void add(std::u16string_view css);

  // Reads the style element whose start tag was the last token, up to its end tag.
  void readElement(Tokenizer* tokens);

  // Rules that were added, those that came twice included.
  [[nodiscard]] uint32_t rules() const { return order_; }
  [[nodiscard]] bool isEmpty() const { return order_ == 0; }
  // Whether a selector has several parts, so that ancestries count.
  [[nodiscard]] bool hasParts() const { return outerParts_ > 0; }

  // Adds what applies to an element in a parent of that ancestry, the weaker rules first, and gives
  // the element's own ancestry. Constant time for each of its classes.
  void apply(const Subject& subject, const Ancestry& parent, Ancestry* own,
             Declarations* declarations) const;

  // Each rule that any screen has, in order: its selectors, and what stands between its braces.
  static void forEachRule(
      std::u16string_view css,
      const std::function<void(std::u16string_view, std::u16string_view)>& rule);

  // Whether a style element's `media` or an "@media" rule's condition is met by any screen.
  [[nodiscard]] static bool appliesToMedia(std::u16string_view condition);

 private:
  // A part of a selector, as the last one or as one of those around it.
  struct Entry {
    Compound compound;
    int16_t around = -1;   // the number of the outer part that it stands in; -1: anywhere
    bool isChild = false;  // directly in it
    int16_t outer = -1;    // its own number as an outer part; -1: a rule, and what follows counts
    uint32_t specificity = 0;
    uint32_t order = 0;
    Declarations declarations;

    [[nodiscard]] bool isSamePart(const Entry& other) const {
      return compound == other.compound && around == other.around && isChild == other.isChild &&
             (outer >= 0) == (other.outer >= 0);
    }
  };
  using Entries = std::vector<Entry>;
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::u16string_view text) const {
      return std::hash<std::u16string_view>()(text);
    }
  };
  using Named = std::unordered_map<std::u16string, Entries, Hash, std::equal_to<>>;
  struct Match {
    const Entry* entry;
    uint32_t specificity, order;
  };

  void addRule(std::u16string_view selectors, const Declarations& declarations);
  void addSelector(const Selector& selector, const Declarations& declarations);
  [[nodiscard]] Entries& entriesFor(const Compound& compound);
  [[nodiscard]] Entry* enter(Entry entry);
  static void collect(const Entries& entries, const Subject& subject, const Ancestry& parent,
                      Ancestry* own, std::vector<Match>* found);

  bool layoutOnly_;
  uint32_t order_ = 0;
  Entries anywhere_;  // by nothing but where they stand
  std::vector<Entries> byTag_;
  Named byClass_, byIdentifier_;
  size_t outerParts_ = 0;
};

}  // namespace kelspar::html
