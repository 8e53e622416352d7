// `kelspar info`: what a message holds.
#pragma once

#include <string>
#include <vector>

namespace kelspar::host {

struct InfoOptions {
  std::vector<std::string> inputs;
  std::string charset;
};

// Prints bodies, code pages, attachments and times. Returns the exit status; an error in one input
// is told on standard error and does not stop the others.
[[nodiscard]] int info(const InfoOptions& options);

}  // namespace kelspar::host
