#include "host/attachment_files.h"

#include <gtest/gtest.h>

#include "host/convert.h"

namespace kelspar::host {
namespace {

struct Row {
  const char* name;
  std::u16string_view in;
  std::string_view out;
};
class FileNames : public testing::TestWithParam<Row> {};
TEST_P(FileNames, AreSafe) { EXPECT_EQ(safeFileName(GetParam().in, 7), GetParam().out); }
constexpr Row kRows[] = {
    {"Plain", u"report 2.pdf", "report 2.pdf"},
    {"Unicode", u"\u041F.txt", "\u041F.txt"},
    {"Path", u"/etc/passwd", "_etc_passwd"},
    {"ParentFolder", u"../../x.sh", "_.._x.sh"},
    {"WindowsPath", u"C:\\x\\y.txt", "C__x_y.txt"},
    {"OnlyDots", u"..", "attachment-7"},
    {"Hidden", u".bashrc", "bashrc"},
    {"Empty", u"", "attachment-7"},
    {"Control", u"a\nb\u0001c", "a_b_c"},
    {"DirectionOverride", u"gpj\u202Eexe.scr", "gpj_exe.scr"},
    {"Device", u"con.txt", "_con.txt"},
    {"DeviceWithNumber", u"LPT1", "_LPT1"},
    {"Option", u"-rf", "_-rf"},
    {"TrailingDots", u"a.txt. .", "a.txt"},
};
INSTANTIATE_TEST_SUITE_P(Host, FileNames, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FileNames, AreCutBetweenCharacters) {
  const std::string name = safeFileName(NSString(std::u16string(300, u'\u20AC') + u".pdf"), 1);
  EXPECT_LE(name.size(), 200u);
  EXPECT_TRUE(name.ends_with("\u20AC.pdf"));
  EXPECT_TRUE(NSString::fromUTF8(name));
}

TEST(OutputPaths, StayUnderTheirFolder) {
  EXPECT_EQ(pathUnder("out", "a/b.msg", "text"), "out/a/b.msg.txt");
  EXPECT_EQ(pathUnder("out", "../../b.msg", "html"), "out/b.msg.html");
  EXPECT_EQ(pathUnder("out", "/a/../../b.msg", "json"), "out/b.msg.json");
  EXPECT_EQ(pathUnder("out", "-", "text"), "out/standard-input.txt");
}

}  // namespace
}  // namespace kelspar::host
