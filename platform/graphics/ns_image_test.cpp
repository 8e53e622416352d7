#include "platform/graphics/NSImage.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

using namespace std::string_view_literals;

// A GIF of the given size; its picture data are not looked at.
NSData gif(uint8_t width, uint8_t height) {
  return NSData({'G',   'I', 'F',    '8', '9', 'a', width, 0,    height, 0, 0x80, 0,
                 0,     0,   0,      0,   255, 255, 255,   0x2C, 0,      0, 0,    0,
                 width, 0,   height, 0,   0,   2,   2,     0x44, 1,      0, 0x3B});
}

TEST(NSImage, KnowsItsSizeAndType) {
  const NSImage image = NSImage::initWithData(gif(7, 5));
  ASSERT_TRUE(image);
  EXPECT_EQ(image.width(), 7);
  EXPECT_EQ(image.height(), 5);
  EXPECT_EQ(image.type(), u"image/gif"_ns);
}

TEST(NSImage, RefusesWhatIsNoImage) {
  EXPECT_FALSE(NSImage::initWithData(nil));
  EXPECT_FALSE(NSImage::initWithData(NSData(std::string_view("text"))));
  EXPECT_FALSE(NSImage::initWithData(NSData(std::string_view("GIF89a"))));
  EXPECT_FALSE(NSImage::initWithData(NSData(std::string_view("\xFF\xD8\xFF\xE0"))));
}

TEST(NSImage, RefusesAbsurdClaims) {
  const NSData bmp(
      "BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\0\0\1\0\0\0\1\0\1\0"
      "\x18\0\0\0\0\0\x10\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"sv);
  EXPECT_FALSE(NSImage::initWithData(bmp));
}

TEST(NSImage, BecomesOneAttachmentCharacter) {
  const NSAttributedString text = NSImage::initWithData(gif(7, 5)).createAttributedString();
  EXPECT_EQ(text.string(), u"\xFFFC"_ns);
  ASSERT_TRUE(text.runs()[0].attributes->attachment);
  EXPECT_EQ(text.runs()[0].attributes->attachment->width, 7);
  EXPECT_FALSE(NSImage().createAttributedString());
}

}  // namespace
}  // namespace kelspar
