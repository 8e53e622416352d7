// "From " lines between messages, and the same line quoted inside them.
#include "host/mbox_reader.h"

#include <algorithm>

namespace kelspar::host {

namespace {

constexpr std::string_view kFrom = "From ";

size_t nextLine(std::string_view text, size_t at) {
  const size_t end = text.find('\n', at);
  return end == text.npos ? text.size() : end + 1;
}

bool isEmptyLine(std::string_view line) { return line == "\n" || line == "\r\n"; }

// ">From ", ">>From ", ...
bool isQuotedFrom(std::string_view line) {
  const size_t marks = std::min(line.find_first_not_of('>'), line.size());
  return marks > 0 && line.substr(marks).starts_with(kFrom);
}

NSData withoutQuoting(const NSData& message) {
  const std::string_view text = message.chars();
  if (text.find(">From ") == text.npos) return message;
  std::string plain;
  for (size_t at = 0; at < text.size();) {
    const size_t end = nextLine(text, at);
    const std::string_view line = text.substr(at, end - at);
    plain.append(isQuotedFrom(line) ? line.substr(1) : line);
    at = end;
  }
  return NSData(std::move(plain));
}

}  // namespace

bool isMbox(const NSData& bytes) { return bytes.chars().starts_with(kFrom); }

std::vector<NSData> messagesOfMbox(const NSData& bytes) {
  std::vector<NSData> messages;
  const std::string_view text = bytes.chars();
  size_t from = text.size();
  bool begun = false, afterEmpty = true;
  for (size_t at = 0; at < text.size();) {
    const size_t end = nextLine(text, at);
    const std::string_view line = text.substr(at, end - at);
    if (afterEmpty && line.starts_with(kFrom)) {
      if (begun) messages.push_back(withoutQuoting(bytes.subdata(from, at - from)));
      begun = true;
      from = end;
    }
    afterEmpty = isEmptyLine(line);
    at = end;
  }
  if (begun) messages.push_back(withoutQuoting(bytes.subdata(from)));
  return messages;
}

}  // namespace kelspar::host
