#include <gtest/gtest.h>

#include "StringKelspar/StringKelsparNSStringAdditions.h"

namespace kelspar::StringKelsparNSStringAdditions {
namespace {

NSArray list(std::initializer_list<const char16_t*> texts) {
  std::vector<id> elements;
  for (const char16_t* text : texts) elements.push_back(NSString(text));
  return NSArray(std::move(elements));
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

}  // namespace
}  // namespace kelspar::StringKelsparNSStringAdditions
