// Formats by their first bytes. What a loader is not installed for is no image.
#include "platform/graphics/image_format.h"

#include <cstdint>

namespace kelspar {

namespace {

using namespace std::string_view_literals;

constexpr ImageFormat kFormats[] = {
    {"\x89PNG\r\n\x1A\n"sv, "png", "image/png"},
    {"\xFF\xD8\xFF"sv, "jpeg", "image/jpeg"},
    {"GIF87a"sv, "gif", "image/gif"},
    {"GIF89a"sv, "gif", "image/gif"},
    {"BM"sv, "bmp", "image/bmp"},
    {"II*\0"sv, "tiff", "image/tiff"},
    {"MM\0*"sv, "tiff", "image/tiff"},
    {"\0\0\1\0"sv, "ico", "image/x-icon"},
};
constexpr ImageFormat kWebP{"RIFF"sv, "webp", "image/webp"};
constexpr ImageFormat kSVG{"<"sv, "svg", "image/svg+xml"};
constexpr ImageFormat kNoFormat{};

// XML may have a declaration, comments and a document type in front of its root.
bool isSVG(std::string_view bytes) {
  constexpr size_t kFar = 1'024;
  const std::string_view head = bytes.substr(0, kFar);
  return (head.starts_with("<svg") || head.starts_with("<?xml")) && head.find("<svg") != head.npos;
}

}  // namespace

const ImageFormat& imageFormatOf(std::string_view bytes) {
  for (const ImageFormat& format : kFormats) {
    if (bytes.starts_with(format.signature)) return format;
  }
  if (bytes.starts_with(kWebP.signature) && bytes.find("WEBP") == 8) return kWebP;
  return isSVG(bytes) ? kSVG : kNoFormat;
}

bool isImageSizeBearable(int width, int height) {
  constexpr int64_t kMostPixels = 100'000'000;
  constexpr int kLongestSide = 30'000;
  return width > 0 && height > 0 && width <= kLongestSide && height <= kLongestSide &&
         int64_t{width} * height <= kMostPixels;
}

}  // namespace kelspar
