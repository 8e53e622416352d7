// A URL by its text, checked against the characters and the shape of RFC 3986.
#pragma once

#include "platform/foundation/NSString.h"

namespace kelspar {

class NSURL : public id {
 public:
  static const NSKind kKind;

  NSURL() noexcept = default;  // nil
  NSURL(std::nullptr_t) noexcept {}
  // nil for nil or empty text, for text outside RFC 3986's characters (blanks, "<", non-ASCII,
  // ...), for "%" without two hexadecimal digits, for brackets outside a host literal, and for a
  // first segment with ":" that is no scheme.
  [[nodiscard]] static NSURL URLWithString(const NSString& text);
  // A "file:" URL for a path of the file system; bytes that a URL cannot hold are percent-escaped.
  [[nodiscard]] static NSURL fileURLWithPath(const std::string& path);

  // The text as it was given; nil for nil.
  [[nodiscard]] NSString absoluteString() const;
  // Lower case, without ":"; empty when the URL is relative.
  [[nodiscard]] std::string scheme() const;
  // The path of a "file:" URL, percent escapes decoded; empty for other URLs.
  [[nodiscard]] std::string fileSystemPath() const;

  friend bool operator==(const NSURL& a, const NSURL& b) noexcept {
    return a.isIdenticalTo(b) || a.isEqual(b);
  }

 private:
  explicit NSURL(const NSObject* contents) noexcept : id(contents) {}
};

}  // namespace kelspar
