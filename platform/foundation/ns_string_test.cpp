#include "platform/foundation/NSString.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <random>

#include "platform/foundation/NSException.h"
#include "platform/foundation/NSNumber.h"

namespace kelspar {
namespace {

TEST(NSString, NilIsNotTheEmptyText) {
  const NSString nothing, empty(u"");
  EXPECT_FALSE(nothing);
  EXPECT_TRUE(empty);
  EXPECT_EQ(nothing.length(), 0u);
  EXPECT_FALSE(nothing == empty);
  EXPECT_TRUE(nothing == NSString(nil));
  EXPECT_FALSE(nothing.isEqual(nothing)) << "nil equals nothing";
}

TEST(NSString, CopiesShareTheirContents) {
  const NSString text(u"shared");
  const NSString copy = text;
  EXPECT_TRUE(copy.isIdenticalTo(text));
  EXPECT_FALSE(NSString(u"shared").isIdenticalTo(text));
  EXPECT_EQ(NSString(u"shared"), text);
}

TEST(NSString, LiteralsAreNotCopied) {
  static constexpr std::u16string_view kText = u"literal";
  EXPECT_EQ(NSString::fromStatic(kText).view().data(), kText.data());
}

TEST(NSString, LongBuffersAreTakenOver) {
  std::u16string buffer(1000, u'x');
  const char16_t* units = buffer.data();
  EXPECT_EQ(NSString(std::move(buffer)).view().data(), units);
}

TEST(NSString, IsBuiltWithinRoom) {
  const auto letters = [](size_t room, size_t count) {
    return NSString::buildAtMost(room, [count](char16_t* out) {
      std::fill_n(out, count, u'a');
      return count;
    });
  };
  EXPECT_EQ(letters(8, 8), NSString(u"aaaaaaaa"));
  EXPECT_EQ(letters(8, 5), NSString(u"aaaaa"));
  EXPECT_EQ(letters(100, 2), NSString(u"aa")) << "the room is given back";
  EXPECT_EQ(letters(8, 0), NSString(u""));
  EXPECT_EQ(letters(0, 0), NSString(u""));
}

TEST(NSString, LoneSurrogatesAreKept) {
  const char16_t units[] = {u'a', 0xD800, u'b', 0xDC00};
  const NSString text(std::u16string_view(units, 4));
  EXPECT_EQ(text.length(), 4u);
  EXPECT_EQ(text.characterAtIndex(1), 0xD800);
  EXPECT_EQ(text.utf8(),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(text.strictUTF8(), std::nullopt);
}

TEST(NSString, SubstringsAreCutAndChecked) {
  const NSString text(u"abcdef");
  EXPECT_EQ(text.substring(2, 2), NSString(u"cd"));
  EXPECT_EQ(text.substring(4, 99), NSString(u"ef"));
  EXPECT_EQ(text.substring(6), NSString(u""));
  EXPECT_TRUE(text.substring(0).isIdenticalTo(text));
  EXPECT_THROW((void)text.substring(7), NSRangeException);
  EXPECT_THROW((void)text.characterAtIndex(6), NSRangeException);
}

TEST(NSString, FindsByUnit) {
  EXPECT_EQ(NSString(u"abcab").rangeOfString(u"ab", 1), (NSRange{3, 2}));
  EXPECT_EQ(NSString(u"abcab").rangeOfString(u""), (NSRange{NSNotFound, 0}));
  EXPECT_EQ(NSString().rangeOfString(u"a"), (NSRange{NSNotFound, 0}));
}

TEST(NSString, IsAValueOfItsKind) {
  const id value = NSString(u"text");
  EXPECT_TRUE(value.is<NSString>());
  EXPECT_FALSE(value.is<NSNumber>());
  EXPECT_EQ(value.as<NSString>(), NSString(u"text"));
  EXPECT_FALSE(value.as<NSNumber>());
  EXPECT_TRUE(value.as<id>().isIdenticalTo(value));
}

struct Replacement {
  const char* name;
  std::u16string_view text, target, replacement, result;
  size_t count;
};
class ReplaceOccurrences : public testing::TestWithParam<Replacement> {};
TEST_P(ReplaceOccurrences, Gives) {
  const Replacement& row = GetParam();
  NSMutableString text(row.text);
  EXPECT_EQ(text.replaceOccurrences(row.target, row.replacement), row.count);
  EXPECT_EQ(text.view(), row.result);
}
constexpr Replacement kReplacements[] = {
    {"None", u"abc", u"x", u"y", u"abc", 0},
    {"EmptyTarget", u"abc", u"", u"y", u"abc", 0},
    {"AtBothEnds", u"xabx", u"x", u"--", u"--ab--", 2},
    {"WithoutOverlap", u"aaa", u"aa", u"b", u"ba", 1},
    {"NotInTheReplacement", u"a", u"a", u"aa", u"aa", 1},
    {"Removal", u"a b c", u" ", u"", u"abc", 2},
};
INSTANTIATE_TEST_SUITE_P(NSMutableString, ReplaceOccurrences, testing::ValuesIn(kReplacements),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar
