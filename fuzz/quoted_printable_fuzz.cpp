// Quoted-printable text: one pass never differs from the stated replacements.
#include <cstdlib>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_literal.h"

using namespace kelspar;
using namespace kelspar::WebKelsparNSStringAdditions;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  if (size == 0) return 0;
  constexpr NSStringEncoding kEncodings[] = {NSUTF8StringEncoding, NSISOLatin1StringEncoding,
                                             NSWindowsCP1251StringEncoding,
                                             NSShiftJISStringEncoding};
  const NSStringEncoding encoding = kEncodings[bytes[0] % std::size(kEncodings)];
  const NSString text(std::string_view(reinterpret_cast<const char*>(bytes + 1), size - 1));
  check(quotedPrintableDecodeWithEncoding(text, encoding) ==
        literalQuotedPrintable(text, encoding));
  check(createQuotedPrintable(text) == literallyCreatedQuotedPrintable(text));
  return 0;
}
