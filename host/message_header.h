// The lines above a body, and dates and sizes in them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/message.h"

namespace kelspar::host {

// "From" and "Ann <ann@example.org>" and so on, in the order in which they are shown; decoded, in
// UTF-8, each on one line.
[[nodiscard]] std::vector<std::pair<std::string, std::string>> headerLines(const Message& message);

// What an attachment is called, on one line: by its name, by the subject of the message that it is,
// "unnamed".
[[nodiscard]] std::string nameOf(const Attachment& attachment);

}  // namespace kelspar::host
