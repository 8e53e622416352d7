// Numbers that know what they are: a boolean, an integer (signed or unsigned, 64 bits), a double.
// NSNull stands for "no value" inside arrays and dictionaries.
#pragma once

#include <concepts>

#include "platform/foundation/NSObject.h"

namespace kelspar {

class NSNumber : public id {
 public:
  static const NSKind kKind;
  enum class Type : uint8_t { boolean, integer, unsignedInteger, real };

  NSNumber() noexcept = default;  // nil
  NSNumber(std::nullptr_t) noexcept {}
  explicit NSNumber(bool value);
  explicit NSNumber(double value);
  template <std::integral T>
  requires(!std::same_as<T, bool>) explicit NSNumber(T value)
      : NSNumber(std::is_signed_v<T> ? Type::integer : Type::unsignedInteger,
                 static_cast<uint64_t>(value)) {}

  // Type::integer for nil. A non-negative integer may be of either integer type.
  [[nodiscard]] Type type() const noexcept;
  [[nodiscard]] bool isInteger() const noexcept {
    return type() == Type::integer || type() == Type::unsignedInteger;
  }

  // The value as another type: doubles are truncated toward zero and saturate, integers wrap;
  // all are 0 for nil.
  [[nodiscard]] bool boolValue() const noexcept;
  [[nodiscard]] int32_t intValue() const noexcept { return static_cast<int32_t>(longValue()); }
  [[nodiscard]] uint32_t unsignedIntValue() const noexcept {
    return static_cast<uint32_t>(unsignedLongValue());
  }
  [[nodiscard]] int64_t longValue() const noexcept;
  [[nodiscard]] uint64_t unsignedLongValue() const noexcept;
  [[nodiscard]] double doubleValue() const noexcept;

  // The same value, whatever the types; nil is equal to nil.
  friend bool operator==(const NSNumber& a, const NSNumber& b) noexcept {
    return a.isIdenticalTo(b) || a.isEqual(b);
  }

 private:
  NSNumber(Type type, uint64_t bits);
};

class NSNull : public id {
 public:
  static const NSKind kKind;
  NSNull() noexcept = default;  // nil; the null object is `null()`
  [[nodiscard]] static NSNull null();
};

}  // namespace kelspar
