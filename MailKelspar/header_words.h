// Encoded words (RFC 2047) inside header bytes. Internal to the unit.
#pragma once

#include <string>
#include <string_view>

namespace kelspar::headers {

struct EncodedWord {
  size_t length = 0;  // bytes, from "=?" to "?=" inclusive; 0: there is none
  std::string_view charset;
  char encoding = 'Q';  // 'B' or 'Q'
  std::string_view content;
};

// Finds the encoded words of one text; each end mark is searched for once, so a whole text costs
// linear time.
class EncodedWords {
 public:
  explicit EncodedWords(std::string_view text) : text_(text) {}
  // The word that begins at `at`.
  [[nodiscard]] EncodedWord at(size_t at);

 private:
  std::string_view text_;
  size_t end_ = 0;  // the first "?=" at or behind the last search's place
};

// The text with blanks for line ends and NULs.
[[nodiscard]] std::u16string onOneLine(std::u16string text);

// The text of header bytes with its words decoded, on one line.
[[nodiscard]] std::u16string decodedText(std::string_view bytes);

}  // namespace kelspar::headers
