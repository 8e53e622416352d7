// Transfer decodings, encoded words, addresses and the fallback stripper over any text.
#include <cstdlib>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/unicode/NSRegularExpression.h"

using namespace kelspar;
using namespace kelspar::WebKelsparNSStringAdditions;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSString text(std::string_view(reinterpret_cast<const char*>(bytes), size));

  // Without a match of the pattern a header comes back as it is.
  static const auto word = NSRegularExpression::withPattern(u"=\\?(.*?)\\?=(?!\\S)",
                                                            NSRegularExpression::caseInsensitive);
  const NSString header = decodeMimeHeader(text);
  check(static_cast<bool>(header));
  if (size < 4096 && !word.firstMatch(text)) check(header == text);

  const NSString quoted = createQuotedPrintable(text);
  check(quoted.length() <= 9 * size);  // a bad byte is U+FFFD, three bytes by then
  check(static_cast<bool>(quotedPrintableDecodeWithEncoding(text, NSUTF8StringEncoding)));
  const NSString base64 = base64DecodeWithEncoding(text, NSISOLatin1StringEncoding);
  check(base64.length() <= size);
  check(static_cast<bool>(decodeHTMLFormattingTags(text)));

  const NSString stripped = stringByStrippingHTMLFallback(text);
  check(static_cast<bool>(stripped) && stripped.length() <= text.length());
  check(static_cast<bool>(stringByStrippingHTML(text)));

  const NSString address = cleanEmailAddress(text);
  if (address) check(validateEmailAddress(address));
  if (buildEmailAddressURL(text)) check(validateEmailAddress(text));
  check(static_cast<bool>(stringByConvertingToHTML(text)));
  return 0;
}
