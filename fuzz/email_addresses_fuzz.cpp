// Addresses: the automaton never differs from the pattern.
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
  if (size <= 256) check(validateEmailAddress(text) == literallyValid(text));
  const NSString address = cleanEmailAddress(text);
  check(!address || validateEmailAddress(address));
  check(!buildEmailAddressURL(text) || validateEmailAddress(text));
  return 0;
}
