// Attachments as files: names of strangers made safe, nothing overwritten.
#pragma once

#include <string>
#include <vector>

#include "host/message.h"

namespace kelspar::host {

// A name that stands for a file in one folder and nothing else on any common system: no separators,
// no control or direction characters, no leading dots, no device names, at most 200 bytes of UTF-8.
// `number` names what has no name.
[[nodiscard]] std::string safeFileName(const NSString& name, size_t number);

// Writes every attachment, those of attached messages included, into the folder, which is made when
// it is not there. A name that is taken gets "-2", "-3" before its extension; links are never
// followed. Returns the paths. Throws Failure (kCannotWrite).
std::vector<std::string> extractAttachments(const Message& message, const std::string& folder);

}  // namespace kelspar::host
