// Text: UTF-16 code units, in any order, so lone surrogates are kept as they are.
//
// NSString is immutable and cheap to copy; NSMutableString is a buffer of its own that grows.
// Lengths and positions count code units.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/NSObject.h"

namespace kelspar {

class NSString;

namespace detail {

// What an NSString holds; derived contents own the units.
class StringContents : public NSObject {
 public:
  explicit StringContents(std::u16string_view units) : units_(units) {}
  const NSKind& kind() const override;
  bool isEqual(const NSObject& other) const override;
  NSString description() const override;
  [[nodiscard]] std::u16string_view units() const { return units_; }

 protected:
  std::u16string_view units_;
};

// Room for units that become a text.
class UnitBuffer {
 public:
  explicit UnitBuffer(size_t most);
  ~UnitBuffer();
  UnitBuffer(const UnitBuffer&) = delete;
  UnitBuffer& operator=(const UnitBuffer&) = delete;
  [[nodiscard]] char16_t* units() const { return units_; }
  // The text of the first `length` units; the buffer is empty then.
  [[nodiscard]] NSString text(size_t length) &&;

 private:
  char16_t* units_;
  size_t most_;
};

}  // namespace detail

class NSString : public id {
 public:
  static const NSKind kKind;

  // nil.
  NSString() noexcept = default;
  NSString(std::nullptr_t) noexcept {}

  // A copy of these units.
  NSString(std::u16string_view units);
  NSString(const char16_t* units) : NSString(std::u16string_view(units)) {}
  NSString(const std::u16string& units) : NSString(std::u16string_view(units)) {}
  // Takes the buffer over without a copy.
  NSString(std::u16string&& units);

  // Text from UTF-8; what is not valid UTF-8 becomes U+FFFD. `fromUTF8` refuses it instead.
  NSString(std::string_view utf8);
  NSString(const char* utf8) : NSString(std::string_view(utf8)) {}
  NSString(const std::string& utf8) : NSString(std::string_view(utf8)) {}
  [[nodiscard]] static NSString fromUTF8(std::string_view utf8);

  // Text over units that outlive the process's use of it (a literal): nothing is copied.
  [[nodiscard]] static NSString fromStatic(std::u16string_view units);

  // Text of `length` units that `fill(char16_t*)` writes: one allocation, no copy afterwards.
  template <class Fill>
  [[nodiscard]] static NSString build(size_t length, Fill&& fill) {
    char16_t* units = nullptr;
    NSString result = uninitialized(length, &units);
    if (units) fill(units);
    return result;
  }

  // The same where the length is known only when all is written: room for `most` units, of which
  // `fill(char16_t*)` returns how many it wrote. What was not written is given back.
  template <class Fill>
  [[nodiscard]] static NSString buildAtMost(size_t most, Fill&& fill) {
    detail::UnitBuffer buffer(most);
    const size_t length = fill(buffer.units());
    return std::move(buffer).text(length);
  }

  // Number of code units; 0 for nil.
  [[nodiscard]] size_t length() const noexcept { return view().size(); }
  [[nodiscard]] bool isEmpty() const noexcept { return length() == 0; }
  // The units; an empty view for nil. Valid as long as some handle keeps the contents.
  [[nodiscard]] std::u16string_view view() const noexcept {
    return contents() ? static_cast<const detail::StringContents*>(contents())->units()
                      : std::u16string_view();
  }
  operator std::u16string_view() const noexcept { return view(); }
  // Raises NSRangeException behind the end.
  [[nodiscard]] char16_t characterAtIndex(size_t index) const;
  // The part `[from, from + length)`, cut to the text's end; raises NSRangeException when `from` is
  // behind the end. The whole text comes back as the same contents.
  [[nodiscard]] NSString substring(size_t from, size_t length = std::u16string_view::npos) const;

  // UTF-8; lone surrogates become U+FFFD. `strictUTF8` gives nothing instead.
  [[nodiscard]] std::string utf8() const;
  [[nodiscard]] std::optional<std::string> strictUTF8() const;

  // Exact, by unit; no range (length 0 at NSNotFound) when `needle` is empty or absent.
  [[nodiscard]] NSRange rangeOfString(std::u16string_view needle, size_t from = 0) const;
  [[nodiscard]] bool hasPrefix(std::u16string_view prefix) const {
    return view().substr(0, prefix.size()) == prefix;
  }

  // The platform's format syntax: see NSFormat.h.
  template <class... Arguments>
  [[nodiscard]] static NSString stringWithFormat(const NSString& format,
                                                 const Arguments&... arguments);

  // The same units. Nil is equal to nil here, and not to the empty text.
  friend bool operator==(const NSString& a, const NSString& b) noexcept {
    return a.isIdenticalTo(b) || (a && b && a.view() == b.view());
  }
  friend std::ostream& operator<<(std::ostream& stream, const NSString& text);

 private:
  friend class id;
  friend class detail::UnitBuffer;
  explicit NSString(const NSObject* contents) noexcept : id(contents) {}
  [[nodiscard]] static NSString uninitialized(size_t length, char16_t** units);
};

// u"..."_ns: a text over the literal itself.
inline namespace literals {
inline NSString operator""_ns(const char16_t* units, size_t length) {
  return NSString::fromStatic({units, length});
}
}  // namespace literals

// A text that changes. Copies are deep; it is never nil. To be used by one thread at a time.
class NSMutableString {
 public:
  NSMutableString() = default;
  explicit NSMutableString(std::u16string_view units) : units_(units) {}
  explicit NSMutableString(std::u16string&& units) noexcept : units_(std::move(units)) {}

  [[nodiscard]] size_t length() const noexcept { return units_.size(); }
  [[nodiscard]] std::u16string_view view() const noexcept { return units_; }
  [[nodiscard]] std::u16string& units() noexcept { return units_; }

  void reserve(size_t units) { units_.reserve(units); }
  void append(std::u16string_view units) { units_.append(units); }
  void append(char16_t unit) { units_.push_back(unit); }
  void setString(std::u16string_view units) { units_.assign(units); }
  // Every occurrence, exact, left to right, without overlap; nothing for an empty target.
  // Returns the number of replacements.
  size_t replaceOccurrences(std::u16string_view target, std::u16string_view replacement);

  [[nodiscard]] NSString copy() const& { return NSString(std::u16string_view(units_)); }
  [[nodiscard]] NSString copy() && { return NSString(std::move(units_)); }

 private:
  std::u16string units_;
};

}  // namespace kelspar

#include "platform/foundation/NSFormat.h"
