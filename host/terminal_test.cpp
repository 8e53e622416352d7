#include "host/terminal.h"

#include <gtest/gtest.h>

namespace kelspar::host {
namespace {

struct Row {
  const char* name;
  std::string_view text, plain;
};

class WithoutControls : public testing::TestWithParam<Row> {};

TEST_P(WithoutControls, Blanks) { EXPECT_EQ(withoutControls(GetParam().text), GetParam().plain); }

using namespace std::string_view_literals;

constexpr Row kRows[] = {
    {"Empty", "", ""},
    {"TabsAndLinesStay", "a\tb\nc\n", "a\tb\nc\n"},
    {"EscapesAndReturns", "\x1B[31m\rx\b\a\0\x7F"sv, " [31m x    "},
    {"UTF8Stays", "é – 漢 😀 Ÿ", "é – 漢 😀 Ÿ"},
    {"C1InUTF8", "a\u009B31m\u0085b\u00A0c", "a 31m b\u00A0c"},
    {"C1AsBytes",
     "a\x9B"
     "31m\x80z",
     "a 31m z"},
    {"BytesOfOtherCharsets", "caf\xE9 \xFF\xC0", "caf\xE9 \xFF\xC0"},
    {"ACharacterCutShort", "x\xE2\x82", "x\xE2 "},
    {"AControlBehindALead", "\xC3\x1B[m", "\xC3 [m"},
};

INSTANTIATE_TEST_SUITE_P(Terminal, WithoutControls, testing::ValuesIn(kRows),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace kelspar::host
