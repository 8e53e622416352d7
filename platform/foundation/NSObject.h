// The root of all values: NSObject is what a value holds, `id` is the handle that holds it.
//
// A handle is one pointer. Copying it shares the contents, which never change once they are built,
// so handles may be copied and read from any thread. An empty handle is nil: not the empty string,
// not an empty array. Each value class (NSString, NSData, ...) is an `id` that knows its contents'
// kind.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace kelspar {

class NSString;

// What tells one kind of contents from another; compared by address.
struct NSKind {
  const char* name;  // the class name, as hosts know it
};

class NSObject {
 public:
  NSObject(const NSObject&) = delete;
  NSObject& operator=(const NSObject&) = delete;

  [[nodiscard]] virtual const NSKind& kind() const = 0;

  // Equal contents; `other` may be of another kind. By default only an object itself is equal to
  // it.
  [[nodiscard]] virtual bool isEqual(const NSObject& other) const { return this == &other; }

  // The text that "%@" prints.
  [[nodiscard]] virtual NSString description() const;

 protected:
  NSObject() = default;
  virtual ~NSObject() = default;

 private:
  friend class id;
  void retain() const { references_.fetch_add(1, std::memory_order_relaxed); }
  void release() const {
    if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }
  mutable std::atomic<uint32_t> references_{0};
};

inline constexpr std::nullptr_t nil = nullptr;

// Any value, or nil.
//
//   id value = NSString(u"hello");
//   value.is<NSString>();             // true
//   value.as<NSNumber>();             // nil: the value is of another kind
class id {
 public:
  constexpr id() noexcept = default;
  constexpr id(std::nullptr_t) noexcept {}
  // Takes a share in contents that were made with `new`.
  explicit id(const NSObject* contents) noexcept : contents_(contents) { retain(); }
  id(const id& other) noexcept : contents_(other.contents_) { retain(); }
  id(id&& other) noexcept : contents_(std::exchange(other.contents_, nullptr)) {}
  id& operator=(const id& other) noexcept {
    id(other).swap(*this);
    return *this;
  }
  id& operator=(id&& other) noexcept {
    id(std::move(other)).swap(*this);
    return *this;
  }
  ~id() {
    if (contents_) contents_->release();
  }

  void swap(id& other) noexcept { std::swap(contents_, other.contents_); }

  [[nodiscard]] explicit operator bool() const noexcept { return contents_ != nullptr; }
  [[nodiscard]] bool isNil() const noexcept { return contents_ == nullptr; }
  [[nodiscard]] const NSObject* contents() const noexcept { return contents_; }

  // The very same contents, not only equal ones. Two nils are identical.
  [[nodiscard]] bool isIdenticalTo(const id& other) const noexcept {
    return contents_ == other.contents_;
  }

  // Equal contents. Nil equals nothing, not even nil.
  [[nodiscard]] bool isEqual(const id& other) const {
    return contents_ && other.contents_ && contents_->isEqual(*other.contents_);
  }

  // Whether the value is one of class T; false for nil.
  template <class T>
  [[nodiscard]] bool is() const noexcept {
    return contents_ && &contents_->kind() == &T::kKind;
  }

  // The value as one of class T, or nil when it is of another kind.
  template <class T>
  [[nodiscard]] T as() const {
    if constexpr (std::is_same_v<T, id>) {
      return *this;
    } else {
      T result;
      if (is<T>()) static_cast<id&>(result) = *this;
      return result;
    }
  }

  // The text that "%@" prints: "(null)" for nil.
  [[nodiscard]] NSString description() const;

 private:
  void retain() const noexcept {
    if (contents_) contents_->retain();
  }
  const NSObject* contents_ = nullptr;
};

// Where nothing was found; the largest signed 64-bit number, as hosts expect it.
inline constexpr uint64_t NSNotFound = INT64_MAX;

// `length` code units, bytes or elements from `location` on.
struct NSRange {
  uint64_t location = 0;
  uint64_t length = 0;
  friend bool operator==(const NSRange&, const NSRange&) = default;
};

}  // namespace kelspar
