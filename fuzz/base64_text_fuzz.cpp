// Base64 in whatever shape: both forms of the decoder, and one character at a time.
#include <cstdlib>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_literal.h"
#include "platform/foundation/base64.h"

using namespace kelspar;
using namespace kelspar::WebKelsparNSStringAdditions;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSString text(std::string_view(reinterpret_cast<const char*>(bytes), size));
  constexpr std::u16string_view kAlphabet =
      u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string expected;
  uint32_t bits = 0;
  int count = 0;
  for (const char16_t unit : text.view().substr(0, text.view().find(u'='))) {
    const size_t value = kAlphabet.find(unit);
    if (value == kAlphabet.npos) continue;
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    expected.push_back(static_cast<char>(bits >> count));
  }
  check(base64::decodeLenient(text.view()).chars() == expected);
  std::string encoded;
  const std::string_view raw(reinterpret_cast<const char*>(bytes), size);
  base64::encode(raw, &encoded);
  check(base64::decodeLenient(std::string_view(encoded)).chars() == raw);
  return 0;
}
