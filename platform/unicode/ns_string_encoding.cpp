// Decoding by encoding number. ASCII, Latin-1 and UTF-8 are read here, the rest by ICU.
#include "platform/unicode/NSStringEncoding.h"

#include <algorithm>

#include "platform/foundation/utf8.h"
#include "platform/unicode/code_pages.h"

namespace kelspar {

namespace {

// A Windows page leaves some bytes undefined; ICU gives C1 controls for them, a strict reader
// refuses them.
NSString strictWindows(std::string_view bytes, int page) {
  const CodePage& codePage = CodePage::numbered(page);
  bool valid = true;
  NSString text = NSString::build(bytes.size(), [&](char16_t* out) {
    for (const char c : bytes) {
      const char16_t unit = codePage.unit(static_cast<uint8_t>(c));
      valid &= unit != utf8::kReplacement && (unit < 0x80 || unit > 0x9F);
      *out++ = unit;
    }
  });
  return valid ? text : nil;
}

}  // namespace

NSString stringWithBytes(std::string_view bytes, NSStringEncoding encoding) {
  switch (encoding) {
    case NSASCIIStringEncoding:
      if (utf8::asciiPrefix(bytes) != bytes.size()) return nil;
      [[fallthrough]];
    case NSISOLatin1StringEncoding:
      return NSString::build(bytes.size(), [&](char16_t* out) { utf8::widen(bytes, out); });
    case NSUTF8StringEncoding:
      return NSString::fromUTF8(bytes);
    case NSWindowsCP1251StringEncoding:
      return strictWindows(bytes, 1251);
    case NSWindowsCP1252StringEncoding:
      return strictWindows(bytes, 1252);
    default:
      return nil;
  }
}

NSString stringWithData(const NSData& data, NSStringEncoding encoding) {
  if (!data) return nil;
  return stringWithBytes(data.chars(), encoding);
}

}  // namespace kelspar
