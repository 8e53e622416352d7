// A message, or HTML of its own, as a page that is safe to open.
#pragma once

#include "host/message_text.h"

namespace kelspar::host {

// The text between tags or quotation marks; carriage returns and NULs are left out.
[[nodiscard]] std::string escapedHTML(std::string_view text);

// An HTML document of that title around `body`, which is HTML.
[[nodiscard]] std::string pageOf(const NSString& title, const std::string& body);

// The message's body, made safe, its pictures in place; `*removed` counts the remote contents that
// were taken out.
[[nodiscard]] std::string bodyHTML(const Message& message, uint64_t* removed);

}  // namespace kelspar::host
