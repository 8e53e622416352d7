// Little-endian fields of a record; what lies outside reads as 0. Internal.
#pragma once

#include <bit>
#include <cstdint>
#include <string_view>

namespace kelspar {

class LittleFields {
 public:
  explicit LittleFields(std::string_view bytes) : bytes_(bytes) {}

  [[nodiscard]] size_t size() const { return bytes_.size(); }
  [[nodiscard]] uint32_t u8(size_t at) const { return read(at, 1); }
  [[nodiscard]] uint32_t u16(size_t at) const { return read(at, 2); }
  [[nodiscard]] uint32_t u32(size_t at) const { return read(at, 4); }
  [[nodiscard]] int32_t i16(size_t at) const { return static_cast<int16_t>(u16(at)); }
  [[nodiscard]] int32_t i32(size_t at) const { return static_cast<int32_t>(u32(at)); }
  [[nodiscard]] float f32(size_t at) const { return std::bit_cast<float>(u32(at)); }
  // As many of the bytes as there are.
  [[nodiscard]] std::string_view part(size_t at, size_t count) const {
    return at > bytes_.size() ? std::string_view{} : bytes_.substr(at, count);
  }
  [[nodiscard]] std::string_view from(size_t at) const { return part(at, bytes_.size()); }

 private:
  [[nodiscard]] uint32_t read(size_t at, size_t count) const {
    if (at > bytes_.size() || count > bytes_.size() - at) return 0;
    uint32_t value = 0;
    for (size_t i = 0; i < count; ++i) {
      value |= static_cast<uint32_t>(static_cast<uint8_t>(bytes_[at + i])) << 8 * i;
    }
    return value;
  }

  std::string_view bytes_;
};

}  // namespace kelspar
