// Lines while memory runs out: whichever allocation fails, one answer comes and nothing is thrown.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "platform/runtime/rpc.h"

namespace {

// How many allocations of this thread succeed before one fails; negative: none fails.
thread_local int leftUntilFailure = -1;

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
  if (leftUntilFailure >= 0 && leftUntilFailure-- == 0) throw std::bad_alloc();
  if (void* const block = std::malloc(size ? size : 1)) return block;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::string line;
};
class RPCWithoutMemory : public testing::TestWithParam<Row> {};

TEST_P(RPCWithoutMemory, AnswersOnceAndThrowsNothing) {
  constexpr int kMostAllocations = 10'000;
  std::string whole, answer;
  int answers = 0;
  const runtime::LineReply take = [&](std::string given) {
    answer = std::move(given);
    ++answers;
  };
  runtime::answerLine(GetParam().line, take);
  whole = answer;
  for (int failing = 0; failing < kMostAllocations; ++failing) {
    runtime::LineReply reply = take;
    answers = 0;
    leftUntilFailure = failing;
    EXPECT_NO_THROW(runtime::answerLine(GetParam().line, std::move(reply)));
    const bool hasFailed = leftUntilFailure < 0;
    leftUntilFailure = -1;
    ASSERT_EQ(answers, 1) << failing;
    if (!hasFailed) {
      EXPECT_EQ(answer, whole);
      return;
    }
    ASSERT_TRUE(answer == whole || answer.find("\"code\":-32000") != answer.npos) << answer;
  }
  FAIL() << "allocates without end";
}

const std::string kGood =
    R"({"jsonrpc":"2.0","id":"a name that is long enough for the heap","method":)"
    R"("rtfStringFromData","params":{"receiver":{"$data":"aGk="}}})";
const Row kRows[] = {
    {"Call", kGood},
    {"Batch", "[" + kGood + ",7," + kGood + "]"},
    {"EmptyBatch", "[]"},
    {"NoJSON", "{"},
    {"NoRequest", R"({"id":"a name that is long enough for the heap"})"},
    {"NoSuchOperation", R"({"jsonrpc":"2.0","id":1,"method":"nope","params":{}})"},
    {"LoneSurrogate", R"({"jsonrpc":"2.0","id":"\ud800","method":"nope"})"},
};
INSTANTIATE_TEST_SUITE_P(Lines, RPCWithoutMemory, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar
