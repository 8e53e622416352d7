// HTML by the fallback: never differs from its expressions; the importer takes anything.
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
  const NSString text(std::string_view(reinterpret_cast<const char*>(bytes), size));
  if (size <= 4096) check(stringByStrippingHTMLFallback(text) == literalStripping(text));
  const NSString stripped = stringByStrippingHTML(text);
  check(stripped && !stripped.hasPrefix(u"\n") && !stripped.view().ends_with(u'\n'));
  check(static_cast<bool>(stringFromHTML(text)));
  return 0;
}
