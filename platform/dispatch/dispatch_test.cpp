#include "platform/dispatch/dispatch.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <latch>
#include <numeric>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

#include "tests/without_threads.h"

namespace kelspar::dispatch {
namespace {

// Whether it becomes true within a while.
template <class Condition>
bool comesTrue(Condition condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

// The first of the tests, as the pool keeps its threads for a while.
TEST(ConcurrentQueue, SurvivesThatNoThreadCanBeMade) {
  std::atomic<int> ran{0};
  int taken = 0;
  {
    const WithoutThreads none;
    for (int i = 0; i < 100; ++i) {
      try {
        async(Priority::standard, [&] { ++ran; });
        ++taken;
      } catch (const std::system_error&) {
      }
    }
  }
  async(Priority::background, [&] { ++ran; });
  ++taken;
  EXPECT_TRUE(comesTrue([&] { return ran == taken; })) << ran << " of " << taken;
}

TEST(ConcurrentQueue, RunsEveryJob) {
  constexpr int kJobs = 5000;
  std::atomic<int> done{0};
  for (int i = 0; i < kJobs; ++i) async(Priority::standard, [&] { ++done; });
  EXPECT_TRUE(comesTrue([&] { return done == kJobs; })) << done;
}

TEST(ConcurrentQueue, JobsThatBlockDoNotHoldUpTheRest) {
  constexpr int kBlocking = 8;
  std::latch release(1);
  std::atomic<int> blocked{0}, freed{0};
  for (int i = 0; i < kBlocking; ++i) {
    async(Priority::standard, [&] {
      release.wait();
      ++blocked;
    });
  }
  async(Priority::background, [&] { ++freed; });
  EXPECT_TRUE(comesTrue([&] { return freed == 1; })) << "all usual threads wait";
  release.count_down();
  EXPECT_TRUE(comesTrue([&] { return blocked == kBlocking; })) << blocked;
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

TEST(SyncMain, RethrowsWhatTheJobThrows) {
  std::thread other([] {
    EXPECT_THROW(syncMain([] { throw std::runtime_error("nobody runs the loop"); }),
                 std::runtime_error);
  });
  other.join();
  EXPECT_TRUE(g_main_context_acquire(nullptr)) << "given back";
  g_main_context_release(nullptr);
  drainMain();
}

TEST(SyncMain, RethrowsBehindARunningLoop) {
  std::atomic<bool> isDone{false};
  std::thread other([&] {
    EXPECT_THROW(syncMain([] { throw std::runtime_error("on the main thread"); }),
                 std::runtime_error);
    isDone = true;
  });
  EXPECT_NO_THROW(EXPECT_TRUE(comesTrue([&] {
    drainMain();
    return isDone.load();
  })));
  other.join();
}

}  // namespace
}  // namespace kelspar::dispatch
