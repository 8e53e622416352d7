// The RTF writer over attributed text from any RTF: what it writes is ASCII and reads back to the
// same characters, but for images that it cannot write.
#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/richtext/rtf_writer.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

// Controls that are no text in RTF, and places of images, aside.
std::u16string characters(const NSAttributedString& text) {
  std::u16string units(text.string().view());
  std::erase_if(units, [](char16_t c) {
    return c == u'\uFFFC' || (c < u' ' && c != u'\t' && c != u'\n' && c != u'\f');
  });
  return units;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSAttributedString text = NSAttributedString::initWithRTF(NSData(bytes, size));
  const NSData rtf = rtfFromAttributedString(text);
  check(rtf.isNil() == text.isNil());
  if (!text) return 0;
  check(std::ranges::all_of(rtf.span(), [](uint8_t byte) { return byte < 0x80; }));
  check(characters(NSAttributedString::initWithRTF(rtf)) == characters(text));
  return 0;
}
