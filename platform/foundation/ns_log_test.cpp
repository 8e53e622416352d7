#include "platform/foundation/NSLog.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelspar {
namespace {

class NSLogTest : public testing::Test {
 protected:
  NSLogTest() {
    setLogSink([this](std::string_view line) { lines_.emplace_back(line); });
  }
  ~NSLogTest() override { setLogSink({}); }
  std::vector<std::string> lines_;
};

TEST_F(NSLogTest, WritesOneLine) {
  NSLog(u"Warning: %@ in %d", u"x", 3);
  EXPECT_EQ(lines_, std::vector<std::string>{"Warning: x in 3"});
}

TEST_F(NSLogTest, ControlCharactersCannotAddALine) {
  NSLog(u"%@", u"a\nb\x1b[2Jc");
  EXPECT_EQ(lines_, std::vector<std::string>{"a b [2Jc"});
}

TEST(NSLog, IsMirroredToStandardError) {
  testing::internal::CaptureStderr();
  NSLog(u"  ERROR: data is NULL");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "  ERROR: data is NULL\n");
}

}  // namespace
}  // namespace kelspar
