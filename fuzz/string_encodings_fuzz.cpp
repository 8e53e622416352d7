// Every encoding on any bytes: decoding is a verdict, and what was decoded without U+FFFD by a
// single-byte or Unicode encoding is encoded to the same bytes.
#include <cstdint>
#include <cstdlib>

#include "platform/unicode/NSStringEncoding.h"

using namespace kelspar;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  if (size == 0) return 0;
  const auto encodings = availableStringEncodings();
  const NSStringEncoding encoding = encodings[bytes[0] % encodings.size()];
  const NSData data(bytes + 1, size - 1);
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
