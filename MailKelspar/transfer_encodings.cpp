// Transfer encodings of bodies, bytes to bytes (RFC 2045, 6), and uuencode.
#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>

#include "MailKelspar/MailKelspar.h"
#include "platform/foundation/ascii.h"
#include "platform/foundation/base64.h"
#include "platform/foundation/hex.h"
#include "platform/foundation/scan.h"

namespace kelspar {

namespace {

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

NSData fromQuotedPrintable(std::string_view text) {
  auto* const bytes = static_cast<char*>(std::malloc(text.size() + scan::kCopySlack));
  if (!bytes) throw std::bad_alloc();
  char* to = bytes;
  for (size_t at = 0; at < text.size();) {
    const size_t escape = scan::copyUntil(text, at, '=', to);
    to += escape - at;
    at = escape;
    const int byte = at + 2 < text.size() ? hexByte(&text[at + 1]) : -1;
    if (byte >= 0) {
      *to++ = static_cast<char>(byte);
      at += 3;
    } else if (at < text.size()) {
      const size_t length = softBreakAt(text, at);
      if (length == 0) *to++ = '=';
      at += std::max<size_t>(length, 1);
    }
  }
  return NSData::adoptingMalloc(reinterpret_cast<uint8_t*>(bytes), static_cast<size_t>(to - bytes));
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
  name = ascii::lowerCase(std::string_view(name));
  if (name == "base64") return base64::decodeLenient(body.chars(), base64::AtPadding::goOn);
  if (name == "quoted-printable") return fromQuotedPrintable(body.chars());
  if (name == "x-uuencode" || name == "uuencode" || name == "x-uue") {
    return NSData(fromUU(body.chars()));
  }
  return body;
}

}  // namespace kelspar
