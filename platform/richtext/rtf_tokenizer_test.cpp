#include "platform/richtext/rtf_tokenizer.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/richtext/rtf_groups.h"

namespace kelspar {
namespace {

using Kind = RTFToken::Kind;
using namespace std::string_view_literals;

// A line a token: what it is and what it holds.
std::string tokens(std::string_view rtf) {
  RTFTokenizer tokenizer(rtf);
  std::string lines;
  for (RTFToken token = tokenizer.next(); token.kind != Kind::end; token = tokenizer.next()) {
    switch (token.kind) {
      case Kind::groupStart:
        lines += "{";
        break;
      case Kind::groupEnd:
        lines += "}";
        break;
      case Kind::word:
        lines += "word " + std::string(token.bytes);
        if (token.hasParameter) lines += "=" + std::to_string(token.parameter);
        break;
      case Kind::symbol:
        lines += std::string("symbol ") + static_cast<char>(token.byte);
        break;
      case Kind::hex:
        lines += "hex " + std::to_string(token.byte);
        break;
      case Kind::text:
        lines += "text " + std::string(token.bytes);
        break;
      case Kind::binary:
        lines += "binary " + std::string(token.bytes);
        break;
      case Kind::end:
        break;
    }
    lines += '\n';
  }
  return lines;
}

struct Row {
  const char* name;
  std::string_view rtf;
  std::string_view tokens;
};
class Tokenizer : public testing::TestWithParam<Row> {};
TEST_P(Tokenizer, Gives) { EXPECT_EQ(tokens(GetParam().rtf), GetParam().tokens); }
constexpr Row kRows[] = {
    {"Empty", "", ""},
    {"Groups", "{{}}", "{\n{\n}\n}\n"},
    {"WordTakesOneBlank", "\\b  x", "word b\ntext  x\n"},
    {"WordEndsAtASymbol", "\\b;x", "word b\ntext ;x\n"},
    {"Parameter", "\\fs24 x", "word fs=24\ntext x\n"},
    {"NegativeParameter", "\\li-360x", "word li=-360\ntext x\n"},
    {"HyphenWithoutDigitIsText", "\\li-x", "word li\ntext -x\n"},
    {"ParameterIsCut", "\\u99999999999999999999 ", "word u=2147483647\n"},
    {"NegativeParameterIsCut", "\\u-99999999999999999999 ", "word u=-2147483648\n"},
    {"Zero", "\\b0", "word b=0\n"},
    {"CaseCounts", "\\Par", "word Par\n"},
    {"Symbols", "\\~\\-\\*", "symbol ~\nsymbol -\nsymbol *\n"},
    {"EscapedBraces", "\\{\\}\\\\", "symbol {\nsymbol }\nsymbol \\\n"},
    {"Hex", "\\'e9\\'E9", "hex 233\nhex 233\n"},
    {"DamagedHexIsNothing", "\\'gz", "text gz\n"},
    {"HexAtTheEnd", "\\'e", "text e\n"},
    {"LineBreaksAreNoText", "a\r\nb\n", "text a\ntext b\n"},
    {"EscapedLineBreak", "\\\r\nx", "symbol \r\ntext x\n"},
    {"BackslashAtTheEnd", "x\\", "text x\n"},
    {"Binary", "\\bin3 {}}x", "binary {}}\ntext x\n"},
    {"BinaryCutOff", "\\bin99 ab", "binary ab\n"},
    {"BinaryOfNegativeLength", "\\bin-5 ab", "binary \ntext ab\n"},
    {"BinWithoutLength", "\\bin x", "word bin\ntext x\n"},
};
INSTANTIATE_TEST_SUITE_P(RTF, Tokenizer, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FindRTFStart, SkipsWhatWritersPutBefore) {
  EXPECT_EQ(findRTFStart("{\\rtf1}"), 0u);
  EXPECT_EQ(findRTFStart(" \r\n\0{\\rtf1}"sv), 4u);
  EXPECT_EQ(findRTFStart("\xEF\xBB\xBF{\\rtf"), 3u);
  EXPECT_EQ(findRTFStart("x{\\rtf1}"), std::string_view::npos);
  EXPECT_EQ(findRTFStart("{rtf1}"), std::string_view::npos);
  EXPECT_EQ(findRTFStart(""), std::string_view::npos);
}

// The stack that saves a copy for each brace.
TEST(RTFGroupsLaw, EqualsAPlainStack) {
  std::mt19937 random(17);
  for (int round = 0; round < 2000; ++round) {
    RTFGroups<int> groups;
    std::vector<int> plain{0};
    for (int step = 0; step < 60; ++step) {
      switch (random() % 3) {
        case 0:
          groups.open();
          plain.push_back(plain.back());
          break;
        case 1:
          ASSERT_EQ(groups.close(), plain.size() > 1);
          if (plain.size() > 1) plain.pop_back();
          break;
        default:
          groups.change() = plain.back() = static_cast<int>(random() % 100);
          break;
      }
      ASSERT_EQ(groups.state(), plain.back());
      ASSERT_EQ(groups.depth(), plain.size() - 1);
    }
  }
}

}  // namespace
}  // namespace kelspar
