#include "StringKelspar/encoding_catalogue.h"

#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "StringKelspar/StringKelspar.h"

namespace kelspar {
namespace {

struct Row {
  const char16_t* name;
  std::string_view bytes;
  const char16_t* text;
};
// Names that charset labels are looked up by, each with bytes that only it reads so.
constexpr Row kRows[] = {
    {u"Hebrew (Windows)", "\xE0\xA4", u"\u05D0\u20AA"},
    {u"Arabic (Windows)", "\xC7\x90", u"\u0627\u06AF"},
    {u"Baltic (Windows)", "\xE0\xF0", u"\u0105\u0161"},
    {u"Vietnamese (Windows)", "\xFE\xF5", u"\u20AB\u01A1"},
    {u"Thai (Windows, DOS)", "\xA1\x80", u"\u0E01\u20AC"},
    {u"Cyrillic (ISO 8859-5)", "\xB0\xF1", u"\u0410\u0451"},
    {u"Arabic (ISO 8859-6)", "\xC7\xE4", u"\u0627\u0644"},
    {u"Greek (ISO 8859-7)", "\xC1\xB6", u"\u0391\u0386"},
    {u"Hebrew (ISO 8859-8)", "\xE0\xFA", u"\u05D0\u05EA"},
    {u"Thai (ISO 8859-11)", "\xA1\xFB", u"\u0E01\u0E5B"},
    {u"Cyrillic (KOI8-R)", "\xC1\xB1", u"\u0430\u2560"},
    {u"Ukrainian (KOI8-U)", "\xC1\xA4", u"\u0430\u0454"},
    {u"Japanese (Shift JIS)", "\x82\xA0", u"\u3042"},
    {u"Korean (EUC)", "\xB0\xA1", u"\uAC00"},
    {u"Traditional Chinese (Big 5)", "\xA7\x41", u"\u4F60"},
    {u"Simplified Chinese (GB 2312)", "\xC4\xE3", u"\u4F60"},
    {u"Chinese (GB 18030)", "\x81\x30\x81\x30", u"\u0080"},
};

TEST(EncodingCatalogue, NamesAreThoseOfTheirEncodings) {
  const auto catalogue = StringKelspar::getStringEncodingsForText();
  for (const Row& row : kRows) {
    const auto number = catalogue.objectForKey(row.name).as<NSNumber>();
    ASSERT_TRUE(number) << NSString(row.name);
    EXPECT_NE(number.unsignedLongValue(), NSUTF8StringEncoding);
    EXPECT_EQ(stringWithBytes(row.bytes, number.unsignedLongValue()), NSString(row.text))
        << NSString(row.name);
  }
}

TEST(EncodingCatalogue, HoldsEveryAvailableEncodingOnce) {
  const auto catalogue = StringKelspar::getStringEncodingsForText();
  EXPECT_EQ(catalogue.count(), availableStringEncodings().size());
  std::map<uint64_t, int> numbers;
  for (const auto& [name, number] : catalogue.entries()) {
    ++numbers[number.as<NSNumber>().unsignedLongValue()];
  }
  for (const NSStringEncoding encoding : availableStringEncodings()) {
    EXPECT_EQ(numbers[encoding], 1) << encoding;
  }
}

TEST(EncodingCatalogue, CopiesAreTheCallersOwn) {
  auto mine = StringKelspar::getStringEncodingsForText();
  mine.setObject(u"changed"_ns, u"Unicode (UTF-8)");
  const auto fresh = StringKelspar::getStringEncodingsForText();
  EXPECT_EQ(fresh.objectForKey(u"Unicode (UTF-8)").as<NSNumber>(), NSNumber(4));
}

TEST(EncodingCatalogue, OneForManyThreads) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([] {
      for (int round = 0; round < 20; ++round) {
        auto copy = StringKelspar::getStringEncodingsForText();
        copy.setObject(NSNumber(round), u"mine");
        EXPECT_TRUE(copy.objectForKey(u"Western (ASCII)"));
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

class OddLists : public testing::Test {
 protected:
  void SetUp() override {
    before_ = setLogSink([this](std::string_view line) { log_.emplace_back(line); });
  }
  void TearDown() override { setLogSink(before_); }
  static NSNumber at(const NSDictionary& catalogue, const char16_t* name) {
    return catalogue.objectForKey<NSNumber>(name);
  }
  std::vector<std::string> log_;
  NSLogSink before_;
};

TEST_F(OddLists, NoneIsEmptyAndLogged) {
  EXPECT_EQ(buildEncodingCatalogue({}, [](NSStringEncoding) { return nil; }).count(), 0u);
  EXPECT_EQ(log_, (std::vector<std::string>{"Warning: availableStringEncodings returned NULL"}));
}

TEST_F(OddLists, DuplicatesAreLogged) {
  const NSStringEncoding list[] = {1, 2, 1, 3, 4};
  const auto catalogue = buildEncodingCatalogue(list, [](NSStringEncoding encoding) -> NSString {
    if (encoding == 3) throw NSInvalidArgumentException("no name");
    return encoding == 4 ? nil : NSString(u"Same");
  });
  EXPECT_EQ(catalogue.count(), 4u);
  EXPECT_EQ(at(catalogue, u"Same"), NSNumber(1));
  EXPECT_EQ(at(catalogue, u"Same (2)"), NSNumber(2));
  EXPECT_EQ(at(catalogue, u"Unknown Encoding (3)"), NSNumber(3));
  EXPECT_EQ(at(catalogue, u"Unknown Encoding (4)"), NSNumber(4));
  EXPECT_EQ(log_, (std::vector<std::string>{
                      "Warning: Duplicate localized name 'Same' for encodings 1 and 2",
                      "Warning: Duplicate encoding encountered: 1",
                      "Warning: Exception getting localized name for encoding 3: no name"}));
}

}  // namespace
}  // namespace kelspar
