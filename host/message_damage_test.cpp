// Messages that were cut or changed on their way: a result or none, never a crash.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "host/message_text.h"
#include "host/open_message.h"

namespace kelspar::host {
namespace {

using namespace std::string_view_literals;

void show(const std::string& bytes, const std::string& name) {
  for (const auto& message : openMessages(NSData(std::string_view(bytes)), name, {})) {
    EXPECT_TRUE(NSString::fromUTF8(htmlOf(*message, {}))) << name;
    EXPECT_TRUE(NSString::fromUTF8(jsonOf(*message))) << name;
    EXPECT_FALSE(infoOf(*message).empty()) << name;
  }
}

TEST(DamagedMessages, OfAFewBytes) {
  for (const std::string_view start :
       {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, "\x78\x9F\x3E\x22"sv, "From "sv, "A:"sv, ""sv}) {
    for (const char filler : {'\0', '\xFF', '\n', 'x'}) {
      for (const size_t length : {0, 1, 2, 7, 60, 511, 512, 513, 1600}) {
        show(std::string(start) + std::string(length, filler), "x.eml");
      }
    }
  }
}

#ifdef KELSPAR_CORPUS

// One seed for all: a failure comes again.
TEST(DamagedMessages, OfTheCorpus) {
  constexpr size_t kVariants = 6, kLargest = 200'000;
  std::mt19937 random(20030401);
  std::vector<std::filesystem::path> paths;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(KELSPAR_CORPUS) / "messages")) {
    if (entry.file_size() > 0 && entry.file_size() <= kLargest) paths.push_back(entry.path());
  }
  std::ranges::sort(paths);
  for (const auto& path : paths) {
    std::ifstream file(path, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    const auto started = std::chrono::steady_clock::now();
    for (size_t i = 0; i < kVariants; ++i) {
      show(whole.substr(0, random() % whole.size()), path.string());
      std::string changed = whole;
      for (int change = 0; change < 100; ++change) {
        changed[random() % changed.size()] = static_cast<char>(random());
      }
      show(changed, path.string());
    }
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(10 * kVariants))
        << path;
  }
}

#endif

}  // namespace
}  // namespace kelspar::host
