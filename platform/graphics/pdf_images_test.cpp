// Images in documents: bytes that pass through, copies that are stored once, resolutions and turns.
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <thread>

#include "platform/graphics/NSImage.h"
#include "platform/graphics/pdf_tools.h"
#include "platform/graphics/picture_label.h"

namespace kelspar {
namespace {

using testtools::PDFFile;

std::string fileOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string jpeg() { return fileOf(KELSPAR_SOURCE_DIR "/samples/street.jpg"); }
std::string png() { return fileOf(KELSPAR_SOURCE_DIR "/samples/plan.png"); }

std::string bigEndian(uint32_t value, int bytes) {
  std::string out;
  for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>(value >> 8 * i & 0xFF);
  return out;
}

// An EXIF segment that states an orientation, behind the file's first marker.
std::string turned(const std::string& file, uint32_t orientation) {
  const std::string entry = bigEndian(274, 2) + bigEndian(3, 2) + bigEndian(1, 4) +
                            bigEndian(orientation, 2) + bigEndian(0, 2);
  const std::string exif = std::string("Exif\0\0MM\0*", 10) + bigEndian(8, 4) + bigEndian(1, 2) +
                           entry + bigEndian(0, 4);
  return file.substr(0, 2) + "\xFF\xE1" + bigEndian(static_cast<uint32_t>(exif.size()) + 2, 2) +
         exif + file.substr(2);
}

// A pHYs chunk, behind the header's.
std::string withDotsAMetre(const std::string& file, uint32_t dots) {
  const std::string body = "pHYs" + bigEndian(dots, 4) + bigEndian(dots, 4) + '\1';
  uint32_t crc = 0xFFFFFFFF;
  for (const char c : body) {
    crc ^= static_cast<uint8_t>(c);
    for (int bit = 0; bit < 8; ++bit) crc = crc & 1 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
  }
  return file.substr(0, 33) + bigEndian(9, 4) + body + bigEndian(~crc, 4) + file.substr(33);
}

NSAttributedString pictureOf(const std::string& file) {
  return NSImage::initWithData(NSData(file)).createAttributedString();
}

NSAttributedString together(std::initializer_list<NSAttributedString> parts) {
  NSMutableAttributedString all;
  for (const NSAttributedString& part : parts) {
    all.append(part);
    all.append(u"\n", {});
  }
  return all.copy();
}

size_t timesIn(const std::string& text, const std::string& part) {
  size_t times = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++times;
  return times;
}

TEST(PDFImages, JPEGDataPassThrough) {
  for (const std::string& file : {jpeg(), turned(jpeg(), 6)}) {
    const std::string document = testtools::documentOf(pictureOf(file));
    EXPECT_NE(document.find(file), std::string::npos);
    EXPECT_TRUE(PDFFile(document).isSound());
  }
}

TEST(PDFImages, TheSameImageIsStoredOnce) {
  const std::string document = testtools::documentOf(
      together({pictureOf(jpeg()), pictureOf(png()), pictureOf(png()), pictureOf(jpeg())}));
  EXPECT_EQ(timesIn(document, jpeg()), 1u);
  EXPECT_EQ(timesIn(document, "/Subtype /Image"), 2u);
  const PDFFile file(document);
  EXPECT_TRUE(file.isSound());
  EXPECT_EQ(timesIn(file.output("pdfimages -list %"), " jpeg "), 2u);
}

TEST(PDFImages, ResolutionOfTheFile) {
  const struct {
    const char* name;
    std::string file;
    double width, height;
  } kRows[] = {
      {"PNG", png(), 720, 400},
      {"PNG150", withDotsAMetre(png(), 5906), 345.6, 192},
      {"PNGAbsurd", withDotsAMetre(png(), 1), 720, 400},
      {"JFIF", jpeg(), 640 * 72 / 96.0, 360 * 72 / 96.0},
      {"JPEGOnItsSide", turned(jpeg(), 6), 360 * 72 / 96.0, 640 * 72 / 96.0},
      {"JPEGUpsideDown", turned(jpeg(), 3), 640 * 72 / 96.0, 360 * 72 / 96.0},
      {"BMP", fileOf(KELSPAR_SOURCE_DIR "/fuzz/seeds/images/dots.bmp"), 0.96, 0.96},
      {"TIFF", fileOf(KELSPAR_SOURCE_DIR "/fuzz/seeds/images/dots.tiff"), 1, 1},
  };
  for (const auto& row : kRows) {
    std::string file = row.file;
    if (file.substr(0, 2) == "\xFF\xD8" && file.find("JFIF") != file.npos) {
      const size_t unit = file.find("JFIF") + 7;
      file.replace(unit, 5, std::string("\1\0\x60\0\x60", 5));  // 96 dots an inch
    }
    const NSImage image = NSImage::initWithData(NSData(file));
    EXPECT_NEAR(image.width(), row.width, 0.05) << row.name;
    EXPECT_NEAR(image.height(), row.height, 0.05) << row.name;
  }
}

TEST(PDFImages, LargeOnesAreScaledDownToTheLine) {
  NSParagraphStyle style;
  style.headIndent = style.firstLineIndent = 100;
  NSMutableAttributedString picture(pictureOf(png()));
  NSTextAttributes look = picture.copy().attributesAtIndex(0);
  look.paragraph = std::make_shared<const NSParagraphStyle>(style);
  picture.setAttributes({0, 1}, look);
  const PDFFile file(picture.copy());
  EXPECT_EQ(file.pages(), 1);
  // 720 pixels on 450 points are 115 an inch.
  EXPECT_NE(file.output("pdfimages -list %").find(" 115 "), std::string::npos);
}

// Where a mark in the stored image's first corner comes to stand.
TEST(PDFImages, TurnsPutTheFirstCornerInItsPlace) {
  for (uint32_t orientation = 1; orientation <= 8; ++orientation) {
    const NSImage image = NSImage::initWithData(NSData(turned(jpeg(), orientation)));
    EXPECT_EQ(image.width() < image.height(), orientation >= 5) << orientation;
    const PDFFile file(image.createAttributedString());
    const std::string pixels = file.output("pdftoppm -r 18 -gray %");  // "P5\nWIDTH HEIGHT\n255\n"
    const size_t start = pixels.find("\n255\n") + 5;
    const size_t width = std::stoul(pixels.substr(3));
    const auto at = [&](double x, double y) {
      const double scale = 18 / 72.0;
      const auto column = static_cast<size_t>(x * scale), row = static_cast<size_t>(y * scale);
      return static_cast<uint8_t>(pixels[start + row * width + column]);
    };
    const double scale = std::min(1.0, 550 / image.width());
    const double right = image.width() * scale - 8, bottom = image.height() * scale - 8;
    // The picture's ground is the dark edge, opposite its sky; a corner on each long side.
    const bool isBelow = orientation == 1 || orientation == 2;
    const bool isAbove = orientation == 3 || orientation == 4;
    const bool isLeft = orientation == 6 || orientation == 7;
    const double x = isLeft ? 8 : isAbove || isBelow ? right / 2 : right;
    const double y = isBelow ? bottom : isAbove ? 8 : bottom / 2;
    EXPECT_NEAR(at(x, y), 105, 25) << orientation;
  }
}

TEST(PDFImages, WhatIsMissingIsNamed) {
  const auto picture = [](const char16_t* source, const char16_t* alternative = nullptr,
                          const char16_t* name = nullptr, const char16_t* type = nullptr) {
    const auto text = [](const char16_t* units) { return units ? NSString(units) : NSString(); };
    NSTextAttachment missing;
    missing.source = text(source);
    missing.alternative = text(alternative);
    missing.name = text(name);
    missing.type = text(type);
    return missing;
  };
  const struct {
    const char* name;
    NSTextAttachment picture;
    const char* label;
  } kRows[] = {
      {"Alternative", picture(u"https://a.example/b.png", u"Logo"), "Logo"},
      {"Remote", picture(u"https://u@a.example/x/b.png?c=/d"), "b.png (a.example)"},
      {"RemoteWithoutFile", picture(u"http://a.example/"), "a.example"},
      {"ContentIdentifier", picture(u"cid:plan@kelspar"), "plan@kelspar"},
      {"Name", picture(u"cid:x", nullptr, u"plan.png"), "plan.png"},
      {"Kind", picture(nullptr, nullptr, nullptr, u"image/x-emf"), "EMF"},
      {"BlankAlternative", picture(u"cid:a-long-one", u" "), "a-long-one"},
      {"Nothing", {}, ""},
  };
  const auto documentWith = [](NSTextAttachment missing, double side) {
    missing.width = missing.height = side;
    NSTextAttributes look;
    look.attachment = std::make_shared<const NSTextAttachment>(missing);
    return testtools::documentOf(NSAttributedString(u"\xFFFC"_ns, look));
  };
  for (const auto& row : kRows) {
    EXPECT_EQ(pictureLabel(row.picture), row.label) << row.name;
    const PDFFile file(documentWith(row.picture, 100));
    EXPECT_TRUE(file.isSound()) << row.name;
    EXPECT_EQ(file.letters(), "") << row.name << ": a label is no text";
    const size_t bare = documentWith({}, 100).size(),
                 labelled = documentWith(row.picture, 100).size();
    EXPECT_EQ(labelled > bare + 100, *row.label != 0) << row.name;
    EXPECT_EQ(documentWith(row.picture, 1).size(), documentWith({}, 1).size()) << row.name;
  }
}

// Labels that nobody else has drawn, amid more fonts than Cairo keeps open, in threads that open,
// draw and close them at once.
TEST(PDFImages, LabelsAreDrawnInManyThreads) {
  const auto documentOf = [](int number) {
    NSMutableAttributedString content;
    const auto append = [&](NSString label, double side) {
      auto missing = std::make_shared<NSTextAttachment>();
      missing->alternative = std::move(label);
      missing->width = 200;
      missing->height = side;
      NSTextAttributes look;
      look.attachment = missing;
      content.append(u"\uFFFC", look);
    };
    for (int i = 0; i < 24; ++i) {
      NSTextAttributes look;
      constexpr const char16_t* kFamilies[] = {u"DejaVu Sans",      u"DejaVu Serif",
                                               u"DejaVu Sans Mono", u"Liberation Sans",
                                               u"Liberation Serif", u"Liberation Mono"};
      look.font.family = NSString(kFamilies[i % 6]);
      look.font.bold = i / 6 % 2 == 1;
      look.font.italic = i / 12 == 1;
      content.append(u"word ", look);
      const auto letter = static_cast<char16_t>(0x370 + (number * 24 + i) % 0x250);
      append(NSString(std::u16string(20, letter)), 10);
    }
    return testtools::documentOf(content.copy());
  };
  std::atomic<int> made = 0;
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 6; ++i) {
      threads.emplace_back([&, i] {
        for (int n = 0; n < 5; ++n) made += documentOf(i * 5 + n).size() > 1'000;
      });
    }
  }
  EXPECT_EQ(made, 30);
}

