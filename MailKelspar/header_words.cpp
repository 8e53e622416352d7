// Header text by RFC 2047, read as generously as mail is written.
#include "MailKelspar/header_words.h"

#include <algorithm>

#include "MailKelspar/MailKelspar.h"
#include "platform/foundation/hex.h"

namespace kelspar {

namespace headers {

namespace {

constexpr size_t kLongestCharset = 75;  // a whole word's limit by RFC 2047, 2

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

void appendQ(std::string_view content, std::string* bytes) {
  for (size_t i = 0; i < content.size(); ++i) {
    if (content[i] == '_') {
      *bytes += ' ';
    } else if (content[i] == '=' && i + 2 < content.size() && hexValue(content[i + 1]) >= 0 &&
               hexValue(content[i + 2]) >= 0) {
      *bytes += static_cast<char>(hexValue(content[i + 1]) << 4 | hexValue(content[i + 2]));
      i += 2;
    } else {
      *bytes += content[i];
    }
  }
}

void appendContent(const EncodedWord& word, std::string* bytes) {
  if (word.encoding == 'Q') return appendQ(word.content, bytes);
  bytes->append(MailKelspar::decodeTransfer(NSData(word.content), u"base64").chars());
}

bool sameCharset(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return (x | 0x20) == (y | 0x20); });
}

void appendText(std::string_view bytes, std::string_view charset, std::u16string* out) {
  out->append(MailKelspar::textFromData(NSData(bytes), NSString(charset)).view());
}

// Raw bytes outside words: folded lines are put together again.
void appendRaw(std::string_view bytes, std::u16string* out) {
  std::string unfolded;
  for (const char c : bytes) {
    if (c != '\r' && c != '\n') unfolded += c == '\t' || c == '\0' ? ' ' : c;
  }
  appendText(unfolded, "", out);
}

}  // namespace

EncodedWord EncodedWords::at(size_t at) {
  if (text_.substr(at, 2) != "=?") return {};
  const std::string_view rest = text_.substr(at + 2, kLongestCharset + 1);
  const size_t charsetEnd = rest.find('?');
  if (charsetEnd == rest.npos || charsetEnd == 0) return {};
  const std::string_view charset = rest.substr(0, charsetEnd);
  if (std::ranges::any_of(charset, [](char c) { return static_cast<unsigned char>(c) <= ' '; })) {
    return {};
  }
  const size_t letterAt = at + 2 + charsetEnd + 1;
  if (letterAt + 1 >= text_.size() || text_[letterAt + 1] != '?') return {};
  const char encoding = static_cast<char>(text_[letterAt] & ~0x20);
  if (encoding != 'B' && encoding != 'Q') return {};
  const size_t from = letterAt + 2;
  if (end_ < from) end_ = std::min(text_.find("?=", from), text_.size());
  if (end_ == text_.size()) return {};
  return {end_ + 2 - at, charset.substr(0, charset.find('*')), encoding,
          text_.substr(from, end_ - from)};
}

std::u16string onOneLine(std::u16string text) {
  std::ranges::replace_if(
      text, [](char16_t c) { return c == 0 || c == u'\r' || c == u'\n'; }, u' ');
  return text;
}

std::u16string decodedText(std::string_view text) {
  std::u16string out;
  EncodedWords words(text);
  size_t rawFrom = 0;
  for (size_t at = 0; (at = text.find("=?", at)) != text.npos;) {
    EncodedWord word = words.at(at);
    if (word.length == 0) {
      at += 2;
      continue;
    }
    appendRaw(text.substr(rawFrom, at - rawFrom), &out);
    const std::string_view charset = word.charset;
    std::string bytes;
    for (;;) {
      appendContent(word, &bytes);
      at += word.length;
      rawFrom = at;
      size_t next = at;
      while (next < text.size() && isBlank(text[next])) ++next;
      word = words.at(next);
      if (word.length == 0) break;
      if (!sameCharset(word.charset, charset)) {
        rawFrom = at = next;  // the blanks between two words are no text
        break;
      }
      at = next;
    }
    appendText(bytes, charset, &out);
  }
  appendRaw(text.substr(std::min(rawFrom, text.size())), &out);
  return onOneLine(std::move(out));
}

}  // namespace headers

NSString MailKelspar::decodeHeader(const NSData& value) {
  if (!value) return nil;
  std::string_view bytes = value.chars();
  while (!bytes.empty() && headers::isBlank(bytes.front())) bytes.remove_prefix(1);
  while (!bytes.empty() && headers::isBlank(bytes.back())) bytes.remove_suffix(1);
  return NSString(headers::decodedText(bytes));
}

}  // namespace kelspar
