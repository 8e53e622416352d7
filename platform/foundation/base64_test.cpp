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

// Character by character, as the rule reads.
std::string literally(std::u16string_view text, base64::AtPadding atPadding) {
  constexpr std::u16string_view kAlphabet =
      u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  uint32_t bits = 0;
  int count = 0;
  for (const char16_t unit : text) {
    if (unit == u'=' && atPadding == base64::AtPadding::stop) break;
    if (unit == u'=') count = 0;
    const size_t value = kAlphabet.find(unit);
    if (value == kAlphabet.npos) continue;
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes.push_back(static_cast<char>(bits >> count));
  }
  return bytes;
}

// Lines of base64, some with strays, of all lengths.
std::u16string randomText(std::mt19937& random) {
  std::string bytes(random() % 300, ' ');
  for (char& c : bytes) c = static_cast<char>(random());
  const std::string whole = encoded(bytes);
  std::u16string text(whole.begin(), whole.end());
  const size_t line = 1 + random() % 90;
  for (size_t at = line; at < text.size(); at += line + 2) text.insert(at, u"\r\n");
  constexpr char16_t kStrays[] = {u' ',  u'=',      u'-',      u'\u00C1', u'\u0141',
                                  u'\0', u'\u7F41', u'\u8041', u'\uFF41', u'@'};
  for (size_t strays = random() % 4; strays > 0 && !text.empty(); --strays)
    text[random() % text.size()] = kStrays[random() % std::size(kStrays)];
  return text;
}

TEST(Base64, LenientDecodingEqualsTheRule) {
  std::mt19937 random(4);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = randomText(random);
    for (const auto atPadding : {base64::AtPadding::stop, base64::AtPadding::goOn}) {
      ASSERT_EQ(base64::decodeLenient(text, atPadding).chars(), literally(text, atPadding));
      std::string narrow;
      for (const char16_t unit : text) narrow.push_back(static_cast<char>(unit));
      std::u16string widened;
      for (const char c : narrow) widened.push_back(static_cast<uint8_t>(c));
      ASSERT_EQ(base64::decodeLenient(narrow, atPadding).chars(), literally(widened, atPadding));
    }
  }
}

TEST(Base64, BothFormsOfTheGroupsGiveTheSame) {
  const auto vectorised = base64::decodeGroupsVectorised<char16_t>();
  if (!vectorised) return;  // this processor has the portable form only
  std::mt19937 random(5);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = randomText(random);
    std::string one(text.size() + 32, '\0'), other(text.size() + 32, '\0');
    const auto at = [](std::string& bytes) { return reinterpret_cast<uint8_t*>(bytes.data()); };
    const base64::Groups read = base64::decodeGroupsPortably(std::u16string_view(text), at(one));
    ASSERT_EQ(vectorised(text, at(other)), read);
    ASSERT_EQ(one.substr(0, read.written), other.substr(0, read.written));
  }
}

TEST(Base64, LenientDecodingOfNothing) {
  EXPECT_TRUE(base64::decodeLenient(u""));
  EXPECT_TRUE(base64::decodeLenient(u"").isEmpty());
  EXPECT_TRUE(base64::decodeLenient(u"=Zm9v").isEmpty());
  EXPECT_TRUE(base64::decodeLenient(u"\r\n!").isEmpty());
}

}  // namespace
}  // namespace kelspar
