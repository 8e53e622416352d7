// `kelspar header` and `kelspar address`: header text decoded, addresses checked.
#pragma once

#include <string>
#include <vector>

namespace kelspar::host {

struct MimeTextOptions {
  std::vector<std::string> inputs;  // none: the lines of standard input
  bool exact = false;               // the exact operation in the place of its readable sibling
};

// Prints one line an input.
void header(const MimeTextOptions& options);

// Prints the bare address of each input. Throws Failure (kInputFailed) after the last when some
// hold no valid one; each of those is named on standard error.
void address(const MimeTextOptions& options);

}  // namespace kelspar::host