TEST(PDFImages, AlternativeTextHasRoomWithoutASize) {
  const auto leftOfWordBehind = [](const NSString& alternative) {
    auto missing = std::make_shared<NSTextAttachment>();
    missing->source = u"https://a.example/b.png"_ns;
    missing->alternative = alternative;
    NSTextAttributes look;
    look.attachment = missing;
    NSMutableAttributedString line(NSAttributedString(u"\xFFFC"_ns, look));
    line.append(u"word", {});
    return PDFFile(line.copy()).word("word").left;
  };
  EXPECT_NEAR(leftOfWordBehind(nil), 0, 1);
  EXPECT_NEAR(leftOfWordBehind(u"Our logo"_ns), 48, 1);
}

TEST(PDFImages, ClaimsAreRefused) {
  const std::string claim = fileOf(KELSPAR_SOURCE_DIR "/fuzz/seeds/images/claims_much.png");
  EXPECT_FALSE(NSImage::initWithData(NSData(claim)));
  for (const char* name : {"bmp_header_of_gigabytes.bmp", "ico_far_away.ico"}) {
    const NSData file(fileOf(std::string(KELSPAR_SOURCE_DIR "/fuzz/seeds/images/") + name));
    EXPECT_FALSE(file.isEmpty() || NSImage::initWithData(file)) << name;
  }
  auto attachment = std::make_shared<NSTextAttachment>();
  attachment->contents = NSData(claim);
  attachment->width = attachment->height = 100;
  NSTextAttributes look;
  look.attachment = attachment;
  const PDFFile file(NSAttributedString(u"\xFFFC"_ns, look));
  EXPECT_TRUE(file.isSound());
  EXPECT_EQ(timesIn(file.output("pdfimages -list %"), "image"), 0u);
}

}  // namespace
}  // namespace kelspar
