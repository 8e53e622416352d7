// A point in time: seconds (double) since 1970-01-01 00:00:00 UTC.
#pragma once

#include "platform/foundation/NSObject.h"

namespace kelspar {

class NSDate : public id {
 public:
  static const NSKind kKind;

  NSDate() noexcept = default;  // nil
  NSDate(std::nullptr_t) noexcept {}
  [[nodiscard]] static NSDate now();
  [[nodiscard]] static NSDate since1970(double seconds);
  // Seconds since 2001-01-01 00:00:00 UTC.
  [[nodiscard]] static NSDate sinceReferenceDate(double seconds);

  // 0 for nil.
  [[nodiscard]] double secondsSince1970() const noexcept;

  friend bool operator==(const NSDate& a, const NSDate& b) noexcept {
    return a.isIdenticalTo(b) || a.isEqual(b);
  }

 private:
  explicit NSDate(const NSObject* contents) noexcept : id(contents) {}
};

}  // namespace kelspar
