#include <gtest/gtest.h>

#include "StringKelspar/StringKelsparNSStringAdditions.h"

namespace kelspar::StringKelsparNSStringAdditions {
namespace {

NSArray list(std::initializer_list<const char16_t*> texts) {
  std::vector<id> elements;
  for (const char16_t* text : texts) elements.push_back(NSString(text));
  return NSArray(std::move(elements));
}

TEST(Trimming, LeadingAndBoth) {
  const auto blanks = NSCharacterSet::whitespace();
  EXPECT_EQ(stringByTrimmingLeadingCharactersInSet(u" \ta b ", blanks), NSString(u"a b "));
  EXPECT_EQ(stringByTrimmingLeadingCharactersInSet(u"  ", blanks), NSString(u""));
  EXPECT_EQ(stringByTrimmingLeadingCharactersInSet(u"", blanks), NSString(u""));
  EXPECT_EQ(stringByTrimmingLeadingAndTrailingCharactersInSet(u" a b ", blanks), NSString(u"a b"));
  const NSString clean(u"a ");
  EXPECT_TRUE(stringByTrimmingLeadingCharactersInSet(clean, blanks).isIdenticalTo(clean));
  EXPECT_TRUE(stringByTrimmingLeadingCharactersInSet(clean, nil).isIdenticalTo(clean));
}

TEST(Trimming, MissingReceiversCountAsEmpty) {
  for (const NSCharacterSet& set : {NSCharacterSet::whitespace(), NSCharacterSet()}) {
    EXPECT_EQ(stringByTrimmingLeadingCharactersInSet(nil, set), NSString(u""));
    EXPECT_EQ(stringByTrimmingLeadingAndTrailingCharactersInSet(nil, set), NSString(u""));
  }
}

TEST(Trimming, RemovesStringsAtTheEnds) {
  EXPECT_EQ(removeTrailingString(u"a.txt.txt", u".txt"), NSString(u"a.txt"));
  EXPECT_EQ(removeLeadingString(u"Re: Re: a", u"Re: "), NSString(u"Re: a"));
  EXPECT_EQ(removeTrailingString(u"ab", u"ab"), NSString(u""));
  const NSString text(u"abc");
  for (const NSString& other : {NSString(u"ABC"), NSString(u""), NSString(), NSString(u"abcd")}) {
    EXPECT_TRUE(removeTrailingString(text, other).isIdenticalTo(text));
    EXPECT_TRUE(removeLeadingString(text, other).isIdenticalTo(text));
  }
  EXPECT_FALSE(removeLeadingString(nil, u"a"));
}

struct SplitRow {
  const char* name;
  const char16_t *text, *separator;
  std::vector<const char16_t*> pieces;
};
class Splitting : public testing::TestWithParam<SplitRow> {};
TEST_P(Splitting, Gives) {
  std::vector<id> pieces;
  for (const char16_t* piece : GetParam().pieces) pieces.push_back(NSString(piece));
  EXPECT_EQ(
      componentsSeparatedByCaseInsensitiveString(GetParam().text, GetParam().separator).copy(),
      NSArray(std::move(pieces)));
}
INSTANTIATE_TEST_SUITE_P(NSString, Splitting,
                         testing::Values(SplitRow{"Inside", u"aXbxc", u"x", {u"a", u"b", u"c"}},
                                         SplitRow{"AtTheEnds", u"xax", u"X", {u"", u"a", u""}},
                                         SplitRow{"Adjacent", u"aXXb", u"x", {u"a", u"", u"b"}},
                                         SplitRow{"None", u"abc", u"x", {u"abc"}},
                                         SplitRow{"EmptySeparator", u"abc", u"", {u"abc"}},
                                         SplitRow{"EmptyText", u"", u"x", {u""}},
                                         SplitRow{"NoOverlap", u"xxx", u"xx", {u"", u"x"}},
                                         SplitRow{"SharpS", u"a\u00DFb", u"SS", {u"a", u"b"}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SeparatedWithComponents, TakesTheFirstThatSplits) {
  EXPECT_EQ(stringSeparatedWithComponents(u"To: a", list({u"to:"})), list({u"", u" A"}));
  EXPECT_EQ(stringSeparatedWithComponents(u"To: a", list({u"x", u"to:"}), true),
            list({u"", u" a"}));
  EXPECT_EQ(stringSeparatedWithComponents(u"a;b,c", list({u",", u";"})), list({u"A;B", u"C"}));
  EXPECT_EQ(stringSeparatedWithComponents(u"abc", list({u"x"})), list({u"ABC"}));
  EXPECT_EQ(stringSeparatedWithComponents(u"abc", list({u"x"}), true), list({u"abc"}));
  EXPECT_EQ(stringSeparatedWithComponents(u"a,b", NSArray{NSNumber(1), u""_ns, u","_ns}),
            list({u"A", u"B"}));
}

TEST(SeparatedWithComponents, OddInputs) {
  EXPECT_FALSE(stringSeparatedWithComponents(u"a", nil));
  EXPECT_FALSE(stringSeparatedWithComponents(u"", NSArray::empty()));
  EXPECT_EQ(stringSeparatedWithComponents(u"", list({u","})), list({u""}));
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
