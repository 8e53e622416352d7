// Quoted-printable and base64 as text: rows, and the one-pass decoder against the stated sequence.
#include <gtest/gtest.h>

#include <random>

#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "WebKelspar/mime_literal.h"

namespace kelspar::WebKelsparNSStringAdditions {
namespace {

struct QuotedRow {
  const char* name;
  const char16_t* text;
  NSStringEncoding encoding;
  const char16_t* decoded;
};
class QuotedPrintable : public testing::TestWithParam<QuotedRow> {};
TEST_P(QuotedPrintable, Gives) {
  const QuotedRow& row = GetParam();
  EXPECT_EQ(quotedPrintableDecodeWithEncoding(row.text, row.encoding), NSString(row.decoded));
}
constexpr NSStringEncoding kUTF8 = NSUTF8StringEncoding, kLatin = NSISOLatin1StringEncoding;
constexpr QuotedRow kQuoted[] = {
    {"Escapes", u"caf=C3=A9", kUTF8, u"café"},
    {"LowerCaseEscapes", u"caf=c3=a9", kUTF8, u"café"},
    {"Latin", u"caf=E9", kLatin, u"café"},
    {"PercentIsText", u"100% =3D", kUTF8, u"100% ="},
    {"PercentEscapesAreText", u"%41", kUTF8, u"%41"},
    {"SoftBreak", u"a=\r\nb", kUTF8, u"ab"},
    {"SoftBreakOfLF", u"a=\nb", kUTF8, u"ab"},
    {"SoftBreakOfCRIsNone", u"a=\rb", kUTF8, u"a\x0B"},
    {"SoftBreakMadeByASoftBreak", u"a==\r\n\nb", kUTF8, u"ab"},
    {"SoftBreakInsideACharacter", u"=C3=\r\n=A9", kUTF8, u"é"},
    {"SoftBreakInsideAnEscape", u"=4=\r\n1", kUTF8, u"A"},
    {"SoftBreakAtTheEnd", u"a=\r\n", kUTF8, u"a"},
    {"NoBreakSpace", u"=C2=A0", kUTF8, u" "},
    {"NoBreakSpaceInLatin", u"=C2=A0", kLatin, u" "},
    {"NoBreakSpaceAcrossLines", u"=C2=\r\n=\n=A0", kUTF8, u" "},
    {"NoBreakSpaceInLowerCase", u"=c2=a0", kUTF8, u"\u00A0"},
    {"NoBreakSpaceInMixedCase", u"=C2=a0", kUTF8, u"\u00A0"},
    {"UnderscoreStays", u"a_b", kUTF8, u"a_b"},
    {"EscapeInTheLastTwoUnits", u"a=4", kUTF8, u"a%4"},
    {"SignAtTheEnd", u"a=", kUTF8, u"a%"},
    {"Nothing", u"", kUTF8, u""},
};
INSTANTIATE_TEST_SUITE_P(WebKelspar, QuotedPrintable, testing::ValuesIn(kQuoted),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(QuotedPrintableText, NilIsNil) {
  EXPECT_FALSE(quotedPrintableDecodeWithEncoding(nil, kUTF8));
  EXPECT_FALSE(forceQuotedPrintableDecode(nil));
  EXPECT_FALSE(createQuotedPrintable(nil));
  EXPECT_FALSE(base64DecodeWithEncoding(nil, kUTF8));
}

TEST(QuotedPrintableText, UndecodableBytesAreReadInAnotherEncoding) {
  const NSString read = quotedPrintableDecodeWithEncoding(u"a=FF", kUTF8);
  EXPECT_EQ(read, forceQuotedPrintableDecode(u"a%FF"));
  EXPECT_TRUE(read.hasPrefix(u"a"));
  EXPECT_EQ(quotedPrintableDecodeWithEncoding(u"a=FF", 0xDEAD), read) << "no such encoding";
}

constexpr std::u16string_view kPieces[] = {u"=C3=A9",
                                           u"=C2=A0",
                                           u"=C2",
                                           u"=A0",
                                           u"=c2=a0",
                                           u"=E2=82=AC",
                                           u"=F0=9F=98=80",
                                           u"=\r\n",
                                           u"=\n",
                                           u"\r\n",
                                           u"\n",
                                           u"=",
                                           u"=4",
                                           u"=41",
                                           u"%",
                                           u"%41",
                                           u"words",
                                           u" ",
                                           u"=3D",
                                           u"=0",
                                           u"=FF",
                                           u"=00",
                                           u"caf\u00E9",
                                           u"=A0",
                                           u"=\r",
                                           u"=C2=\r\n=\n=A0",
                                           u"C2",
                                           u"=25"};

TEST(QuotedPrintableLaw, OnePassEqualsTheSequence) {
  std::mt19937 random(11);
  constexpr NSStringEncoding kEncodings[] = {kUTF8,
                                             kLatin,
                                             NSASCIIStringEncoding,
                                             NSWindowsCP1251StringEncoding,
                                             NSUTF16LittleEndianStringEncoding,
                                             0xDEAD};
  for (int round = 0; round < 40000; ++round) {
    std::u16string text;
    // Few kinds of pieces in one text, so that whole plain texts occur.
    const size_t kinds = 1 + random() % 6, first = random() % std::size(kPieces);
    for (size_t i = random() % 12; i > 0; --i)
      text += kPieces[(first + random() % kinds * 5) % std::size(kPieces)];
    const NSStringEncoding encoding = kEncodings[random() % std::size(kEncodings)];
    ASSERT_EQ(quotedPrintableDecodeWithEncoding(text, encoding),
              literalQuotedPrintable(text, encoding))
        << NSString(text) << " in " << encoding;
  }
}

TEST(QuotedPrintableLaw, LongRunsOfEscapesEqualTheSequence) {
  for (const char16_t* piece : {u"=E2=82=AC", u"=C3=A9=\n", u"=F0=9F=98=80", u"=80", u"=E2"}) {
    for (const size_t count : {1365u, 1366u, 2047u, 2048u, 4095u, 4096u, 4097u, 4101u, 9000u}) {
      std::u16string text;
      for (size_t i = 0; i < count; ++i) text += piece;
      ASSERT_EQ(quotedPrintableDecodeWithEncoding(text, kUTF8), literalQuotedPrintable(text, kUTF8))
          << NSString(piece) << " " << count << " times";
    }
  }
}

TEST(CreatedQuotedPrintable, Gives) {
  EXPECT_EQ(createQuotedPrintable(u"a=b\tc"), u"a=b=09c");
  EXPECT_EQ(createQuotedPrintable(u" x \n"), u"x");
  EXPECT_EQ(createQuotedPrintable(u"é"), u"=C3=A9");
  EXPECT_EQ(createQuotedPrintable(u"a\r\nb"), u"a=0D\nb");
  EXPECT_EQ(createQuotedPrintable(NSString(std::u16string_view(u"a\0b", 3))), u"a");
  EXPECT_EQ(createQuotedPrintable(u" \n "), u"");
  EXPECT_EQ(createQuotedPrintable(u""), u"");
}

TEST(CreatedQuotedPrintable, EqualsTheStatedSteps) {
  std::mt19937 random(12);
  constexpr std::u16string_view kUnits = u" \n\t\r=az~\x7F\u00E9\u20AC\U0001F600\x01%";
  for (int round = 0; round < 20000; ++round) {
    std::u16string text;
    for (size_t i = random() % 12; i > 0; --i) text += kUnits[random() % kUnits.size()];
    ASSERT_EQ(createQuotedPrintable(text), literallyCreatedQuotedPrintable(text)) << NSString(text);
  }
}

struct Base64Row {
  const char* name;
  const char16_t* text;
  NSStringEncoding encoding;
  const char16_t* decoded;  // null: nil
};
class Base64Text : public testing::TestWithParam<Base64Row> {};
TEST_P(Base64Text, Gives) {
  const Base64Row& row = GetParam();
  EXPECT_EQ(base64DecodeWithEncoding(row.text, row.encoding),
            row.decoded ? NSString(row.decoded) : NSString());
}
constexpr Base64Row kBase64[] = {
    {"Strays", u"SG\r\nVs*bG8", kUTF8, u"Hello"},
    {"PaddingEndsTheText", u"SGVsbG8=SGVs", kUTF8, u"Hello"},
    {"WholeGroups", u"SGVsbG9X", kUTF8, u"HelloW"},
    {"PaddingLeftOut", u"SGVsbG8", kUTF8, u"Hello"},
    {"LoneLastCharacter", u"SGVsbG9XS", kUTF8, u"HelloW"},
    {"NotOfTheEncoding", u"/w==", kUTF8, nullptr},
    {"OfAnotherEncoding", u"/w==", kLatin, u"\u00FF"},
    {"NoSuchEncoding", u"SGVs", 0xDEAD, nullptr},
    {"Nothing", u"", kUTF8, u""},
    {"OnlyStrays", u" \r\n\u00E9", kUTF8, u""},
};
INSTANTIATE_TEST_SUITE_P(WebKelspar, Base64Text, testing::ValuesIn(kBase64),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar::WebKelsparNSStringAdditions
