#include <gtest/gtest.h>

#include <random>

#include "StringKelspar/StringKelsparNSMutableStringAdditions.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "platform/unicode/NSRegularExpression.h"

namespace kelspar::StringKelsparNSStringAdditions {
namespace {

using Operation = NSString (*)(const NSString&);

struct Row {
  const char* name;
  Operation operation;
  std::u16string_view in, out;
};
class Cleaning : public testing::TestWithParam<Row> {};
TEST_P(Cleaning, Gives) {
  const NSString text(GetParam().in);
  const NSString result = GetParam().operation(text);
  EXPECT_EQ(result, NSString(GetParam().out));
  if (GetParam().in == GetParam().out) {
    EXPECT_TRUE(result.isIdenticalTo(text));
  }
}
using namespace std::string_view_literals;
constexpr Row kRows[] = {
    {"TrailingNulls", &trimTrailingNulls, u"a\0b\0\0"sv, u"a\0b"sv},
    {"NullsOnly", &trimTrailingNulls, u"\0\0"sv, u""},
    {"NoNulls", &trimTrailingNulls, u"ab", u"ab"},
    {"Condense", &condenseWhitespace, u"  a \t b\u00A0c  ", u"a b c"},
    {"CondenseKeepsLineEnds", &condenseWhitespace, u"a  \n  b", u"a \n b"},
    {"CondenseBlanksOnly", &condenseWhitespace, u" \t ", u""},
    {"CondenseClean", &condenseWhitespace, u"a b c", u"a b c"},
    {"CondenseLoneTab", &condenseWhitespace, u"a\tb", u"a b"},
    {"CondenseLongClean", &condenseWhitespace, u"a sentence of several short words",
     u"a sentence of several short words"},
    {"CleanString", &cleanString, u"a\0\b\t\n\v\f\r\u000E\u001F z"sv, u"a\t\n\f\r z"},
    {"CleanStringClean", &cleanString, u"clean\ttext\n", u"clean\ttext\n"},
    {"TrimChars", &trimCharsInString, u"a\0\u0001\u00A0b\u00E9"sv, u"ab\u00E9"},
    {"TrimCharsTakesTheLowByte", &trimCharsInString, u"\u0141\u0100", u"A\0"sv},
    {"NewlineRuns", &replaceDoubleNewline, u"a\n\n\nb\n", u"a\nb\n"},
    {"CarriageReturnsGoAfterwards", &replaceDoubleNewline, u"a\n\r\nb", u"a\n\nb"},
    {"NoNewlineRuns", &replaceDoubleNewline, u"a\nb", u"a\nb"},
    {"GarbageAfterLatin", &truncateAtGarbageCharacters, u"abcdef\u4E00\u4E01\u4E02more", u"abcdef"},
    {"StartsInCJK", &truncateAtGarbageCharacters, u"\u4E00\u4E01\u4E02 text",
     u"\u4E00\u4E01\u4E02 text"},
    {"CutCountsLowUnits", &truncateAtGarbageCharacters, u"abcd\u4E00ef\u4E01\u4E02gh",
     u"abcd\u4E00e"},
    {"TwoHighUnitsStay", &truncateAtGarbageCharacters, u"abcd\u4E00\u4E01", u"abcd\u4E00\u4E01"},
    {"NullEndsTheCount", &truncateAtGarbageCharacters, u"ab\0cd"sv, u"ab"},
    {"NullBeforeAnyGoodUnit", &truncateAtGarbageCharacters, u"\0ab"sv, u"\0ab"sv},
    {"Zap", &zapGremlins, u" a%20b\u0378 ", u"a b"},
    {"ZapKeepsInvalidEscapes", &zapGremlins, u"100% a%20b", u"100% a%20b"},
    {"ZapKeepsEscapesThatAreNoUTF8", &zapGremlins, u"%E9", u"%E9"},
    {"Escape", &escapeFromLines, u"From a\n>From b\nxFrom c", u">From a\n>>From b\nxFrom c"},
    {"EscapeAfterLoneCR", &escapeFromLines, u"a\rFrom x", u"a\r>From x"},
    {"EscapeAfterCRLF", &escapeFromLines, u"a\r\nFrom x", u"a\r\n>From x"},
    {"NoBlankNoEscape", &escapeFromLines, u"From\nFromage", u"From\nFromage"},
    {"CaseCounts", &escapeFromLines, u"from a", u"from a"},
    {"Unescape", &unescapeFromLines, u">From a\n>>From b\n> From", u"From a\n>From b\n> From"},
    {"UnescapeLeavesPlainFrom", &unescapeFromLines, u"From a", u"From a"},
    {"Empty", &escapeFromLines, u"", u""},
};
INSTANTIATE_TEST_SUITE_P(NSString, Cleaning, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

// The operations as they are stated, step by step.

NSString escapePlainly(const NSString& receiver, bool escape) {
  const auto text = receiver.view();
  std::u16string out;
  bool atStart = true;
  for (size_t i = 0; i < text.size();) {
    if (atStart) {
      size_t p = i;
      while (p < text.size() && text[p] == u'>') ++p;
      const bool isFrom = text.size() - p >= 5 && text.substr(p, 5) == u"From ";
      if (escape && isFrom) out.push_back(u'>');
      if (!escape && isFrom && p > i) ++i;
    }
    out.push_back(text[i]);
    if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
      out.push_back(u'\n');
      atStart = true;
      i += 2;
    } else {
      atStart = text[i] == u'\n' || text[i] == u'\r';
      ++i;
    }
  }
  return NSString(out);
}

NSString condensePlainly(const NSString& receiver) {
  const auto blanks = NSCharacterSet::whitespace();
  std::u16string out, piece;
  const auto flush = [&] {
    if (!piece.empty()) out += (out.empty() ? u"" : u" ") + piece;
    piece.clear();
  };
  for (const char16_t unit : receiver.view()) {
    if (blanks.contains(unit)) {
      flush();
    } else {
      piece.push_back(unit);
    }
  }
  flush();
  return NSString(out);
}

NSString cleanPlainly(const NSString& receiver) {
  std::u16string out;
  for (const char16_t c : receiver.view()) {
    if (c <= 8 || c == 0xB || (c >= 0xE && c <= 0x1F)) continue;
    out.push_back(c);
  }
  return NSString(out);
}

NSString replaceNewlinesPlainly(const NSString& receiver) {
  static const auto runs = NSRegularExpression::withPattern(u"\n+");
  const NSString collapsed = runs.stringByReplacingMatches(receiver, u"\n");
  std::u16string out;
  for (const char16_t c : collapsed.view()) {
    if (c != u'\r') out.push_back(c);
  }
  return NSString(out);
}

NSString truncatePlainly(const NSString& receiver) {
  const auto text = receiver.view();
  size_t high = 0, good = 0, i = 0;
  for (; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (good < 4 && c >= 0x3001) return receiver;
    if (c == 0 && good != 0) break;
    if (c < 0x3001 && high < 3) ++good;
    if (c >= 0x3001) ++high;
  }
  if (i == text.size() && high < 3) return receiver;
  return good < text.size() ? receiver.substring(0, good) : receiver;
}

TEST(Cleaning, IsTheStatedAlgorithm) {
  constexpr std::u16string_view kPieces[] = {
      u"From ", u">",      u"\n", u"\r", u"\r\n",   u" ",      u"  ",     u"\t",     u"word",
      u"\0"sv,  u"\u00A0", u"\v", u"x",  u"\u3000", u"\u4E00", u"\u00E9", u"\u001B", u"a few words",
  };
  std::mt19937 random(5);
  for (int round = 0; round < 30000; ++round) {
    std::u16string units;
    for (size_t left = random() % 12; left > 0; --left) {
      units += kPieces[random() % std::size(kPieces)];
    }
    const NSString text(units);
    ASSERT_EQ(escapeFromLines(text), escapePlainly(text, true)) << text;
    ASSERT_EQ(unescapeFromLines(text), escapePlainly(text, false)) << text;
    ASSERT_EQ(unescapeFromLines(escapeFromLines(text)), text);
    ASSERT_EQ(condenseWhitespace(text), condensePlainly(text)) << text;
    ASSERT_EQ(cleanString(text), cleanPlainly(text)) << text;
    ASSERT_EQ(replaceDoubleNewline(text), replaceNewlinesPlainly(text)) << text;
    ASSERT_EQ(truncateAtGarbageCharacters(text), truncatePlainly(text)) << text;
  }
}

TEST(Cleaning, WhitespaceIsTheNamedSet) {
  const auto blanks = NSCharacterSet::whitespace();
  for (uint32_t c = 0; c < 65536; ++c) {
    const auto unit = static_cast<char16_t>(c);
    const NSString text(std::u16string{u'a', unit, unit, u'b'});
    ASSERT_EQ(condenseWhitespace(text).length() == 3, blanks.contains(unit)) << c;
  }
}

TEST(Cleaning, MissingReceivers) {
  for (const Operation operation :
       {&trimTrailingNulls, &condenseWhitespace, &cleanString, &trimCharsInString,
        &replaceDoubleNewline, &truncateAtGarbageCharacters, &zapGremlins}) {
    EXPECT_FALSE(operation(nil));
  }
  EXPECT_EQ(escapeFromLines(nil), NSString(u""));
  EXPECT_EQ(unescapeFromLines(nil), NSString(u""));
}

TEST(ReplaceCharactersInSet, TakesEachUnitOnItsOwn) {
  NSMutableString text(u"a---b\U0001F4A9"sv);
  const auto set = NSCharacterSet::withCharacters(u"-\xD83D");
  using StringKelsparNSMutableStringAdditions::replaceCharactersInSet;
  replaceCharactersInSet(text, nil, u"x");
  EXPECT_EQ(text.view(), u"a---b\U0001F4A9");
  replaceCharactersInSet(text, set, u"+");
  EXPECT_EQ(text.view(), u"a+++b+\xDCA9");
  replaceCharactersInSet(text, NSCharacterSet::withCharacters(u"+"), nil);
  EXPECT_EQ(text.view(), u"ab\xDCA9");
}

}  // namespace
}  // namespace kelspar::StringKelsparNSStringAdditions
