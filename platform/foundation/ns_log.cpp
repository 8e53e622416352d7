// One line to the system log and to standard error, or to the host's own sink.
#include "platform/foundation/NSLog.h"

#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <string>

namespace kelspar {

namespace {

// Recursive, as a sink may set another one.
std::recursive_mutex& sinkLock() {
  static std::recursive_mutex lock;
  return lock;
}

NSLogSink& currentSink() {
  static NSLogSink sink;
  return sink;
}

std::string oneLine(const NSString& message) {
  std::u16string line(message.view());
  for (char16_t& unit : line) {
    if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) unit = u' ';
  }
  return NSString(std::move(line)).utf8();
}

void writeToStandardError(const std::string& line) {
  for (size_t at = 0; at < line.size();) {
    const ssize_t written = ::write(STDERR_FILENO, line.data() + at, line.size() - at);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;  // nobody listens, and there is nobody left to tell
    at += static_cast<size_t>(written);
  }
}

// False where there is no sink, or where it is the one that logs.
bool giveToSink(const std::string& line) {
  static thread_local bool isGiving = false;
  if (isGiving) return false;
  const std::lock_guard guard(sinkLock());
  const NSLogSink sink = currentSink();  // a copy: it may be replaced while it runs
  if (!sink) return false;
  isGiving = true;
  try {
    sink(line);
  } catch (...) {
    isGiving = false;
    throw;
  }
  isGiving = false;
  return true;
}

}  // namespace

NSLogSink setLogSink(NSLogSink sink) {
  const std::lock_guard guard(sinkLock());
  std::swap(currentSink(), sink);
  return sink;
}

void logLine(const NSString& message) {
  const std::string line = oneLine(message);
  if (giveToSink(line)) return;
  ::syslog(LOG_USER | LOG_NOTICE, "%s", line.c_str());
  writeToStandardError(line + "\n");
}

}  // namespace kelspar
