// Reads Internet messages (RFC 5322, MIME).
#pragma once

#include "host/message.h"

namespace kelspar::host {

// Whether the bytes begin with a header field.
[[nodiscard]] bool looksLikeEML(const NSData& bytes);

// Any bytes are a message to it, if only one without headers; no bytes at all are none (null). The
// structure is GMime's; header words, charsets, dates and transfer encodings are MailKelspar's. A
// winmail.dat inside is opened: its attachments join the message's.
[[nodiscard]] std::shared_ptr<Message> readEML(const NSData& bytes, const ReadOptions& options,
                                               int depth = 0);

}  // namespace kelspar::host
