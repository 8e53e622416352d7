#include <gtest/gtest.h>

#include <random>

#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "tests/colours_literal.h"

namespace kelspar {
namespace {

namespace Text = RTFKelsparNSStringAdditions;
using Parser = bool (*)(const NSString&, int32_t*, int32_t*, int32_t*);

constexpr int32_t kUntouched = -7;

// The three numbers, or nothing; fails when a parser that gave up wrote something.
std::optional<literal::RGB> parsed(Parser parser, const NSString& text) {
  literal::RGB rgb{kUntouched, kUntouched, kUntouched};
  if (parser(text, &rgb[0], &rgb[1], &rgb[2])) return rgb;
  for (const int32_t part : rgb) EXPECT_EQ(part, kUntouched) << text;
  return std::nullopt;
}

struct Row {
  const char* name;
  Parser parser;
  std::u16string_view text;
  std::optional<literal::RGB> colour;
};
std::string nameOf(const testing::TestParamInfo<Row>& row) { return row.param.name; }

class ParseColour : public testing::TestWithParam<Row> {};
TEST_P(ParseColour, Gives) {
  EXPECT_EQ(parsed(GetParam().parser, GetParam().text), GetParam().colour);
}

using RGB = literal::RGB;
constexpr auto kHex = &Text::parseHexColorWithRed;
const Row kHexRows[] = {
    {"ThreeDigits", kHex, u"#F0A", RGB{255, 0, 170}},
    {"ZeroX", kHex, u"0xf0a", RGB{255, 0, 170}},
    {"UpperZeroX", kHex, u"0XF0A", RGB{255, 0, 170}},
    {"BareInBlanks", kHex, u" \tf0a\n", RGB{255, 0, 170}},
    {"SixDigits", kHex, u"#0102fE", RGB{1, 2, 254}},
    {"SevenDigits", kHex, u"#0102030", std::nullopt},
    {"TwoDigits", kHex, u"#01", std::nullopt},
    {"TwoSigns", kHex, u"##123", std::nullopt},
    {"NoDigit", kHex, u"#12345g", std::nullopt},
    {"WideDigits", kHex, u"１２３", std::nullopt},
    {"ScannedAsANumberWithItsPrefix", kHex, u"#0xABCD", RGB{0, 171, 205}},
    {"ScannedBehindBlanks", kHex, u"# AB", RGB{0, 170, 187}},
    {"PrefixAlone", kHex, u"#    0x", std::nullopt},
    {"DoubledPrefixIsNone", kHex, u"#0xF", std::nullopt},
    {"Empty", kHex, u"", std::nullopt},
    {"Blank", kHex, u"   ", std::nullopt},
};
INSTANTIATE_TEST_SUITE_P(Hex, ParseColour, testing::ValuesIn(kHexRows), nameOf);

constexpr auto kRGB = &Text::parseRGBColorWithRed;
const Row kRGBRows[] = {
    {"BlanksAndCapitals", kRGB, u"RGB( 10 , 20 , 30 )", RGB{10, 20, 30}},
    {"Tight", kRGB, u"rgb(0,255,7)", RGB{0, 255, 7}},
    {"BlanksBeforeTheBracket", kRGB, u"rgb \n(1,2,3)", RGB{1, 2, 3}},
    {"AnywhereInTheText", kRGB, u"x rgb(1,2) rgbrgb(1,2,3)!", RGB{1, 2, 3}},
    {"TooLarge", kRGB, u"rgb(1,2,256)", std::nullopt},
    {"FirstMatchCounts", kRGB, u"rgb(1,2,256) rgb(1,2,3)", std::nullopt},
    {"FarTooLarge", kRGB, u"rgb(1,2,99999999999999999999999)", std::nullopt},
    {"LeadingZeros", kRGB, u"rgb(000000000000000000000001,2,3)", RGB{1, 2, 3}},
    {"TwoComponents", kRGB, u"rgb(1,2)", std::nullopt},
    {"Percent", kRGB, u"rgb(10%,20%,30%)", std::nullopt},
    {"Alpha", kRGB, u"rgba(1,2,3,0.5)", std::nullopt},
    {"Negative", kRGB, u"rgb(-1,2,3)", std::nullopt},
    {"OtherDigitsAreZero", kRGB, u"rgb(٣,1٣,𝟗)", RGB{0, 1, 0}},
    {"WideLetters", kRGB, u"ｒｇｂ(1,2,3)", std::nullopt},
    {"Empty", kRGB, u"", std::nullopt},
};
INSTANTIATE_TEST_SUITE_P(RGB, ParseColour, testing::ValuesIn(kRGBRows), nameOf);

constexpr auto kNamed = &Text::parseNamedColorWithRed;
const Row kNamedRows[] = {
    {"WindowText", kNamed, u"WindowText", RGB{0, 0, 0}},
    {"GreyInBlanks", kNamed, u" Grey\u00A0", RGB{128, 128, 128}},
    {"Orange", kNamed, u"ORANGE", RGB{255, 165, 0}},
    {"KelvinSign", kNamed, u"blac\u212A", RGB{0, 0, 0}},
    {"PartOfAName", kNamed, u"blu", std::nullopt},
    {"MoreThanAName", kNamed, u"blues", std::nullopt},
    {"LongerThanAnyName", kNamed, u"windowtext1", std::nullopt},
    {"Unknown", kNamed, u"brown", std::nullopt},
    {"Empty", kNamed, u"", std::nullopt},
};
INSTANTIATE_TEST_SUITE_P(Named, ParseColour, testing::ValuesIn(kNamedRows), nameOf);

TEST(ParseColour, NeedsAllThreePointers) {
  for (const Parser parser : {kHex, kRGB, kNamed}) {
    const NSString text = parser == kHex   ? u"#fff"_ns
                          : parser == kRGB ? u"rgb(1,2,3)"_ns
                                           : u"red"_ns;
    int32_t a = kUntouched, b = kUntouched;
    EXPECT_FALSE(parser(text, nullptr, &a, &b));
    EXPECT_FALSE(parser(text, &a, nullptr, &b));
    EXPECT_FALSE(parser(text, &a, &b, nullptr));
    EXPECT_EQ(a, kUntouched);
    EXPECT_EQ(parsed(parser, nil), std::nullopt);
  }
}

struct TextRow {
  const char* name;
  std::u16string_view in, out;
};
class ConvertToRTFColour : public testing::TestWithParam<TextRow> {};
TEST_P(ConvertToRTFColour, Gives) {
  EXPECT_EQ(Text::convertToRTFColour(GetParam().in).view(), GetParam().out);
}
constexpr TextRow kRTFRows[] = {
    {"Name", u"red", u"\\red255\\green0\\blue0"},
    {"Hex", u"#00f", u"\\red0\\green0\\blue255"},
    {"Function", u"rgb(1,2,3)", u"\\red1\\green2\\blue3"},
    {"UnknownWord", u"brown", u"\\red0\\green0\\blue0"},
    {"CutFunction", u"rgb(1,", u"\\red0\\green0\\blue0"},
    {"Empty", u"", u"\\red0\\green0\\blue0"},
    {"Blank", u" \r\n", u"\\red0\\green0\\blue0"},
    {"NameThatIsHexadecimal", u"fade00", u"\\red250\\green222\\blue0"},
};
INSTANTIATE_TEST_SUITE_P(Colours, ConvertToRTFColour, testing::ValuesIn(kRTFRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ConvertToRTFColour, NilIsBlack) {
  EXPECT_EQ(Text::convertToRTFColour(nil), u"\\red0\\green0\\blue0"_ns);
}

TEST(EscapeRegexSpecialCharacters, PutsABackslashBeforeEach) {
  EXPECT_EQ(Text::escapeRegexSpecialCharacters(nil, u"a.b(c)"), u"a\\.b\\(c\\)"_ns);
  EXPECT_EQ(Text::escapeRegexSpecialCharacters(u"unused", u".*+?^${}()|[]\\"),
            u"\\.\\*\\+\\?\\^\\$\\{\\}\\(\\)\\|\\[\\]\\\\"_ns);
}

TEST(EscapeRegexSpecialCharacters, GivesItsArgumentBackWhereNothingIsSpecial) {
  for (const NSString& text : {u"a-b/c#"_ns, u""_ns, NSString()}) {
    EXPECT_TRUE(Text::escapeRegexSpecialCharacters(u"x", text).isIdenticalTo(text));
  }
}

void expectSameAsLiteral(const std::u16string& text) {
  EXPECT_EQ(parsed(kHex, text), literal::hexColour(text)) << NSString(text);
  EXPECT_EQ(parsed(kRGB, text), literal::rgbColour(text)) << NSString(text);
  EXPECT_EQ(parsed(kNamed, text), literal::namedColour(text)) << NSString(text);
  EXPECT_EQ(Text::convertToRTFColour(text), literal::rtfColour(text)) << NSString(text);
}

// Each unit of the BMP, and each digit beyond, at the places where a parser looks at it.
TEST(Colours, EveryUnitIsTakenAsTheExpressionsTakeIt) {
  for (uint32_t unit = 1; unit < 0x20000; ++unit) {
    const std::u16string one = unit < 0x10000
                                   ? std::u16string(1, static_cast<char16_t>(unit))
                                   : std::u16string{static_cast<char16_t>(0xD7C0 + (unit >> 10)),
                                                    static_cast<char16_t>(0xDC00 + (unit & 0x3FF))};
    const NSString function(u"rgb(" + one + u",2" + one + u"," + one + u"3)");
    ASSERT_EQ(parsed(kRGB, function), literal::rgbColour(std::u16string(function.view()))) << unit;
    const NSString name(one + u"blac" + one);
    ASSERT_EQ(parsed(kNamed, name), literal::namedColour(std::u16string(name.view()))) << unit;
    const NSString hex(u"#" + one + u"12");
    ASSERT_EQ(parsed(kHex, hex), literal::hexColour(std::u16string(hex.view()))) << unit;
  }
}

TEST(Colours, SameAsTheStepsOnRandomTexts) {
  const uint32_t seed = 20240607;
  std::mt19937 random(seed);
  const std::vector<std::u16string> pieces = {
      u"#", u"0x", u"0X", u"f", u"A",  u"0",  u"12", u"9", u"g",   u" ",      u"\t",    u"rgb",
      u"R", u"Gb", u"(",  u")", u",",  u"25", u"6",  u"٣", u"\n",  u"bl",     u"ack",   u"blue",
      u"k", u"K",  u"wi", u"-", u"re", u"d",  u"%",  u"é", u"255", u"rgb(1,", u"\xD83D"};
  for (int round = 0; round < 30000; ++round) {
    std::u16string text;
    for (auto left = random() % 10; left > 0; --left) text += pieces[random() % pieces.size()];
    expectSameAsLiteral(text);
    ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", round " << round;
  }
}

TEST(Colours, LongTextsAreLinear) {
  for (const std::u16string_view piece : {u"rgb(", u"rgb(1,", u"1", u" ", u"#", u"rgb(1 "}) {
    std::u16string text;
    while (text.size() < 1'000'000) text += piece;
    EXPECT_EQ(Text::convertToRTFColour(u"rgb(" + text), u"\\red0\\green0\\blue0"_ns);
  }
}

}  // namespace
}  // namespace kelspar
