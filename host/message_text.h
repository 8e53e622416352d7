// A message as something to read: text, HTML, RTF, JSON.
#pragma once

#include "host/message.h"

namespace kelspar::host {

struct ShowOptions {
  bool header = true;  // the header block above the body
  // Where the remote contents are added up that safe HTML, and what is made of it, goes without.
  uint64_t* removed = nullptr;
};

// "Wed, 01 May 2024 14:00:00 +0200" in the process's time zone, or as the environment's locale
// writes it; "2024-05-01T12:00:00Z". Empty for no date and for years that are damage.
[[nodiscard]] std::string readableDate(const NSDate& date);
[[nodiscard]] std::string isoDate(const NSDate& date);

// The text of its best body alone, as `plainLines` has it.
struct BestBody;
[[nodiscard]] std::string bodyTextOf(const Message& message, const BestBody& best);

// Each ends in a line feed. Outputs are UTF-8, but for RTF.
[[nodiscard]] std::string textOf(const Message& message, const ShowOptions& options);
[[nodiscard]] std::string htmlOf(const Message& message, const ShowOptions& options);
[[nodiscard]] std::string rtfOf(const Message& message, const ShowOptions& options);
// Several messages in one: apart by form feeds, by rules, by pages. The RTF of one is its own where
// it has one; HTML becomes RTF with its looks, links and pictures.
[[nodiscard]] std::string textOf(const Messages& messages, const ShowOptions& options);
[[nodiscard]] std::string htmlOf(const Messages& messages, const ShowOptions& options);
[[nodiscard]] std::string rtfOf(const Messages& messages, const ShowOptions& options);
// One line, without the line feed. `*removed` grows as in ShowOptions.
[[nodiscard]] std::string jsonOf(const Message& message, uint64_t* removed = nullptr);

// "1 remote content", "15 remote contents".
[[nodiscard]] std::string remoteContents(uint64_t count);

// What `kelspar info` prints.
[[nodiscard]] std::string infoOf(const Message& message);

}  // namespace kelspar::host
