// `kelspar convert`: stored material in, something to read out.
#pragma once

#include <string>

namespace kelspar::host {

struct ConvertOptions {
  std::string input;
  std::string to = "text";  // "rtf", "html" or "text"
  std::string output;       // empty: standard output
};

// Throws Failure for an input that is none or an output that cannot be written.
void convert(const ConvertOptions& options);

}  // namespace kelspar::host
