// The RTF reader over any bytes: RTF or nil, and never more text than the input could hold.
#include <algorithm>
#include <cstdlib>

#include "platform/richtext/NSAttributedString.h"
#include "platform/richtext/rtf_reader.h"
#include "platform/richtext/rtf_tokenizer.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

// Attributed text has the same characters, but for the pictures; its runs cover them.
void checkAttributed(const NSData& rtf, const NSString& text) {
  const NSAttributedString attributed = NSAttributedString::initWithRTF(rtf);
  check(attributed.isNil() == text.isNil());
  std::u16string units(attributed.string().view());
  size_t at = 0, kept = 0;
  for (const NSTextRun& run : attributed.runs()) {
    check(run.length > 0 && run.attributes);
    const bool isPicture = run.attributes->attachment != nullptr;
    for (const size_t end = at + run.length; at < end; ++at) {
      check(!isPicture || units[at] == u'\uFFFC');
      if (!isPicture) units[kept++] = units[at];
    }
  }
  check(at == units.size());
  units.resize(kept);
  check(units == text.view());
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
  check(text.length() <= 2 * size);  // markers of list items as long as the document, at most
  checkAttributed(rtf, text);
  const NSString html = encapsulatedHTMLFromRTF(rtf);
  check(!html || text);
  check(html.length() <= 8 * size);  // "\-" becomes "&#8209;"
  return 0;
}
