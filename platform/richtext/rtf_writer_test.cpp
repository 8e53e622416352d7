#include "platform/richtext/rtf_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kelspar {
namespace {

NSAttributedString read(std::string_view rtf) {
  return NSAttributedString::initWithRTF(NSData(rtf));
}

struct Row {
  const char* name;
  std::string_view rtf;
};
class RTFWriter : public testing::TestWithParam<Row> {};
// What is written reads back to the same characters and attributes.
TEST_P(RTFWriter, ReadsBack) {
  const NSAttributedString text = read(GetParam().rtf);
  ASSERT_GT(text.length(), 0u);
  const NSData written = rtfFromAttributedString(text);
  EXPECT_EQ(NSAttributedString::initWithRTF(written), text) << written.chars();
}
constexpr Row kRows[] = {
    {"Plain", "{\\rtf1 a b}"},
    {"Characters",
     "{\\rtf1 \\{\\}\\\\ \\u8364? \\u-10179?\\u-8704? caf\\'e9\\tab x\\line y\\page z}"},
    {"Paragraphs", "{\\rtf1 a\\par b\\par\\par c\\par}"},
    {"Faces",
     "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f3 Times New Roman;}}\\f3\\fs30 a{\\b b{\\i c}}\\f0 d}"},
    {"Colours",
     "{\\rtf1{\\colortbl;\\red255\\green0\\blue0;\\red1\\green2\\blue3;}{\\cf1 a}{\\cf2\\cb1 b}c}"},
    {"Lines", "{\\rtf1 {\\ul a}{\\strike b}{\\super c}{\\sub d}{\\up6 e}{\\dn4 f}}"},
    {"Links",
     "{\\rtf1 {\\field{\\*\\fldinst HYPERLINK \"https://example.org/a?b=c\"}{\\fldrslt x}}y}"},
    {"Alignment",
     "{\\rtf1 \\qc a\\par\\pard\\qr b\\par\\pard\\qj c\\par\\pard\\ql d\\par\\pard e}"},
    {"Indents", "{\\rtf1 \\li720\\fi-360\\ri200\\sb120\\sa60 a\\par\\pard b}"},
    {"LineHeights", "{\\rtf1 \\sl360\\slmult1 a\\par\\pard\\sl400 b\\par\\pard\\sl-280 c\\par}"},
    {"TabStops", "{\\rtf1 \\tx720\\tqr\\tx2000\\tqc\\tx3000\\tqdec\\tx4000 a\\tab b\\par}"},
    {"Headings", "{\\rtf1 \\outlinelevel1 a\\par\\pard b}"},
    {"RightToLeft", "{\\rtf1 \\rtlpar a\\par\\pard b}"},
    {"Picture", "{\\rtf1 a{\\pict\\pngblip\\picwgoal400\\pichgoal300 89504e470d0a1a0a}b}"},
    {"PictureTwice",
     "{\\rtf1 a{\\pict\\pngblip\\picwgoal400\\pichgoal300 89504e470d0a1a0a}"
     "{\\pict\\pngblip\\picwgoal400\\pichgoal300 89504e470d0a1a0a}b}"},
};
INSTANTIATE_TEST_SUITE_P(RichText, RTFWriter, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(RTFWriterText, NilIsNilAndNothingIsADocument) {
  EXPECT_FALSE(rtfFromAttributedString(nil));
  EXPECT_EQ(NSAttributedString::initWithRTF(rtfFromAttributedString(NSAttributedString::empty())),
            NSAttributedString::empty());
}

// Twenty places of 6 MB: the first one and 16 MB more.
TEST(RTFWriterText, APictureInManyPlacesIsWrittenInTheFirst) {
  auto picture = std::make_shared<NSTextAttachment>();
  picture->contents = NSData("\x89PNG\r\n\x1A\n" + std::string(6 << 20, 'x'));
  picture->name = u"plan.png"_ns;
  NSTextAttributes look;
  look.attachment = picture;
  NSMutableAttributedString text;
  for (int i = 0; i < 20; ++i) {
    text.append(u"\uFFFC", look);
    text.append(u"\n", {});
  }
  const NSData rtf = rtfFromAttributedString(text.copy());
  const auto count = [&](std::string_view part) {
    size_t times = 0;
    for (size_t at = 0; (at = rtf.chars().find(part, at)) != std::string_view::npos; ++at) ++times;
    return times;
  };
  EXPECT_EQ(count("\\pngblip"), 3u);
  EXPECT_EQ(count("plan.png"), 17u);
  picture->alternative = u"Plan"_ns;
  const NSAttributedString named =
      NSAttributedString::initWithRTF(rtfFromAttributedString(text.copy()));
  EXPECT_EQ(std::ranges::count(named.string().view(), u'\uFFFC'), 3);
  EXPECT_NE(named.string().view().find(u"Plan\n"), std::u16string_view::npos);
}

#ifdef KELSPAR_CORPUS
// Tables and lists become text: the characters are all there.
TEST(RTFWriterCorpus, KeepsEveryCharacter) {
  size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KELSPAR_CORPUS "/rtf")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const NSData rtf(std::string(std::istreambuf_iterator<char>(file), {}));
    const NSAttributedString text = NSAttributedString::initWithRTF(rtf);
    if (!text) continue;
    ++files;
    const auto characters = [](const NSAttributedString& of) {
      NSMutableString units(of.string().view());
      units.replaceOccurrences(u"\uFFFC", u"");
      return std::move(units).copy();
    };
    EXPECT_EQ(characters(NSAttributedString::initWithRTF(rtfFromAttributedString(text))),
              characters(text))
        << entry.path();
  }
  EXPECT_GT(files, 150u);
}
#endif

}  // namespace
}  // namespace kelspar
