// Percent escapes: the operation against its statement, a byte at a time.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "StringKelspar/StringKelsparNSStringAdditions.h"

using namespace kelspar;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSString text(std::string_view(reinterpret_cast<const char*>(bytes), size));
  const std::string source = text.utf8();
  std::string decoded;
  unsigned value = 0;
  for (size_t i = 0; i < text.length();) {
    if (source[i] == '%' && i + 2 < text.length()) {
      const char two[] = {source[i + 1], source[i + 2], 0};
      std::sscanf(two, "%x", &value);
      decoded.push_back(static_cast<char>(value & 0xFF));
      i += 3;
    } else {
      decoded.push_back(source[i++]);
    }
  }
  namespace Category = StringKelsparNSStringAdditions;
  for (const NSStringEncoding encoding : {NSISOLatin1StringEncoding, NSUTF8StringEncoding}) {
    if (Category::decodedStringFromPercentEscapesUsingEncoding(text, encoding) !=
        stringWithBytes(decoded, encoding)) {
      std::abort();
    }
  }
  return 0;
}
