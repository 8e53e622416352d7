// `kelspar convert`: stored material in, something to read out.
#pragma once

#include <string>

#include "platform/foundation/NSData.h"

namespace kelspar::host {

struct ConvertOptions {
  std::string input;
  std::string to = "text";  // "rtf", "html" or "text"
  std::string output;       // empty: standard output
  bool colours = false;     // RTF with the colours of its spans
};

// The RTF of an input, decoded where it is compressed; `name` is what messages call it. Throws
// Failure when it is none.
[[nodiscard]] NSData rtfOf(const NSData& input, const std::string& name);

// Throws Failure for an input that is none or an output that cannot be written.
void convert(const ConvertOptions& options);

}  // namespace kelspar::host
