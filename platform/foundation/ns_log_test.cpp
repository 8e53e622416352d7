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

TEST_F(NSLogTest, ControlCharactersBeyondASCIIAreBlanksToo) {
  NSLog(u"%@", NSString(u"a\u009B2J\u0080\u009Fb\u00A0\u007Fc"));
  EXPECT_EQ(lines_, std::vector<std::string>{"a 2J  b\xC2\xA0 c"});
}

TEST(NSLog, OfASinkGoesToTheSystem) {
  std::vector<std::string> lines;
  setLogSink([&](std::string_view line) {
    NSLog(u"from the sink");
    lines.emplace_back(line);
  });
  testing::internal::CaptureStderr();
  NSLog(u"one");
  NSLog(u"two");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "from the sink\nfrom the sink\n");
  setLogSink({});
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "two"}));
}

TEST(NSLog, SinksMayReplaceThemselves) {
  std::string last;
  setLogSink([&last](std::string_view line) {
    setLogSink({});
    last = line;
  });
  NSLog(u"one");
  EXPECT_EQ(last, "one");
}

TEST(NSLog, IsMirroredToStandardError) {
  testing::internal::CaptureStderr();
  NSLog(u"  ERROR: data is NULL");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "  ERROR: data is NULL\n");
}

}  // namespace
}  // namespace kelspar
