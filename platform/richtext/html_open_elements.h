// The open elements, without a tree: a stack on which "is there a <td> in this table?" is a
// comparison of positions, however deep it is. Internal to the library.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/richtext/html_layout.h"
#include "platform/richtext/html_tags.h"

namespace kelspar::html {

struct OpenElement {
  uint16_t name = 0;  // a Tag's number, or one given to a name that is none
  bool hidden = false;
  bool ownHidden = false;  // of itself, not only of what it stands in
  bool invisible = false;  // "visibility: hidden"; what is in it may be visible again
  bool sizeless = false;   // "font-size: 0", likewise
  bool ownVisibility = false, ownSize = false;  // it says so itself
  bool foreign = false;                         // its content is SVG or MathML
  bool formatting = false;                      // stands in the list of formatting as well
  bool straying = false;                        // its content stands in front of the table
  bool fosters = false;                         // a part of a table: text in it strays
  WhiteSpace whiteSpace = WhiteSpace::collapse;
  uint8_t breaks = 0;       // line ends around it
  bool dropsCells = false;  // a table made for layout
  uint32_t table = 0;       // of a table part: the layout's number for the table
  // What was topmost before: positions counted from 1, 0 for none.
  uint32_t previousSame = 0, previousScope = 0, previousSpecial = 0, previousItem = 0;

  [[nodiscard]] Tag tag() const {
    return name < static_cast<uint16_t>(Tag::count) ? static_cast<Tag>(name) : Tag::unknown;
  }
};

class OpenElements {
 public:
  OpenElements();

  // The number of an element's name; names that are no Tag get one, too.
  [[nodiscard]] uint16_t number(Tag tag, std::u16string_view name);

  [[nodiscard]] uint32_t size() const { return static_cast<uint32_t>(stack_.size()); }
  [[nodiscard]] OpenElement& top() { return stack_.back(); }
  // Positions count from 1.
  [[nodiscard]] OpenElement& at(uint32_t position) { return stack_[position - 1]; }

  void push(OpenElement element);
  void pop();
  // Takes the formatting element at `position` out of the chains, but not off the stack.
  void forget(uint32_t position);

  // Positions of the topmost ones; 0 for none.
  [[nodiscard]] uint32_t last(uint16_t name) const { return last_[name]; }
  [[nodiscard]] uint32_t last(Tag tag) const { return last_[static_cast<size_t>(tag)]; }
  [[nodiscard]] uint32_t lastScope() const { return scope_; }      // that ends a scope
  [[nodiscard]] uint32_t lastSpecial() const { return special_; }  // that is special
  // Special, and not an address, div or p: what ends the search for a list item.
  [[nodiscard]] uint32_t lastItemBarrier() const { return item_; }

 private:
  std::vector<OpenElement> stack_;
  std::vector<uint32_t> last_;
  uint32_t scope_ = 0, special_ = 0, item_ = 0;
  std::unordered_map<std::u16string, uint16_t> names_;
};

}  // namespace kelspar::html
