// Values by name. Keys are texts, compared by unit; the order of entries is the order in which the
// keys came. A value is never nil: nil is stored as the null object.
#pragma once

#include <initializer_list>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/foundation/NSString.h"

namespace kelspar {

// A dictionary that changes. Copies are deep (handles, not contents); it is never nil.
class NSMutableDictionary {
 public:
  using Entry = std::pair<NSString, id>;

  NSMutableDictionary() = default;
  NSMutableDictionary(std::initializer_list<Entry> entries);

  [[nodiscard]] size_t count() const noexcept { return entries_.size(); }
  [[nodiscard]] std::span<const Entry> entries() const noexcept { return entries_; }
  // nil when there is no such key. Constant time.
  [[nodiscard]] id objectForKey(std::u16string_view key) const;
  // Replaces the value of a key that is there already; the key keeps its place.
  void setObject(id value, const NSString& key);

 private:
  [[nodiscard]] size_t find(std::u16string_view key) const;
  std::vector<Entry> entries_;
  // Position by key, views into the keys; filled only when a scan of the entries would be slow.
  std::unordered_map<std::u16string_view, size_t> index_;
};

class NSDictionary : public id {
 public:
  static const NSKind kKind;
  using Entry = NSMutableDictionary::Entry;

  NSDictionary() noexcept = default;  // nil
  NSDictionary(std::nullptr_t) noexcept {}
  NSDictionary(std::initializer_list<Entry> entries);
  explicit NSDictionary(NSMutableDictionary&& entries);
  explicit NSDictionary(const NSMutableDictionary& entries)
      : NSDictionary(NSMutableDictionary(entries)) {}

  // 0, nothing and nil for nil.
  [[nodiscard]] size_t count() const noexcept { return entries().size(); }
  [[nodiscard]] std::span<const Entry> entries() const noexcept;
  [[nodiscard]] id objectForKey(std::u16string_view key) const;
  template <class T>
  [[nodiscard]] T objectForKey(std::u16string_view key) const {
    return objectForKey(key).template as<T>();
  }
  [[nodiscard]] NSMutableDictionary mutableCopy() const;

  // The same keys with equal values, in any order. Nil is equal to nil.
  friend bool operator==(const NSDictionary& a, const NSDictionary& b) {
    return a.isIdenticalTo(b) || a.isEqual(b);
  }
};

}  // namespace kelspar
