// Files that claim to be images: a size that can be borne or none, whatever they claim; what has
// one can be drawn or not, and the same file is not decoded twice.
#include <cmath>
#include <cstdlib>

#include "platform/graphics/NSImage.h"
#include "platform/graphics/image_details.h"
#include "platform/graphics/picture_store.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  constexpr int64_t kSlow = 4'000'000;  // pixels: decoding them finds nothing new
  const NSData file(bytes, size);
  const NSImage image = NSImage::initWithData(file);
  const ImageDetails details = imageDetailsOf(file);
  check(static_cast<bool>(image) == (details.format != nullptr));
  if (!image) {
    check(image.width() == 0 && image.height() == 0 && !image.createAttributedString());
    PictureStore store;
    check(store.find(file) == nullptr);
    return 0;
  }
  check(isImageSizeBearable(details.width, details.height));
  check(std::isfinite(image.width()) && image.width() > 0);
  check(std::isfinite(image.height()) && image.height() > 0);
  check(image.createAttributedString().length() == 1);
  check(details.orientation >= 1 && details.orientation <= 8);
  if (int64_t{details.width} * details.height > kSlow) return 0;
  PictureStore store;
  const StoredPicture* picture = store.find(file);
  if (!picture) return 0;
  check(picture->width > 0 && picture->height > 0 && picture->surface);
  const auto* surface = picture->surface;
  check(store.find(NSData(bytes, size))->surface == surface);
  return 0;
}
