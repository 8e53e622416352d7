#include "platform/foundation/NSData.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/foundation/NSException.h"
#include "platform/foundation/NSString.h"

namespace kelspar {
namespace {

TEST(NSData, NilIsNotEmpty) {
  EXPECT_FALSE(NSData());
  EXPECT_TRUE(NSData(std::string_view()));
  EXPECT_FALSE(NSData() == NSData(std::string_view()));
  EXPECT_EQ(NSData(std::string_view()).bytes(), nullptr);
}

TEST(NSData, AdoptsBuffersWithoutACopy) {
  auto* block = static_cast<uint8_t*>(std::malloc(3));
  block[0] = 1, block[1] = 2, block[2] = 3;
  EXPECT_EQ(NSData::adoptingMalloc(block, 3).bytes(), block);
  std::vector<uint8_t> vector(100, 7);
  const uint8_t* start = vector.data();
  EXPECT_EQ(NSData(std::move(vector)).bytes(), start);
  std::string text(100, 'x');
  const char* chars = text.data();
  EXPECT_EQ(NSData(std::move(text)).chars().data(), chars);
}

TEST(NSData, PartsShareTheBytes) {
  NSData part;
  {
    const NSData whole({1, 2, 3, 4});
    part = whole.subdata(1, 2);
    EXPECT_EQ(part.bytes(), whole.bytes() + 1);
    EXPECT_TRUE(whole.subdata(0).isIdenticalTo(whole));
    EXPECT_EQ(whole.subdata(4), NSData(std::string_view()));
    EXPECT_THROW((void)whole.subdata(5), NSRangeException);
  }
  EXPECT_EQ(part, NSData({2, 3})) << "the part keeps the bytes alive";
}

TEST(NSData, DescribesItsEnds) {
  EXPECT_EQ(NSData({0xAB, 0x01}).description(), NSString(u"{length = 2, bytes = 0xab01}"));
  const NSData longer(std::string(100, 'A'));
  EXPECT_EQ(longer.description(),
            NSString(u"{length = 100, bytes = 0x41414141414141414141414141414141 ... "
                     u"4141414141414141}"));
}

}  // namespace
}  // namespace kelspar
