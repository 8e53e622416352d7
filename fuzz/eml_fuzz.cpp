// The reader of Internet messages over any bytes: a message, no attachment of which is larger than
// what came in, and which can be shown in every form.
#include "host/eml_reader.h"

#include <cstdlib>

#include "host/message_text.h"
#include "host/open_message.h"

using namespace kelspar;
using namespace kelspar::host;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

bool isOneLine(const NSString& text) {
  return text.view().find_first_of(u"\r\n") == std::u16string_view::npos;
}

void checkMailboxes(const std::vector<Mailbox>& mailboxes) {
  for (const Mailbox& each : mailboxes) {
    check(isOneLine(each.name) && isOneLine(each.address));
    check(!each.name.isEmpty() || !each.address.isEmpty());
  }
}

void checkMessage(const Message& message, size_t size, int depth) {
  check(depth <= kMostNesting + 1);
  check(isOneLine(message.subject) && isOneLine(message.messageIdentifier));
  for (const auto* list : {&message.from, &message.to, &message.cc, &message.bcc, &message.replyTo})
    checkMailboxes(*list);
  for (const Attachment& attachment : message.attachments) {
    check(isOneLine(attachment.name) && isOneLine(attachment.mediaType));
    // An attached message is written anew, its headers' ends too.
    if (!attachment.message) check(attachment.bytes.length() <= size);
    if (attachment.message) checkMessage(*attachment.message, size, depth + 1);
  }
  const std::string kind = bestBodyOf(message).kind;
  check(kind.empty() ? !message.text && !message.html && !message.rtf
                     : kind == "html" || kind == "rtf" || kind == "text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData file(bytes, size);
  const auto message = readEML(file, {});
  check(static_cast<bool>(message) == (size > 0));
  if (!message) return 0;
  check(message->format == "eml");
  checkMessage(*message, size, 0);
  check(static_cast<bool>(NSString::fromUTF8(jsonOf(*message))));
  check(static_cast<bool>(NSString::fromUTF8(textOf(*message, {}))));
  check(static_cast<bool>(NSString::fromUTF8(htmlOf(*message, {}))));
  check(rtfOf(*message, {}).find("{\\rtf") != std::string::npos);
  check(!infoOf(*message).empty());
  return 0;
}
