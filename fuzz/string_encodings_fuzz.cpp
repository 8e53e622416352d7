// Every encoding on any bytes: decoding is a verdict, and what was decoded without U+FFFD by a
// single-byte or Unicode encoding is encoded to the same bytes; blocks of UTF-8 decode as bytes do.
#include <cstdint>
#include <cstdlib>

#include "platform/foundation/utf8.h"
#include "platform/unicode/NSStringEncoding.h"

using namespace kelspar;

// The decoder of blocks against the plain loop.
static void checkUTF8(std::string_view bytes) {
  std::u16string plain(bytes.size(), u'\0'), fast(utf8::unitCount(bytes), u'\0');
  size_t plainValid = 0, fastValid = 0;
  plain.resize(utf8::decodePlainly(bytes, plain.data(), &plainValid));
  if (plain.size() > fast.size()) std::abort();
  fast.resize(utf8::decode(bytes, fast, &fastValid));
  if (fastValid != plainValid || fast != plain) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  if (size == 0) return 0;
  const auto encodings = availableStringEncodings();
  const NSStringEncoding encoding = encodings[bytes[0] % encodings.size()];
  const NSData data(bytes + 1, size - 1);
  checkUTF8(data.chars());
  const NSString text = stringWithData(data, encoding);
  if (!text) return 0;
  constexpr NSStringEncoding kExact[] = {NSASCIIStringEncoding,
                                         NSUTF8StringEncoding,
                                         NSISOLatin1StringEncoding,
                                         NSWindowsCP1252StringEncoding,
                                         NSWindowsCP1251StringEncoding,
                                         NSUTF16BigEndianStringEncoding,
                                         NSUTF16LittleEndianStringEncoding,
                                         NSUTF32BigEndianStringEncoding,
                                         NSUTF32LittleEndianStringEncoding,
                                         NSNEXTSTEPStringEncoding,
                                         NSSymbolStringEncoding};
  const NSData again = dataUsingEncoding(text, encoding);
  for (const NSStringEncoding exact : kExact) {
    if (encoding == exact && again != data) std::abort();
  }
  return 0;
}
