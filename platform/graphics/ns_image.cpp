// Image sizes with GDK-PixBuf's loaders, stopped before the first pixel.
#include "platform/graphics/NSImage.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <memory>

#include "platform/graphics/image_format.h"

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
constexpr ImageFormat kNoFormat{};

struct PixelSize {
  int width = 0, height = 0;
};

void noteSize(GdkPixbufLoader* loader, int width, int height, gpointer out) {
  *static_cast<PixelSize*>(out) = {width, height};
  gdk_pixbuf_loader_set_size(loader, 0, 0);
}

PixelSize readSize(const NSData& data, const char* loaderName) {
  constexpr size_t kPiece = 16'384;
  PixelSize size;
  GdkPixbufLoader* loader = gdk_pixbuf_loader_new_with_type(loaderName, nullptr);
  if (!loader) return size;
  g_signal_connect(loader, "size-prepared", G_CALLBACK(noteSize), &size);
  for (size_t at = 0; at < data.length() && size.width == 0; at += kPiece) {
    const size_t count = std::min(kPiece, data.length() - at);
    if (!gdk_pixbuf_loader_write(loader, data.bytes() + at, count, nullptr)) break;
  }
  gdk_pixbuf_loader_close(loader, nullptr);
  g_object_unref(loader);
  return size;
}

}  // namespace

const ImageFormat& imageFormatOf(std::string_view bytes) {
  for (const ImageFormat& format : kFormats) {
    if (bytes.starts_with(format.signature)) return format;
  }
  return kNoFormat;
}

bool isImageSizeBearable(int width, int height) {
  constexpr int64_t kMostPixels = 100'000'000;
  constexpr int kLongestSide = 30'000;
  return width > 0 && height > 0 && width <= kLongestSide && height <= kLongestSide &&
         int64_t{width} * height <= kMostPixels;
}

NSImage NSImage::initWithData(const NSData& data) {
  const ImageFormat& format = imageFormatOf(data.chars());
  if (!format.loader) return {};
  const PixelSize size = readSize(data, format.loader);
  if (!isImageSizeBearable(size.width, size.height)) return {};
  NSImage image;
  image.data_ = data;
  image.type_ = format.mimeType;
  image.width_ = size.width;
  image.height_ = size.height;
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
