// The RTF reader over any bytes: RTF or nil, and never more text than the input could hold.
#include <cstdlib>

#include "platform/richtext/rtf_reader.h"
#include "platform/richtext/rtf_tokenizer.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData rtf(bytes, size);
  RTFTokenizer tokens(rtf.chars());
  size_t before = 0;
  for (RTFToken token = tokens.next(); token.kind != RTFToken::Kind::end; token = tokens.next()) {
    check(tokens.position() > before && tokens.position() <= size);
    before = tokens.position();
  }

  const NSString text = plainTextFromRTF(rtf);
  check(static_cast<bool>(text) == (findRTFStart(rtf.chars()) != std::string_view::npos));
  check(text.length() <= size);
  const NSString html = encapsulatedHTMLFromRTF(rtf);
  check(!html || text);
  check(html.length() <= 8 * size);  // "\-" becomes "&#8209;"
  return 0;
}
