// Bytes: immutable, cheap to copy and to cut. Buffers can be taken over without a copy.
#pragma once

#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/NSObject.h"

namespace kelspar {

namespace detail {

// What an NSData holds; derived contents keep the bytes alive.
class DataContents : public NSObject {
 public:
  explicit DataContents(std::span<const uint8_t> bytes) : bytes_(bytes) {}
  const NSKind& kind() const override;
  bool isEqual(const NSObject& other) const override;
  NSString description() const override;
  [[nodiscard]] std::span<const uint8_t> bytes() const { return bytes_; }

 private:
  std::span<const uint8_t> bytes_;
};

}  // namespace detail

class NSData : public id {
 public:
  static const NSKind kKind;

  NSData() noexcept = default;  // nil
  NSData(std::nullptr_t) noexcept {}
  // Copies.
  NSData(const void* bytes, size_t length);
  NSData(std::initializer_list<uint8_t> bytes) : NSData(bytes.begin(), bytes.size()) {}
  explicit NSData(std::span<const uint8_t> bytes) : NSData(bytes.data(), bytes.size()) {}
  explicit NSData(std::string_view bytes) : NSData(bytes.data(), bytes.size()) {}
  // Take the buffer over.
  explicit NSData(std::string&& bytes);
  explicit NSData(std::vector<uint8_t>&& bytes);
  // Takes over `length` bytes that came from the C library's allocator; they are freed with `free`.
  [[nodiscard]] static NSData adoptingMalloc(uint8_t* bytes, size_t length);
  // Bytes that outlive every use (a constant table): nothing is copied or freed.
  [[nodiscard]] static NSData fromStatic(std::span<const uint8_t> bytes);

  // Null for nil and for empty data.
  [[nodiscard]] const uint8_t* bytes() const noexcept { return span().data(); }
  [[nodiscard]] size_t length() const noexcept { return span().size(); }
  [[nodiscard]] bool isEmpty() const noexcept { return length() == 0; }
  [[nodiscard]] std::span<const uint8_t> span() const noexcept {
    return contents() ? static_cast<const detail::DataContents*>(contents())->bytes()
                      : std::span<const uint8_t>();
  }
  [[nodiscard]] std::string_view chars() const noexcept {
    return {reinterpret_cast<const char*>(bytes()), length()};
  }

  // The part `[from, from + length)`, cut to the end; it shares these bytes. Raises
  // NSRangeException when `from` is behind the end.
  [[nodiscard]] NSData subdata(size_t from, size_t length = SIZE_MAX) const;

  // The same bytes. Nil is equal to nil, and not to empty data.
  friend bool operator==(const NSData& a, const NSData& b) noexcept {
    return a.isIdenticalTo(b) || a.isEqual(b);
  }

 private:
  explicit NSData(const NSObject* contents) noexcept : id(contents) {}
};

}  // namespace kelspar
