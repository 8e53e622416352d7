// `kelspar date`: date texts and time values in every representation.
#pragma once

#include <string>
#include <vector>

#include "platform/foundation/NSDate.h"

namespace kelspar::host {

struct DateOptions {
  std::vector<std::string> inputs;  // none: the lines of standard input
  std::string from = "text";        // "text", "mapi", "ole", "hfs", "vms", "cf" or "unix"
  bool exact = false;               // texts by the exact operation alone
  std::string to = "iso";           // "iso", "mime" or one of the numeric ones
};

// Texts are read as people read them: with comments, obsolete zones and short years, and what
// dateFromMIMEString: reads beyond that.
//
// Prints one line an input. Throws Failure (kInputFailed) after the last when some could not be
// read; each of those is named on standard error.
void date(const DateOptions& options);

// A date in one of the forms of `DateOptions::to`.
[[nodiscard]] std::string dateAs(const NSDate& date, const std::string& form);

}  // namespace kelspar::host
