#include "platform/foundation/NSDate.h"

#include <gtest/gtest.h>

#include "platform/foundation/NSString.h"

namespace kelspar {
namespace {

TEST(NSDate, CountsFromItsEpochs) {
  EXPECT_EQ(NSDate::since1970(12.5).secondsSince1970(), 12.5);
  EXPECT_EQ(NSDate::sinceReferenceDate(0).secondsSince1970(), 978307200);
  EXPECT_EQ(NSDate().secondsSince1970(), 0);
  EXPECT_GT(NSDate::now().secondsSince1970(), 1.7e9);
}

TEST(NSDate, IsDescribedInUTC) {
  EXPECT_EQ(NSDate::since1970(0).description(), NSString(u"1970-01-01 00:00:00 +0000"));
  EXPECT_EQ(NSDate::since1970(-1).description(), NSString(u"1969-12-31 23:59:59 +0000"));
  EXPECT_EQ(NSDate::since1970(1e300).description(), NSString(u"1e+300 s since 1970"));
}

TEST(NSDate, IsComparedBySeconds) {
  EXPECT_EQ(NSDate::since1970(1), NSDate::since1970(1));
  EXPECT_FALSE(NSDate() == NSDate::since1970(0));
}

}  // namespace
}  // namespace kelspar
