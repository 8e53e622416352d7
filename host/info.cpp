// One block of lines a message.
#include "host/info.h"

#include "host/files.h"
#include "host/message_text.h"
#include "host/open_message.h"
#include "host/terminal.h"

namespace kelspar::host {

namespace {

std::string infoOfInput(const std::string& input, const InfoOptions& options) {
  const auto messages = openMessages(readInput(input), input, {.charset = options.charset});
  if (messages.empty())
    throw Failure(kInputFailed, inputName(input) + ": no message can be read from it");
  std::string lines;
  for (const auto& message : messages) {
    if (!lines.empty()) lines += '\n';
    lines += infoOf(*message);
  }
  return lines;
}

}  // namespace

int info(const InfoOptions& options) {
  size_t failed = 0;
  for (const std::string& input : options.inputs) {
    try {
      std::string lines = infoOfInput(input, options);
      if (options.inputs.size() > 1) lines = inputName(input) + "\n" + lines + "\n";
      writeOutput("", lines);
    } catch (const Failure& failure) {
      if (failure.status() == kCannotWrite) throw;
      tell(failure.what());
      ++failed;
    }
  }
  if (failed == 0) return 0;
  return failed == options.inputs.size() ? kNothingRead : kInputFailed;
}

}  // namespace kelspar::host
