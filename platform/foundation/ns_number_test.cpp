#include "platform/foundation/NSNumber.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/foundation/NSString.h"

namespace kelspar {
namespace {

TEST(NSNumber, KnowsWhatItIs) {
  EXPECT_EQ(NSNumber(true).type(), NSNumber::Type::boolean);
  EXPECT_EQ(NSNumber(1).type(), NSNumber::Type::integer);
  EXPECT_EQ(NSNumber(1u).type(), NSNumber::Type::unsignedInteger);
  EXPECT_EQ(NSNumber(1.0).type(), NSNumber::Type::real);
}

TEST(NSNumber, HoldsTheWhole64Bits) {
  EXPECT_EQ(NSNumber(UINT64_MAX).unsignedLongValue(), UINT64_MAX);
  EXPECT_EQ(NSNumber(INT64_MIN).longValue(), INT64_MIN);
  EXPECT_EQ(NSNumber(UINT64_MAX).description(), NSString(u"18446744073709551615"));
  EXPECT_EQ(NSNumber(INT64_MIN).description(), NSString(u"-9223372036854775808"));
}

TEST(NSNumber, ComparesExactly) {
  EXPECT_EQ(NSNumber(1), NSNumber(1u));
  EXPECT_EQ(NSNumber(1), NSNumber(1.0));
  EXPECT_FALSE(NSNumber(-1) == NSNumber(UINT64_MAX));
  // 2^53 + 1 has no double; the nearest one is another number.
  EXPECT_FALSE(NSNumber((INT64_C(1) << 53) + 1) == NSNumber(9007199254740992.0));
  EXPECT_FALSE(NSNumber(UINT64_MAX) == NSNumber(18446744073709551616.0));
  EXPECT_FALSE(NSNumber() == NSNumber(0));
}

TEST(NSNumber, DoublesSaturateAndTruncate) {
  EXPECT_EQ(NSNumber(-2.9).longValue(), -2);
  EXPECT_EQ(NSNumber(1e30).longValue(), INT64_MAX);
  EXPECT_EQ(NSNumber(-1e30).longValue(), INT64_MIN);
  EXPECT_EQ(NSNumber(1e30).unsignedLongValue(), UINT64_MAX);
  EXPECT_EQ(NSNumber(std::nan("")).longValue(), 0);
  EXPECT_EQ(NSNumber().doubleValue(), 0.0);
}

TEST(NSNull, IsOneObjectAndNotNil) {
  EXPECT_TRUE(NSNull::null());
  EXPECT_TRUE(NSNull::null().isIdenticalTo(NSNull::null()));
  EXPECT_EQ(NSNull::null().description(), NSString(u"<null>"));
}

}  // namespace
}  // namespace kelspar
