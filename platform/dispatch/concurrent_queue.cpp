// The concurrent queues: one pool of threads that grows when its jobs block.
#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/dispatch/dispatch.h"

namespace kelspar::dispatch {

namespace {

class Pool {
 public:
  // Never destroyed: detached threads may outlive the static objects.
  static Pool& shared() {
    static Pool& pool = *new Pool;
    return pool;
  }

  void push(Priority priority, Job job) {
    const std::lock_guard guard(lock_);
    auto& queue = waiting_[static_cast<size_t>(priority)];
    queue.push_back(std::move(job));
    ++jobs_;
    // Idle threads that were woken for earlier jobs may not have taken them yet.
    if (jobs_ <= idle_) return wake_.notify_one();
    if (threads_ < usual_ && addThread()) return;
    if (!watching_) watching_ = start(&Pool::watch);
    if (threads_ > 0 || watching_) return;
    queue.pop_back();
    --jobs_;
    throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
  }

 private:
  static constexpr size_t kMostThreads = 64;
  static constexpr std::chrono::milliseconds kPatience{5};
  static constexpr std::chrono::seconds kIdleLife{10};

  // False when the system gives no thread.
  bool start(void (Pool::*loop)()) {
    try {
      std::thread(loop, this).detach();
      return true;
    } catch (const std::exception&) {
      return false;
    }
  }

  // Under the lock, as all below that does not take it. The thread begins with waiting for it.
  bool addThread() {
    const bool isThere = start(&Pool::work);
    threads_ += isThere;
    return isThere;
  }

  Job takeNext() {
    auto& jobs = *std::ranges::find_if(waiting_, [](const auto& queue) { return !queue.empty(); });
    Job job = std::move(jobs.front());
    jobs.pop_front();
    --jobs_;
    return job;
  }

  void work() {
    std::unique_lock guard(lock_);
    for (;;) {
      if (jobs_ == 0) {
        ++idle_;
        const bool woken = wake_.wait_for(guard, kIdleLife, [this] { return jobs_ > 0; });
        --idle_;
        if (!woken) break;
      }
      {
        Job job = takeNext();
        guard.unlock();
        job();
      }
      guard.lock();
      ++finished_;
    }
    --threads_;
  }

  // Runs while jobs wait for a thread; adds one whenever a while has passed in which none finished.
  void watch() {
    std::unique_lock guard(lock_);
    while (jobs_ > 0) {
      const uint64_t before = finished_;
      guard.unlock();
      std::this_thread::sleep_for(kPatience);
      guard.lock();
      if (finished_ == before && jobs_ > idle_ && threads_ < kMostThreads) addThread();
    }
    watching_ = false;
  }

  std::mutex lock_;
  std::condition_variable wake_;
  std::array<std::deque<Job>, 4> waiting_;
  const size_t usual_ = std::max(2u, std::thread::hardware_concurrency());
  size_t jobs_ = 0, threads_ = 0, idle_ = 0;  // jobs that wait, threads, those without a job
  uint64_t finished_ = 0;
  bool watching_ = false;
};

}  // namespace

void async(Priority priority, Job job) { Pool::shared().push(priority, std::move(job)); }

}  // namespace kelspar::dispatch
