// Base64 (RFC 4648, 4) with padding, without line breaks.
#pragma once

#include <string>
#include <string_view>

namespace kelspar::host {

[[nodiscard]] inline std::string base64Text(std::string_view bytes) {
  constexpr std::string_view kAlphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t at = 0; at < bytes.size(); at += 3) {
    const auto byte = [&](size_t i) -> uint32_t {
      return at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0;
    };
    const uint32_t bits = byte(0) << 16 | byte(1) << 8 | byte(2);
    text += kAlphabet[bits >> 18];
    text += kAlphabet[bits >> 12 & 63];
    text += at + 1 < bytes.size() ? kAlphabet[bits >> 6 & 63] : '=';
    text += at + 2 < bytes.size() ? kAlphabet[bits & 63] : '=';
  }
  return text;
}

}  // namespace kelspar::host
