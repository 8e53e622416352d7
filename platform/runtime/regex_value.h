// A compiled POSIX regular expression as a value. Internal to the library.
#pragma once

#include <regex.h>

#include "platform/runtime/arguments.h"

namespace kelspar::runtime {

class RegexValue : public id {
 public:
  static const NSKind kKind;
  RegexValue() noexcept = default;
  // nil when the pattern does not compile.
  [[nodiscard]] static RegexValue compile(const std::string& pattern, int flags);
  [[nodiscard]] const regex_t& get() const;

 private:
  explicit RegexValue(const NSObject* contents) noexcept : id(contents) {}
};

// {"pattern":"...","flags":["REG_EXTENDED","REG_ICASE"]}
[[nodiscard]] id readRegex(const id& content);

// A regex_t handed over by value, as the C library's users do; a missing one does not fit.
template <>
class Argument<regex_t> : public ArgumentSlot {
 public:
  static std::string typeName() { return "compiled POSIX regular expression"; }
  static constexpr bool kGivesBack = false;
  bool load(const id& value) override {
    value_ = value.as<RegexValue>();
    return static_cast<bool>(value_);
  }
  const regex_t& pass() { return value_.get(); }

 private:
  RegexValue value_;
};

}  // namespace kelspar::runtime
