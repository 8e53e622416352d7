// Images by what their headers say.
#include "platform/graphics/NSImage.h"

#include <memory>
#include <utility>

#include "platform/graphics/image_details.h"

namespace kelspar {

NSImage NSImage::initWithData(const NSData& data) {
  const ImageDetails details = imageDetailsOf(data);
  if (!details.format) return {};
  constexpr double kPointsAnInch = 72;
  NSImage image;
  image.data_ = data;
  image.type_ = details.format->mimeType;
  image.width_ = details.width * kPointsAnInch / details.dotsAcross;
  image.height_ = details.height * kPointsAnInch / details.dotsDown;
  if (details.isOnItsSide()) std::swap(image.width_, image.height_);
  return image;
}

NSAttributedString NSImage::createAttributedString() const {
  if (!data_) return nil;
  auto attachment = std::make_shared<NSTextAttachment>();
  attachment->contents = data_;
  attachment->type = type_;
  attachment->width = width_;
  attachment->height = height_;
  NSTextAttributes look;
  look.attachment = std::move(attachment);
  return NSAttributedString(u"\xFFFC"_ns, look);
}

}  // namespace kelspar
