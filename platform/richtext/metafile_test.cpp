// Metafiles built byte by byte: what they draw, and what they claim.
#include "platform/richtext/metafile.h"

#include <gtest/gtest.h>

#include "platform/foundation/base64.h"
#include "platform/foundation/foundation.h"
#include "platform/richtext/NSAttributedString.h"
#include "platform/richtext/device_bitmap.h"
#include "platform/richtext/metafile_tools.h"

namespace kelspar {
namespace {

using namespace std::string_literals;
using namespace testtools;

constexpr MetafileSize kSize{200, 100};  // points; two a unit of the window
constexpr int64_t kCopy = 0x00CC0020, kAnd = 0x008800C6, kInvert = 0x00660046, kPaint = 0x00EE0086;

// Two pixels, red and blue, 24 bits.
std::string twoPixels() { return bitmapHeader(2, 1, 24) + "\0\0\xFF\xFF\0\0\0\0"s; }
// White and black, one bit: only the second one is to be seen.
std::string mask() { return bitmapHeader(2, 1, 1) + longs({0, 0xFFFFFF}) + "\x80\0\0\0"s; }

std::string pen(int style, int width, int64_t color) {
  return wmfRecord(0x2FA, words({style, width, 0}) + longs({color}));
}
std::string brush(int style, int64_t color) {
  return wmfRecord(0x2FC, words({style}) + longs({color}) + words({0}));
}
std::string font(int height, const std::string& face) {
  return wmfRecord(0x2FB, words({height, 0, 0, 0, 700, 1, 0, 0, 0}) + face +
                              std::string(32 - face.size(), '\0'));
}
std::string select(int object) { return wmfRecord(0x12D, words({object})); }

// META_DIBSTRETCHBLT of the whole bitmap.
std::string stretched(int64_t operation, const std::string& bitmap, int x, int y, int width,
                      int height) {
  return wmfRecord(0xB41, longs({operation}) + words({1, 2, 0, 0, height, width, y, x}) + bitmap);
}

struct Row {
  const char* name;
  std::string records, drawing;
};
class WMFShapes : public testing::TestWithParam<Row> {};

TEST_P(WMFShapes, Become) {
  const MetafilePicture picture = pictureOfWMF(wmf(GetParam().records), kSize);
  EXPECT_EQ(picture.type, "image/svg+xml");
  const size_t body = picture.file.find('\n') + 1;
  EXPECT_EQ(picture.file.substr(body), GetParam().drawing + "</svg>\n");
}

const Row kShapes[] = {
    {"Polygon", wmfRecord(0x324, words({3, 0, 0, 10, 0, 10, 5})),
     "<path fill=\"#ffffff\" fill-rule=\"evenodd\" stroke=\"#000000\" stroke-width=\"0.5\" "
     "d=\"M0 0L20 0L20 10Z\"/>\n"},
    {"Polyline", wmfRecord(0x325, words({2, 1, 2, 3, 4})),
     "<path fill=\"none\" stroke=\"#000000\" stroke-width=\"0.5\" d=\"M2 4L6 8\"/>\n"},
    {"PolygonThatClaimsMore", wmfRecord(0x324, words({9999, 0, 0, 10, 0})),
     "<path fill=\"#ffffff\" fill-rule=\"evenodd\" stroke=\"#000000\" stroke-width=\"0.5\" "
     "d=\"M0 0L20 0Z\"/>\n"},
    {"PenAndBrush",
     pen(1, 3, 0x0000FF) + brush(0, 0xFF0000) + select(0) + select(1) +
         wmfRecord(0x41B, words({20, 30, 10, 5})),
     "<path fill=\"#0000ff\" fill-rule=\"evenodd\" stroke=\"#ff0000\" stroke-width=\"6\" "
     "stroke-dasharray=\"18\" d=\"M10 20L60 20L60 40L10 40Z\"/>\n"},
    {"ObjectsTakeThePlaceThatIsFree",
     pen(0, 1, 1) + pen(0, 1, 2) + wmfRecord(0x1F0, words({0})) + brush(1, 0) + select(0) +
         wmfRecord(0x41B, words({2, 2, 1, 1})),
     "<path fill=\"none\" stroke=\"#000000\" stroke-width=\"0.5\" d=\"M2 2L4 2L4 4L2 4Z\"/>\n"},
    {"LinesGoOn",
     wmfRecord(0x214, words({1, 1})) + wmfRecord(0x213, words({5, 1})) + wmfRecord(0x1E, "") +
         wmfRecord(0x214, words({9, 9})) + wmfRecord(0x127, words({-1})) +
         wmfRecord(0x213, words({5, 7})),
     "<path fill=\"none\" stroke=\"#000000\" stroke-width=\"0.5\" d=\"M2 2L2 10\"/>\n"
     "<path fill=\"none\" stroke=\"#000000\" stroke-width=\"0.5\" d=\"M2 10L14 10\"/>\n"},
    {"TwoPolygons", wmfRecord(0x538, words({2, 1, 2, 5, 5, 1, 1, 2, 2})),
     "<path fill=\"#ffffff\" fill-rule=\"evenodd\" stroke=\"#000000\" stroke-width=\"0.5\" "
     "d=\"M10 10ZM2 2L4 4Z\"/>\n"},
    {"BrushThroughAMask",
     brush(0, 0x0000FF) + select(0) + wmfRecord(0x61D, longs({0x5A0049}) + words({9, 9, 0, 0})) +
         brush(0, 0) + select(1) + pen(5, 0, 0) + select(2) +
         wmfRecord(0x324, words({2, 0, 0, 1, 1})) +
         wmfRecord(0x61D, longs({0x5A0049}) + words({9, 9, 0, 0})),
     "<path fill=\"#ff0000\" fill-rule=\"evenodd\" d=\"M0 0L2 2Z\"/>\n"},
    {"Text",
     font(-10, "A<b") + select(0) + wmfRecord(0x12E, words({24})) +
         wmfRecord(0x209, longs({0x0000FF})) +
         wmfRecord(0x521, words({3}) + "a&\xE9\0"s + words({20, 30})),
     "<text xml:space=\"preserve\" x=\"60\" y=\"40\" font-size=\"20\" font-family=\"A&lt;b\" "
     "font-weight=\"bold\" font-style=\"italic\" fill=\"#ff0000\">a&amp;\xC3\xA9</text>\n"},
    {"WordsStandWhereTheyStood",
     font(-10, "A") + select(0) + wmfRecord(0x12E, words({24})) +
         wmfRecord(0xA32, words({20, 30, 3, 0}) + "a b\0"s + words({5, 6, 7})),
     "<text xml:space=\"preserve\" x=\"60\" y=\"40\" font-size=\"20\" font-family=\"A\" "
     "textLength=\"10\" lengthAdjust=\"spacingAndGlyphs\" font-weight=\"bold\" "
     "font-style=\"italic\" fill=\"#000000\">a</text>\n"
     "<text xml:space=\"preserve\" x=\"82\" y=\"40\" font-size=\"20\" font-family=\"A\" "
     "textLength=\"14\" lengthAdjust=\"spacingAndGlyphs\" font-weight=\"bold\" "
     "font-style=\"italic\" fill=\"#000000\">b</text>\n"},
    {"AWindowThatLooksUp",
     wmfRecord(0x20B, words({50, 0})) + wmfRecord(0x20C, words({-50, 100})) +
         wmfRecord(0x325, words({2, 0, 50, 10, 40})),
     "<path fill=\"none\" stroke=\"#000000\" stroke-width=\"0.5\" d=\"M0 0L20 20\"/>\n"},
};
INSTANTIATE_TEST_SUITE_P(Metafiles, WMFShapes, testing::ValuesIn(kShapes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Metafiles, ABitmapOverEverythingIsThatBitmap) {
  const std::string expected = bitmapFile(twoPixels());
  ASSERT_FALSE(expected.empty());
  const struct {
    const char* name;
    std::string records;
  } kRows[] = {
      {"DIBStretchBlt", stretched(kCopy, twoPixels(), 0, 0, 100, 50)},
      {"StretchDIB",
       wmfRecord(0xF43, longs({kCopy}) + words({0, 1, 2, 0, 0, 50, 100, 0, 0}) + twoPixels())},
      {"DIBBitBlt", wmfRecord(0x940, longs({kCopy}) + words({0, 0, 50, 100, 0, 0}) + twoPixels())},
      {"SetDIBToDevice", wmfRecord(0xD33, words({0, 1, 0, 0, 0, 50, 100, 0, 0}) + twoPixels())},
  };
  for (const auto& row : kRows) {
    const MetafilePicture picture = pictureOfWMF(wmf(row.records), kSize);
    EXPECT_EQ(picture.type, "image/bmp") << row.name;
    EXPECT_EQ(picture.file, expected) << row.name;
  }
}

TEST(Metafiles, BitmapsOfEnhancedOnes) {
  const std::string header = bitmapHeader(2, 1, 24), pixels = twoPixels().substr(40);
  const std::string bounds = longs({0, 0, 99, 49});
  const std::string identity = longs({0x3F800000, 0, 0, 0x3F800000, 0, 0});
  const std::string stretch =
      bounds + longs({0, 0, 0, 0, 2, 1, 80, 40, 120, 8, 0, kCopy, 100, 50}) + header + pixels;
  const std::string blit = bounds + longs({0, 0, 100, 50, kCopy, 0, 0}) + identity +
                           longs({0, 0, 108, 40, 148, 8, 2, 1}) + header + pixels;
  const std::string device =
      bounds + longs({0, 0, 0, 0, 100, 50, 76, 40, 116, 8, 0, 0, 1}) + header + pixels;
  for (const std::string& record :
       {emfRecord(81, stretch), emfRecord(77, blit), emfRecord(80, device)}) {
    const MetafilePicture picture = pictureOfEMF(emf(record), kSize);
    EXPECT_EQ(picture.type, "image/bmp");
    EXPECT_EQ(picture.file, bitmapFile(twoPixels()));
  }
}

// The bitmap of a drawing's first image.
std::optional<Pixels> imageIn(const std::string& drawing) {
  const size_t begin = drawing.find("base64,") + 7, end = drawing.find('"', begin);
  if (begin == 6) return {};
  const NSData file = base64::decodeLenient(std::string_view(drawing).substr(begin, end - begin));
  Pixels pixels{static_cast<int>(file.bytes()[18]), static_cast<int>(file.bytes()[22]), {}};
  for (size_t i = file.length() - 8; i < file.length(); i += 4) {
    pixels.colors.push_back(static_cast<uint32_t>(file.bytes()[i + 3]) << 24 |
                            static_cast<uint32_t>(file.bytes()[i + 2]) << 16 |
                            static_cast<uint32_t>(file.bytes()[i + 1]) << 8 | file.bytes()[i]);
  }
  return pixels;
}

TEST(Metafiles, AnIconIsSeenThroughItsMask) {
  for (const int64_t second : {kPaint, kInvert}) {
    const MetafilePicture picture =
        pictureOfWMF(wmf(stretched(kAnd, mask(), 10, 10, 20, 20) +
                         stretched(second, twoPixels(), 10, 10, 20, 20)),
                     kSize);
    EXPECT_EQ(picture.type, "image/svg+xml");
    EXPECT_EQ(picture.file.find("<image", picture.file.find("<image") + 1), picture.file.npos);
    EXPECT_NE(picture.file.find("<image x=\"20\" y=\"20\" width=\"40\" height=\"40\""),
              picture.file.npos);
    const auto pixels = imageIn(picture.file);
    ASSERT_TRUE(pixels);
    EXPECT_EQ(pixels->colors, (std::vector<uint32_t>{0, 0xFF0000FF}));
  }
}

TEST(Metafiles, TransparencyOfEnhancedOnes) {
  const std::string bounds = longs({0, 0, 99, 49});
  const std::string identity = longs({0x3F800000, 0, 0, 0x3F800000, 0, 0});
  // Half a red, premultiplied, and nothing.
  const std::string deep = bitmapHeader(2, 1, 32) + longs({0x80800000, 0});
  const std::string blended = bounds + longs({10, 10, 20, 20, 0x01FF0000, 0, 0}) + identity +
                              longs({0, 0, 108, 40, 148, 8, 2, 1}) + deep;
  const MetafilePicture faint = pictureOfEMF(emf(emfRecord(114, blended)), kSize);
  ASSERT_TRUE(imageIn(faint.file));
  EXPECT_EQ(imageIn(faint.file)->colors, (std::vector<uint32_t>{0x80FF0000, 0}));
  const std::string shown = mask().substr(40);
  const std::string masked = bounds + longs({10, 10, 2, 1, 0xAACC0020, 0, 0}) + identity +
                             longs({0, 0, 128, 40, 168, 8, 0, 0, 0, 176, 48, 224, 4}) +
                             twoPixels() + bitmapHeader(2, 1, 1) + shown;
  const MetafilePicture part = pictureOfEMF(emf(emfRecord(78, masked)), kSize);
  ASSERT_TRUE(imageIn(part.file));
  EXPECT_EQ(imageIn(part.file)->colors, (std::vector<uint32_t>{0xFFFF0000, 0}));
}

TEST(Metafiles, PartsOfBitmapsShowThroughAWindow) {
  const MetafilePicture picture = pictureOfWMF(
      wmf(wmfRecord(0xB41, longs({kCopy}) + words({1, 1, 0, 1, 50, 100, 0, 0}) + twoPixels())),
      kSize);
  EXPECT_NE(picture.file.find("<svg x=\"0\" y=\"0\" width=\"200\" height=\"100\" "
                              "preserveAspectRatio=\"none\" viewBox=\"1 0 1 1 \"><image"),
            picture.file.npos);
}

struct EMFRow {
  const char* name;
  std::string records, drawing;
};
class EMFShapes : public testing::TestWithParam<EMFRow> {};

TEST_P(EMFShapes, Become) {
  const MetafilePicture picture = pictureOfEMF(emf(GetParam().records), kSize);
  EXPECT_EQ(picture.type, "image/svg+xml");
  const size_t body = picture.file.find('\n') + 1;
  EXPECT_EQ(picture.file.substr(body), GetParam().drawing + "</svg>\n");
}

const std::string kBounds = longs({0, 0, 99, 49});

const EMFRow kEnhancedShapes[] = {
    {"Polygon", emfRecord(3, kBounds + longs({2, 0, 0, 10, 5})),
     "<path fill=\"#ffffff\" fill-rule=\"evenodd\" stroke=\"#000000\" stroke-width=\"0.5\" "
     "d=\"M0 0L20 10Z\"/>\n"},
    {"Polygon16", emfRecord(86, kBounds + longs({2}) + words({0, 0, 10, 5})),
     "<path fill=\"#ffffff\" fill-rule=\"evenodd\" stroke=\"#000000\" stroke-width=\"0.5\" "
     "d=\"M0 0L20 10Z\"/>\n"},
    {"Curves16", emfRecord(85, kBounds + longs({5}) + words({0, 0, 1, 1, 2, 2, 3, 3, 9, 9})),
     "<path fill=\"none\" stroke=\"#000000\" stroke-width=\"0.5\" "
     "d=\"M0 0C2 2C4 4C6 6\"/>\n"},
    {"MappedToAViewport",
     emfRecord(17, longs({8})) + emfRecord(9, longs({1000, 1000})) +
         emfRecord(11, longs({100, 50})) + emfRecord(12, longs({10, 10})) +
         emfRecord(43, longs({0, 0, 100, 100})),
     "<path fill=\"#ffffff\" fill-rule=\"evenodd\" stroke=\"#000000\" stroke-width=\"0.5\" "
     "d=\"M20 20L40 20L40 30L20 30Z\"/>\n"},
    {"TransformedWorld",
     emfRecord(35, longs({0x40000000, 0, 0, 0x40000000, 0x3F800000, 0})) +
         emfRecord(4, kBounds + longs({2, 0, 0, 10, 5})),
     "<path fill=\"none\" stroke=\"#000000\" stroke-width=\"0.5\" d=\"M2 0L42 20\"/>\n"},
    {"PathOfTwoFigures",
     emfRecord(37, longs({0x80000004})) + emfRecord(59, "") + emfRecord(27, longs({0, 0})) +
         emfRecord(54, longs({5, 5})) + emfRecord(61, "") + emfRecord(27, longs({7, 7})) +
         emfRecord(54, longs({8, 8})) + emfRecord(60, "") + emfRecord(62, kBounds),
     "<path fill=\"#000000\" fill-rule=\"evenodd\" d=\"M0 0L10 10ZM14 14L16 16\"/>\n"},
    {"Text",
     emfRecord(22, longs({24})) + emfRecord(84, kBounds + longs({1, 0, 0, 5, 6, 2, 76, 0, 0, 0, 0,
                                                                 0, 80, 0x00620061, 9, 9})),
     "<text xml:space=\"preserve\" x=\"10\" y=\"12\" font-size=\"12\" textLength=\"36\" "
     "lengthAdjust=\"spacingAndGlyphs\" fill=\"#000000\">ab</text>\n"},
};
INSTANTIATE_TEST_SUITE_P(Metafiles, EMFShapes, testing::ValuesIn(kEnhancedShapes),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Metafiles, ImagesOfEMFPlus) {
  const std::string png = "\x89PNG\r\n\x1A\n...";
  const std::string object = longs({0x1BC01F01, 1, 2, 2, 0, 0, 1}) + png + "\0"s;
  const auto length = static_cast<int64_t>(object.size());
  const std::string plus = longs({length + 16, 0x2B464D45}) + words({0x4008, 0x0500}) +
                           longs({length + 12, length}) + object;
  const MetafilePicture picture = pictureOfEMF(emf(emfRecord(70, plus)), kSize);
  EXPECT_EQ(picture.type, "image/png");
  EXPECT_EQ(picture.file.substr(0, png.size()), png);
}

TEST(Metafiles, SizesOfTheirOwn) {
  const MetafilePicture enhanced = pictureOfEMF(emf(emfRecord(43, longs({0, 0, 10, 10}))), {});
  EXPECT_NEAR(enhanced.size.width, 70.87, 0.01);
  EXPECT_NEAR(enhanced.size.height, 35.43, 0.01);
  const std::string placeable =
      longs({0x9AC6CDD7}) + words({0, 0, 0, 1440, 720, 1440}) + longs({0}) + words({0});
  const std::string line = wmfRecord(0x325, words({2, 0, 0, 50, 25}));
  const MetafilePicture old = pictureOfWMF(placeable + wmf(line), {});
  EXPECT_EQ(old.size.width, 72);
  EXPECT_EQ(old.size.height, 36);
}

TEST(Metafiles, ClaimsAreBounded) {
  const std::string line = wmfRecord(0x325, words({2, 0, 0, 50, 25}));
  EXPECT_EQ(pictureOfWMF(wmf(""), kSize).file, "");
  EXPECT_EQ(pictureOfWMF(wmf(line), {}).file, "") << "no size";
  EXPECT_EQ(pictureOfWMF(wmf(line), {1e9, 100}).file, "");
  EXPECT_EQ(pictureOfWMF("\1\0\x09\0", kSize).file, "");
  EXPECT_EQ(pictureOfEMF(wmf(line), kSize).file, "");
  EXPECT_EQ(pictureOfWMF(emf(""), kSize).file, "");
  // A record of no length, one of four gigabytes, bitmaps of a billion pixels or none.
  EXPECT_NE(pictureOfWMF(wmf(line + longs({0})), kSize).file, "");
  EXPECT_NE(pictureOfWMF(wmf(line + longs({0xFFFFFFFF}) + words({0x324})), kSize).file, "");
  for (const std::string& header :
       {bitmapHeader(30'000, 30'000, 24), bitmapHeader(0x7FFFFFFF, 1, 1), bitmapHeader(2, 0, 24),
        bitmapHeader(-2, 1, 24), longs({0xFFFFFFFF, 2, 1, 0x180001})}) {
    EXPECT_EQ(pictureOfWMF(wmf(stretched(kCopy, header, 0, 0, 100, 50)), kSize).file, "");
  }
  std::string much;
  for (int i = 0; i < 200'000; ++i) much += line;
  EXPECT_EQ(pictureOfWMF(wmf(much), kSize).file, "") << "half a megabyte of drawing is enough";
}

TEST(Metafiles, StandInRTF) {
  const auto hexOf = [](const std::string& bytes) {
    std::string digits;
    for (const char c : bytes) {
      digits += "0123456789abcdef"[c >> 4 & 15];
      digits += "0123456789abcdef"[c & 15];
    }
    return digits;
  };
  const auto attachmentOf = [](const std::string& picture) {
    const NSAttributedString text = NSAttributedString::initWithRTF(
        NSData("{\\rtf1{\\pict\\picwgoal4000\\pichgoal2000" + picture + "}}"));
    return text.runs()[0].attributes->attachment;
  };
  const std::string line = wmfRecord(0x325, words({2, 0, 0, 50, 25}));
  const auto drawing = attachmentOf("\\wmetafile8 " + hexOf(wmf(line)));
  ASSERT_TRUE(drawing);
  EXPECT_EQ(drawing->type, u"image/svg+xml"_ns);
  EXPECT_EQ(drawing->width, 200);
  const auto icon =
      attachmentOf("\\wmetafile8 " + hexOf(wmf(stretched(kCopy, twoPixels(), 0, 0, 100, 50))));
  ASSERT_TRUE(icon);
  EXPECT_EQ(icon->type, u"image/bmp"_ns);
  const auto placeholder = attachmentOf("\\emfblip " + hexOf(emf("")));
  ASSERT_TRUE(placeholder);
  EXPECT_EQ(placeholder->type, u"image/x-emf"_ns);
  EXPECT_FALSE(placeholder->contents);
}

}  // namespace
}  // namespace kelspar
