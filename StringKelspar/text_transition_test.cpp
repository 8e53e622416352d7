#include "StringKelspar/text_transition.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>

#include "StringKelspar/StringKelspar.h"
#include "platform/dispatch/dispatch.h"
#include "platform/runtime/Operations.h"

namespace kelspar {
namespace {

// What the field was sent, in short: "=TEXT" for a value, "d" and "n" for the two that follow.
class Field final : public NSTextFieldView {
 public:
  explicit Field(std::vector<std::string>* sent) : sent_(sent) {}
  void setStringValue(const NSString& value) override { add("=" + value.utf8()); }
  void displayIfNeeded() override { add("d"); }
  void setNeedsDisplay(bool needsDisplay) override { add(needsDisplay ? "n" : "?"); }

 private:
  void add(std::string message) {
    EXPECT_TRUE(dispatch::isMainThread());
    sent_->push_back(std::move(message));
  }
  std::vector<std::string>* sent_;
};

struct Outcome {
  std::vector<std::string> sent;
  std::vector<uint64_t> rests;
};

Outcome transition(const NSString& target, int32_t style, uint64_t duration, float interval) {
  Outcome run;
  std::mutex lock;
  bool finished = false;
  const NSTextField field(new Field(&run.sent));
  startTransition(
      target, style, duration, interval, field, [&finished] { finished = true; },
      [&](uint64_t tenths) {
        const std::lock_guard guard(lock);
        run.rests.push_back(tenths);
      });
  while (!finished) dispatch::drainMain(50);
  return run;
}

std::vector<std::string> values(const Outcome& run) {
  std::vector<std::string> values;
  for (const std::string& message : run.sent) {
    if (message[0] == '=') values.push_back(message.substr(1));
  }
  return values;
}

TEST(Transition, CountsUp) {
  const Outcome run = transition(u"0:07", 0, 14, 0);
  EXPECT_EQ(values(run), (std::vector<std::string>{"0:01", "0:02", "0:03", "0:04", "0:05", "0:06",
                                                   "0:07", "0:07"}));
  EXPECT_EQ(run.rests, std::vector<uint64_t>(7, 2));
  ASSERT_EQ(run.sent.size(), 7 * 3 + 1u);
  EXPECT_EQ(run.sent[1], "d");
  EXPECT_EQ(run.sent[2], "n");
  EXPECT_EQ(run.sent.back(), "=0:07");
}

TEST(Transition, CountsDigitsOneAfterTheOther) {
  EXPECT_EQ(values(transition(u"2a1", 3, 30, 0)),
            (std::vector<std::string>{"1a0", "1a1", "2a1", "2a1"}));
}

TEST(Transition, ShortDelaysAreNoPause) {
  const Outcome run = transition(u"9", 0, 8, 0);
  EXPECT_EQ(values(run).size(), 10u);
  EXPECT_TRUE(run.rests.empty());
}

TEST(Transition, WithoutDurationOnlyTheTargetIsSet) {
  EXPECT_EQ(values(transition(u"12", 0, 0, 0)), (std::vector<std::string>{"12"}));
  EXPECT_EQ(values(transition(u"", 0, 5, 1)), (std::vector<std::string>{""}));
  EXPECT_EQ(values(transition(u"abc", 0, 5, 1)), (std::vector<std::string>{"abc"}));
}

TEST(Transition, CountsDigitsOfOtherScripts) {
  EXPECT_EQ(values(transition(u"\u0662", 0, 4, 0)),
            (std::vector<std::string>{"1", "2", "\xD9\xA2"}));
}

TEST(Transition, SpinsFromZero) {
  // Passes 0, 1 and 2 clear the flag while 2 > 1 x passes; every digit rests.
  const Outcome run = transition(u"5:7", 1, 2, 1);
  EXPECT_EQ(values(run), (std::vector<std::string>{"/:/", "-:-", "\\:\\", "5:7"}));
  EXPECT_EQ(run.rests, std::vector<uint64_t>(6, 1));
}

TEST(Transition, SpinsFromTheSpinnersElements) {
  const Outcome run = transition(u"123456", 2, 1, 1);
  EXPECT_EQ(values(run), (std::vector<std::string>{"-\\|/-\\", "\\|/-\\|", "123456"}));
}

TEST(Transition, SpinsOnceWithoutDuration) {
  EXPECT_EQ(values(transition(u"7x", 1, 0, 1)), (std::vector<std::string>{"7x"}));
}

TEST(Transition, RunsToItsEndWithoutAField) {
  std::atomic<uint64_t> rested{0};
  bool finished = false;
  startTransition(
      u"12", 0, 9, 0, nil, [&finished] { finished = true; },
      [&rested](uint64_t tenths) { rested += tenths; });
  while (!finished) dispatch::drainMain(50);
  EXPECT_EQ(rested, 9u);  // three steps, a third of the duration each
}

TEST(Transition, SideBySide) {
  std::vector<std::string> sent;
  const NSTextField field(new Field(&sent));
  std::atomic<int> finished{0};
  for (int i = 0; i < 8; ++i) {
    startTransition(
        u"12:34", i % 3, 5, 2, field, [&finished] { ++finished; }, [](uint64_t) {});
  }
  while (finished < 8) dispatch::drainMain(50);
  EXPECT_EQ(sent.back(), "=12:34");
}

TEST(Transition, OnTheWireIsAnsweredAtTheEnd) {
  const Operation* operation = Operations::shared().find(
      "StringKelspar", "transitionText:style:overTime:withInterval:intoTextField:");
  ASSERT_TRUE(operation);
  std::string error;
  Call call;
  call.arguments = {u"1"_ns, NSNumber(0), NSNumber(0), NSNumber(0.5),
                    valueFromJSON(R"({"$textField":true})", &error)};
  ASSERT_EQ(error, "");
  std::string answer;
  operation->call(call, [&answer](const Answer& given) { answer = jsonFromAnswer(given); });
  while (answer.empty()) dispatch::drainMain(50);
  EXPECT_EQ(answer, R"({"value":null,"out":[null,null,null,null,[["setStringValue:","1"]]]})");
}

}  // namespace
}  // namespace kelspar
