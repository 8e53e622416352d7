#include "platform/richtext/rtf_fields.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

struct Instruction {
  const char* name;
  std::u16string_view text, target;
};
class Hyperlink : public testing::TestWithParam<Instruction> {};
TEST_P(Hyperlink, Target) { EXPECT_EQ(targetOfHyperlink(GetParam().text), GetParam().target); }
constexpr Instruction kLinks[] = {
    {"Quoted", u" HYPERLINK \"http://a/ b\" ", u"http://a/ b"},
    {"Bare", u"hyperlink http://a/ \\* MERGEFORMAT", u"http://a/"},
    {"Place", u"HYPERLINK \\l \"x\"", u"#x"},
    {"AddressAndPlace", u"HYPERLINK \"http://a/\" \\l \"x\"", u"http://a/#x"},
    {"FrameAndTip", u"HYPERLINK \\t \"_blank\" \\o \"tip\" \"x:\"", u"x:"},
    {"DoubledBackslashes", u"HYPERLINK \"\\\\\\\\server\\\\share\"", u"\\\\server\\share"},
    {"Unfinished", u"HYPERLINK \"http://a", u"http://a"},
    {"LoneBackslash", u"HYPERLINK \\", u"\\"},
    {"Other", u"PAGE", u""},
    {"Nothing", u"HYPERLINK", u""},
};
INSTANTIATE_TEST_SUITE_P(Fields, Hyperlink, testing::ValuesIn(kLinks),
                         [](const auto& row) { return std::string(row.param.name); });

struct Symbol {
  const char* name;
  std::u16string_view text;
  char16_t unit;
};
class SymbolField : public testing::TestWithParam<Symbol> {};
TEST_P(SymbolField, Character) { EXPECT_EQ(symbolOfField(GetParam().text), GetParam().unit); }
constexpr Symbol kSymbols[] = {
    {"OfSymbol", u" SYMBOL 183 \\f \"Symbol\" \\s 10 ", 0x2022},
    {"OfWingdings", u"SYMBOL 252 \\f Wingdings", 0x2713},
    {"FontFirst", u"symbol \\f \"Symbol\" \\s 12 97", 0x03B1},
    {"Hexadecimal", u"SYMBOL 0xB7 \\f \"Symbol\"", 0x2022},
    {"OfTheANSICharset", u"SYMBOL 150 \\f \"Arial\" \\a", 0x2013},
    {"OfUnicode", u"SYMBOL 8364 \\u", 0x20AC},
    {"OfUnicodeBelow256", u"SYMBOL 150 \\u", 0x0096},
    {"Half", u"SYMBOL 55357 \\u", 0},
    {"TooLarge", u"SYMBOL 65536 \\u", 0},
    {"FarTooLarge", u"SYMBOL 99999999999999999999", 0},
    {"NoNumber", u"SYMBOL \\f \"Symbol\"", 0},
    {"NotANumber", u"SYMBOL 1x", 0},
    {"Other", u"PAGE 183", 0},
    {"Nothing", u"", 0},
};
INSTANTIATE_TEST_SUITE_P(Fields, SymbolField, testing::ValuesIn(kSymbols),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar
