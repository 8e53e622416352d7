// Ordered lists of any values. An element is never nil: nil is stored as the null object.
#pragma once

#include <initializer_list>
#include <span>
#include <vector>

#include "platform/foundation/NSObject.h"

namespace kelspar {

class NSArray : public id {
 public:
  static const NSKind kKind;

  NSArray() noexcept = default;  // nil
  NSArray(std::nullptr_t) noexcept {}
  NSArray(std::initializer_list<id> elements);
  explicit NSArray(std::vector<id>&& elements);
  [[nodiscard]] static NSArray empty() { return NSArray(std::vector<id>()); }

  // 0 for nil.
  [[nodiscard]] size_t count() const noexcept { return elements().size(); }
  [[nodiscard]] std::span<const id> elements() const noexcept;
  // Raises NSRangeException behind the end.
  [[nodiscard]] const id& objectAtIndex(size_t index) const;
  [[nodiscard]] auto begin() const noexcept { return elements().begin(); }
  [[nodiscard]] auto end() const noexcept { return elements().end(); }

  // Equal elements in the same order. Nil is equal to nil, and not to an empty list.
  friend bool operator==(const NSArray& a, const NSArray& b) {
    return a.isIdenticalTo(b) || a.isEqual(b);
  }
};

// A list that changes. Copies are deep (handles, not contents); it is never nil.
class NSMutableArray {
 public:
  NSMutableArray() = default;
  explicit NSMutableArray(const NSArray& elements) : elements_(elements.begin(), elements.end()) {}

  [[nodiscard]] size_t count() const noexcept { return elements_.size(); }
  [[nodiscard]] std::span<const id> elements() const noexcept { return elements_; }
  [[nodiscard]] const id& objectAtIndex(size_t index) const;
  void reserve(size_t elements) { elements_.reserve(elements); }
  void addObject(id element);
  void replaceObjectAtIndex(size_t index, id element);
  [[nodiscard]] auto begin() const noexcept { return elements().begin(); }
  [[nodiscard]] auto end() const noexcept { return elements().end(); }

  [[nodiscard]] NSArray copy() const& { return NSArray(std::vector<id>(elements_)); }
  [[nodiscard]] NSArray copy() && { return NSArray(std::move(elements_)); }

 private:
  std::vector<id> elements_;
};

}  // namespace kelspar
