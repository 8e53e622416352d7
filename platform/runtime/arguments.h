// How each C++ parameter type is made from a value and what it gives back after the call. Internal.
//
//   value types        by value; nil gives the type's own nil
//   bool, numbers      checked for kind and range
//   char               an 8-bit character, by its number
//   T*                 a pointer to one number, in and out
//   const uint8_t*     bytes that are read; uint8_t* bytes that are read and written
//   const char*, char* the same, NUL-terminated
//   uint8_t**          a slot for a buffer that the operation allocates
//   NSMutableString&   a receiver that changes; NSMutableArray& an array that changes
#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include "platform/foundation/foundation.h"
#include "platform/runtime/Operations.h"

namespace kelspar::runtime {

// An argument during a call, without its C++ type.
class ArgumentSlot {
 public:
  virtual ~ArgumentSlot() = default;
  // Takes the value; false when it does not fit.
  virtual bool load(const id& value) = 0;
  // The value after the call, for those that give one back.
  [[nodiscard]] virtual id after() const { return nil; }
  // Bytes: how many were given, room for at least so many, whether an address lies among them.
  [[nodiscard]] virtual size_t byteCount() const { return 0; }
  virtual void ensureRoom(size_t) {}
  [[nodiscard]] virtual bool isNull() const { return false; }
  [[nodiscard]] virtual const char* bytes() const { return nullptr; }
  // Numbers and pointers to numbers: the number now.
  [[nodiscard]] virtual uint64_t number() const { return 0; }
  // A buffer slot: how many bytes the buffer has that the operation left in it.
  virtual void setSize(size_t) {}
};

inline bool isNilValue(const id& value) { return !value || value.is<NSNull>(); }

template <class T>
bool numberFits(const id& value, T* out) {
  const auto number = value.as<NSNumber>();
  if (!number || number.type() == NSNumber::Type::boolean) return false;
  if constexpr (std::floating_point<T>) {
    *out = static_cast<T>(number.doubleValue());
  } else if (number.type() == NSNumber::Type::real) {
    const double real = number.doubleValue();
    // Hosts without integers of their own write them as doubles.
    if (real != std::trunc(real)) return false;
    if (real < -9223372036854775808.0 || real >= 18446744073709551616.0) return false;
    return real < 0 ? numberFits(NSNumber(static_cast<int64_t>(real)), out)
                    : numberFits(NSNumber(static_cast<uint64_t>(real)), out);
  } else {
    const bool negative = number.type() == NSNumber::Type::integer && number.longValue() < 0;
    using Limits = std::numeric_limits<T>;
    if (negative && (!std::is_signed_v<T> || number.longValue() < int64_t{Limits::min()})) {
      return false;
    }
    if (!negative && number.unsignedLongValue() > static_cast<uint64_t>(Limits::max()))
      return false;
    *out = static_cast<T>(number.longValue());
  }
  return true;
}

template <class T>
concept ValueType = std::derived_from<T, id>;

// Specialised below; a parameter type without a specialisation cannot be registered.
template <class T>
class Argument;

template <ValueType T>
class Argument<T> : public ArgumentSlot {
 public:
  static std::string typeName() {
    if constexpr (std::is_same_v<T, id>) {
      return "any value";
    } else {
      return T::kKind.name;
    }
  }
  static constexpr bool kGivesBack = false;
  bool load(const id& value) override {
    if (isNilValue(value)) return true;
    value_ = value.as<T>();
    return static_cast<bool>(value_);
  }
  const T& pass() { return value_; }

 private:
  T value_;
};

template <>
class Argument<bool> : public ArgumentSlot {
 public:
  static std::string typeName() { return "boolean"; }
  static constexpr bool kGivesBack = false;
  bool load(const id& value) override {
    const auto number = value.as<NSNumber>();
    if (!number || number.type() != NSNumber::Type::boolean) return false;
    value_ = number.boolValue();
    return true;
  }
  bool pass() { return value_; }

 private:
  bool value_ = false;
};

template <class T>
std::string numberTypeName() {
  if constexpr (std::floating_point<T>) return sizeof(T) == 4 ? "32-bit float" : "double";
  return std::string(std::is_signed_v<T> ? "signed " : "unsigned ") +
         std::to_string(8 * sizeof(T)) + "-bit integer";
}

template <class T>
requires std::is_arithmetic_v<T>
class Argument<T> : public ArgumentSlot {
 public:
  static std::string typeName() { return numberTypeName<T>(); }
  static constexpr bool kGivesBack = false;
  bool load(const id& value) override { return numberFits(value, &value_); }
  uint64_t number() const override { return static_cast<uint64_t>(value_); }
  T pass() { return value_; }

 private:
  T value_{};
};

// An 8-bit character: hosts may count it signed or unsigned.
template <>
class Argument<char> : public ArgumentSlot {
 public:
  static std::string typeName() { return "8-bit character"; }
  static constexpr bool kGivesBack = false;
  bool load(const id& value) override {
    int16_t code = 0;
    if (!numberFits(value, &code) || code < -128 || code > 255) return false;
    value_ = static_cast<char>(code);
    return true;
  }
  char pass() { return value_; }

