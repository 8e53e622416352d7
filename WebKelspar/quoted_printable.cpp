// Quoted-printable to text and text to simple quoted-printable.
//
// Decoding is stated as a sequence of replacements over the whole text. Plain text, ASCII in which
// each "=" is a soft line break or an escape of two digits, is decoded in one pass to the same
// result; all else goes through the sequence.
#include <memory>
#include <optional>
#include <string>

#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_words.h"
#include "platform/foundation/hex.h"
#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"

namespace kelspar::WebKelsparNSStringAdditions {

using StringKelsparNSStringAdditions::decodedStringFromPercentEscapesUsingEncoding;

namespace {

// The byte that "=" and two digits at `at` stand for; negative for none.
template <class Char>
int escapeAt(std::basic_string_view<Char> text, size_t at) {
  return at + 2 < text.size() && text[at] == Char('=') ? hexByte(&text[at + 1]) : -1;
}

// The length of a soft line break at `at`; 0 for none.
template <class Char>
size_t softBreakAt(std::basic_string_view<Char> text, size_t at) {
  if (at + 1 >= text.size() || text[at] != Char('=')) return 0;
  if (text[at + 1] == Char('\n')) return 2;
  return at + 2 < text.size() && text[at + 1] == Char('\r') && text[at + 2] == Char('\n') ? 3 : 0;
}

template <class Char>
size_t behindSoftBreaks(std::basic_string_view<Char> text, size_t at) {
  while (const size_t length = softBreakAt(text, at)) at += length;
  return at;
}

// Deliberate: the no-break space is a plain one, in upper case only. The position behind it, 0 for
// none at `at`.
template <class Char>
size_t behindNoBreakSpace(std::basic_string_view<Char> text, size_t at) {
  if (text[at + 1] != Char('C') || text[at + 2] != Char('2')) return 0;
  at = behindSoftBreaks(text, at + 3);
  const bool isOne = escapeAt(text, at) == 0xA0 && text[at + 1] == Char('A');
  return isOne ? at + 3 : 0;
}

// The character whose UTF-8 begins with the escape at `at`; gives the position behind it, 0 for
// what is not UTF-8.
size_t readUTF8(std::u16string_view text, size_t at, char16_t** out) {
  const int lead = escapeAt(text, at);
  const size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  char bytes[4] = {static_cast<char>(lead)};
  at += 3;
  for (size_t i = 1; i < length; ++i, at += 3) {
    at = behindSoftBreaks(text, at);
    const int byte = escapeAt(text, at);
    if (byte < 0) return 0;
    bytes[i] = static_cast<char>(byte);
  }
  size_t valid = 0;
  *out += utf8::decodePlainly({bytes, length}, *out, &valid);
  return valid == length ? at : 0;
}

// Decodes plain text: into bytes, and from units by UTF-8 into units. Returns what was written;
// nothing for text that is not plain. `out` has room for the text and scan::kCopySlack more.
template <class Char>
std::optional<size_t> decodePlain(std::basic_string_view<Char> text, Char* out) {
  const Char* const start = out;
  for (size_t at = 0; at < text.size();) {
    const size_t end = scan::copyUntil(text, at, Char('='), out);
    out += end - at;
    at = end;
    const int byte = escapeAt(text, at);
    if (byte < 0) {
      const size_t length = softBreakAt(text, at);
      if (length == 0 && at < text.size()) return std::nullopt;
      at += length;
      continue;
    }
    const size_t behindSpace = byte == 0xC2 ? behindNoBreakSpace(text, at) : 0;
    if (behindSpace > 0) {
      *out++ = Char(' ');
      at = behindSpace;
    } else if (sizeof(Char) == 1 || byte < 0x80) {
      *out++ = static_cast<Char>(byte);
      at += 3;
    } else if constexpr (sizeof(Char) == 2) {
      at = readUTF8(text, at, &out);
      if (at == 0) return std::nullopt;
    }
  }
  return static_cast<size_t>(out - start);
}

// The stated sequence up to the percent escapes. The order is the contract: "==\r\n\n" ends in two
// removals, "%" is kept apart from "=".
NSString percentEscaped(std::u16string_view receiver) {
  NSMutableString text(receiver);
  text.replaceOccurrences(u"=\r\n", u"");
  text.replaceOccurrences(u"=\n", u"");
  text.replaceOccurrences(u"%", u"%25");
  text.replaceOccurrences(u"=", u"%");
  text.replaceOccurrences(u"%C2%A0", u" ");
  return std::move(text).copy();
}

// nil where the sequence has to tell.
NSString decodedInOnePass(std::u16string_view text, NSStringEncoding encoding) {
  if (scan::asciiPrefix(text) != text.size()) return nil;
  const size_t room = text.size() + scan::kCopySlack;
  std::optional<size_t> written;
  if (encoding == NSUTF8StringEncoding) {
    const NSString decoded = NSString::buildAtMost(room, [&](char16_t* out) {
      written = decodePlain(text, out);
      return written.value_or(0);
    });
    return written ? decoded : nil;
  }
  const std::string bytes(text.begin(), text.end());
  const auto decoded = std::make_unique_for_overwrite<char[]>(room);
  written = decodePlain(std::string_view(bytes), decoded.get());
  return written ? stringWithBytes({decoded.get(), *written}, encoding) : nil;
}

}  // namespace

NSString textOfQuotedPrintable(std::u16string_view text, NSStringEncoding encoding) {
  if (NSString decoded = decodedInOnePass(text, encoding)) return decoded;
  const NSString escaped = percentEscaped(text);
  const NSString decoded = decodedStringFromPercentEscapesUsingEncoding(escaped, encoding);
  return decoded ? decoded : forceQuotedPrintableDecode(escaped);
}

NSString quotedPrintableDecodeWithEncoding(const NSString& receiver, NSStringEncoding encoding) {
  return receiver ? textOfQuotedPrintable(receiver, encoding) : nil;
}

NSString forceQuotedPrintableDecode(const NSString& receiver) {
  if (!receiver) return nil;
  for (const NSStringEncoding encoding : availableStringEncodings()) {
    const NSString decoded = decodedStringFromPercentEscapesUsingEncoding(receiver, encoding);
    if (decoded) return decoded;
  }
  return receiver;
}

NSString createQuotedPrintable(const NSString& receiver) {
  if (!receiver) return nil;
  constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  std::u16string out;
  out.reserve(receiver.length() * 3);
  for (const char byte : receiver.utf8()) {
    const auto value = static_cast<uint8_t>(byte);
    if (value == 0) break;
    if (value == '\n' || (value >= 32 && value <= 126)) {
      out.push_back(value);
    } else {
      out.append({u'=', kDigits[value >> 4], kDigits[value & 15]});
    }
  }
  // No other white space is left.
  const size_t first = out.find_first_not_of(u" \n");
  if (first == std::u16string::npos) return u""_ns;
  return NSString(out.substr(first, out.find_last_not_of(u" \n") - first + 1));
}

}  // namespace kelspar::WebKelsparNSStringAdditions
