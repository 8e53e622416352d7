// Work on many inputs by several threads, with the results in the order of the inputs.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace kelspar::host {

// As many threads may be asked for.
inline constexpr size_t kMostJobs = 256;

// The number of threads for `--jobs N`: 0 stands for one a processor.
[[nodiscard]] inline size_t jobsFor(size_t wanted) {
  if (wanted > 0) return std::min(wanted, kMostJobs);
  return std::max(1u, std::thread::hardware_concurrency());
}

template <class Input, class Result>
class Jobs {
 public:
  using Next = std::function<std::optional<Input>()>;
  using Work = std::function<Result(const Input&)>;
  using Sink = std::function<void(Result)>;

  Jobs(const Next& next, const Work& work) : next_(next), work_(work) {}

  void run(size_t jobs, const Sink& sink) {
    mostItems_ = 4 * jobs;
    std::vector<std::jthread> threads;
    const Stop stop{*this};  // behind the threads: it comes before they are waited for
    threads.reserve(jobs + 1);
    threads.emplace_back([this] { feed(); });
    threads.emplace_back([this] { serve(); });
    try {
      while (threads.size() <= jobs) threads.emplace_back([this] { serve(); });
    } catch (const std::system_error&) {
      // The system gives no more threads: those that there are do the work.
    }
    while (std::optional<Result> result = nextResult()) sink(std::move(*result));
  }

 private:
  struct Item {
    Input input;
    std::optional<Result> result;
    bool isTaken = false;
  };
  struct Stop {
    Jobs& jobs;
    ~Stop() {
      const std::lock_guard guard(jobs.lock_);
      jobs.isStopped_ = true;
      jobs.hasRoom_.notify_all();
      jobs.hasWork_.notify_all();
    }
  };

  void feed() {
    std::unique_lock guard(lock_);
    for (;;) {
      hasRoom_.wait(guard, [this] { return isStopped_ || items_.size() < mostItems_; });
      if (isStopped_) return;
      guard.unlock();
      std::optional<Input> input = next_();
      guard.lock();
      isAtEnd_ = !input;
      if (input) items_.push_back({std::move(*input), std::nullopt, false});
      if (isAtEnd_) break;
      hasWork_.notify_one();
    }
    hasWork_.notify_all();
    hasResult_.notify_one();
  }

  void serve() {
    std::unique_lock guard(lock_);
    while (Item* item = nextItem(guard)) {
      guard.unlock();
      Result result = work_(item->input);
      guard.lock();
      item->result = std::move(result);
      if (item == &items_.front()) hasResult_.notify_one();
    }
  }

  // References into a deque stay valid while its ends change. Null: there is nothing left.
  Item* nextItem(std::unique_lock<std::mutex>& guard) {
    for (;;) {
      if (isStopped_) return nullptr;
      const auto item = std::ranges::find(items_, false, &Item::isTaken);
      if (item != items_.end()) {
        item->isTaken = true;
        return &*item;
      }
      if (isAtEnd_) return nullptr;
      hasWork_.wait(guard);
    }
  }

  std::optional<Result> nextResult() {
    std::unique_lock guard(lock_);
    hasResult_.wait(
        guard, [this] { return items_.empty() ? isAtEnd_ : items_.front().result.has_value(); });
    if (items_.empty()) return {};
    std::optional<Result> result = std::move(items_.front().result);
    items_.pop_front();
    // Not for each place: waking a thread for one input costs more than many an input.
    if (items_.size() <= mostItems_ / 2) hasRoom_.notify_one();
    return result;
  }

  const Next& next_;
  const Work& work_;
  size_t mostItems_ = 0;
  std::mutex lock_;
  std::condition_variable hasRoom_, hasWork_, hasResult_;
  std::deque<Item> items_;
  bool isAtEnd_ = false, isStopped_ = false;
};

// Takes inputs from `next` until it gives none, has `work` done on each by `jobs` threads, and
// hands the results to `sink`, on the calling thread, in order, each as soon as it is there. At
// most a few inputs a thread are on their way at a time, so memory is bounded however many there
// are. `next` has a thread of its own; it and `work` must not throw. What `sink` throws ends the
// whole, once `next` and what is being worked on have returned. Where the system gives fewer
// threads, these do; std::system_error where it does not even give two.
template <class Input, class Result>
void inOrder(size_t jobs, const std::function<std::optional<Input>()>& next,
             const std::function<Result(const Input&)>& work,
             const std::function<void(Result)>& sink) {
  Jobs<Input, Result>(next, work).run(jobs, sink);
}

}  // namespace kelspar::host
