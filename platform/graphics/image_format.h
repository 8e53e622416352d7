// Which format an image file's first bytes announce. Internal to the library.
#pragma once

#include <string_view>

namespace kelspar {

struct ImageFormat {
  const char* mimeType;
  const char* loader;  // GDK-PixBuf's name; null: no format
};

// Without a loader when no format fits.
[[nodiscard]] const ImageFormat& imageFormatOf(std::string_view bytes);

// Larger claims are refused before any pixel is decoded.
[[nodiscard]] bool isImageSizeBearable(int width, int height);

}  // namespace kelspar
