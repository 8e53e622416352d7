// Files for the command line.
#include "host/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "host/terminal.h"

namespace kelspar::host {

namespace {

namespace fs = std::filesystem;

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

 private:
  int number_;
};

Failure cannotWrite(const std::string& path) {
  return {kCannotWrite, path + ": cannot be written: " + reason()};
}

Failure isThereAlready(const std::string& path) {
  return {kCannotWrite, path + ": is there already (--force replaces it)"};
}

// Where the links lead that `path` may be; the last one need not lead to anything.
fs::path targetOf(const std::string& path) {
  constexpr int kMostLinks = 40;
  fs::path target(path);
  std::error_code error;
  for (int links = 0; fs::is_symlink(target, error); ++links) {
    if (links == kMostLinks) {
      errno = ELOOP;
      throw cannotWrite(path);
    }
    target = target.parent_path() / fs::read_symlink(target, error);
  }
  return target;
}

// A new file beside `target`, under a short name of our own: the system applies the mask of modes,
// which belongs to all threads.
class FileBeside {
 public:
  explicit FileBeside(const fs::path& target) {
    static std::atomic<uint64_t> number = 0;
    const std::string start = ".kelspar-" + std::to_string(::getpid()) + "-";
    do {
      path_ = target.parent_path() / (start + std::to_string(++number));
      file_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    } while (file_ < 0 && errno == EEXIST);
    wasMade_ = file_ >= 0;
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;
  ~FileBeside() {
    if (file_ >= 0) ::close(file_);
    if (wasMade_ && !isInPlace_) ::unlink(path_.c_str());
  }

  // True when the system has taken all that was written; false leaves the reason in errno.
  [[nodiscard]] bool write(std::string_view bytes, const struct stat* old) {
    return wasMade_ && writeAll(file_, bytes) &&
           (!old || ::fchmod(file_, old->st_mode & 07777) == 0) &&
           ::close(std::exchange(file_, -1)) == 0;
  }
  [[nodiscard]] bool replace(const fs::path& target) {
    isInPlace_ = ::rename(path_.c_str(), target.c_str()) == 0;
    return isInPlace_;
  }
  // EEXIST when there is something under that name, a link that leads nowhere included.
  [[nodiscard]] bool takePlace(const fs::path& target) {
    isInPlace_ =
        ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0;
    if (isInPlace_ || errno == EEXIST) return isInPlace_;
    return ::link(path_.c_str(), target.c_str()) == 0;  // not every file system knows the flag
  }

 private:
  fs::path path_;
  int file_ = -1;
  bool wasMade_ = false, isInPlace_ = false;
};

// A file that nobody may write is not replaced, either, by users who may do anything.
bool mayBeReplaced(const fs::path& target, const struct stat& old) {
  errno = EACCES;
  return (old.st_mode & 0222) != 0 && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0;
}

// Replaces `path` by a file with these bytes; the old file, or nothing, stays when that fails.
void replaceFile(const std::string& path, std::string_view bytes) {
  const fs::path target = targetOf(path);
  struct stat old {};
  const bool isThere = ::stat(target.c_str(), &old) == 0;
  if (isThere && !mayBeReplaced(target, old)) throw cannotWrite(path);
  FileBeside file(target);
  if (!file.write(bytes, isThere ? &old : nullptr) || !file.replace(target)) {
    throw cannotWrite(path);
  }
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
    const bool isForPeople = ::isatty(STDOUT_FILENO) == 1;
    if (!writeAll(STDOUT_FILENO, isForPeople ? withoutControls(bytes) : bytes))
      throw cannotWrite("standard output");
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

void expectNoFile(const std::string& path) {
  struct stat state {};
  if (::lstat(path.c_str(), &state) == 0) throw isThereAlready(path);
}

void writeNewFile(const std::string& path, std::string_view bytes) {
  FileBeside file(path);
  if (file.write(bytes, nullptr) && file.takePlace(path)) return;
  throw errno == EEXIST ? isThereAlready(path) : cannotWrite(path);
}

}  // namespace kelspar::host