 private:
  char value_ = 0;
};

// Pointers to these point to bytes.
template <class T>
concept ByteType =
    std::same_as<std::remove_const_t<T>, uint8_t> || std::same_as < std::remove_const_t<T>,
char > ;

// Given as the number, or as the bytes of memory that begins with it; comes back in the same form.
template <class T>
requires(std::is_arithmetic_v<T> && !ByteType<T>) class Argument<T*> : public ArgumentSlot {
 public:
  static std::string typeName() { return "pointer to " + numberTypeName<T>(); }
  static constexpr bool kGivesBack = true;
  bool load(const id& value) override {
    isNull_ = isNilValue(value);
    memory_ = value.as<NSData>();
    if (!memory_.isEmpty()) {
      std::memcpy(&value_, memory_.bytes(), std::min(sizeof value_, memory_.length()));
    }
    return isNull_ || memory_ || numberFits(value, &value_);
  }
  id after() const override {
    if (isNull_) return nil;
    if (!memory_) return boxed(value_);
    std::string bytes(memory_.chars());
    bytes.resize(std::max(bytes.size(), sizeof value_));
    std::memcpy(bytes.data(), &value_, sizeof value_);
    return NSData(std::move(bytes));
  }
  uint64_t number() const override { return static_cast<uint64_t>(value_); }
  bool isNull() const override { return isNull_; }
  T* pass() { return isNull_ ? nullptr : &value_; }

 private:
  bool isNull_ = true;
  T value_{};
  NSData memory_;
};

// A private copy of the bytes, with zeros behind it: they end 8-bit strings, and an operation that
// reads a field of fixed size never reads beyond them.
class BytesSlot : public ArgumentSlot {
 public:
  static constexpr size_t kZerosBehind = 16;
  bool load(const id& value) override {
    isNull_ = isNilValue(value);
    if (isNull_) return true;
    const auto data = value.as<NSData>();
    if (!data) return false;
    count_ = data.length();
    buffer_.assign(data.chars());
    buffer_.append(kZerosBehind, '\0');
    return true;
  }
  size_t byteCount() const override { return count_; }
  void ensureRoom(size_t bytes) override {
    if (!isNull_ && bytes > count_) buffer_.resize(bytes + kZerosBehind, '\0');
  }
  bool isNull() const override { return isNull_; }
  const char* bytes() const override { return isNull_ ? nullptr : buffer_.data(); }

 protected:
  bool isNull_ = true;
  size_t count_ = 0;
  std::string buffer_;
};

template <ByteType Byte>
class Argument<Byte*> : public BytesSlot {
  static constexpr bool kIsText = std::same_as<std::remove_const_t<Byte>, char>;

 public:
  static std::string typeName() {
    return kIsText ? "NUL-terminated 8-bit string" : "pointer to bytes";
  }
  static constexpr bool kGivesBack = !std::is_const_v<Byte>;
  id after() const override {
    if (isNull_ || !kGivesBack) return nil;
    const std::string_view all(buffer_.data(), buffer_.size() - kZerosBehind);
    return NSData(kIsText ? all.substr(0, all.find('\0')) : all);
  }
  Byte* pass() { return isNull_ ? nullptr : reinterpret_cast<Byte*>(buffer_.data()); }
};

// The slot of a buffer. nil: it holds a null pointer; data: a pointer to something else.
template <>
class Argument<uint8_t**> : public ArgumentSlot {
 public:
  static std::string typeName() { return "slot for a buffer"; }
  static constexpr bool kGivesBack = true;
  Argument() = default;
  Argument(const Argument&) = delete;
  ~Argument() override {
    if (slot_ != &placeholder_) std::free(slot_);
  }
  bool load(const id& value) override {
    if (isNilValue(value)) return true;
    slot_ = &placeholder_;
    return value.is<NSData>();
  }
  void setSize(size_t bytes) override { size_ = bytes; }
  id after() const override {
    if (!slot_) return nil;
    return slot_ == &placeholder_ ? NSData(std::string_view()) : NSData(slot_, size_);
  }
  uint8_t** pass() { return &slot_; }

 private:
  uint8_t* slot_ = nullptr;
  uint8_t placeholder_ = 0;
  size_t size_ = 0;
};

template <>
class Argument<NSMutableString&> : public ArgumentSlot {
 public:
  static std::string typeName() { return "NSMutableString"; }
  static constexpr bool kGivesBack = true;
  bool load(const id& value) override {
    isNull_ = isNilValue(value);
    if (isNull_) return true;
    text_.setString(value.as<NSString>());
    return value.is<NSString>();
  }
  id after() const override { return isNull_ ? NSString() : text_.copy(); }
  bool isNull() const override { return isNull_; }
  NSMutableString& pass() { return text_; }

 private:
  bool isNull_ = true;
  NSMutableString text_;
};

template <>
class Argument<NSMutableArray&> : public ArgumentSlot {
 public:
  static std::string typeName() { return "NSMutableArray"; }
  static constexpr bool kGivesBack = true;
  bool load(const id& value) override {
    isNull_ = isNilValue(value);
    if (isNull_) return true;
    array_ = NSMutableArray(value.as<NSArray>());
    return value.is<NSArray>();
  }
  id after() const override { return isNull_ ? NSArray() : array_.copy(); }
  bool isNull() const override { return isNull_; }
  NSMutableArray& pass() { return array_; }

 private:
  bool isNull_ = true;
  NSMutableArray array_;
};

// `const T&` and `T` are one; other references are kept.
template <class T>
using ArgumentOf = Argument<std::conditional_t<std::is_lvalue_reference_v<T> &&
                                                   !std::is_const_v<std::remove_reference_t<T>>,
                                               T, std::remove_cvref_t<T>>>;

}  // namespace kelspar::runtime
