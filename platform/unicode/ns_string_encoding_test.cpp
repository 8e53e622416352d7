#include "platform/unicode/NSStringEncoding.h"

#include <gtest/gtest.h>

#include <random>

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
    {"Johab", 0x80000510, "\x88\x61 a\\", u"\uAC00 a\\"},
    {"JohabRefusesWhatIsCutShort", 0x80000510, "a\x88", nullptr},
    {"ShiftJISX0213", 0x80000628, "\x82\xA0\x98\x73", u"\u3042\U00020B9F"},
    {"ShiftJISX0213Combines", 0x80000628, "\x82\xF5", u"\u304B\u309A"},
    {"Windows1251", NSWindowsCP1251StringEncoding, "\xCF\xF0", u"\u041F\u0440"},
    {"Windows1253Hole", NSWindowsCP1253StringEncoding, "\xD2", nullptr},
    {"NextStep", NSNEXTSTEPStringEncoding, "\x80\xE1\xFD", u"\u00A0\u00C6\u00FF"},
    {"NextStepHole", NSNEXTSTEPStringEncoding, "\xFE", nullptr},
    {"Symbol", NSSymbolStringEncoding, "a\xA5", u"\u03B1\u221E"},
    {"Latin2", NSISOLatin2StringEncoding, "\xB9", u"\u0161"},
    {"Latin10", 0x80000210, "\xAA", u"\u0218"},
    {"DosKeepsControls", 0x80000400, "\x1A\x1C\x7F\x80", u"\u001A\u001C\u007F\u00C7"},
    {"MacRoman", NSMacOSRomanStringEncoding, "\x8E\xDB", u"\u00E9\u20AC"},
    {"ShiftJIS", NSShiftJISStringEncoding,
     "\x82\xA0\xB1"
     "a",
     u"\u3042\uFF71a"},
    {"ShiftJISCutShort", NSShiftJISStringEncoding, "a\x82", nullptr},
    {"ShiftJISBackslash", 0x80000A01, "\\~", u"\\~"},
    {"EUCJP", NSJapaneseEUCStringEncoding, "\xA4\xA2", u"\u3042"},
    {"ISO2022JP", NSISO2022JPStringEncoding, "\x1B$B$\"\x1B(B", u"\u3042"},
    {"GB2312HoldsGBK", 0x80000930, "\xC4\xE3\x81\x40", u"\u4F60\u4E02"},
    {"EUCKRHoldsUHC", 0x80000940, "\xB0\xA1\x81\x41", u"\uAC00\uAC02"},
    {"Big5", 0x80000A03, "\xA7\x41", u"\u4F60"},
    {"GB18030FourBytes", 0x80000632, "\x94\x39\xDA\x33", u"\U0001F4A9"},
    {"UTF16BigMark", NSUnicodeStringEncoding, "\xFE\xFF\x20\xAC", u"\u20AC"},
    {"UTF16LittleMark", NSUnicodeStringEncoding, "\xFF\xFE\xAC\x20", u"\u20AC"},
    {"UTF16NoMark", NSUnicodeStringEncoding, "\x20\xAC", u"\u20AC"},
    {"UTF16LE", NSUTF16LittleEndianStringEncoding, "\xAC\x20", u"\u20AC"},
    {"UTF16CutShort", NSUTF16LittleEndianStringEncoding, "\xAC\x20\x20", nullptr},
    {"UTF16LoneSurrogate", NSUTF16LittleEndianStringEncoding,
     "a\xD8"
     "aa",
     nullptr},
    {"UTF32BE", NSUTF32BigEndianStringEncoding, {"\0\1\xF4\xA9", 4}, u"\U0001F4A9"},
    {"UTF32LE", NSUTF32LittleEndianStringEncoding, {"\xA9\xF4\1\0", 4}, u"\U0001F4A9"},
    {"UTF32Mark", NSUTF32StringEncoding, {"\xFF\xFE\0\0a\0\0\0", 8}, u"a"},
    {"UTF32TooLarge", NSUTF32BigEndianStringEncoding, {"\0\x11\0\0", 4}, nullptr},
    {"Empty", NSUTF8StringEncoding, "", u""},
    {"UnknownNumber", 0xABCDEF, "a", nullptr},
};
INSTANTIATE_TEST_SUITE_P(NSStringEncoding, Decoding, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Decoding, MissingDataIsNil) { EXPECT_FALSE(stringWithData(nil, NSUTF8StringEncoding)); }

TEST(Encoding, UndoesDecoding) {
  for (const Row& row : kRows) {
    if (!row.text || std::string_view(row.name).find("Mark") != std::string_view::npos) continue;
    EXPECT_EQ(dataUsingEncoding(row.text, row.encoding), NSData(row.bytes)) << row.name;
  }
}

