// RTF split into tokens (RTF 1.9.1, "RTF Syntax"): braces, control words and symbols, hexadecimal
// escapes, runs of text, binary data. Any bytes are RTF to it; nothing is ever read behind the end.
// Internal to the library.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "platform/foundation/hex.h"
#include "platform/foundation/scan.h"

namespace kelspar {

namespace rtf {

[[nodiscard]] inline bool isLetter(char c) { return static_cast<uint8_t>((c | 0x20) - 'a') < 26; }
[[nodiscard]] inline bool isDigit(char c) { return static_cast<uint8_t>(c - '0') < 10; }

// A word as one number: no two words of up to eight letters have the same.
[[nodiscard]] constexpr uint64_t addToKey(uint64_t key, char letter, size_t place) {
  const uint64_t value = static_cast<uint8_t>(letter);
  return place < 8 ? key | value << 8 * place : key * 31 + value;
}
[[nodiscard]] constexpr uint64_t keyOf(std::string_view word) {
  uint64_t key = 0;
  for (size_t i = 0; i < word.size(); ++i) key = addToKey(key, word[i], i);
  return key;
}

}  // namespace rtf

struct RTFToken {
  enum class Kind : uint8_t { end, groupStart, groupEnd, word, symbol, hex, text, binary };

  Kind kind = Kind::end;
  // text: a run without line breaks, as it stands. word: its letters. binary: the bytes.
  std::string_view bytes;
  // word: the number behind it, cut to 32 bits; 0 when there is none.
  int32_t parameter = 0;
  bool hasParameter = false;
  uint64_t key = 0;  // word: see rtf::keyOf
  // symbol: the character behind the backslash. hex: the byte that is meant.
  uint8_t byte = 0;
};

class RTFTokenizer {
 public:
  explicit RTFTokenizer(std::string_view bytes) : bytes_(bytes) {}

  // The next token; Kind::end at the end, again and again. A backslash at the very end, and a
  // hexadecimal escape without its two digits, are no tokens.
  RTFToken next();

  // Bytes that are not read yet.
  [[nodiscard]] std::string_view rest() const { return bytes_.substr(at_); }

  // Goes on to the brace that ends the group at hand.
  void skipGroup();

  // Bytes read so far.
  [[nodiscard]] size_t position() const { return at_; }

 private:
  // Fill the token, which is one of Kind::end until then.
  void control(RTFToken* token);
  void controlWord(RTFToken* token);
  void hexEscape(RTFToken* token);
  void binary(int64_t length, RTFToken* token);

  std::string_view bytes_;
  size_t at_ = 0;
};

// What is decided byte by byte stands here, for the reader's loop to take in.

inline RTFToken RTFTokenizer::next() {
  RTFToken token;
  while (at_ < bytes_.size()) {
    switch (bytes_[at_]) {
      case '{':
        ++at_;
        token.kind = RTFToken::Kind::groupStart;
        return token;
      case '}':
        ++at_;
        token.kind = RTFToken::Kind::groupEnd;
        return token;
      case '\r':
      case '\n':
        ++at_;
        break;
      case '\\':
        control(&token);
        if (token.kind != RTFToken::Kind::end) return token;
        break;
      default: {
        const size_t start = at_;
        at_ = scan::findAny(bytes_, at_, '\\', '{', '}', '\r', '\n');
        token.kind = RTFToken::Kind::text;
        token.bytes = bytes_.substr(start, at_ - start);
        return token;
      }
    }
  }
  return token;
}

inline void RTFTokenizer::control(RTFToken* token) {
  ++at_;
  if (at_ == bytes_.size()) return;
  const char c = bytes_[at_];
  if (rtf::isLetter(c)) {
    controlWord(token);
    return;
  }
  ++at_;
  if (c == '\'') {
    hexEscape(token);
    return;
  }
  token->kind = RTFToken::Kind::symbol;
  token->byte = static_cast<uint8_t>(c);
  // CR LF behind a backslash is one line break.
  if (c == '\r' && at_ < bytes_.size() && bytes_[at_] == '\n') ++at_;
}

inline void RTFTokenizer::controlWord(RTFToken* token) {
  const size_t start = at_;
  token->kind = RTFToken::Kind::word;
  uint64_t key = 0;
  for (; at_ < bytes_.size() && rtf::isLetter(bytes_[at_]); ++at_) {
    key = rtf::addToKey(key, bytes_[at_], at_ - start);
  }
  token->key = key;
  token->bytes = bytes_.substr(start, at_ - start);

  const bool negative =
      at_ + 1 < bytes_.size() && bytes_[at_] == '-' && rtf::isDigit(bytes_[at_ + 1]);
  if (negative) ++at_;
  const size_t digits = at_;
  int64_t value = 0;
  for (; at_ < bytes_.size() && rtf::isDigit(bytes_[at_]); ++at_) {
    value = std::min<int64_t>(value * 10 + (bytes_[at_] - '0'), INT64_C(1) << 32);
  }
  token->hasParameter = at_ > digits;
  if (at_ < bytes_.size() && bytes_[at_] == ' ') ++at_;
  const int64_t signedValue = negative ? -value : value;
  token->parameter = static_cast<int32_t>(std::clamp<int64_t>(signedValue, INT32_MIN, INT32_MAX));
  if (key == rtf::keyOf("bin") && token->hasParameter) binary(signedValue, token);
}

inline void RTFTokenizer::hexEscape(RTFToken* token) {
  const int high = at_ < bytes_.size() ? hexValue(bytes_[at_]) : -1;
  const int low = at_ + 1 < bytes_.size() ? hexValue(bytes_[at_ + 1]) : -1;
  if (high < 0 || low < 0) return;
  at_ += 2;
  token->kind = RTFToken::Kind::hex;
  token->byte = static_cast<uint8_t>(high << 4 | low);
}

// Where an RTF document begins: "{\rtf" behind white space, a byte-order mark or NULs. npos when
// the bytes are no RTF.
[[nodiscard]] size_t findRTFStart(std::string_view bytes);

}  // namespace kelspar
