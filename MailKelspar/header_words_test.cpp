#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::string_view in;
  std::u16string_view out;
};
class HeaderWords : public testing::TestWithParam<Row> {};
TEST_P(HeaderWords, Read) {
  EXPECT_EQ(MailKelspar::decodeHeader(NSData(GetParam().in)).view(), GetParam().out);
}
constexpr Row kRows[] = {
    {"PlainText", "Re: hello", u"Re: hello"},
    {"UnderscoreIsABlank", "=?UTF-8?Q?hello_world?=", u"hello world"},
    {"BytesOfAdjacentWordsAreJoined", "=?utf-8?Q?caf=C3?= =?utf-8?Q?=A9?=", u"caf\u00E9"},
    {"JoinedAcrossEncodings", "=?utf-8?Q?=E2=82?=\r\n =?UTF-8?B?rA==?=", u"\u20AC"},
    {"SecondOfTwoPaddedWordsStays", "=?utf-8?B?YQ==?= =?utf-8?B?Yg==?=", u"ab"},
    {"AdjacentWordsOfTwoCharsets", "=?iso-8859-1?Q?=E9?= =?koi8-r?Q?=C1?=", u"\u00E9\u0430"},
    {"BlanksBesideTextStay", "a =?utf-8?Q?b?= c", u"a b c"},
    {"AgainstPunctuation", "(=?utf-8?Q?b?=),", u"(b),"},
    {"BlanksInsideAWord", "=?utf-8?Q?a b?=", u"a b"},
    {"LanguageTag", "=?utf-8*en?Q?a?=", u"a"},
    {"GB2312IsItsSuperset", "=?gb2312?B?gTCBMA==?=", u"\u0080"},
    {"UnknownCharset", "=?x-none?Q?=C3=A9?=", u"\u00E9"},
    {"RawUTF8", "caf\xC3\xA9", u"caf\u00E9"},
    {"RawWindows1252", "caf\xE9", u"caf\u00E9"},
    {"Unfolded", "a\r\n b", u"a b"},
    {"BrokenEscapeStays", "=?utf-8?Q?100=?=", u"100="},
    {"UnknownLetterIsText", "=?utf-8?X?a?=", u"=?utf-8?X?a?="},
    {"NoEnd", "=?utf-8?Q?a", u"=?utf-8?Q?a"},
    {"EncodedLineEndIsABlank", "=?utf-8?Q?a=0D=0AB:?=", u"a  B:"},
    {"Empty", "", u""},
};
INSTANTIATE_TEST_SUITE_P(MailKelspar, HeaderWords, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(HeaderWords, NilIsNil) { EXPECT_FALSE(MailKelspar::decodeHeader(nil)); }

TEST(HeaderWords, OpenWordsCostLinearTime) {
  std::string hostile;
  for (int i = 0; i < 200000; ++i) hostile += "=?a?q? ";
  EXPECT_EQ(MailKelspar::decodeHeader(NSData(hostile)).length(), hostile.size() - 1);
}

}  // namespace
}  // namespace kelspar
