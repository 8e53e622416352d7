// Encoded words and escaped references: the scanners never differ from the expressions.
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
  if (size > 4096) return 0;  // the expressions take their time
  check(decodeMimeHeader(text) == literalHeader(text));
  check(decodeHTMLFormattingTags(text) == literalFormattingTags(text));
  return 0;
}
