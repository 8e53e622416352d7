// Formats by their first bytes, and the one body that is shown.
#include "host/open_message.h"

#include <algorithm>

#include "MailKelspar/MailKelspar.h"
#include "host/eml_reader.h"
#include "host/mbox_reader.h"
#include "host/msg_reader.h"
#include "host/tnef_reader.h"

namespace kelspar::host {

namespace {

bool hasNameOfMessages(std::string name) {
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  return name.ends_with(".eml") || name.ends_with(".mbox");
}

// Some stores put a message's length on a line before it, and data of their own behind it.
NSData withoutByteCount(const NSData& bytes) {
  const std::string_view text = bytes.chars();
  const size_t lineEnd = text.substr(0, 32).find('\n');
  size_t count = 0, at = 0;
  while (at < std::min<size_t>(text.size(), 12) && text[at] >= '0' && text[at] <= '9') {
    count = 10 * count + static_cast<size_t>(text[at++] - '0');
  }
  if (at == 0 || lineEnd == text.npos) return bytes;
  if (text.substr(at, lineEnd - at).find_first_not_of(" \r") != text.npos) return bytes;
  return bytes.subdata(lineEnd + 1, count);
}

Messages oneOrNone(std::shared_ptr<Message> message) {
  Messages list;
  if (message) list.push_back(std::move(message));
  return list;
}

}  // namespace

bool promisesMessages(const NSData& bytes, const std::string& name) {
  return !bytes.isEmpty() && (isCompoundFile(bytes) || isTNEF(bytes) || isMbox(bytes) ||
                              looksLikeEML(bytes) || hasNameOfMessages(name));
}

Messages openMessages(const NSData& bytes, const std::string& name, const ReadOptions& options) {
  if (!promisesMessages(bytes, name)) return {};
  if (isCompoundFile(bytes)) return oneOrNone(readMSG(bytes, options));
  if (isTNEF(bytes)) return oneOrNone(readTNEF(bytes, options));
  if (!isMbox(bytes)) return oneOrNone(readEML(withoutByteCount(bytes), options));
  Messages messages;
  for (const NSData& each : messagesOfMbox(bytes)) {
    if (auto message = readEML(each, options)) messages.push_back(std::move(message));
  }
  return messages;
}

BestBody bestBodyOf(const Message& message) {
  const NSString kind = MailKelspar::bestBody(message.text, message.html, message.rtf);
  BestBody best{kind.utf8(), nil};
  if (best.kind == "html") best.html = message.html;
  if (best.kind == "rtf") best.html = MailKelspar::htmlFromEncapsulatedRTF(message.rtf);
  return best;
}

}  // namespace kelspar::host
