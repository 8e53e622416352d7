#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

using namespace std::string_view_literals;

TEST(CharsetLabels, MeanWhatTheTableSays) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"utf8", u"UTF-8"},
      {u" UTF-8 ", u"UTF-8"},
      {u"latin1", u"windows-1252"},
      {u"us-ascii", u"windows-1252"},
      {u"gb2312", u"GBK"},
      {u"ks_c_5601-1987", u"EUC-KR"},
      {u"iso-8859-9", u"windows-1254"},
      {u"\"KOI8-R\"", u"KOI8-R"},
      {u"950", u"cp950"},
      {u"cp850", u"IBM850"},
  };
  for (const auto& [label, name] : rows) {
    EXPECT_EQ(MailKelspar::encodingOfCharsetLabel(label), NSString(name)) << NSString(label);
  }
  for (const char16_t* label : {u"", u"x-none", u"99999", u"utf"}) {
    EXPECT_FALSE(MailKelspar::encodingOfCharsetLabel(label)) << NSString(label);
  }
  EXPECT_FALSE(MailKelspar::encodingOfCharsetLabel(nil));
}

struct Row {
  const char* name;
  std::string_view bytes;
  const char16_t* label;
  std::u16string_view text;
};
class TextUnderALabel : public testing::TestWithParam<Row> {};
TEST_P(TextUnderALabel, Gives) {
  EXPECT_EQ(MailKelspar::textFromData(NSData(GetParam().bytes), GetParam().label).view(),
            GetParam().text);
}
constexpr Row kRows[] = {
    {"Latin1IsWindows1252", "\x80"sv, u"iso-8859-1", u"\u20AC"},
    {"KOI8", "\xC1"sv, u"koi8-r", u"\u0430"},
    {"ShiftJIS", "\x82\xA0"sv, u"shift_jis", u"\u3042"},
    {"ISO2022JP", "\x1B$B$\"\x1B(B"sv, u"iso-2022-jp", u"\u3042"},
    {"UTF7", "+AOk-"sv, u"utf-7", u"\u00E9"},
    {"UTF8UnderASCII", "\xC3\xA9"sv, u"us-ascii", u"\u00E9"},
    {"Windows1252UnderASCII", "\xE9"sv, u"us-ascii", u"\u00E9"},
    {"BrokenUTF8", "a\xFFz"sv, u"utf-8", u"a\uFFFDz"},
    {"MarkIsDropped", "\xEF\xBB\xBFhi"sv, u"utf-8", u"hi"},
    {"MarkedUTF16", "\xFE\xFF\0a"sv, u"utf-16", u"a"},
    {"NumberOfACodePage", "\xCF"sv, u"1251", u"\u041F"},
    {"UnknownLabel", "\xC3\xA9"sv, u"nonsense", u"\u00E9"},
    {"Empty", ""sv, u"utf-8", u""},
};
INSTANTIATE_TEST_SUITE_P(MailKelspar, TextUnderALabel, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(CharsetLabels, AreFoundInHTML) {
  const auto declared = [](std::string_view html) {
    return MailKelspar::charsetDeclaredByHTML(NSData(html));
  };
  EXPECT_EQ(declared("<META charset='KOI8-R'>"), NSString(u"koi8-r"));
  EXPECT_EQ(declared("<meta http-equiv=Content-Type content=\"text/html; charset=gb2312\">"),
            NSString(u"gb2312"));
  EXPECT_EQ(declared("\xEF\xBB\xBF<p>"), NSString(u"utf-8"));
  EXPECT_EQ(declared("<meta charset=utf-16>"), NSString(u"utf-8"));
  EXPECT_FALSE(declared("<meta charset=nonsense>"));
  EXPECT_FALSE(declared("<p>charset=utf-8"));
  // Behind a script, as browsers find it.
  EXPECT_EQ(declared("<script>" + std::string(5000, 'x') + "</script><meta charset=koi8-r>"),
            NSString(u"koi8-r"));
  EXPECT_FALSE(declared(std::string(65536, ' ') + "<meta charset=koi8-r>"));
  EXPECT_FALSE(MailKelspar::charsetDeclaredByHTML(nil));
}

}  // namespace
}  // namespace kelspar
