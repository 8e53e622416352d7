// SVG and WebP through the loaders that GDK-PixBuf has for them: strangers' drawings neither reach
// out of themselves nor keep the process busy.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "platform/foundation/base64.h"
#include "platform/graphics/NSImage.h"
#include "platform/graphics/picture_store.h"
#include "platform/graphics/picture_tools.h"
#include "platform/graphics/svg_claims.h"
#include "platform/richtext/metafile.h"
#include "platform/richtext/metafile_tools.h"

namespace kelspar {
namespace {

using namespace std::string_literals;
using testtools::colorInTheMiddle;

constexpr uint32_t kRed = 0xFFFF0000, kBlue = 0xFF0000FF, kNothing = 0;

std::string svg(const std::string& contents, const std::string& size = "20") {
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
         "width=\"" +
         size + "\" height=\"" + size + "\">" + contents + "</svg>";
}

std::string repeated(const std::string& part, size_t times) {
  std::string text;
  for (size_t i = 0; i < times; ++i) text += part;
  return text;
}

std::string inBase64(const std::string& bytes) {
  std::string text;
  base64::encode(bytes, &text);
  return text;
}

// Two red pixels and two blue ones below them; MS-WMF 2.2.2.3 behind a file header.
std::string redBMP() {
  return "BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\2\0\0\0\1\0\x18\0\0\0\0\0\x10\0\0\0"
         "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"s +
         repeated("\0\0\xFF\0\0\xFF\0\0"s, 2);
}

// Three red pixels above three blue ones, lossless.
std::string webP() {
  return "RIFF\x1E\0\0\0WEBPVP8L\x12\0\0\0\x2F\2\x40\0\0\x0F\x10\xF3\xBF\xFF\xF3\x1F"
         "\x0E\xE6\x20\xA2\xFF\x11"s;
}

TEST(Drawings, AreSharpAndHaveTheirSize) {
  const std::string file = svg("<rect width=\"20\" height=\"20\" fill=\"#f00\"/>");
  const NSImage image = NSImage::initWithData(NSData(file));
  ASSERT_TRUE(image);
  EXPECT_EQ(image.type(), u"image/svg+xml"_ns);
  EXPECT_EQ(image.width(), 20);
  PictureStore store;
  const StoredPicture* picture = store.find(NSData(file));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->width, 60);
  EXPECT_EQ(colorInTheMiddle(file), kRed);
}

TEST(Drawings, LargeClaimsAreDrawnSmaller) {
  const std::string file = svg("<rect width=\"9000\" height=\"9000\" fill=\"#f00\"/>", "9000");
  PictureStore store;
  const StoredPicture* picture = store.find(NSData(file));
  ASSERT_TRUE(picture);
  EXPECT_LE(int64_t{picture->width} * picture->height, 4'000'000);
  EXPECT_EQ(colorInTheMiddle(file), kRed);
  EXPECT_FALSE(NSImage::initWithData(NSData(svg("<rect/>", "2000000"))));
  EXPECT_FALSE(NSImage::initWithData(NSData(svg("<rect/>", "-5"))));
}

TEST(Drawings, ImagesInsideComeFromTheFileAlone) {
  const std::string data = "data:image/bmp;base64," + inBase64(redBMP());
  const auto imageOf = [](const std::string& href) {
    return svg("<image width=\"20\" height=\"20\" xlink:href=\"" + href + "\"/>");
  };
  EXPECT_EQ(colorInTheMiddle(imageOf(data)), kRed);
  const std::filesystem::path beside =
      std::filesystem::temp_directory_path() / ("kelspar-" + std::to_string(::getpid()) + ".bmp");
  std::ofstream(beside, std::ios::binary) << redBMP();
  for (const std::string& href :
       {"file://" + beside.string(), beside.string(), beside.filename().string(),
        "file:///etc/passwd"s, "http://127.0.0.1:9/x.png"s,
        "data:image/svg+xml;base64," + inBase64(svg("<rect width=\"20\" height=\"20\"/>")),
        "data:image/gif"s, "data:image/gif,GIF89a"s,
        "data:image/bmp;base64," + inBase64(svg("<rect width=\"20\" height=\"20\"/>")),
        "&#100;ata:image/svg+xml,"s}) {
    EXPECT_EQ(colorInTheMiddle(imageOf(href)), kNothing) << href;
  }
  // What the renderer itself does with files, were it asked.
  EXPECT_EQ(testtools::loadedColor("svg", imageOf("file://" + beside.string())), kNothing);
  std::filesystem::remove(beside);
}

TEST(Drawings, EntitiesAreRefused) {
  const std::filesystem::path beside =
      std::filesystem::temp_directory_path() / ("kelspar-" + std::to_string(::getpid()) + ".xml");
  std::ofstream(beside) << "<rect width=\"20\" height=\"20\" fill=\"red\"/>";
  const std::string outside = "<?xml version=\"1.0\"?><!DOCTYPE svg [<!ENTITY x SYSTEM \"file://" +
                              beside.string() + "\">]>" + svg("&x;");
  EXPECT_EQ(colorInTheMiddle(outside), kNothing);
  EXPECT_EQ(testtools::loadedColor("svg", outside), kNothing);
  std::string laughs = "<!ENTITY l0 \"<g/>\">";
  for (int i = 1; i < 10; ++i) {
    laughs += "<!ENTITY l" + std::to_string(i) + " \"" +
              repeated("&l" + std::to_string(i - 1) + ";", 10) + "\">";
  }
  EXPECT_EQ(
      colorInTheMiddle("<?xml version=\"1.0\"?><!DOCTYPE svg [" + laughs + "]>" + svg("&l9;")),
      kNothing);
  std::filesystem::remove(beside);
}

TEST(Drawings, WorkIsBounded) {
  std::string copies = "<g id=\"a0\"><rect width=\"9\" height=\"9\"/></g>";
  for (int i = 1; i < 10; ++i) {
    copies += "<g id=\"a" + std::to_string(i) + "\">" +
              repeated("<use xlink:href=\"#a" + std::to_string(i - 1) + "\"/>", 10) + "</g>";
  }
  std::string corners;
  for (uint32_t i = 0, place = 1; i < 300'000; ++i, place = place * 1'664'525 + 1'013'904'223) {
    corners += std::to_string(place >> 22) + ' ';
  }
  const std::string gradient = "<radialGradient id=\"g\"><stop offset=\"1\"/></radialGradient>";
  const std::string utf7 = "<?xml version=\"1.0\" encoding=\"UTF-7\"?>";
  const struct {
    const char* name;
    std::string file;
  } kRows[] = {
      {"Copies", svg("<defs>" + copies + "</defs><use xlink:href=\"#a9\"/>")},
      {"CopiesWithAPrefix", svg("<svg:use xlink:href=\"#a9\"/>")},
      {"Filters", svg("<filter id=\"f\"><feTurbulence numOctaves=\"100\"/></filter>")},
      {"DisguisedFilters", svg("<g style=\"f\\69lter: blur(9px)\"/>")},
      {"DisguisedAgain", svg("<g style=\"f&#105;lter: blur(9px)\"/>")},
      {"OtherBytes", utf7 + svg("")},
      {"Markers", svg("<marker id=\"m\"/>")},
      {"Corners", svg("<path d=\"M" + corners + "\"/>")},
      {"Letters", svg("<text font-size=\"5000\">" + repeated("W", 40'000) + "</text>")},
      {"Gradients", svg(gradient + repeated("<rect fill=\"url(#g)\"/>", 15'000))},
      {"Clips", svg(repeated("<g clip-path=\"url(#c)\"/>", 100))},
      {"Included", svg("<xi:include href=\"data:text/xml,x\"/>")},
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(svgClaimsOf(row.file).mostPixels, 0) << row.name;
    EXPECT_FALSE(NSImage::initWithData(NSData(row.file))) << row.name;
  }
}

// A window of 100 x 50 under a red rectangle and a line of text.
TEST(Drawings, MetafilesAreDrawn) {
  using namespace testtools;
  const std::string red =
      wmfRecord(0x2FC, words({0}) + longs({0x0000FF}) + words({0})) + wmfRecord(0x12D, words({0}));
  const MetafilePicture picture =
      pictureOfWMF(wmf(red + wmfRecord(0x41B, words({50, 100, 0, 0})) +
                       wmfRecord(0x521, words({2}) + "ab" + words({1, 1}))),
                   {200, 100});
  EXPECT_EQ(colorInTheMiddle(picture.file), kRed);
  const NSImage image = NSImage::initWithData(NSData(picture.file));
  ASSERT_TRUE(image);
  EXPECT_EQ(image.width(), 200);
}

TEST(Drawings, BytesAreReadOnceForAllPlaces) {
  EXPECT_TRUE(testtools::isKnownWithoutItsBytes(redBMP()));
  EXPECT_TRUE(testtools::isKnownWithoutItsBytes(svg("")));
}

TEST(Drawings, WebP) {
  const NSImage image = NSImage::initWithData(NSData(webP()));
  ASSERT_TRUE(image);
  EXPECT_EQ(image.type(), u"image/webp"_ns);
  EXPECT_EQ(image.width(), 3);
  EXPECT_EQ(image.height(), 2);
  EXPECT_EQ(colorInTheMiddle(webP()), kBlue);
  std::string claim = webP();
  claim.replace(21, 4, "\xFF\xFF\xFF\x0F");
  EXPECT_FALSE(NSImage::initWithData(NSData(claim))) << "16,384 x 16,384";
  for (size_t length = 0; length < webP().size(); ++length) {
    (void)colorInTheMiddle(webP().substr(0, length));
  }
}

}  // namespace
}  // namespace kelspar
