// The few failures that are raised and not returned. Each operation states which it may raise.
#pragma once

#include <stdexcept>
#include <string>

namespace kelspar {

class NSException : public std::runtime_error {
 public:
  NSException(const char* name, const std::string& reason)
      : std::runtime_error(reason), name_(name) {}
  [[nodiscard]] const char* name() const noexcept { return name_; }
  [[nodiscard]] const char* reason() const noexcept { return what(); }

 private:
  const char* name_;
};

// An index, a range or a unit outside its bounds.
class NSRangeException : public NSException {
 public:
  explicit NSRangeException(const std::string& reason) : NSException("NSRangeException", reason) {}
};

// An argument that makes no sense to the callee.
class NSInvalidArgumentException : public NSException {
 public:
  explicit NSInvalidArgumentException(const std::string& reason)
      : NSException("NSInvalidArgumentException", reason) {}
};

}  // namespace kelspar
