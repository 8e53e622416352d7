// RTF split into tokens (RTF 1.9.1, "RTF Syntax"): braces, control words and symbols, hexadecimal
// escapes, runs of text, binary data. Any bytes are RTF to it; nothing is ever read behind the end.
// Internal to the library.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelspar {

struct RTFToken {
  enum class Kind : uint8_t { end, groupStart, groupEnd, word, symbol, hex, text, binary };

  Kind kind = Kind::end;
  // text: a run without line breaks, as it stands. word: its letters. binary: the bytes.
  std::string_view bytes;
  // word: the number behind it, cut to 32 bits; 0 when there is none.
  int32_t parameter = 0;
  bool hasParameter = false;
  // symbol: the character behind the backslash. hex: the byte that is meant.
  uint8_t byte = 0;
};

class RTFTokenizer {
 public:
  explicit RTFTokenizer(std::string_view bytes) : bytes_(bytes) {}

  // The next token; Kind::end at the end, again and again. A backslash at the very end, and a
  // hexadecimal escape without its two digits, are no tokens.
  RTFToken next();

  // Goes on to the brace that ends the group at hand.
  void skipGroup();

  // Bytes read so far.
  [[nodiscard]] size_t position() const { return at_; }

 private:
  RTFToken control();
  RTFToken controlWord();
  RTFToken hexEscape();
  RTFToken binary(int64_t length);

  std::string_view bytes_;
  size_t at_ = 0;
};

// Where an RTF document begins: "{\rtf" behind white space, a byte-order mark or NULs. npos when
// the bytes are no RTF.
[[nodiscard]] size_t findRTFStart(std::string_view bytes);

}  // namespace kelspar