TEST(Encoding, WritesMarksWhereTheOrderIsOpen) {
  const NSData wide = dataUsingEncoding(u"a", NSUnicodeStringEncoding);
  EXPECT_EQ(wide.length(), 4u);
  EXPECT_EQ(stringWithData(wide, NSUnicodeStringEncoding), NSString(u"a"));
  const NSData widest = dataUsingEncoding(u"\U0001F4A9", NSUTF32StringEncoding);
  EXPECT_EQ(widest.length(), 8u);
  EXPECT_EQ(stringWithData(widest, NSUTF32StringEncoding), NSString(u"\U0001F4A9"));
}

// Text of every width, some of it with a lone surrogate, at lengths around the blocks of the
// decoders.
TEST(Encoding, WideFormsComeBackOrAreRefused) {
  std::mt19937 random(16);
  for (int round = 0; round < 4000; ++round) {
    std::u16string units;
    for (size_t i = random() % 40; i > 0; --i) {
      units +=
          static_cast<char16_t>(random() % 3 == 0 ? 0xE000 + random() % 0x1FFF : random() % 0xD800);
      if (random() % 10 == 0) units += u"\U0001F600";
    }
    std::string little, big;
    for (const char16_t unit : units) {
      const char low = static_cast<char>(unit), high = static_cast<char>(unit >> 8);
      little += {low, high};
      big += {high, low};
    }
    ASSERT_EQ(stringWithBytes(little, NSUTF16LittleEndianStringEncoding), NSString(units));
    ASSERT_EQ(stringWithBytes(big, NSUTF16BigEndianStringEncoding), NSString(units));
    for (const auto wide : {NSUTF32LittleEndianStringEncoding, NSUTF32BigEndianStringEncoding}) {
      ASSERT_EQ(stringWithData(dataUsingEncoding(NSString(units), wide), wide), NSString(units));
    }
    const size_t at = random() % (units.size() + 1) * 2;
    const auto lone = static_cast<char>(0xD8 + random() % 8);
    ASSERT_FALSE(stringWithBytes(little.insert(at, {'x', lone, 'y', '\0'}),
                                 NSUTF16LittleEndianStringEncoding));
    ASSERT_FALSE(
        stringWithBytes(big.insert(at, {lone, 'x', '\0', 'y'}), NSUTF16BigEndianStringEncoding));
  }
}

struct RefusedRow {
  const char* name;
  NSStringEncoding encoding;
  const char16_t* text;
};
class Refused : public testing::TestWithParam<RefusedRow> {};
TEST_P(Refused, IsNil) { EXPECT_FALSE(dataUsingEncoding(GetParam().text, GetParam().encoding)); }
constexpr RefusedRow kRefused[] = {
    {"Ascii", NSASCIIStringEncoding, u"\u00E9"},
    {"Latin1", NSISOLatin1StringEncoding, u"\u20AC"},
    {"Windows1252", NSWindowsCP1252StringEncoding, u"\u0081"},
    {"ShiftJIS", NSShiftJISStringEncoding, u"\uAC00"},
    {"ISO2022JP", NSISO2022JPStringEncoding, u"\u0E01"},
    {"LoneSurrogateInUTF8", NSUTF8StringEncoding, u"\xD800"},
    {"UnknownNumber", 7777, u"a"},
};
INSTANTIATE_TEST_SUITE_P(NSStringEncoding, Refused, testing::ValuesIn(kRefused),
                         [](const auto& row) { return std::string(row.param.name); });

// Undefined bytes are of private use in ICU's tables. Macintosh sets have a sign of their own
// there, and symbols that Unicode lacks.
TEST(Decoding, NoByteIsOfPrivateUse) {
  for (const NSStringEncoding encoding : availableStringEncodings()) {
    const std::u16string_view name = localizedNameOfStringEncoding(encoding).view();
    if (name.ends_with(u"(Mac OS)") || name.ends_with(u"Roman)")) continue;
    for (unsigned byte = 0; byte < 256; ++byte) {
      const char c = static_cast<char>(byte);
      const NSString text = stringWithBytes({&c, 1}, encoding);
      const bool isPrivate =
          text.length() == 1 && text.view()[0] >= 0xE000 && text.view()[0] < 0xF900;
      EXPECT_FALSE(isPrivate) << localizedNameOfStringEncoding(encoding) << " " << byte;
    }
  }
}

// Each page as a whole, ICU's mapping as the reference, but for what is refused on purpose.
TEST(Encoding, EveryAvailableOneRoundTrips) {
  for (const NSStringEncoding encoding : availableStringEncodings()) {
    const NSString text(u"Plain text, 123.");
    if (encoding == NSSymbolStringEncoding) continue;  // has no Latin letters
    const NSData bytes = dataUsingEncoding(text, encoding);
    ASSERT_TRUE(bytes) << localizedNameOfStringEncoding(encoding);
    EXPECT_EQ(stringWithData(bytes, encoding), text) << localizedNameOfStringEncoding(encoding);
  }
}

TEST(Encoding, NamesAreThere) {
  EXPECT_EQ(localizedNameOfStringEncoding(NSUTF8StringEncoding), NSString(u"Unicode (UTF-8)"));
  EXPECT_FALSE(localizedNameOfStringEncoding(7777));
  EXPECT_GE(availableStringEncodings().size(), 70u);
}

}  // namespace
}  // namespace kelspar
