#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>

#include "StringKelspar/StringKelspar.h"

namespace kelspar {
namespace {

TEST(UTF16CString, EndsAtTwoZeroBytesOnAnEvenOffset) {
  const auto isTerminated = [](std::initializer_list<uint8_t> bytes, uint64_t length) {
    const std::vector<uint8_t> buffer(bytes);
    return StringKelspar::utf16CStringIsTerminated(buffer.data(), length);
  };
  EXPECT_TRUE(isTerminated({0x41, 0, 0, 0}, 4));
  EXPECT_FALSE(isTerminated({0, 0x41, 0, 0x42}, 4));
  EXPECT_FALSE(isTerminated({0x41, 0, 0, 0x42}, 4));
  EXPECT_FALSE(isTerminated({0, 0}, 0));
  // An odd length looks one byte further, when the last one is zero.
  EXPECT_TRUE(isTerminated({0x41, 0x42, 0, 0}, 3));
  EXPECT_FALSE(isTerminated({0x41, 0x42, 0, 1}, 3));
  EXPECT_FALSE(isTerminated({0x41, 0x42, 1}, 3));
  EXPECT_FALSE(StringKelspar::utf16CStringIsTerminated(nullptr, 4));
}

TEST(RemoveCRs, WorksInPlace) {
  char text[] = "\r\na\r\rb\r";
  StringKelspar::removeCRsFromString(text);
  EXPECT_STREQ(text, "\nab");
  char empty[] = "";
  StringKelspar::removeCRsFromString(empty);
  EXPECT_STREQ(empty, "");
  StringKelspar::removeCRsFromString(nullptr);
}

TEST(CaseInsensitiveSearch, GivesAPointerIntoTheHaystack) {
  const char* const text = "say hello";
  const auto search = &StringKelspar::caseInsensitiveSearchInString;
  EXPECT_EQ(search(text, "HeLLo"), text + 4);
  EXPECT_EQ(search(text, ""), text);
  EXPECT_EQ(search("", ""), std::string_view(""));
  EXPECT_EQ(search(text, "hellos"), nullptr);
  EXPECT_EQ(search("", "a"), nullptr);
  EXPECT_EQ(search(nullptr, "a"), nullptr);
  EXPECT_EQ(search(text, nullptr), nullptr);
}

TEST(CaseInsensitiveSearch, HostileTextIsLinear) {
  const std::string text(1'000'000, 'a'), needle = std::string(100'000, 'A') + "b";
  EXPECT_EQ(StringKelspar::caseInsensitiveSearchInString(text.c_str(), needle.c_str()), nullptr);
}

TEST(EscapeString, PutsBackslashes) {
  const auto escaped = [](const char* text) {
    const std::unique_ptr<char, decltype(&std::free)> owner(StringKelspar::escapeString(text),
                                                            &std::free);
    return std::string(owner.get());
  };
  EXPECT_EQ(escaped("a\"b\\c"), "a\\\"b\\\\c");
  EXPECT_EQ(escaped(""), "");
  EXPECT_EQ(StringKelspar::escapeString(nullptr), nullptr);
}

TEST(FixUnicode, GivesItsArgumentBack) {
  const NSString text(u"abc");
  EXPECT_TRUE(StringKelspar::fixUnicode(text).isIdenticalTo(text));
}

}  // namespace
}  // namespace kelspar
