#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "TimeKelspar/TimeKelspar.h"

namespace kelspar {
namespace {

using T = TimeKelspar;

TEST(TimeConversions, EpochsMeet) {
  EXPECT_EQ(T::getWindowsTimeFromUnixTime(0), 116444736000000000);
  EXPECT_EQ(T::getUnixTimeFromWindowsTime(116444736000000000), 0);
  EXPECT_EQ(T::getVMSTimeFromUnixTime(0), 35067168000000000u);
  EXPECT_EQ(T::getUnixTimeFromVMSTime(35067168000000000u), 0);
  EXPECT_EQ(T::dateFromOLEDate(25569.0), NSDate::since1970(0));
  EXPECT_EQ(T::dateFromHFSDate(2082844800u), NSDate::since1970(0));
  EXPECT_EQ(T::dateFromCFAbsoluteTime(0), NSDate::since1970(978307200));
  EXPECT_EQ(T::dateFromMAPITime(116444736000000000u), NSDate::since1970(0));
}

TEST(TimeConversions, MissingAndImpossibleValues) {
  EXPECT_FALSE(T::dateFromMAPITime(0));
  EXPECT_EQ(T::mapiTimeFromDate(nil), 0);
  EXPECT_FALSE(T::dateFromOLEDate(std::nan("")));
  EXPECT_FALSE(T::dateFromOLEDate(INFINITY));
  EXPECT_FALSE(T::dateFromOLEDate(-INFINITY));
  EXPECT_EQ(T::oleDateFromDate(nil), 0.0);
  EXPECT_EQ(T::hfsDateFromDate(nil), 0);
}

TEST(TimeConversions, RoundTowardZero) {
  EXPECT_EQ(T::getUnixTimeFromWindowsTime(-1), -11644473600);
  EXPECT_EQ(T::getUnixTimeFromWindowsTime(-10000001), -11644473601);
  EXPECT_EQ(T::mapiTimeFromDate(NSDate::since1970(1.9)), 116444736010000000);
  EXPECT_EQ(T::mapiTimeFromDate(NSDate::since1970(-1.9)), 116444735990000000);
  EXPECT_EQ(T::hfsDateFromDate(NSDate::since1970(-2082844800.5)), 0) << "the sum is truncated";
  EXPECT_EQ(T::hfsDateFromDate(NSDate::since1970(-2082844801.5)), -1);
}

TEST(TimeConversions, EarlyValues) {
  EXPECT_EQ(T::dateFromMAPITime(1), NSDate::since1970(-11644473600.0));
  EXPECT_EQ(T::dateFromMAPITime(UINT64_MAX), NSDate::since1970(1844674407370.0 - 11644473600.0));
  EXPECT_EQ(T::dateFromOLEDate(-1.5), NSDate::since1970(-1.5 * 86400 - 2209161600));
  EXPECT_EQ(T::getUnixTimeFromVMSTime(0), 1841167690570) << "wraps before 1970";
}

TEST(TimeConversionsLaw, WrapLike128BitArithmetic) {
  std::mt19937_64 random(4);
  using Wide = __int128;
  for (int round = 0; round < 20000; ++round) {
    const auto seconds =
        static_cast<int64_t>(random() >> (random() % 64)) * (random() % 2 ? 1 : -1);
    const Wide ticks = Wide{seconds} * 10000000;
    ASSERT_EQ(T::getWindowsTimeFromUnixTime(seconds),
              static_cast<int64_t>(static_cast<uint64_t>(ticks + 116444736000000000)));
    ASSERT_EQ(T::getVMSTimeFromUnixTime(seconds), static_cast<uint64_t>(ticks + 35067168000000000));
    const uint64_t any = random();
    ASSERT_EQ(
        T::getUnixTimeFromVMSTime(any),
        static_cast<int64_t>(static_cast<uint64_t>(Wide{any} - 35067168000000000) / 10000000));
    ASSERT_EQ(T::getUnixTimeFromWindowsTime(static_cast<int64_t>(any)),
              static_cast<int64_t>(any) / 10000000 - 11644473600);
  }
}

TEST(TimeConversionsLaw, DatesComeBack) {
  std::mt19937_64 random(5);
  for (int round = 0; round < 5000; ++round) {
    const NSDate date =
        NSDate::since1970(static_cast<double>(static_cast<int64_t>(random() % 4000000000)));
    ASSERT_EQ(T::dateFromMAPITime(static_cast<uint64_t>(T::mapiTimeFromDate(date))), date);
    ASSERT_NEAR(T::dateFromOLEDate(T::oleDateFromDate(date)).secondsSince1970(),
                date.secondsSince1970(), 1e-4);
  }
}

}  // namespace
}  // namespace kelspar
