// Work on many inputs by several threads, with the results in the order of the inputs.
#pragma once

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace kelspar::host {

// The number of threads for `--jobs N`: 0 stands for one a processor.
[[nodiscard]] inline size_t jobsFor(size_t wanted) {
  if (wanted > 0) return wanted;
  return std::max(1u, std::thread::hardware_concurrency());
}

// Takes inputs from `next` until it gives none, has `work` done on each by `jobs` threads, and
// hands the results to `sink`, on the calling thread, in order. At most a few inputs a thread are
// on their way at a time, so memory is bounded however many there are. `work` must not throw;
// `next` is called on the calling thread as well.
template <class Input, class Result>
void inOrder(size_t jobs, const std::function<std::optional<Input>()>& next,
             const std::function<Result(const Input&)>& work,
             const std::function<void(Result)>& sink) {
  struct Item {
    Input input;
    std::optional<Result> result;
    bool taken = false;
  };
  std::mutex lock;
  std::condition_variable changed;
  std::deque<Item> items;  // references into a deque stay valid while its ends change
  bool finished = false;

  const auto serve = [&] {
    std::unique_lock guard(lock);
    for (;;) {
      Item* mine = nullptr;
      for (Item& item : items) {
        if (!item.taken) {
          mine = &item;
          break;
        }
      }
      if (!mine) {
        if (finished) return;
        changed.wait(guard);
        continue;
      }
      mine->taken = true;
      guard.unlock();
      Result result = work(mine->input);
      guard.lock();
      mine->result = std::move(result);
      changed.notify_all();
    }
  };

  std::vector<std::jthread> threads;
  for (size_t i = 0; i < jobs; ++i) threads.emplace_back(serve);
  bool more = true;
  std::unique_lock guard(lock);
  while (more || !items.empty()) {
    while (more && items.size() < 4 * jobs && (items.empty() || !items.front().result)) {
      guard.unlock();
      std::optional<Input> input = next();
      guard.lock();
      more = input.has_value();
      if (more) items.push_back({std::move(*input), std::nullopt, false});
      changed.notify_all();
    }
    if (items.empty()) break;
    changed.wait(guard, [&] { return items.front().result.has_value(); });
    Result result = std::move(*items.front().result);
    items.pop_front();
    guard.unlock();
    sink(std::move(result));
    guard.lock();
  }
  finished = true;
  changed.notify_all();
}

}  // namespace kelspar::host
