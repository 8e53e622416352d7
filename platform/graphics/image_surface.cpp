// Pixels with GDK-PixBuf, turned upright and premultiplied.
#include "platform/graphics/image_surface.h"

#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <string>

#include "platform/graphics/NSImage.h"
#include "platform/graphics/image_format.h"

namespace kelspar {

namespace {

// The surface's own pixels stay untouched: the document takes the file's bytes.
cairo_surface_t* jpegSurface(const NSData& file, const NSImage& image) {
  cairo_surface_t* surface = cairo_image_surface_create(
      CAIRO_FORMAT_RGB24, static_cast<int>(image.width()), static_cast<int>(image.height()));
  auto* owner = new NSData(file);
  cairo_surface_set_mime_data(
      surface, CAIRO_MIME_TYPE_JPEG, file.bytes(), file.length(),
      [](void* data) { delete static_cast<NSData*>(data); }, owner);
  return surface;
}

uint32_t premultiplied(const guchar* pixel, bool hasAlpha) {
  const uint32_t alpha = hasAlpha ? pixel[3] : 255;
  const auto scaled = [alpha](uint32_t channel) { return (channel * alpha + 127) / 255; };
  return alpha << 24 | scaled(pixel[0]) << 16 | scaled(pixel[1]) << 8 | scaled(pixel[2]);
}

cairo_surface_t* pixelSurface(const GdkPixbuf* pixels) {
  const int width = gdk_pixbuf_get_width(pixels), height = gdk_pixbuf_get_height(pixels);
  const bool hasAlpha = gdk_pixbuf_get_has_alpha(pixels);
  const int step = gdk_pixbuf_get_n_channels(pixels);
  cairo_surface_t* surface = cairo_image_surface_create(
      hasAlpha ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24, width, height);
  unsigned char* target = cairo_image_surface_get_data(surface);
  if (!target) return surface;
  cairo_surface_flush(surface);
  for (int y = 0; y < height; ++y) {
    const guchar* from = gdk_pixbuf_read_pixels(pixels) +
                         static_cast<ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(pixels);
    auto* to = reinterpret_cast<uint32_t*>(target + static_cast<ptrdiff_t>(y) *
                                                        cairo_image_surface_get_stride(surface));
    for (int x = 0; x < width; ++x, from += step) to[x] = premultiplied(from, hasAlpha);
  }
  cairo_surface_mark_dirty(surface);
  return surface;
}

}  // namespace

cairo_surface_t* newImageSurface(const NSData& file) {
  const NSImage image = NSImage::initWithData(file);
  if (!image) return nullptr;
  const bool isJPEG = image.type() == u"image/jpeg"_ns;
  if (isJPEG && file.chars().substr(0, 65'536).find("Exif") == std::string_view::npos) {
    return jpegSurface(file, image);
  }
  GdkPixbufLoader* loader =
      gdk_pixbuf_loader_new_with_type(imageFormatOf(file.chars()).loader, nullptr);
  if (!loader) return nullptr;
  gdk_pixbuf_loader_write(loader, file.bytes(), file.length(), nullptr);
  gdk_pixbuf_loader_close(loader, nullptr);
  cairo_surface_t* surface = nullptr;
  if (GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(loader)) {
    if (GdkPixbuf* upright = gdk_pixbuf_apply_embedded_orientation(pixels)) {
      surface = pixelSurface(upright);
      g_object_unref(upright);
    }
  }
  g_object_unref(loader);
  return surface;
}

}  // namespace kelspar
