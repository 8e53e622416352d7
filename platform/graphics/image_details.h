// What an image file says of itself in its header: size, resolution, orientation. Internal to the
// library.
#pragma once

#include "platform/foundation/foundation.h"
#include "platform/graphics/image_format.h"

namespace kelspar {

struct ImageDetails {
  const ImageFormat* format = nullptr;    // null: no image that can be shown
  int width = 0, height = 0;              // as stored, in pixels
  double dotsAcross = 72, dotsDown = 72;  // an inch; 72 where the file is silent or absurd
  int orientation = 1;                    // as EXIF counts them
  bool isPlainJPEG = false;               // 8 bits a sample, one or three colours
  [[nodiscard]] bool isOnItsSide() const { return orientation >= 5; }
};

// Reads headers only, however large the image claims to be. Claims beyond `isImageSizeBearable`
// are no image.
[[nodiscard]] ImageDetails imageDetailsOf(const NSData& file);

}  // namespace kelspar
