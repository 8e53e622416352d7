// A program of its own, so that the first calls of the process, which build what is shared, come
// from several threads at once.
#include <gtest/gtest.h>

#include <functional>
#include <latch>
#include <thread>
#include <vector>

#include "StringKelspar/StringKelspar.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/unicode/NSEncodingDetector.h"

namespace kelspar {
namespace {

// Runs `job` on eight threads that start together.
void together(const std::function<void()>& job) {
  constexpr int kThreads = 8;
  std::latch start(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      start.arrive_and_wait();
      job();
    });
  }
  for (auto& thread : threads) thread.join();
}

TEST(FirstCalls, OfTheCatalogue) {
  together([] {
    auto copy = StringKelspar::getStringEncodingsForText();
    EXPECT_EQ(copy.objectForKey(u"Unicode (UTF-8)").as<NSNumber>(), NSNumber(4));
    copy.setObject(NSNumber(1), u"mine");
  });
}

TEST(FirstCalls, OfTheDetector) {
  together([] {
    const NSData cyrillic(
        std::string_view("\xCF\xF0\xE8\xE2\xE5\xF2, \xEA\xE0\xEA \xE4\xE5\xEB\xE0"));
    EXPECT_EQ(stringEncodingForData(cyrillic).encoding, NSWindowsCP1251StringEncoding);
  });
}

TEST(FirstCalls, OfEveryDecoderAndEncoder) {
  together([] {
    for (const NSStringEncoding encoding : availableStringEncodings()) {
      const NSData bytes = dataUsingEncoding(u"1", encoding);
      EXPECT_EQ(stringWithData(bytes, encoding), NSString(u"1")) << encoding;
    }
  });
}

TEST(FirstCalls, OfTheCharacterSets) {
  together([] {
    EXPECT_EQ(StringKelsparNSStringAdditions::zapGremlins(u" a%41\u0378 "), NSString(u"aA"));
    EXPECT_EQ(StringKelsparNSStringAdditions::condenseWhitespace(u" a  b "), NSString(u"a b"));
  });
}

TEST(FirstCalls, OfTheRuler) {
  together([] {
    const NSAttributedString text(u"some words", NSTextAttributes());
    const float width = StringKelspar::getWidthForMutableString(text);
    EXPECT_GT(width, 0);
    EXPECT_LE(StringKelspar::getWidthForMutableString(
                  StringKelspar::fitAttributedString(text, width - 1)),
              width - 1);
  });
}

}  // namespace
}  // namespace kelspar
