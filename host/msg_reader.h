// Reads .msg files: compound files whose streams are properties (MS-OXMSG).
#pragma once

#include "host/message.h"

namespace kelspar::host {

// Whether the bytes begin with a compound file's signature.
[[nodiscard]] bool isCompoundFile(const NSData& bytes);

// Null when the compound file cannot be opened or holds no properties of a message. What is
// damaged inside is left out and noted among the message's faults. No more bytes are read out of
// the file than a small multiple of its size.
[[nodiscard]] std::shared_ptr<Message> readMSG(const NSData& bytes, const ReadOptions& options);

}  // namespace kelspar::host
