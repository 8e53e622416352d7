// Header words and addresses, a line each.
#include "host/mime_texts.h"

#include <iostream>

#include "MailKelspar/MailKelspar.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "host/body_text.h"
#include "host/files.h"
#include "host/terminal.h"

namespace kelspar::host {

namespace {

namespace Web = WebKelsparNSStringAdditions;

template <class Each>
void forEachInput(const std::vector<std::string>& inputs, Each each) {
  for (const std::string& input : inputs) each(input);
  if (!inputs.empty()) return;
  for (std::string line; std::getline(std::cin, line);) each(line);
}

}  // namespace

void header(const MimeTextOptions& options) {
  forEachInput(options.inputs, [&](const std::string& input) {
    const NSString readable = MailKelspar::decodeHeader(NSData(std::string_view(input)));
    const std::string decoded =
        options.exact ? Web::decodeMimeHeader(input).utf8() : oneLine(readable);
    writeOutput("", decoded + "\n");
  });
}

void address(const MimeTextOptions& options) {
  size_t failed = 0;
  forEachInput(options.inputs, [&](const std::string& input) {
    const NSString clean = Web::cleanEmailAddress(input);
    if (clean) {
      writeOutput("", clean.utf8() + "\n");
    } else {
      tell(input + ": holds no valid address");
      ++failed;
    }
  });
  if (failed > 0) throw Failure(kInputFailed, std::to_string(failed) + " without a valid address");
}

}  // namespace kelspar::host
