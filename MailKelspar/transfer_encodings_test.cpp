#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"

namespace kelspar {
namespace {

struct Row {
  const char* name;
  std::string_view body;
  const char16_t* encoding;
  std::string_view bytes;
};
class TransferEncodings : public testing::TestWithParam<Row> {};
TEST_P(TransferEncodings, Give) {
  EXPECT_EQ(MailKelspar::decodeTransfer(NSData(GetParam().body), GetParam().encoding).chars(),
            GetParam().bytes);
}
constexpr Row kRows[] = {
    {"Base64", "aGVs\r\nbG8=", u"Base64", "hello"},
    {"Base64WithoutPadding", "aGk", u"base64", "hi"},
    {"Base64LoneCharacter", "aGkxa", u"base64", "hi1"},
    {"Base64PaddingInside", "aGk=aGk=", u"base64", "hihi"},
    {"Base64ForeignCharacters", "a-G!k", u" BASE64 ", "hi"},
    {"QuotedPrintable", "caf=C3=a9", u"quoted-printable", "caf\xC3\xA9"},
    {"SoftBreaks", "a=\r\nb=\nc= \t\r\nd=", u"quoted-printable", "abcd"},
    {"HardBreaks", "a\r\nb", u"quoted-printable", "a\r\nb"},
    {"BrokenEscape", "a=zz=4", u"quoted-printable", "a=zz=4"},
    {"UU", "begin 644 x\r\n#86)C\r\n`\r\nend\r\n", u"x-uuencode", "abc"},
    {"EightBit", "a=3D", u"8bit", "a=3D"},
    {"Nothing", "", u"base64", ""},
};
INSTANTIATE_TEST_SUITE_P(MailKelspar, TransferEncodings, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(TransferEncodings, NilIsNil) { EXPECT_FALSE(MailKelspar::decodeTransfer(nil, u"base64")); }

}  // namespace
}  // namespace kelspar
