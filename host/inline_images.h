// Pictures of an HTML body: attachments that its tags refer to.
#pragma once

#include <string>

#include "host/message.h"

namespace kelspar::host {

// "image/png" and so on by the bytes' beginning, whatever the label says; empty for what no browser
// shows.
[[nodiscard]] std::string imageType(std::string_view bytes);

// The HTML with each `src` that is the Content-Location of an attachment (RFC 2557) replaced by
// that attachment's "cid:" address; the HTML itself when there is none.
[[nodiscard]] NSString withLocationsAsIdentifiers(const Message& message, const NSString& html);

// Safe HTML with "cid:" sources replaced by the images themselves ("data:"). What is too large, and
// what is no image, stays as it is.
[[nodiscard]] std::string withInlineImages(const Message& message, const std::string& html);

}  // namespace kelspar::host
