// The transport of the extension: lines in, lines out. The main thread runs the main queue, a
// thread reads, the concurrent queue does the work, and whoever has an answer writes it.
#include <fcntl.h>
#include <glib.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/dispatch/dispatch.h"
#include "platform/runtime/NSExtensionMain.h"
#include "platform/runtime/rpc.h"

namespace kelspar {

namespace {

constexpr size_t kLongestLine = size_t{1} << 30;

// Lines that were read and are not answered yet may be this many, and this long together; the
// reader waits beyond it. Answers that come later (completions) do not count.
constexpr size_t kMostLines = 4096;
constexpr size_t kMostBytes = size_t{256} << 20;
// The reader waits, too, while the host leaves so much of the answers unread.
constexpr size_t kMostUnread = size_t{1} << 30;

// Writes whole lines. While one thread writes, the others leave their lines to it.
class Output {
 public:
  explicit Output(int descriptor) : descriptor_(descriptor) {}

  void writeLine(const std::string& line) noexcept {
    std::unique_lock guard(lock_);
    if (broken_) return;
    try {
      waiting_.reserve(waiting_.size() + line.size() + 1);
    } catch (const std::bad_alloc&) {
      lost_ = true;
      return;
    }
    waiting_ += line;
    waiting_ += '\n';
    if (writing_) return;
    writing_ = true;
    while (!waiting_.empty() && !broken_) {
      std::string lines;
      lines.swap(waiting_);
      guard.unlock();
      const bool written = writeAll(lines);
      guard.lock();
      broken_ |= !written;
      if (broken_) waiting_.clear();
      changed_.notify_all();
    }
    writing_ = false;
    changed_.notify_all();
  }

  // Until the host has read most of what is there for it.
  void waitForRoom() {
    std::unique_lock guard(lock_);
    changed_.wait(guard, [this] { return waiting_.size() < kMostUnread; });
  }

  // Waits for the last line; false when the host no longer listens, or when memory did not suffice
  // for a line.
  bool finish() {
    std::unique_lock guard(lock_);
    changed_.wait(guard, [this] { return !writing_; });
    return !broken_ && !lost_;
  }

  // Whether there is still somebody to answer.
  [[nodiscard]] bool isListenedTo() const {
    pollfd state{descriptor_, 0, 0};
    return ::poll(&state, 1, 0) <= 0 || (state.revents & (POLLERR | POLLNVAL)) == 0;
  }

 private:
  bool writeAll(const std::string& lines) const {
    for (size_t at = 0; at < lines.size();) {
      const ssize_t written = ::write(descriptor_, lines.data() + at, lines.size() - at);
      if (written > 0) {
        at += static_cast<size_t>(written);
      } else if (errno == EAGAIN) {
        pollfd room{descriptor_, POLLOUT, 0};
        ::poll(&room, 1, -1);
      } else if (errno != EINTR) {
        return false;
      }
    }
    return true;
  }

  const int descriptor_;
  std::mutex lock_;
  std::condition_variable changed_;
  std::string waiting_;
  bool writing_ = false, broken_ = false, lost_ = false;
};

// Counts what has been read and not yet been answered.
class Backlog {
 public:
  // Waits for room, then counts a line.
  void enter(size_t bytes) {
    std::unique_lock guard(lock_);
    changed_.wait(guard, [&] {
      return running_ == 0 || (running_ < kMostLines && bytes_ + bytes <= kMostBytes);
    });
    ++running_;
    ++unanswered_;
    bytes_ += bytes;
  }
  // The line's work has been done; its answer may still be on its way.
  void leave(size_t bytes) {
    const std::lock_guard guard(lock_);
    --running_;
    bytes_ -= bytes;
    changed_.notify_all();
  }
  void answered() {
    const std::lock_guard guard(lock_);
    --unanswered_;
    changed_.notify_all();
  }
  // Waits until all is answered, looking up every now and then; false when `isWorthIt` says so.
  template <class IsWorthIt>
  bool waitUntilAnswered(IsWorthIt isWorthIt) {
    std::unique_lock guard(lock_);
    const auto isDone = [this] { return unanswered_ == 0 && running_ == 0; };
    while (!changed_.wait_for(guard, std::chrono::milliseconds(200), isDone)) {
      if (!isWorthIt()) return false;
    }
    return true;
  }

