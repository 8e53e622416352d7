// Windows, DOS and Macintosh code pages by number, as RTF and message stores name them; decoding
// never fails, what a page leaves undefined becomes U+FFFD. Internal to the library.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelspar {

class CodePage {
 public:
  // The page of this number (1252, 932, 65001, 10000, ...). One that is not known reads as 1252.
  // The result lives as long as the process.
  [[nodiscard]] static const CodePage& numbered(int number);
  [[nodiscard]] static bool known(int number);

  [[nodiscard]] int number() const { return number_; }
  // One byte is one character, whatever stands before it.
  [[nodiscard]] bool isSingleByte() const { return singleByte_; }
  // The unit of a byte; for single-byte pages.
  [[nodiscard]] char16_t unit(uint8_t byte) const { return units_[byte]; }
  // Whether the byte begins a character of two bytes or more.
  [[nodiscard]] bool isLeadByte(uint8_t byte) const { return lead_[byte]; }

  void append(std::string_view bytes, std::u16string* out) const;

 private:
  CodePage(int number, const char* converter);
  friend const CodePage* makeCodePage(int number);

  int number_;
  bool singleByte_ = true;
  bool lead_[256] = {};
  char16_t units_[256] = {};
  const char* converter_;  // ICU's name; null for Johab
};

}  // namespace kelspar
