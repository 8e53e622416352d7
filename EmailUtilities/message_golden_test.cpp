// Bodies of testdata/ with images in several formats: NAME.rtf becomes NAME.txt, in which an image
// is written as its type and its size in points.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "EmailUtilities/EmailUtilities.h"
#include "platform/dispatch/dispatch.h"

namespace kelspar {
namespace {

std::string fileOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

NSDictionary attachment(const NSString& identifier, const char* path) {
  return {{u"AttachContentID"_ns, identifier},
          {u"data"_ns, NSData(fileOf(std::string(KELSPAR_SOURCE_DIR) + path))}};
}

NSArray attachments() {
  return {attachment(u"png.1"_ns, "/samples/plan.png"),
          attachment(u"jpeg.1"_ns, "/samples/street.jpg"),
          attachment(u"gif.1"_ns, "/fuzz/seeds/images/dot.gif"),
          attachment(u"bmp.1"_ns, "/fuzz/seeds/images/dots.bmp"),
          attachment(u"tiff.1"_ns, "/fuzz/seeds/images/dots.tiff"),
          attachment(u"ico.1"_ns, "/fuzz/seeds/images/dots.ico"),
          attachment(u"text.1"_ns, "/samples/README.md")};
}

NSAttributedString assembled(const std::string& rtf) {
  NSAttributedString result;
  std::atomic<bool> isDone = false;
  EmailUtilities::buildRTFMessageContent(NSData(rtf), attachments(), [&](NSAttributedString text) {
    result = std::move(text);
    isDone = true;
  });
  while (!isDone) dispatch::drainMain(10);
  return result;
}

std::string number(double points) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", points);
  return text;
}

std::string written(const NSAttributedString& text) {
  std::string out;
  size_t at = 0;
  for (const NSTextRun& run : text.runs()) {
    const auto units = text.string().view().substr(at, run.length);
    at += run.length;
    const auto& image = run.attributes->attachment;
    out += image ? "[" + image->type.utf8() + " " + number(image->width) + "x" +
                       number(image->height) + "]"
                 : NSString(units).utf8();
  }
  return out;
}

TEST(MessageGolden, BodiesBecomeWhatStandsBesideThem) {
  size_t pairs = 0;
  const std::filesystem::path folder = KELSPAR_SOURCE_DIR "/EmailUtilities/testdata";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".rtf") continue;
    ++pairs;
    auto expected = entry.path();
    expected.replace_extension(".txt");
    EXPECT_EQ(written(assembled(fileOf(entry.path()))), fileOf(expected)) << entry.path();
  }
  EXPECT_GE(pairs, 5u);
}

}  // namespace
}  // namespace kelspar
