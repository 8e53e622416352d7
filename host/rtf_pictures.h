// Attachments where an RTF body marks their places.
#pragma once

#include "host/message.h"

namespace kelspar::host {

// The message's RTF with its pictures, and the names of its other attachments, at their marks.
[[nodiscard]] NSData withPicturesInPlace(const Message& message);

}  // namespace kelspar::host
