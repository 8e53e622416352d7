// Loaders for the types that first bytes announce. What a loader is not installed for is no image.
#include "platform/graphics/image_format.h"

#include <cstdint>

#include "platform/richtext/image_type.h"

namespace kelspar {

namespace {

constexpr ImageFormat kFormats[] = {
    {"image/png", "png"},   {"image/jpeg", "jpeg"},  {"image/gif", "gif"},   {"image/bmp", "bmp"},
    {"image/tiff", "tiff"}, {"image/x-icon", "ico"}, {"image/webp", "webp"},
};
constexpr ImageFormat kSVG{"image/svg+xml", "svg"};
constexpr ImageFormat kNoFormat{};

// XML may have a declaration, comments and a document type in front of its root.
bool isSVG(std::string_view bytes) {
  constexpr size_t kFar = 1'024;
  const std::string_view head = bytes.substr(0, kFar);
  return (head.starts_with("<svg") || head.starts_with("<?xml")) && head.find("<svg") != head.npos;
}

}  // namespace

const ImageFormat& imageFormatOf(std::string_view bytes) {
  const std::string_view type = imageTypeOf(bytes);
  for (const ImageFormat& format : kFormats) {
    if (format.mimeType == type) return format;
  }
  return isSVG(bytes) ? kSVG : kNoFormat;
}

bool isImageSizeBearable(int width, int height) {
  constexpr int64_t kMostPixels = 100'000'000;
  constexpr int kLongestSide = 30'000;
  return width > 0 && height > 0 && width <= kLongestSide && height <= kLongestSide &&
         int64_t{width} * height <= kMostPixels;
}

}  // namespace kelspar
