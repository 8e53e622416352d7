#include <gtest/gtest.h>

#include <random>

#include "RTFKelspar/RTFKelspar.h"
#include "tests/colours_literal.h"

#ifdef KELSPAR_CORPUS
#include <filesystem>
#include <fstream>
#include <iterator>
#endif

namespace kelspar {
namespace {

std::string coloured(std::string_view rtf) {
  return std::string(RTFKelspar::generateRTFColourTagsFromEmbeddedHTMLInRTF(NSData(rtf)).chars());
}

std::string literally(std::string_view rtf) {
  return std::string(literal::colouredRTF(NSData(rtf)).chars());
}

struct Row {
  const char* name;
  std::string_view rtf, coloured;
};
class ColourPipeline : public testing::TestWithParam<Row> {};
TEST_P(ColourPipeline, Gives) {
  EXPECT_EQ(coloured(GetParam().rtf), GetParam().coloured);
  EXPECT_EQ(literally(GetParam().rtf), GetParam().coloured);
}
constexpr Row kRows[] = {
    {"ReferenceAndEntry",
     "{\\rtf1{\\colortbl;}\n{\\*\\htmltag148 <span style='color:red'>}\\htmlrtf {\\htmlrtf0 word}",
     "{\\rtf1{\\colortbl;\\red255\\green0\\blue0;}\n"
     "{\\*\\htmltag148 <span style='color:red'>}\\htmlrtf {\\htmlrtf0 \\cf1  word}"},
    {"OneEntryForTwoLines",
     "{\\colortbl\\red1\\green2\\blue3;}\n<span color:red>htmltag148\\htmlrtf0 a\n"
     "<span color:red>htmltag148\\htmlrtf0 b",
     "{\\colortbl\\red1\\green2\\blue3;\\red255\\green0\\blue0;}\n"
     "<span color:red>htmltag148\\htmlrtf0 \\cf1  a\n"
     "<span color:red>htmltag148\\htmlrtf0 \\cf1  b"},
    {"TwoSpellingsAreTwoEntries",
     "{\\colortbl;}<span color:red>htmltag148\\htmlrtf0 a\n<span color:Red>htmltag148\\htmlrtf0b",
     "{\\colortbl;\\red255\\green0\\blue0;\\red255\\green0\\blue0;}"
     "<span color:red>htmltag148\\htmlrtf0 \\cf1  a\n<span color:Red>htmltag148\\htmlrtf0 \\cf2 b"},
    {"NoTableStaysNoTable", "htmltag148<span color:red>\\htmlrtf0 a",
     "htmltag148<span color:red>\\htmlrtf0 \\cf0  a"},
    {"TableThatIsNotClosedStays", "{\\colortbl;\nhtmltag148<span color:red>\\htmlrtf0 a",
     "{\\colortbl;\nhtmltag148<span color:red>\\htmlrtf0 \\cf0  a"},
    {"LineWithoutTheTag", "{\\colortbl;}\n<span color:red>\\htmlrtf0 a",
     "{\\colortbl;}\n<span color:red>\\htmlrtf0 a"},
    {"LineWithoutHtmlrtf0GivesAnEntry", "{\\colortbl;}\nhtmltag148<span color:red>a",
     "{\\colortbl;\\red255\\green0\\blue0;}\nhtmltag148<span color:red>a"},
    {"OnlyTheFirstHtmlrtf0", "htmltag148<span color:red>\\htmlrtf0 a\\htmlrtf0 b",
     "htmltag148<span color:red>\\htmlrtf0 \\cf0  a\\htmlrtf0 b"},
    {"NothingBehindHtmlrtf0", "htmltag148<span color:red>\\htmlrtf0\nb",
     "htmltag148<span color:red>\\htmlrtf0\nb"},
    {"ShortTailGoesEverywhere", "a htmltag148<span color:red>\\htmlrtf0a\na",
     " \\cf0 a htmlt \\cf0 ag148<sp \\cf0 an color:red>\\htmlrtf0 \\cf0 a\na"},
    {"CarriageReturnAsTail", "htmltag148<span color:red>\\htmlrtf0\r\nb\r\n",
     "htmltag148<span color:red>\\htmlrtf0 \\cf0 \r\nb\r\n"},
    {"OverlapHidesTheTail", "<span color:red>htmltag148 A\\htmlrtf0A\\htmlrtf0A",
     "<span color:red>htmltag148  \\cf0 A\\htmlrtf0A\\htmlrtf0A"},
    {"EmptyTableWithoutColoursGoes", "{\\rtf1{\\colortbl}{\\colortbl}a}", "{\\rtf1a}"},
    {"TableIsWrittenAnew", "{\\colortbl \n;\\red1 ;;\\red2\n;}", "{\\colortbl;\\red1;\\red2;}"},
    {"EqualTablesToo", "{\\colortbl ;}a{\\colortbl ;}{\\colortbl;}",
     "{\\colortbl;}a{\\colortbl;}{\\colortbl;}"},
    {"TagInsideTheTable", "{\\colortbl;htmltag148<span color:red>\\htmlrtf0;}",
     "{\\colortbl;htmltag148<span color:red>\\htmlrtf0;\\red255\\green0\\blue0;}"},
    {"TagThatSplitsTheTablesName", "{\\colortbl;}htmltag148<span color:red>\\htmlrtf0tbl",
     "{\\color \\cf1 tbl;}htmltag148<span color:red>\\htmlrtf0 \\cf1 tbl"},
    {"TagBehindABackslashFreesABrace", "{\\colortbl;\\} htmltag148<span color:red>\\htmlrtf0}",
     "{\\colortbl;\\ htmltag148<span color:red>\\htmlrtf0;\\red255\\green0\\blue0;}"
     " htmltag148<span color:red>\\htmlrtf0 \\cf2 }"},
    {"EmptyBody", "", ""},
    {"Utf8",
     "{\\colortbl;}\xC3\xA9 htmltag148<span color:r\xC3\xA9"
     "d>\\htmlrtf0\xE2\x82\xAC",
     "{\\colortbl;\\red0\\green0\\blue0;}\xC3\xA9 htmltag148<span color:r\xC3\xA9"
     "d>\\htmlrtf0 \\cf1 \xE2\x82\xAC"},
    {"Latin1BecomesUtf8", "{\\colortbl;}\xE9", "{\\colortbl;}\xC3\xA9"},
    {"NoBreakSpaceEndsAColour",
     "{\\colortbl;}htmltag148<span color:\xC2\xA0red\xC2\xA0"
     "blue>\\htmlrtf0 a",
     "{\\colortbl;\\red255\\green0\\blue0;}"
     "htmltag148<span color:\xC2\xA0red\xC2\xA0"
     "blue>\\htmlrtf0 \\cf1  a"},
};
INSTANTIATE_TEST_SUITE_P(Bodies, ColourPipeline, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ColourPipeline, NilGivesNil) {
  EXPECT_EQ(RTFKelspar::generateRTFColourTagsFromEmbeddedHTMLInRTF(nil), nil);
}

TEST(ColourPipeline, EmptyDataGivesEmptyData) {
  const NSData result =
      RTFKelspar::generateRTFColourTagsFromEmbeddedHTMLInRTF(NSData(std::string_view()));
  ASSERT_TRUE(result);
  EXPECT_EQ(result.length(), 0u);
}

TEST(ColourPipeline, SameAsTheStepsOnRandomTexts) {
  const uint32_t seed = 1848;
  std::mt19937 random(seed);
  const std::string_view pieces[] = {"{\\colortbl",
                                     ";",
                                     "}",
                                     "{",
                                     "\\",
                                     "\n",
                                     "<span",
                                     ">",
                                     "color:red",
                                     "color:#00f",
                                     "htmltag148",
                                     "\\htmlrtf0",
                                     "a",
                                     " ",
                                     "\r",
                                     "{\\colortbl;\\red1;}",
                                     "colortbl",
                                     "tbl",
                                     "<span color:lime>htmltag148\\htmlrtf0",
                                     "<span style='color:Red'>htmltag148",
                                     "\xC3\xA9",
                                     "\xE9",
                                     "\xC2\xA0"};
  for (int round = 0; round < 30000; ++round) {
    std::string rtf = random() % 2 ? "{\\colortbl;\\red2;}" : "";
    // Mostly ASCII alone, so that both roads are taken.
    const size_t kinds = std::size(pieces) - (random() % 4 ? 3 : 0);
    for (auto left = random() % 18; left > 0; --left) rtf += pieces[random() % kinds];
    ASSERT_EQ(coloured(rtf), literally(rtf)) << rtf << " seed " << seed << " round " << round;
  }
}

TEST(ColourPipeline, AMillionOfAnythingIsLinear) {
  const std::string_view starts[] = {"", "{\\colortbl;}\n", "{\\colortbl",
                                     "<span color:red>htmltag148\\htmlrtf0"};
  const std::string_view pieces[] = {"<span",
                                     "{\\colortbl",
                                     "{\\colortbl;",
                                     "{\\colortbl;}",
                                     ";",
                                     "\\",
                                     "}",
                                     "A\\htmlrtf0",
                                     "color:",
                                     "\n<span>",
                                     "<span color:a>",
                                     "<span color:r>htmltag148\\htmlrtf0\n"};
  for (const auto start : starts) {
    for (const auto piece : pieces) {
      for (const char* end : {"", "A", "}", "\xC3\xA9"}) {
        std::string rtf(start);
        while (rtf.size() < 1'000'000) rtf += piece;
        // A reference is at most 7 times as long as what it goes before.
        EXPECT_LE(coloured(rtf + end).size(), 8 * rtf.size() + 100) << start << piece;
      }
    }
  }
}

TEST(ColourPipeline, AMillionColours) {
  std::string rtf = "{\\colortbl;}\n";
  for (int i = 0; i < 200'000; ++i) {
    rtf += "<span color:" + std::to_string(100'000 + i) + ">htmltag148\\htmlrtf0 a\n";
  }
  const std::string result = coloured(rtf);
  EXPECT_NE(result.find("color:299999>htmltag148\\htmlrtf0 \\cf200000  a\n"), result.npos);
}

#ifdef KELSPAR_CORPUS
TEST(ColourPipeline, RealBodiesAsTheStepsHaveThem) {
  size_t changed = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KELSPAR_CORPUS "/rtf")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string rtf{std::istreambuf_iterator<char>(file), {}};
    const std::string result = coloured(rtf);
    ASSERT_EQ(result, literally(rtf)) << entry.path();
    changed += result != rtf;
  }
  EXPECT_GT(changed, 0u);
}
#endif

}  // namespace
}  // namespace kelspar
