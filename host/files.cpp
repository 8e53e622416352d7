// Files for the command line.
#include "host/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace kelspar::host {

namespace {

std::string reason() { return std::strerror(errno); }

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ > STDERR_FILENO) ::close(number_);
  }
  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  // True when the system has taken all that was written.
  bool close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

Failure cannotWrite(const std::string& path) {
  return {kCannotWrite, path + ": cannot be written: " + reason()};
}

// Replaces `path` by a file with these bytes; the old file, or nothing, stays when that fails.
void replaceFile(const std::string& path, std::string_view bytes) {
  std::string beside = path + ".XXXXXX";
  Descriptor file(::mkostemp(beside.data(), O_CLOEXEC));
  if (!file.isOpen()) throw cannotWrite(path);
  const mode_t mask = ::umask(0);
  ::umask(mask);
  struct stat old {};
  const mode_t mode = ::stat(path.c_str(), &old) == 0 ? old.st_mode & 07777 : 0666 & ~mask;
  const bool done = writeAll(file.get(), bytes) && ::fchmod(file.get(), mode) == 0 &&
                    file.close() && ::rename(beside.c_str(), path.c_str()) == 0;
  if (done) return;
  const Failure failure = cannotWrite(path);
  ::unlink(beside.c_str());
  throw failure;
}

}  // namespace

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

std::string inputName(const std::string& path) { return path == "-" ? "standard input" : path; }

NSData readInput(const std::string& path) {
  Descriptor file(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) throw Failure(kInputFailed, path + ": cannot be opened: " + reason());
  struct stat state {};
  constexpr size_t kChunk = 1 << 16;
  std::string bytes;
  if (::fstat(file.get(), &state) == 0 && S_ISREG(state.st_mode)) {
    bytes.reserve(static_cast<size_t>(state.st_size) + kChunk);
  }
  for (;;) {
    const size_t start = bytes.size();
    bytes.resize(start + kChunk);
    const ssize_t count = ::read(file.get(), bytes.data() + start, kChunk);
    if (count < 0 && errno != EINTR) {
      throw Failure(kInputFailed, inputName(path) + ": cannot be read: " + reason());
    }
    bytes.resize(start + static_cast<size_t>(count > 0 ? count : 0));
    if (count == 0) return NSData(std::move(bytes));
  }
}

void writeOutput(const std::string& path, std::string_view bytes) {
  if (path.empty() || path == "-") {
    if (!writeAll(STDOUT_FILENO, bytes)) throw cannotWrite("standard output");
    return;
  }
  // A device or a pipe is written to; only a regular file can be replaced.
  struct stat state {};
  if (::stat(path.c_str(), &state) == 0 && !S_ISREG(state.st_mode)) {
    Descriptor device(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!device.isOpen() || !writeAll(device.get(), bytes)) throw cannotWrite(path);
    return;
  }
  replaceFile(path, bytes);
}

}  // namespace kelspar::host
