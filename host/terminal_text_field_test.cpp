#include "host/terminal_text_field.h"

#include <fcntl.h>
#include <glib.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>

#include <csignal>

#include "StringKelspar/StringKelspar.h"
#include "platform/dispatch/dispatch.h"

namespace kelspar::host {
namespace {

class Pipe {
 public:
  Pipe() { EXPECT_EQ(::pipe2(ends_, O_CLOEXEC | O_NONBLOCK), 0); }
  ~Pipe() {
    closeReader();
    ::close(ends_[1]);
  }
  [[nodiscard]] int writer() const { return ends_[1]; }
  void closeReader() {
    if (ends_[0] >= 0) ::close(std::exchange(ends_[0], -1));
  }
  // What has been written since.
  std::string read() {
    char bytes[4096];
    const ssize_t count = ::read(ends_[0], bytes, sizeof bytes);
    return {bytes, static_cast<size_t>(std::max<ssize_t>(count, 0))};
  }

 private:
  int ends_[2] = {-1, -1};
};

TEST(TerminalTextField, DrawsWhenTold) {
  Pipe pipe;
  const NSTextField field(new TerminalTextField(pipe.writer()));
  field.setStringValue(u"0:01");
  EXPECT_EQ(pipe.read(), "");
  field.displayIfNeeded();
  EXPECT_EQ(pipe.read(), "0:01\n");
  field.setNeedsDisplay(true);
  field.displayIfNeeded();
  dispatch::drainMain();
  EXPECT_EQ(pipe.read(), "");
}

TEST(TerminalTextField, DrawsOnALaterTurnWhenNobodyAsks) {
  Pipe pipe;
  int late = 0;
  const NSTextField field(new TerminalTextField(pipe.writer(), [&late] { ++late; }));
  field.setStringValue(u"one");
  field.setStringValue(u"two");
  dispatch::drainMain();
  EXPECT_EQ(pipe.read(), "two\n");
  EXPECT_EQ(late, 1);
}

TEST(TerminalTextField, OutlivesItsHandleUntilItIsDrawn) {
  Pipe pipe;
  NSTextField(new TerminalTextField(pipe.writer())).setStringValue(u"x");
  dispatch::drainMain();
  EXPECT_EQ(pipe.read(), "x\n");
}

TEST(TerminalTextField, DrawsNothingThatATerminalObeys) {
  Pipe pipe;
  const NSTextField field(new TerminalTextField(pipe.writer()));
  field.setStringValue(u"a\u001B[2J\n\u009B\u202Eb \u00E9");
  field.displayIfNeeded();
  EXPECT_EQ(pipe.read(), "a?[2J???b \u00E9\n");
}

TEST(TerminalTextField, DrawsOverItsLineOnATerminal) {
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) {
    ADD_FAILURE() << "no pseudo-terminal";
    return;
  }
  const int terminal = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
  const NSTextField field(new TerminalTextField(terminal));
  field.setStringValue(u"0:01");
  field.displayIfNeeded();
  field.setStringValue(u"0:2");
  field.displayIfNeeded();
  // A terminal hands on what is written in pieces, and some time later.
  constexpr std::string_view kDrawn = "\r0:01\x1b[K\r0:2\x1b[K";
  constexpr int kPatience = 10'000;  // milliseconds
  std::string drawn;
  for (pollfd ready{master, POLLIN, 0}; drawn.size() < kDrawn.size();) {
    char bytes[64];
    const ssize_t count =
        ::poll(&ready, 1, kPatience) > 0 ? ::read(master, bytes, sizeof bytes) : 0;
    if (count <= 0) break;
    drawn.append(bytes, static_cast<size_t>(count));
  }
  ::close(terminal);
  ::close(master);
  EXPECT_EQ(drawn, kDrawn);
}

TEST(TerminalTextField, SaysThatTheOutputIsGone) {
  Pipe pipe;
  auto* const view = new TerminalTextField(pipe.writer());
  const NSTextField field(view);
  pipe.closeReader();
  std::signal(SIGPIPE, SIG_IGN);
  field.setStringValue(u"x");
  field.displayIfNeeded();
  EXPECT_FALSE(view->isIntact());
}

// As in a desktop program: GLib's main loop runs, and nobody drains the queue.
TEST(TerminalTextField, ShowsATransitionUnderAMainLoop) {
  Pipe pipe;
  GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
  const NSTextField field(new TerminalTextField(pipe.writer(), [loop] { g_main_loop_quit(loop); }));
  StringKelspar::transitionText(u"0:03", 0, 3, 0, field);
  g_main_loop_run(loop);
  g_main_loop_unref(loop);
  EXPECT_EQ(pipe.read(), "0:01\n0:02\n0:03\n");
}

}  // namespace
}  // namespace kelspar::host
