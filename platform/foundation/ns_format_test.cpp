#include "platform/foundation/NSFormat.h"

#include <gtest/gtest.h>

#include "platform/foundation/foundation.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  NSString actual;
  std::u16string_view expected;
};
class Format : public testing::TestWithParam<Row> {};
TEST_P(Format, Prints) { EXPECT_EQ(GetParam().actual.view(), GetParam().expected); }

template <class... A>
NSString format(const char16_t* text, const A&... arguments) {
  return NSString::stringWithFormat(text, arguments...);
}

const Row kRows[] = {
    {"Plain", format(u"no directive"), u"no directive"},
    {"Percent", format(u"100%%"), u"100%"},
    {"Object", format(u"%@ and %@", NSString(u"a"), 3), u"a and 3"},
    {"Nil", format(u"<%@>", id()), u"<(null)>"},
    {"SignedIsCutTo32Bits", format(u"%d", UINT64_C(0x1FFFFFFFF)), u"-1"},
    {"Long", format(u"%ld", INT64_MIN), u"-9223372036854775808"},
    {"UnsignedLong", format(u"%lu", UINT64_MAX), u"18446744073709551615"},
    {"SizeType", format(u"%zu", UINT64_C(5000000000)), u"5000000000"},
    {"Byte", format(u"%hhx", 0x1FF), u"ff"},
    {"PaddedHex", format(u"%08X-%04x", 0xBEEF, 0xA), u"0000BEEF-000a"},
    {"ZeroPadded", format(u"%02d:%02d", 5, -1), u"05:-1"},
    {"Float", format(u"%4.2f", 1.5), u"1.50"},
    {"StarWidth", format(u"%*d|%-*d|", 4, 7, 4, 7), u"   7|7   |"},
    {"Position", format(u"%2$@ %1$@", u"b", u"a"), u"a b"},
    {"Character", format(u"%c%C", 0x141, 0x141), u"A\u0141"},
    {"Text", format(u"%s %.2s", "caf\xC3\xA9", "abc"), u"caf\u00E9 ab"},
    {"MissingArgument", format(u"<%@>"), u"<>"},
    {"UnknownDirective", format(u"%y", 1), u"%y"},
    {"LonePercent", format(u"50%"), u"50%"},
    {"HugeWidthIsBounded", format(u"%.3s%d", "abcdef", 1), u"abc1"},
};
INSTANTIATE_TEST_SUITE_P(NSString, Format, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Format, WidthsCannotClaimMemory) {
  EXPECT_LE(format(u"%999999999d", 1).length(), 5000u);
  EXPECT_LE(format(u"%.999999999f", 1.0).length(), 5000u);
  EXPECT_LE(format(u"%*d", INT64_MAX, 1).length(), 5000u);
}

}  // namespace
}  // namespace kelspar
