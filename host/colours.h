// `kelspar colours`: which colours a body's embedded HTML uses, and where.
#pragma once

#include <string>

namespace kelspar::host {

struct ColoursOptions {
  std::string input;
};

// Prints the entries of the colour table, then the colours of spans that would be added to it, with
// the lines that they are on. Throws Failure for an input that is none.
void colours(const ColoursOptions& options);

}  // namespace kelspar::host
