#include <gtest/gtest.h>

#include "StringKelspar/StringKelsparNSStringAdditions.h"

namespace kelspar::StringKelsparNSStringAdditions {
namespace {

NSArray list(std::initializer_list<const char16_t*> texts) {
  std::vector<id> elements;
  for (const char16_t* text : texts) elements.push_back(NSString(text));
  return NSArray(std::move(elements));
}

TEST(Replacing, CharactersOneByOne) {
  EXPECT_EQ(stringByReplacingOccurrencesOfCharactersInString(u"a--b_", u"-_", u"+"),
            NSString(u"a++b+"));
  EXPECT_EQ(stringByReplacingOccurrencesOfCharactersInString(u"a1b2", u"0123456789", nil),
            NSString(u"ab"));
  const NSString text(u"abc");
  EXPECT_TRUE(
      stringByReplacingOccurrencesOfCharactersInString(text, u"", u"+").isIdenticalTo(text));
  EXPECT_TRUE(
      stringByReplacingOccurrencesOfCharactersInString(text, nil, u"+").isIdenticalTo(text));
}

TEST(Replacing, StringsInTurn) {
  EXPECT_EQ(
      stringByReplacingOccurrencesOfStringsInArray(u"cid:{a}", list({u"cid:", u"{", u"}"}), u""),
      NSString(u"a"));
  EXPECT_EQ(stringByReplacingOccurrencesOfStringsInArray(u"ab", list({u"a", u"xb"}), u"x"),
            NSString(u"x"));
  EXPECT_EQ(stringByReplacingOccurrencesOfStringsInArray(u"aaa", list({u"aa", u""}), nil),
            NSString(u"a"));
  const NSString text(u"abc");
  EXPECT_TRUE(
      stringByReplacingOccurrencesOfStringsInArray(text, list({u"x"}), u"y").isIdenticalTo(text));
  EXPECT_TRUE(stringByReplacingOccurrencesOfStringsInArray(text, nil, u"y").isIdenticalTo(text));
}

// Hours if the text were written anew for each.
TEST(Replacing, StringsByThemselvesCostNothing) {
  const NSString text(std::u16string(1'000'000, u'a'));
  const NSArray strings(std::vector<id>(100'000, u"a"_ns));
  EXPECT_TRUE(
      stringByReplacingOccurrencesOfStringsInArray(text, strings, u"a").isIdenticalTo(text));
  EXPECT_EQ(stringByReplacingOccurrencesOfStringsInArray(u"aA", list({u"a", u"A"}), u"a"),
            NSString(u"aa"));
}

TEST(Replacing, LogsWhatIsNoString) {
  std::vector<std::string> log;
  const auto before = setLogSink([&log](std::string_view line) { log.emplace_back(line); });
  EXPECT_EQ(
      stringByReplacingOccurrencesOfStringsInArray(u"a1", NSArray{NSNumber(1), u"a"_ns}, u"b"),
      NSString(u"b1"));
  setLogSink(before);
  EXPECT_EQ(log, (std::vector<std::string>{"Warning: Non-string object encountered in array: 1"}));
}

TEST(Replacing, CaseInsensitive) {
  EXPECT_EQ(stringByReplacingOccurencesOfCaseInsensitiveString(u"aXbx", u"X", u"-"),
            NSString(u"a-b-"));
  const NSString text(u"abc");
  EXPECT_TRUE(
      stringByReplacingOccurencesOfCaseInsensitiveString(text, nil, u"y").isIdenticalTo(text));
}

}  // namespace
}  // namespace kelspar::StringKelsparNSStringAdditions
