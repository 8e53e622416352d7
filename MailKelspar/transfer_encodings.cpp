// Transfer encodings of bodies, bytes to bytes (RFC 2045, 6), and uuencode.
#include <algorithm>
#include <array>
#include <string>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {

namespace {

constexpr uint8_t kForeign = 0xFF, kPadding = 0xFE;

constexpr std::array<uint8_t, 256> kSextets = [] {
  std::array<uint8_t, 256> table{};
  table.fill(kForeign);
  constexpr std::string_view alphabet =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (size_t i = 0; i < alphabet.size(); ++i) {
    table[static_cast<uint8_t>(alphabet[i])] = static_cast<uint8_t>(i);
  }
  table['='] = kPadding;
  return table;
}();

std::string fromBase64(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 3);
  uint32_t bits = 0;
  int count = 0;
  for (const char c : text) {
    const uint8_t sextet = kSextets[static_cast<uint8_t>(c)];
    if (sextet == kForeign) continue;
    if (sextet == kPadding) {
      bits = count = 0;  // what is left over are no bytes; another text may follow
      continue;
    }
    bits = bits << 6 | sextet;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count);
    bits &= (1u << count) - 1;
  }
  return bytes;
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  c |= 0x20;
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

// The length of a soft line break at `at`, where "=" stands: blanks may follow it. 0: there is
// none.
size_t softBreakAt(std::string_view text, size_t at) {
  size_t end = at + 1;
  while (end < text.size() && (text[end] == ' ' || text[end] == '\t')) ++end;
  if (end == text.size()) return end - at;
  if (text[end] == '\n') return end + 1 - at;
  if (text[end] != '\r') return 0;
  return end + 1 - at + (end + 1 < text.size() && text[end + 1] == '\n');
}

std::string fromQuotedPrintable(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  size_t at = 0;
  while (at < text.size()) {
    const size_t escape = std::min(text.find('=', at), text.size());
    bytes.append(text.substr(at, escape - at));
    at = escape;
    if (at == text.size()) break;
    if (at + 2 < text.size() && hexValue(text[at + 1]) >= 0 && hexValue(text[at + 2]) >= 0) {
      bytes += static_cast<char>(hexValue(text[at + 1]) << 4 | hexValue(text[at + 2]));
      at += 3;
    } else if (at + 3 == text.size() && hexValue(text[at + 1]) >= 0 &&
               hexValue(text[at + 2]) >= 0) {
      bytes += static_cast<char>(hexValue(text[at + 1]) << 4 | hexValue(text[at + 2]));
      at += 3;
    } else if (const size_t length = softBreakAt(text, at); length > 0) {
      at += length;
    } else {
      bytes += text[at++];
    }
  }
  return bytes;
}

void appendUULine(std::string_view line, std::string* bytes) {
  if (line.empty()) return;
  const auto value = [&](size_t i) -> uint32_t {
    return i < line.size() ? static_cast<uint32_t>(line[i] - ' ') & 0x3F : 0;
  };
  size_t count = value(0);
  for (size_t at = 1; count > 0 && at < line.size(); at += 4) {
    const uint32_t bits =
        value(at) << 18 | value(at + 1) << 12 | value(at + 2) << 6 | value(at + 3);
    for (int shift = 16; shift >= 0 && count > 0; shift -= 8, --count) {
      *bytes += static_cast<char>(bits >> shift);
    }
  }
}

// The bytes between "begin" and "end".
std::string fromUU(std::string_view text) {
  std::string bytes;
  bool begun = false;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!begun) {
      begun = line.starts_with("begin ");
    } else if (line == "end") {
      break;
    } else {
      appendUULine(line, &bytes);
    }
  }
  return bytes;
}

}  // namespace

NSData MailKelspar::decodeTransfer(const NSData& body, const NSString& encoding) {
  if (!body) return nil;
  std::string name = encoding.utf8();
  std::erase_if(name, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  if (name == "base64") return NSData(fromBase64(body.chars()));
  if (name == "quoted-printable") return NSData(fromQuotedPrintable(body.chars()));
  if (name == "x-uuencode" || name == "uuencode" || name == "x-uue") {
    return NSData(fromUU(body.chars()));
  }
  return body;
}

}  // namespace kelspar
