// `kelspar call`: any registered operation, with arguments in the wire protocol's JSON form.
#pragma once

#include <string>
#include <vector>

namespace kelspar::host {

struct CallOptions {
  std::string operation;
  std::string className;
  std::string receiver;  // JSON; empty: none
  std::vector<std::string> arguments;
};

// Prints the answer's result as one line of JSON. Throws Failure: with kUsage when there is no such
// operation or an argument does not fit, with kInputFailed when the operation raises.
void call(const CallOptions& options);

}  // namespace kelspar::host