 private:
  std::mutex lock_;
  std::condition_variable changed_;
  size_t running_ = 0, unanswered_ = 0, bytes_ = 0;
};

class Server {
 public:
  explicit Server(int output) : output_(std::make_shared<Output>(output)) {}

  // Reads standard input to its end; false when the host went away before its answers were written.
  bool run() {
    std::string buffer;
    bool skipping = false;  // inside a line that is too long
    for (;;) {
      const size_t start = buffer.size();
      buffer.resize(start + kChunk);
      const ssize_t count = ::read(STDIN_FILENO, buffer.data() + start, kChunk);
      buffer.resize(start + static_cast<size_t>(std::max<ssize_t>(count, 0)));
      if (count < 0 && canReadAgain()) continue;
      if (count <= 0) break;
      takeLines(&buffer, start, &skipping);
    }
    if (!buffer.empty() && !skipping) accept(std::move(buffer));
    const bool heard = backlog_->waitUntilAnswered([this] { return output_->isListenedTo(); });
    return output_->finish() && heard;
  }

 private:
  static constexpr size_t kChunk = size_t{256} << 10;

  // After a failed read. A host may have made its end of a socket, and so ours, one that never
  // waits.
  static bool canReadAgain() {
    if (errno == EINTR) return true;
    if (errno != EAGAIN && errno != EWOULDBLOCK) return false;
    pollfd lines{STDIN_FILENO, POLLIN, 0};
    ::poll(&lines, 1, -1);
    return true;
  }

  // Hands out the lines that have become complete; what is left begins the buffer.
  void takeLines(std::string* buffer, size_t searchFrom, bool* skipping) {
    size_t lineStart = 0;
    for (size_t end; (end = buffer->find('\n', std::max(searchFrom, lineStart))) != buffer->npos;) {
      if (!std::exchange(*skipping, false)) accept(buffer->substr(lineStart, end - lineStart));
      lineStart = end + 1;
    }
    buffer->erase(0, lineStart);
    if (buffer->size() <= kLongestLine && !*skipping) return;
    if (!*skipping) accept("a line that is too long");  // is answered as what it is: not JSON
    *skipping = true;
    buffer->clear();
  }

  void accept(std::string line) {
    const size_t bytes = line.size();
    output_->waitForRoom();
    backlog_->enter(bytes);
    struct Work {
      std::string line;
      runtime::LineReply reply;
    };
    const auto work = std::make_shared<Work>();
    work->line = std::move(line);
    work->reply = [output = output_, backlog = backlog_](const std::string& answer) {
      if (!answer.empty()) output->writeLine(answer);
      backlog->answered();
    };
    const auto job = [work, bytes, backlog = backlog_] {
      runtime::answerLine(work->line, std::move(work->reply));
      backlog->leave(bytes);
    };
    try {
      dispatch::async(dispatch::Priority::standard, job);
    } catch (const std::system_error&) {
      job();  // there is no other thread to be had
    }
  }

  std::shared_ptr<Output> output_;
  std::shared_ptr<Backlog> backlog_ = std::make_shared<Backlog>();
};

// A private copy of standard output; descriptor 1 becomes standard error.
int takeStandardOutput() {
  const int output = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  if (::fcntl(STDERR_FILENO, F_GETFD) < 0) {
    const int nowhere = ::open("/dev/null", O_WRONLY);
    if (nowhere >= 0 && nowhere != STDERR_FILENO) ::dup2(nowhere, STDERR_FILENO);
  }
  ::dup2(STDERR_FILENO, STDOUT_FILENO);
  return output;
}

}  // namespace

int NSExtensionMain(int, const char* const*) {
  std::signal(SIGPIPE, SIG_IGN);
  const int output = takeStandardOutput();
  GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
  bool heard = false;
  std::thread reader([&] {
    heard = Server(output).run();
    dispatch::asyncMain([loop] { g_main_loop_quit(loop); });
  });
  g_main_loop_run(loop);
  reader.join();
  g_main_loop_unref(loop);
  // Work that nobody waits for may still run: it must not see the process being taken down.
  if (!heard) ::_exit(1);
  return 0;
}

}  // namespace kelspar
