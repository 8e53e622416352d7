// One line to the system log and to standard error, or to the host's own sink.
#include "platform/foundation/NSLog.h"

#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <string>

namespace kelspar {

namespace {

std::mutex& sinkLock() {
  static std::mutex lock;
  return lock;
}

NSLogSink& currentSink() {
  static NSLogSink sink;
  return sink;
}

std::string oneLine(const NSString& message) {
  std::string line = message.utf8();
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
  }
  return line;
}

void writeToStandardError(const std::string& line) {
  for (size_t at = 0; at < line.size();) {
    const ssize_t written = ::write(STDERR_FILENO, line.data() + at, line.size() - at);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;  // nobody listens, and there is nobody left to tell
    at += static_cast<size_t>(written);
  }
}

}  // namespace

NSLogSink setLogSink(NSLogSink sink) {
  const std::lock_guard guard(sinkLock());
  std::swap(currentSink(), sink);
  return sink;
}

void logLine(const NSString& message) {
  const std::string line = oneLine(message);
  const std::lock_guard guard(sinkLock());
  if (currentSink()) {
    currentSink()(line);
    return;
  }
  ::syslog(LOG_USER | LOG_NOTICE, "%s", line.c_str());
  writeToStandardError(line + "\n");
}

}  // namespace kelspar
