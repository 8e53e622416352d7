// The RTF tokenizer.
#include "platform/richtext/rtf_tokenizer.h"

#include <algorithm>

#include "platform/foundation/scan.h"

namespace kelspar {

namespace {

bool isLetter(char c) { return static_cast<uint8_t>((c | 0x20) - 'a') < 26; }
bool isDigit(char c) { return static_cast<uint8_t>(c - '0') < 10; }

int hexDigit(char c) {
  if (isDigit(c)) return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

RTFToken RTFTokenizer::next() {
  while (at_ < bytes_.size()) {
    switch (bytes_[at_]) {
      case '{':
        ++at_;
        return {RTFToken::Kind::groupStart, {}};
      case '}':
        ++at_;
        return {RTFToken::Kind::groupEnd, {}};
      case '\r':
      case '\n':
        ++at_;
        break;
      case '\\': {
        const RTFToken token = control();
        if (token.kind != RTFToken::Kind::end) return token;
        break;
      }
      default: {
        const size_t start = at_;
        at_ = scan::findAny(bytes_, at_, '\\', '{', '}', '\r', '\n');
        return {RTFToken::Kind::text, bytes_.substr(start, at_ - start)};
      }
    }
  }
  return {};
}

void RTFTokenizer::skipGroup() {
  for (uint64_t depth = 0;;) {
    at_ = scan::findAny(bytes_, at_, '\\', '{', '}');
    if (at_ == bytes_.size()) return;
    if (bytes_[at_] == '{') {
      ++depth;
      ++at_;
    } else if (bytes_[at_] == '}') {
      if (depth == 0) return;
      --depth;
      ++at_;
    } else {
      (void)control();  // braces may be escaped, or be binary data
    }
  }
}

RTFToken RTFTokenizer::control() {
  ++at_;
  if (at_ == bytes_.size()) return {};
  const char c = bytes_[at_];
  if (isLetter(c)) return controlWord();
  ++at_;
  if (c == '\'') return hexEscape();
  RTFToken token{RTFToken::Kind::symbol, {}};
  token.byte = static_cast<uint8_t>(c);
  // CR LF behind a backslash is one line break.
  if (c == '\r' && at_ < bytes_.size() && bytes_[at_] == '\n') ++at_;
  return token;
}

RTFToken RTFTokenizer::controlWord() {
  const size_t start = at_;
  while (at_ < bytes_.size() && isLetter(bytes_[at_])) ++at_;
  RTFToken token{RTFToken::Kind::word, bytes_.substr(start, at_ - start)};

  const bool negative = at_ + 1 < bytes_.size() && bytes_[at_] == '-' && isDigit(bytes_[at_ + 1]);
  if (negative) ++at_;
  int64_t value = 0;
  for (; at_ < bytes_.size() && isDigit(bytes_[at_]); ++at_) {
    token.hasParameter = true;
    value = std::min<int64_t>(value * 10 + (bytes_[at_] - '0'), INT64_C(1) << 32);
  }
  if (at_ < bytes_.size() && bytes_[at_] == ' ') ++at_;
  const int64_t signedValue = negative ? -value : value;
  if (token.bytes == "bin" && token.hasParameter) return binary(signedValue);
  token.parameter = static_cast<int32_t>(std::clamp<int64_t>(signedValue, INT32_MIN, INT32_MAX));
  return token;
}

RTFToken RTFTokenizer::hexEscape() {
  const int high = at_ < bytes_.size() ? hexDigit(bytes_[at_]) : -1;
  const int low = at_ + 1 < bytes_.size() ? hexDigit(bytes_[at_ + 1]) : -1;
  if (high < 0 || low < 0) return {};
  at_ += 2;
  RTFToken token{RTFToken::Kind::hex, {}};
  token.byte = static_cast<uint8_t>(high << 4 | low);
  return token;
}

RTFToken RTFTokenizer::binary(int64_t length) {
  const size_t left = bytes_.size() - at_;
  const size_t size = length < 0 ? 0 : std::min(static_cast<size_t>(length), left);
  const RTFToken token{RTFToken::Kind::binary, bytes_.substr(at_, size)};
  at_ += size;
  return token;
}

size_t findRTFStart(std::string_view bytes) {
  size_t at = bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  constexpr std::string_view kSkipped("\0 \t\r\n\f\v", 7);
  while (at < bytes.size() && kSkipped.find(bytes[at]) != kSkipped.npos) ++at;
  return bytes.substr(at).starts_with("{\\rtf") ? at : std::string_view::npos;
}

}  // namespace kelspar
