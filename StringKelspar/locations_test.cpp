#include <gtest/gtest.h>

#include <random>

#include "StringKelspar/StringKelspar.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  const char16_t *needle, *haystack;
  std::vector<uint64_t> locations;
};
class GetLocations : public testing::TestWithParam<Row> {};
TEST_P(GetLocations, Gives) {
  std::vector<uint64_t> locations;
  for (const id& number :
       StringKelspar::getLocationsOfString(GetParam().needle, GetParam().haystack)) {
    locations.push_back(number.as<NSNumber>().unsignedLongValue());
  }
  EXPECT_EQ(locations, GetParam().locations);
}
INSTANTIATE_TEST_SUITE_P(StringKelspar, GetLocations,
                         testing::Values(Row{"TwoMatches", u"ab", u"abcab", {1, 4}},
                                         Row{"Overlapping", u"aa", u"aaaa", {1, 2, 3}},
                                         Row{"NeedleTooLong", u"abc", u"ab", {}},
                                         Row{"EmptyNeedle", u"", u"ab", {}},
                                         Row{"EmptyHaystack", u"a", u"", {}},
                                         Row{"CaseCounts", u"A", u"aAa", {2}},
                                         Row{"AtTheEnd", u"c", u"abc", {3}}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(GetLocations, EmptyListForNil) {
  EXPECT_EQ(StringKelspar::getLocationsOfString(nil, u"a"), NSArray::empty());
  EXPECT_EQ(StringKelspar::getLocationsOfString(u"a", nil), NSArray::empty());
}

}  // namespace
}  // namespace kelspar
