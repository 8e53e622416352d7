// Diagnostics: one line each to the system log (syslog(3)), mirrored to standard error.
#pragma once

#include <functional>
#include <string_view>

#include "platform/foundation/NSFormat.h"

namespace kelspar {

// Where log lines go. Called with one UTF-8 line without its line feed, by any thread, one at a
// time. What a sink itself logs goes to the system log and standard error.
using NSLogSink = std::function<void(std::string_view line)>;

// Puts `sink` in the place of the system log and standard error; an empty one puts them back.
// Returns the sink that was there before (empty: the system log).
NSLogSink setLogSink(NSLogSink sink);

// Line breaks and other control characters inside the message are written as blanks: what a
// stranger sent can neither add a line to the log nor drive a terminal.
void logLine(const NSString& message);

template <class... Arguments>
void NSLog(const NSString& format, const Arguments&... arguments) {
  logLine(NSString::stringWithFormat(format, arguments...));
}

}  // namespace kelspar
