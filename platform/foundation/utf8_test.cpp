#include "platform/foundation/utf8.h"

#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include <random>

#include "platform/foundation/NSString.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::string_view bytes;
  std::u16string_view units;  // with replacement
  bool valid;
};
class UTF8 : public testing::TestWithParam<Row> {};

TEST_P(UTF8, IsDecoded) {
  const Row& row = GetParam();
  EXPECT_EQ(static_cast<bool>(NSString::fromUTF8(row.bytes)), row.valid);
  EXPECT_EQ(NSString(row.bytes).view(), row.units);
}

using namespace std::string_view_literals;
constexpr Row kRows[] = {
    {"Ascii", "abc", u"abc", true},
    {"TwoBytes", "\xC3\xA9", u"\u00E9", true},
    {"ThreeBytes", "\xE2\x82\xAC", u"\u20AC", true},
    {"FourBytes", "\xF0\x9F\x98\x80", u"\U0001F600", true},
    {"ByteOrderMarkStays", "\xEF\xBB\xBFz", u"\uFEFFz", true},
    {"NulIsACharacter", "a\0b"sv, u"a\0b"sv, true},
    {"OverlongSlash", "\xC0\xAF", u"\uFFFD\uFFFD", false},
    {"OverlongThree", "\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD", false},
    {"Surrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", false},
    {"BeyondUnicode", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", false},
    {"CutOffIsOneMark", "\xE2\x82", u"\uFFFD", false},
    {"CutOffInTheMiddle", "\xF0\x9F\x98z", u"\uFFFDz", false},
    {"LoneTrail", "a\x80z", u"a\uFFFDz", false},
    {"LatinOne", "caf\xE9", u"caf\uFFFD", false},
};
INSTANTIATE_TEST_SUITE_P(Sequences, UTF8, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

// ICU replaces maximal ill-formed parts in the same way.
TEST(UTF8Law, AgreesWithICUOnRandomBytes) {
  std::mt19937 random(20260101);
  constexpr std::string_view kPieces = "a\x7F\x80\x9F\xA0\xBF\xC0\xC2\xDF\xE0\xED\xEF\xF0\xF4\xF5";
  for (int round = 0; round < 20000; ++round) {
    std::string bytes(random() % 40, ' ');
    for (char& c : bytes) c = kPieces[random() % kPieces.size()];
    const auto expected = icu::UnicodeString::fromUTF8(bytes);
    ASSERT_EQ(NSString(bytes).view(), std::u16string_view(expected.getBuffer(), expected.length()))
        << testing::PrintToString(bytes);
  }
}

TEST(UTF8Law, ComesBack) {
  std::mt19937 random(7);
  for (int round = 0; round < 5000; ++round) {
    std::u16string units;
    for (size_t i = random() % 50; i > 0; --i) {
      const uint32_t c = random() % 4 == 0 ? random() % 0x110000 : random() % 0x80;
      if (c >= 0xD800 && c < 0xE000) continue;
      std::string one;
      utf8::appendCodePoint(c, &one);
      units += NSString(one).view();
    }
    const NSString text(units);
    ASSERT_EQ(NSString::fromUTF8(text.strictUTF8().value()), text);
  }
}

// Long texts of every mix of lengths, with and without a fault somewhere: the vector code against
// the plain loop, which the rows and ICU above stand for.
TEST(UTF8Law, BlocksAgreeWithThePlainLoop) {
  std::mt19937 random(32);
  constexpr uint32_t kLimits[] = {0x80, 0x800, 0x10000, 0x110000};
  for (int round = 0; round < 20000; ++round) {
    std::string bytes;
    const uint32_t mix = random() % 16;
    for (size_t i = random() % 120; i > 0; --i) {
      const uint32_t kind = random() % 4;
      const uint32_t c = mix >> kind & 1 ? random() % kLimits[kind] : 'a' + random() % 26;
      if (c < 0xD800 || c > 0xDFFF) utf8::appendCodePoint(c, &bytes);
    }
    for (uint32_t faults = round % 2 == 0 ? 0 : 1 + random() % 2; faults > 0; --faults) {
      if (!bytes.empty()) bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    if (random() % 4 == 0) bytes.resize(random() % (bytes.size() + 1));
    std::u16string plain(bytes.size(), u'\0'), fast(utf8::unitCount(bytes), u'\0');
    size_t plainValid = 0, fastValid = 0;
    plain.resize(utf8::decodePlainly(bytes, plain.data(), &plainValid));
    ASSERT_LE(plain.size(), fast.size());
    fast.resize(utf8::decode(bytes, fast, &fastValid));
    ASSERT_EQ(fastValid, plainValid) << testing::PrintToString(bytes);
    ASSERT_EQ(fast, plain) << testing::PrintToString(bytes);
  }
}

// Every pair and triple of bytes that decides something, at every place around a block's end.
TEST(UTF8Law, FaultsAreFoundAcrossBlocks) {
  constexpr std::string_view kBytes =
      "a\x80\x8F\x90\x9F\xA0\xBF\xC0\xC2\xE0\xE1\xED\xF0\xF1\xF4\xF5";
  for (size_t place = 29; place < 34; ++place) {
    for (size_t i = 0; i < kBytes.size() * kBytes.size() * kBytes.size() * kBytes.size(); ++i) {
      std::string bytes(80, 'b');
      size_t rest = i;
      for (size_t k = 0; k < 4; ++k, rest /= kBytes.size()) {
        bytes[place + k] = kBytes[rest % kBytes.size()];
      }
      char16_t plain[80], fast[80];
      size_t plainValid = 0, fastValid = 0;
      const size_t count = utf8::decodePlainly(bytes, plain, &plainValid);
      ASSERT_EQ(utf8::decode(bytes, fast, &fastValid), count) << testing::PrintToString(bytes);
      ASSERT_EQ(fastValid, plainValid) << testing::PrintToString(bytes);
      ASSERT_EQ(std::u16string_view(fast, count), std::u16string_view(plain, count));
    }
  }
}

TEST(WellFormed, TakesPairsAndNothingElse) {
  std::mt19937 random(13);
  constexpr char16_t kUnits[] = {u'a', 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xD7FF, u'b', u'c'};
  for (int round = 0; round < 20000; ++round) {
    std::u16string units(random() % 40, u'a');
    for (size_t i = random() % 5; i > 0 && !units.empty(); --i)
      units[random() % units.size()] = kUnits[random() % std::size(kUnits)];
    std::string bytes;
    ASSERT_EQ(utf8::isWellFormed(units), utf8::append(units, &bytes));
  }
}

}  // namespace
}  // namespace kelspar
