#include <gtest/gtest.h>

#include <cstdio>

#include "StringKelspar/StringKelsparNSStringAdditions.h"

namespace kelspar::StringKelsparNSStringAdditions {
namespace {

// The operation as it is stated, a byte at a time, with the C library's scanning.
NSString decodedPlainly(const NSString& text, NSStringEncoding encoding) {
  const std::string bytes = text.utf8();
  std::string decoded;
  unsigned value = 0;
  for (size_t i = 0; i < text.length();) {
    if (bytes[i] == '%' && i + 2 < text.length()) {
      const char two[] = {bytes[i + 1], bytes[i + 2], 0};
      std::sscanf(two, "%x", &value);
      decoded.push_back(static_cast<char>(value & 0xFF));
      i += 3;
    } else {
      decoded.push_back(bytes[i++]);
    }
  }
  return stringWithBytes(decoded, encoding);
}

struct Row {
  const char* name;
  const char16_t* text;
  NSStringEncoding encoding;
  const char16_t* result;  // null: nil
};
class PercentEscapes : public testing::TestWithParam<Row> {};
TEST_P(PercentEscapes, Decode) {
  const Row& row = GetParam();
  const NSString result = decodedStringFromPercentEscapesUsingEncoding(row.text, row.encoding);
  EXPECT_EQ(result, row.result ? NSString(row.result) : NSString());
  EXPECT_EQ(result, decodedPlainly(row.text, row.encoding));
}
constexpr Row kRows[] = {
    {"EscapeInTheLastTwoStays", u"a%41b%4", NSUTF8StringEncoding, u"aAb%4"},
    {"EscapeThatEndsTheText", u"%41%42", NSUTF8StringEncoding, u"AB"},
    {"OneDigit", u"%4zz", NSUTF8StringEncoding, u"\u0004z"},
    {"BlankBeforeDigit", u"% 4z", NSUTF8StringEncoding, u"\u0004z"},
    {"Sign", u"%-1z", NSISOLatin1StringEncoding, u"\u00FFz"},
    {"FaultyRepeatsTheLast", u"%41%zz%yy.", NSUTF8StringEncoding, u"AAA."},
    {"UTF8", u"%E2%82%AC", NSUTF8StringEncoding, u"\u20AC"},
    {"Latin1", u"%E9", NSISOLatin1StringEncoding, u"\u00E9"},
    {"InvalidIsNil", u"%E9.", NSUTF8StringEncoding, nullptr},
    {"TheBoundCountsUnits", u"\u00E9ab", NSUTF8StringEncoding, u"\u00E9a"},
    {"CutInsideACharacter", u"a\u20AC", NSUTF8StringEncoding, nullptr},
    {"Empty", u"", NSUTF8StringEncoding, u""},
    {"UnknownEncoding", u"a", 7777, nullptr},
};
INSTANTIATE_TEST_SUITE_P(NSString, PercentEscapes, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PercentEscapes, AnyTwoCharactersReadAsTheCLibraryReads) {
  for (char16_t a = 0; a < 0x80; ++a) {
    for (char16_t b = 0; b < 0x80; ++b) {
      const NSString text = std::u16string(u"%41%") + a + b + u"..";
      ASSERT_EQ(decodedStringFromPercentEscapesUsingEncoding(text, NSISOLatin1StringEncoding),
                decodedPlainly(text, NSISOLatin1StringEncoding))
          << int{a} << " " << int{b};
    }
  }
}

TEST(PercentEscapes, FaultyFirstIsZero) {
  EXPECT_EQ(decodedStringFromPercentEscapesUsingEncoding(u"%zza", NSUTF8StringEncoding),
            NSString(std::u16string_view(u"\0a", 2)));
}

TEST(PercentEscapes, NilForNil) {
  EXPECT_FALSE(decodedStringFromPercentEscapesUsingEncoding(nil, NSUTF8StringEncoding));
}

}  // namespace
}  // namespace kelspar::StringKelsparNSStringAdditions
