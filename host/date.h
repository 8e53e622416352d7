// `kelspar date`: date texts and time values in every representation.
#pragma once

#include <string>
#include <vector>

namespace kelspar::host {

struct DateOptions {
  std::vector<std::string> inputs;  // none: the lines of standard input
  std::string from = "text";        // "text", "mapi", "ole", "hfs", "vms", "cf" or "unix"
  std::string to = "iso";           // "iso", "mime" or one of the numeric ones
};

// Prints one line an input. Throws Failure (kInputFailed) after the last when some could not be
// read; each of those is named on standard error.
void date(const DateOptions& options);

}  // namespace kelspar::host
