#include "host/jobs.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <stdexcept>
#include <system_error>

#include "tests/without_threads.h"

namespace kelspar::host {
namespace {

constexpr int kInputs = 20'000;

std::function<std::optional<int>()> numbers() {
  return [at = 0]() mutable -> std::optional<int> {
    return at < kInputs ? std::optional(at++) : std::nullopt;
  };
}

std::vector<int> allNumbers() {
  std::vector<int> all(kInputs);
  std::iota(all.begin(), all.end(), 0);
  return all;
}

class Jobs : public testing::TestWithParam<size_t> {};
TEST_P(Jobs, KeepTheOrder) {
  std::vector<int> results;
  inOrder<int, int>(
      GetParam(), numbers(), [](const int& input) { return input; },
      [&](int result) { results.push_back(result); });
  EXPECT_EQ(results, allNumbers());
}
INSTANTIATE_TEST_SUITE_P(InOrder, Jobs, testing::Values(1, 2, 7));

TEST(Jobs, EndByWhatTheSinkThrows) {
  const auto run = [] {
    inOrder<int, int>(
        2, numbers(), [](const int& input) { return input; },
        [](int result) {
          if (result == 100) throw std::runtime_error("the sink is full");
        });
  };
  EXPECT_THROW(run(), std::runtime_error);
}

TEST(Jobs, AreDoneByTheThreadsThatThereAre) {
  std::optional<WithoutThreads> none;
  std::vector<int> results;
  const auto next = numbers();
  inOrder<int, int>(
      2000,
      [&] {
        if (!none) none.emplace();  // the first threads have been made
        return next();
      },
      [](const int& input) { return input; }, [&](int result) { results.push_back(result); });
  EXPECT_EQ(results, allNumbers());
}

TEST(Jobs, WithoutAThreadAreAnError) {
  const WithoutThreads none;
  std::atomic<int> calls{0};
  const auto run = [&] {
    inOrder<int, int>(
        3,
        [&] {
          ++calls;
          return std::nullopt;
        },
        [](const int& input) { return input; }, [](int) {});
  };
  EXPECT_THROW(run(), std::system_error);
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace kelspar::host
