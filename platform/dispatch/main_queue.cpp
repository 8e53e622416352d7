// The main queue on GLib's default main context.
#include <glib.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/dispatch/dispatch.h"

namespace kelspar::dispatch {

namespace {

// What has been posted and not yet begun, in order. Each job comes with a source in the context,
// and each source runs the job whose turn it is.
class Posted {
 public:
  // Never destroyed: sources may be dispatched until the process ends.
  static Posted& shared() {
    static Posted& posted = *new Posted;
    return posted;
  }

  void push(Job job) {
    const std::lock_guard guard(lock_);
    jobs_.push_back(std::move(job));
  }

  Job takeNext() {
    const std::lock_guard guard(lock_);
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    return job;
  }

 private:
  std::mutex lock_;
  std::deque<Job> jobs_;
};

// An exception cannot pass through GLib's frames: it ends the process here.
gboolean runNext(gpointer) noexcept {
  Posted::shared().takeNext()();
  return G_SOURCE_REMOVE;
}

// A job that one thread waits for. Whoever claims it first runs it: the main loop, or the waiting
// thread when it finds that nobody runs the loop.
class Hop {
 public:
  explicit Hop(const Job& job) : job_(job) {}

  bool claim() { return !claimed_.exchange(true); }

  void run() {
    std::exception_ptr thrown;
    try {
      job_();
    } catch (...) {
      thrown = std::current_exception();
    }
    const std::lock_guard guard(lock_);
    thrown_ = std::move(thrown);
    done_ = true;
    finished_.notify_all();
  }

  bool waitShortly() {
    std::unique_lock guard(lock_);
    return finished_.wait_for(guard, std::chrono::milliseconds(5), [this] { return done_; });
  }

  // Once it has run, on the thread that waited.
  void rethrow() {
    if (const std::exception_ptr thrown = std::exchange(thrown_, nullptr)) {
      std::rethrow_exception(thrown);
    }
  }

 private:
  Job job_;
  std::atomic<bool> claimed_{false};
  bool done_ = false;
  std::exception_ptr thrown_;
  std::mutex lock_;
  std::condition_variable finished_;
};

}  // namespace

// g_main_context_invoke would run the job on the calling thread when no loop runs, and g_idle_add
// would let everything else go first: so a source of default priority.
void asyncMain(Job job) {
  Posted::shared().push(std::move(job));
  GSource* source = g_idle_source_new();
  g_source_set_priority(source, G_PRIORITY_DEFAULT);
  g_source_set_callback(source, runNext, nullptr, nullptr);
  g_source_attach(source, nullptr);
  g_source_unref(source);
}

bool isMainThread() {
  return ::getpid() == ::gettid() || g_main_context_is_owner(g_main_context_default());
}

void syncMain(const Job& job) {
  if (isMainThread()) {
    job();
    return;
  }
  GMainContext* const context = g_main_context_default();
  const auto hop = std::make_shared<Hop>(job);
  asyncMain([hop] {
    if (hop->claim()) hop->run();
  });
  while (!hop->waitShortly()) {
    if (!g_main_context_acquire(context)) continue;  // its owner will come to the job
    if (hop->claim()) hop->run();
    g_main_context_release(context);
  }
  hop->rethrow();
}

bool drainMain(uint32_t milliseconds) {
  GMainContext* const context = g_main_context_default();
  bool ran = false;
  while (g_main_context_iteration(context, FALSE)) ran = true;
  if (ran || milliseconds == 0) return ran;

  bool expired = false;
  GSource* timer = g_timeout_source_new(milliseconds);
  const auto expire = [](gpointer flag) -> gboolean {
    *static_cast<bool*>(flag) = true;
    return G_SOURCE_REMOVE;
  };
  g_source_set_callback(timer, expire, &expired, nullptr);
  g_source_attach(timer, context);
  g_main_context_iteration(context, TRUE);
  ran = !expired;
  g_source_destroy(timer);
  g_source_unref(timer);
  while (g_main_context_iteration(context, FALSE)) ran = true;
  return ran;
}

}  // namespace kelspar::dispatch
