// An mbox of any bytes: read line by line beside its messages, every line of the file is a "From "
// line or the next line of the next message, and no "From " line behind an empty one is inside.
#include "host/mbox_reader.h"

#include <algorithm>
#include <cstdlib>

using namespace kelspar;
using namespace kelspar::host;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

// The text's first line with its line feed, which the last one may lack.
std::string_view takeLine(std::string_view* text) {
  const size_t end = text->find('\n');
  const std::string_view line = text->substr(0, end == text->npos ? end : end + 1);
  text->remove_prefix(line.size());
  return line;
}

bool isSeparator(std::string_view line, std::string_view before) {
  return line.starts_with("From ") && (before == "\n" || before == "\r\n");
}

std::string_view withoutOneMark(std::string_view line) {
  const size_t marks = std::min(line.find_first_not_of('>'), line.size());
  return marks > 0 && line.substr(marks).starts_with("From ") ? line.substr(1) : line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData file(bytes, size);
  const auto messages = messagesOfMbox(file);
  check(isMbox(file) == file.chars().starts_with("From "));

  std::string_view rest = file.chars(), before = "\n";
  // What stands before the first "From " line belongs to no message.
  while (!rest.empty() && !isSeparator(rest, before)) before = takeLine(&rest);
  check(messages.empty() == rest.empty());
  for (const NSData& message : messages) {
    check(static_cast<bool>(message) && message.length() <= size);
    check(isSeparator(rest, before));
    before = takeLine(&rest);
    for (std::string_view inside = message.chars(); !inside.empty();) {
      check(!isSeparator(rest, before));
      before = takeLine(&rest);
      check(takeLine(&inside) == withoutOneMark(before));
    }
    check(rest.empty() || isSeparator(rest, before));
  }
  check(rest.empty());
  return 0;
}
