// Lines in, records out.
#include "host/stream.h"

#include <malloc.h>

#include <cstdlib>
#include <iostream>

#include "MailKelspar/MailKelspar.h"
#include "host/base64_text.h"
#include "host/files.h"
#include "host/jobs.h"
#include "host/json_text.h"
#include "host/message_text.h"
#include "host/open_message.h"
#include "host/terminal.h"

namespace kelspar::host {

namespace {

struct Line {
  std::string text;
  size_t number = 0;
};

struct Record {
  std::string text;
  bool failed = false;
};

// What a record says its input was. JSON knows only Unicode: a name of other bytes is also there
// byte by byte, so that two of them can be told apart.
JsonObject recordAbout(const std::string& name) {
  JsonObject record;
  record.add("input", NSString(name));
  if (!NSString::fromUTF8(name)) record.add("inputBytes", NSString(base64Text(name)));
  return record;
}

std::string recordOf(const Line& line, const StreamOptions& options, const std::string& name) {
  const NSData bytes = options.base64 ? MailKelspar::decodeTransfer(NSData(line.text), u"base64")
                                      : readInput(line.text);
  const auto messages = openMessages(bytes, name, {.charset = options.charset});
  if (messages.empty()) throw Failure(kInputFailed, name + ": no message can be read from it");
  return recordAbout(name)
      .addRaw("messages", jsonArray(messages, [](const auto& each) { return jsonOf(*each); }))
      .text();
}

Record work(const Line& line, const StreamOptions& options) {
  const std::string name = options.base64 ? std::to_string(line.number) : line.text;
  try {
    return {recordOf(line, options, name), false};
  } catch (const std::exception& error) {
    return {recordAbout(name).add("error", error.what()).text(), true};
  }
}

// Nobody reads on: there is no more to do, and no waiting for a line that may never come.
void writeRecord(const std::string& record) {
  try {
    writeOutput("", record + "\n");
  } catch (const Failure& failure) {
    tell(failure.what());
    std::_Exit(failure.status());
  }
}

}  // namespace

int stream(const StreamOptions& options) {
  // One message after the other: pages are kept for the next one, a twentieth of the time.
  ::mallopt(M_MMAP_THRESHOLD, 8 << 20);
  ::mallopt(M_TRIM_THRESHOLD, 32 << 20);
  std::ios::sync_with_stdio(false);
  size_t number = 0, failed = 0, done = 0;
  const auto next = [&]() -> std::optional<Line> {
    std::string text;
    while (std::getline(std::cin, text)) {
      ++number;
      if (text.ends_with('\r')) text.pop_back();
      if (!text.empty()) return Line{std::move(text), number};
    }
    return {};
  };
  inOrder<Line, Record>(
      jobsFor(options.jobs), next, [&](const Line& line) { return work(line, options); },
      [&](Record record) {
        failed += record.failed;
        ++done;
        writeRecord(record.text);
      });
  if (failed == 0) return 0;
  return failed == done ? kNothingRead : kInputFailed;
}

}  // namespace kelspar::host
