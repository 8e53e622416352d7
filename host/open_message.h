// Opens whatever holds messages: .msg, TNEF, .eml, mbox, told by content.
#pragma once

#include "host/message.h"

namespace kelspar::host {

// The file's messages; more than one for an mbox. Empty when the bytes are none of these formats
// or nothing of one could be read. `name` helps with text that could be anything: files
// ".eml" and ".mbox", in either case.
[[nodiscard]] Messages openMessages(const NSData& bytes, const std::string& name,
                                    const ReadOptions& options);

// Whether the bytes, or the name, promise messages, damaged or not.
[[nodiscard]] bool promisesMessages(const NSData& bytes, const std::string& name);

// The body of the message that shows it best: "html", "rtf", "text" or empty, and its HTML, taken
// out of RTF where it is encapsulated; nil for RTF without HTML and for text.
struct BestBody {
  std::string kind;
  NSString html;
};
[[nodiscard]] BestBody bestBodyOf(const Message& message);

}  // namespace kelspar::host
