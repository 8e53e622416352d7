// The detector: valid UTF-8 is UTF-8, what is not lossy decodes again, marks are consumed; and
// stringFromNSData never fails.
#include <cstdint>
#include <cstdlib>

#include "StringKelspar/StringKelspar.h"
#include "platform/unicode/NSEncodingDetector.h"
#include "platform/unicode/shift_sequences.h"

using namespace kelspar;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData data(bytes, size);
  const auto found = stringEncodingForData(data);
  if (!found.text || found.encoding == 0) std::abort();
  const NSString again = stringWithData(data, found.encoding);
  if (!found.usedLossyConversion) {
    const bool isMarked = found.text != again;
    if (isMarked && again && again.length() != found.text.length() + 1) std::abort();
  }
  const NSString text = StringKelspar::stringFromNSData(data);
  if (!text || (size > 0 && size < 8 && text.isEmpty() && !found.text.isEmpty())) std::abort();
  const NSString utf8 = NSString::fromUTF8(data.chars());
  const bool hasZeros = data.chars().find('\0') != std::string_view::npos;
  const bool hasEscapes = isWholeISO2022(data.chars()) || isWholeHZ(data.chars());
  const bool hasMark = data.chars().starts_with("\xEF\xBB\xBF");
  if (utf8 && !hasZeros && !hasEscapes && !hasMark && text != utf8) std::abort();
  return 0;
}
