#include <gtest/gtest.h>

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "platform/richtext/NSAttributedString.h"

namespace kelspar {
namespace {

using namespace std::string_view_literals;

struct Row {
  const char* name;
  std::string_view rtf, out;
};

class PutText : public testing::TestWithParam<Row> {};
TEST_P(PutText, Gives) {
  EXPECT_EQ(MailKelspar::putText(u"H", NSData(GetParam().rtf)).chars(), GetParam().out);
}
constexpr Row kPlaces[] = {
    {"BeforeTheFirstWord", R"({\rtf1\ansi hello})",
     "{\\rtf1\\ansi {\\pard\\plain\\uc1 H\\par}\nhello}"},
    {"BehindTheHeadersGroups", R"({\rtf1{\fonttbl{\f0 A;}}{\*\generator x;}\pard x})",
     "{\\rtf1{\\fonttbl{\\f0 A;}}{\\*\\generator x;}{\\pard\\plain\\uc1 H\\par}\n\\pard x}"},
    {"BeforeAGroupOfText", R"({\rtf1{\b x}})", "{\\rtf1{\\pard\\plain\\uc1 H\\par}\n{\\b x}}"},
    {"HiddenFromHTML", R"({\rtf1\fromhtml1 {\*\htmltag64 <p>}x})",
     "{\\rtf1\\fromhtml1 {\\htmlrtf\\pard\\plain\\uc1 H\\par\\htmlrtf0}\n{\\*\\htmltag64 <p>}x}"},
    {"NothingBehindTheHeader", R"({\rtf1)", "{\\rtf1{\\pard\\plain\\uc1 H\\par}\n"},
    {"NoRTF", "hello", "hello"},
};
INSTANTIATE_TEST_SUITE_P(RTF, PutText, testing::ValuesIn(kPlaces),
                         [](const auto& row) { return std::string(row.param.name); });

NSString textOf(const NSData& rtf) { return RTFKelsparNSDataAdditions::stringFromRTFData(rtf); }

TEST(PutText, IsReadBackAsItWas) {
  const NSString text = u"a{b}\\c\td\n\u00E9\u4E2D\U0001F600\u0085";
  EXPECT_EQ(textOf(MailKelspar::putText(text, NSData("{\\rtf1\\uc2 x}"sv))),
            NSString(u"a{b}\\c\td\n\u00E9\u4E2D\U0001F600\u0085\nx"));
  EXPECT_EQ(textOf(MailKelspar::rtfFromText(text)), text);
  EXPECT_FALSE(MailKelspar::rtfFromText(nil));
}

TEST(PutText, LeavesTheHTMLAlone) {
  const NSData rtf("{\\rtf1\\ansi\\fromhtml1 \\deff0{\\*\\htmltag64 <p>}x{\\*\\htmltag72 </p>}}"sv);
  const NSString html = MailKelspar::htmlFromEncapsulatedRTF(rtf);
  ASSERT_TRUE(html);
  EXPECT_EQ(MailKelspar::htmlFromEncapsulatedRTF(MailKelspar::putText(u"From: x", rtf)), html);
}

TEST(PutText, WithoutTextChangesNothing) {
  const NSData rtf("{\\rtf1 x}"sv);
  EXPECT_TRUE(MailKelspar::putText(u"", rtf).isIdenticalTo(rtf));
  EXPECT_TRUE(MailKelspar::putText(nil, rtf).isIdenticalTo(rtf));
  EXPECT_FALSE(MailKelspar::putText(u"x", nil));
}

const NSData kMarked("{\\rtf1 a{{\\objattph  {\\b }}}b\r\n\\objattph c}"sv);

TEST(Pictures, StandWhereTheirMarksDo) {
  const NSData png("\x89PNG\r\n\x1A\n"sv);
  const NSData placed = MailKelspar::placePictures({png, u"[x{y]"_ns}, kMarked);
  EXPECT_EQ(placed.chars(),
            "{\\rtf1 a{{{\\pict\\pngblip\n89504e470d0a1a0a} {\\b }}}b\r\n{\\uc1 [x\\{y]}c}");
  EXPECT_EQ(textOf(placed), NSString(u"a b[x{y]c"));
}

TEST(Pictures, OfOtherKindsLeaveTheMark) {
  EXPECT_EQ(MailKelspar::placePictures({NSData("GIF89a"sv), NSNull::null()}, kMarked), kMarked);
  EXPECT_TRUE(MailKelspar::placePictures({}, kMarked).isIdenticalTo(kMarked));
  const NSData unmarked("{\\rtf1 \\objattphx \\'5c objattph{\\bin9 \\objattph}}"sv);
  EXPECT_TRUE(MailKelspar::placePictures({u"x"_ns}, unmarked).isIdenticalTo(unmarked));
  EXPECT_FALSE(MailKelspar::placePictures({u"x"_ns}, nil));
}

TEST(Pictures, AreReadAsAttachments) {
  const NSData jpeg("\xFF\xD8\xFF\xE0 and so on"sv);
  const auto text = NSAttributedString::initWithRTF(MailKelspar::placePictures({jpeg}, kMarked));
  const size_t at = text.string().view().find(u'\uFFFC');
  ASSERT_NE(at, std::u16string_view::npos);
  EXPECT_EQ(text.attributesAtIndex(at).attachment->contents, jpeg);
}

}  // namespace
}  // namespace kelspar
