#include "platform/dispatch/dispatch.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <latch>
#include <numeric>
#include <thread>
#include <vector>

namespace kelspar::dispatch {
namespace {

TEST(ConcurrentQueue, RunsEveryJob) {
  std::latch done(5000);
  for (int i = 0; i < 5000; ++i) async(Priority::standard, [&] { done.count_down(); });
  done.wait();
}

TEST(ConcurrentQueue, JobsThatBlockDoNotHoldUpTheRest) {
  std::latch release(1), blocked(8), free(1);
  for (int i = 0; i < 8; ++i) {
    async(Priority::standard, [&] {
      release.wait();
      blocked.count_down();
    });
  }
  async(Priority::background, [&] { free.count_down(); });
  free.wait();  // although all usual threads wait
  release.count_down();
  blocked.wait();
}

TEST(MainQueue, RunsInOrderOnTheMainThread) {
  std::vector<int> order;
  for (int i = 0; i < 100; ++i) asyncMain([&order, i] { order.push_back(i); });
  EXPECT_TRUE(order.empty()) << "posted, not run";
  EXPECT_TRUE(drainMain());
  ASSERT_EQ(order.size(), 100u);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(order[i], i);
  EXPECT_FALSE(drainMain());
}

TEST(MainQueue, KeepsTheOrderOfEachThreadThatPosts) {
  constexpr size_t kThreads = 4, kJobs = 500;
  std::vector<std::vector<size_t>> orders(kThreads);
  std::vector<std::thread> threads;
  for (size_t t = 0; t < kThreads; ++t) {
    threads.emplace_back([&orders, t] {
      for (size_t i = 0; i < kJobs; ++i) {
        asyncMain([&order = orders[t], i] { order.push_back(i); });
      }
    });
  }
  while (orders != std::vector(kThreads, [] {
           std::vector<size_t> all(kJobs);
           std::iota(all.begin(), all.end(), size_t{0});
           return all;
         }())) {
    ASSERT_TRUE(drainMain(10000));
  }
  for (auto& thread : threads) thread.join();
}

TEST(MainQueue, AJobMayPostAnother) {
  int ran = 0;
  asyncMain([&ran] {
    ++ran;
    asyncMain([&ran] { ++ran; });
  });
  drainMain();
  EXPECT_EQ(ran, 2);
}

TEST(MainQueue, DrainingWaitsForWhatComes) {
  std::thread late([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    asyncMain([] {});
  });
  EXPECT_TRUE(drainMain(10000));
  late.join();
}

TEST(SyncMain, RunsInlineOnTheMainThread) {
  bool ran = false;
  syncMain([&] { ran = isMainThread(); });
  EXPECT_TRUE(ran);
}

TEST(SyncMain, HopsToARunningLoop) {
  GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
  const auto main = std::this_thread::get_id();
  std::atomic<bool> onMain{false};
  std::thread other([&] {
    EXPECT_FALSE(isMainThread());
    syncMain([&] { onMain = std::this_thread::get_id() == main; });
    asyncMain([loop] { g_main_loop_quit(loop); });
  });
  g_main_loop_run(loop);
  other.join();
  g_main_loop_unref(loop);
  EXPECT_TRUE(onMain);
}

TEST(SyncMain, DoesNotHangWhenNobodyRunsTheLoop) {
  int ran = 0;
  std::thread other([&] { syncMain([&] { ran += isMainThread(); }); });
  other.join();
  EXPECT_EQ(ran, 1);
  drainMain();
  EXPECT_EQ(ran, 1) << "the job that was posted does not run again";
}

}  // namespace
}  // namespace kelspar::dispatch
