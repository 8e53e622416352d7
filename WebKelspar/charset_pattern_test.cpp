#include <gtest/gtest.h>

#include <string>

#include "WebKelspar/WebKelspar.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  const char* pattern;
  const char* html;
  uint64_t size;
  const char* out;
};
constexpr const char* kCharset = "charset=\"?([A-Za-z0-9_-]+)";
constexpr Row kRows[] = {
    {"Matches", kCharset, "<meta charset=\"utf-8\">", 16, "utf-8"},
    {"CutToTheSize", kCharset, "charset=windows-1252", 8, "windows"},
    {"ExactlyTheSize", kCharset, "charset=utf-8", 6, "utf-8"},
    {"SizeOfOne", kCharset, "charset=utf-8", 1, ""},
    {"SizeOfNone", kCharset, "charset=utf-8", 0, "untouched"},
    {"NoMatch", kCharset, "<meta>", 16, "untouched"},
    {"NoGroup", "charset=", "charset=utf-8", 16, "untouched"},
    {"GroupTookNoPart", "(x)|charset", "charset", 16, "untouched"},
    {"EmptyGroup", "charset=()", "charset=utf-8", 16, ""},
    {"EmptyHTML", kCharset, "", 16, "untouched"},
};
class Charset : public testing::TestWithParam<Row> {};
TEST_P(Charset, Gives) {
  regex_t pattern;
  ASSERT_EQ(regcomp(&pattern, GetParam().pattern, REG_EXTENDED), 0);
  char charset[16] = "untouched";
  std::string html = GetParam().html;
  WebKelspar::getCharset(charset, html.data(), GetParam().size, pattern);
  EXPECT_STREQ(charset, GetParam().out);
  EXPECT_EQ(html, GetParam().html);
  regfree(&pattern);
}
INSTANTIATE_TEST_SUITE_P(Rows, Charset, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Charset, NullPointersAreLeftAlone) {
  regex_t pattern;
  ASSERT_EQ(regcomp(&pattern, "(a)", REG_EXTENDED), 0);
  char text[] = "a";
  WebKelspar::getCharset(nullptr, text, 2, pattern);
  WebKelspar::getCharset(text, nullptr, 2, pattern);
  EXPECT_STREQ(text, "a");
  regfree(&pattern);
}

}  // namespace
}  // namespace kelspar
