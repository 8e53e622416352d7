#include "platform/unicode/NSStringEncoding.h"

#include <gtest/gtest.h>

#include "platform/unicode/code_pages.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  NSStringEncoding encoding;
  std::string_view bytes;
  const char16_t* text;  // null: refused
};
class Decoding : public testing::TestWithParam<Row> {};
TEST_P(Decoding, Gives) {
  const Row& row = GetParam();
  EXPECT_EQ(stringWithBytes(row.bytes, row.encoding), row.text ? NSString(row.text) : NSString());
}
constexpr Row kRows[] = {
    {"Ascii", NSASCIIStringEncoding, "a~", u"a~"},
    {"AsciiRefusesHighBytes", NSASCIIStringEncoding, "a\x80", nullptr},
    {"Latin1TakesEveryByte", NSISOLatin1StringEncoding, "\x80\xE9\xFF", u"\u0080\u00E9\u00FF"},
    {"UTF8", NSUTF8StringEncoding, "\xE2\x82\xAC", u"\u20AC"},
    {"UTF8RefusesLatin1", NSUTF8StringEncoding, "\xE9", nullptr},
    {"Windows1252", NSWindowsCP1252StringEncoding, "\x80\x9F\xE9", u"\u20AC\u0178\u00E9"},
    {"Windows1252Hole81", NSWindowsCP1252StringEncoding, "\x81", nullptr},
    {"Windows1252Hole8D", NSWindowsCP1252StringEncoding, "\x8D", nullptr},
    {"Windows1252Hole8F", NSWindowsCP1252StringEncoding, "\x8F", nullptr},
    {"Windows1252Hole90", NSWindowsCP1252StringEncoding, "\x90", nullptr},
    {"Windows1252Hole9D", NSWindowsCP1252StringEncoding, "\x9D", nullptr},
    {"Windows1251", NSWindowsCP1251StringEncoding, "\xCF\xF0", u"\u041F\u0440"},
    {"Empty", NSUTF8StringEncoding, "", u""},
    {"UnknownNumber", 0xABCDEF, "a", nullptr},
};
INSTANTIATE_TEST_SUITE_P(NSStringEncoding, Decoding, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Decoding, MissingDataIsNil) { EXPECT_FALSE(stringWithData(nil, NSUTF8StringEncoding)); }

}  // namespace
}  // namespace kelspar
