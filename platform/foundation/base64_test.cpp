#include "platform/foundation/base64.h"

#include <gtest/gtest.h>

#include <random>

namespace kelspar {
namespace {

std::string encoded(std::string_view bytes) {
  std::string text;
  base64::encode(bytes, &text);
  return text;
}

// RFC 4648, 10.
TEST(Base64, EncodesTheTestVectors) {
  EXPECT_EQ(encoded(""), "");
  EXPECT_EQ(encoded("f"), "Zg==");
  EXPECT_EQ(encoded("fo"), "Zm8=");
  EXPECT_EQ(encoded("foo"), "Zm9v");
  EXPECT_EQ(encoded("foob"), "Zm9vYg==");
  EXPECT_EQ(encoded("fooba"), "Zm9vYmE=");
  EXPECT_EQ(encoded("foobar"), "Zm9vYmFy");
}

TEST(Base64, StrictDecodingRefusesStrays) {
  EXPECT_EQ(base64::decodeStrict(u"Zm9v"), "foo");
  EXPECT_EQ(base64::decodeStrict(u"Zm8="), "fo");
  EXPECT_EQ(base64::decodeStrict(u"Zm8"), "fo") << "padding may be left out";
  EXPECT_EQ(base64::decodeStrict(u"Zm9v\n"), std::nullopt);
  EXPECT_EQ(base64::decodeStrict(u"Z"), std::nullopt);
  EXPECT_EQ(base64::decodeStrict(u"Zm=v"), std::nullopt);
  EXPECT_EQ(base64::decodeStrict(u"Zm9\u00E9"), std::nullopt);
}

TEST(Base64, ComesBack) {
  std::mt19937 random(3);
  for (int round = 0; round < 3000; ++round) {
    std::string bytes(random() % 100, ' ');
    for (char& c : bytes) c = static_cast<char>(random());
    const std::string text = encoded(bytes);
    ASSERT_EQ(base64::decodeStrict(std::u16string(text.begin(), text.end())), bytes);
  }
}

}  // namespace
}  // namespace kelspar
