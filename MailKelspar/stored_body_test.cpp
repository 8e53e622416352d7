#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

using namespace std::string_view_literals;

NSData stored(std::string_view rawSize, std::string_view type, std::string_view rest) {
  return NSData(std::string(4, '\0') + std::string(rawSize) + std::string(type) +
                std::string(4, '\0') + std::string(rest));
}

TEST(StoredBody, UncompressedStandsBehindTheHeader) {
  EXPECT_EQ(MailKelspar::rtfFromStoredBody(stored("\5\0\0\0"sv, "MELA", "{\\rtf1 x}")),
            NSData("{\\rtf"sv));
}

TEST(StoredBody, RawSizesThatSayMoreAreCut) {
  EXPECT_EQ(MailKelspar::rtfFromStoredBody(stored("\xFF\xFF\xFF\xFF"sv, "MELA", "{\\rtf1 x}")),
            NSData("{\\rtf1 x}"sv));
}

TEST(StoredBody, CompressedIsDecoded) {
  EXPECT_EQ(MailKelspar::rtfFromStoredBody(stored("\3\0\0\0"sv, "LZFu", "\0abc"sv)),
            NSData("abc"sv));
}

TEST(StoredBody, SizesThatNoStreamReachesAreCut) {
  const NSData blob = stored("\xFF\xFF\xFF\x3F"sv, "LZFu", "\0abc"sv);
  const NSData rtf = MailKelspar::rtfFromStoredBody(blob);
  EXPECT_EQ(rtf.length(), 8 * blob.length());
  EXPECT_TRUE(rtf.chars().starts_with("abc\0"sv));
}

TEST(StoredBody, AnythingElseIsNil) {
  EXPECT_FALSE(MailKelspar::rtfFromStoredBody(nil));
  EXPECT_FALSE(MailKelspar::rtfFromStoredBody(NSData("{\\rtf1 plain RTF}"sv)));
  EXPECT_FALSE(MailKelspar::rtfFromStoredBody(stored("\5\0\0\0"sv, "MELA", "").subdata(0, 15)));
}

}  // namespace
}  // namespace kelspar
