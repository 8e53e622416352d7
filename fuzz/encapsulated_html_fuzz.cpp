// The htmltag scanner against its literal steps, over bytes and over units.
#include <cstdlib>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/encapsulated_html_literal.h"

using namespace kelspar;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData rtf(bytes, size);
  const NSString html = RTFKelspar::extractHTMLFromEncapsulatedRTF(rtf);
  if (!(html == extractHTMLLiterally(rtf))) std::abort();
  const NSString guarded = RTFKelspar::extractHTMLIfEncapsulated(rtf);
  if (!(guarded == (RTFKelspar::isEncapsulatedHTML(rtf) ? html : NSString()))) std::abort();
  return 0;
}
