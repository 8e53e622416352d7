// Pixels with GDK-PixBuf, premultiplied; how an image is to be turned becomes part of where it is
// drawn, so that JPEG data can stay what they are.
#include "platform/graphics/picture_store.h"

#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "platform/graphics/NSImage.h"
#include "platform/graphics/font_lock.h"
#include "platform/graphics/image_details.h"
#include "platform/graphics/image_format.h"
#include "platform/graphics/svg_claims.h"

namespace kelspar {

namespace {

constexpr size_t kMostDecoded = 40'000'000;  // pixels a document
constexpr size_t kMostKept = 4'000'000;

template <class Bytes>
void attach(cairo_surface_t* surface, const char* type, Bytes bytes) {
  auto* owner = new Bytes(std::move(bytes));
  const void* data = nullptr;
  if constexpr (std::is_same_v<Bytes, NSData>) {
    data = owner->bytes();
  } else {
    data = owner->data();
  }
  cairo_surface_set_mime_data(
      surface, type, static_cast<const unsigned char*>(data), owner->length(),
      [](void* kept) { delete static_cast<Bytes*>(kept); }, owner);
}

// The surface's own pixels stay untouched: the document takes the file's bytes.
cairo_surface_t* jpegSurface(const NSData& file, const ImageDetails& details) {
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, details.width, details.height);
  attach(surface, CAIRO_MIME_TYPE_JPEG, file);
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

// A file's later pictures may be larger than the first one that was announced.
void refuseLarge(GdkPixbufLoader* loader, int width, int height, gpointer) {
  if (!isImageSizeBearable(width, height)) gdk_pixbuf_loader_set_size(loader, 0, 0);
}

// Drawings are sharp at any size: three pixels a point, or as many as they are granted.
void setDrawnSize(GdkPixbufLoader* loader, int width, int height, gpointer granted) {
  constexpr double kSharp = 3;
  const double pixels = static_cast<double>(*static_cast<const int64_t*>(granted));
  const double own = static_cast<double>(width) * height;
  const double scale = own > 0 ? std::min(kSharp, std::sqrt(pixels / own)) : 0;
  const auto scaled = [scale](int side) {
    return std::max(1, static_cast<int>(std::min(side * scale, 10'000.0)));
  };
  gdk_pixbuf_loader_set_size(loader, scaled(width), scaled(height));
}

// `drawnPixels`: of a drawing; 0 for what has pixels of its own.
cairo_surface_t* decodedSurface(const NSData& file, int64_t drawnPixels) {
  GdkPixbufLoader* loader =
      gdk_pixbuf_loader_new_with_type(imageFormatOf(file.chars()).loader, nullptr);
  if (!loader) return nullptr;
  if (drawnPixels > 0) {
    g_signal_connect(loader, "size-prepared", G_CALLBACK(setDrawnSize), &drawnPixels);
  } else {
    g_signal_connect(loader, "size-prepared", G_CALLBACK(refuseLarge), nullptr);
  }
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

// EXIF 2.3, 4.6.4 "Orientation": 1 is upright, 6 is to be turned right by a quarter.
UprightTurn turnFor(int orientation) {
  switch (orientation) {
    case 2:
      return {-1, 0, 0, 1, 1, 0};
    case 3:
      return {-1, 0, 0, -1, 1, 1};
    case 4:
      return {1, 0, 0, -1, 0, 1};
    case 5:
      return {0, 1, 1, 0, 0, 0};
    case 6:
      return {0, 1, -1, 0, 1, 0};
    case 7:
      return {0, -1, -1, 0, 1, 1};
    case 8:
      return {0, -1, 1, 0, 0, 1};
    default:
      return {};
  }
}

}  // namespace

PictureStore::~PictureStore() {
  for (const auto& [digest, picture] : pictures_) cairo_surface_destroy(picture.surface);
}

const std::string& PictureStore::digestOf(const NSData& file) {
  Known& known = known_[file.contents()];
  if (!known.file) {
    gchar* text = g_compute_checksum_for_data(G_CHECKSUM_SHA256, file.bytes(), file.length());
    known = {file, text};
    g_free(text);
  }
  return known.digest;
}

// The document knows what it holds by the digest: a picture that comes again is not stored again.
void PictureStore::makeRoom() {
  if (keptPixels_ <= kMostKept) return;
  for (const auto& [digest, picture] : pictures_) cairo_surface_destroy(picture.surface);
  pictures_.clear();
  keptPixels_ = 0;
}

// Drawing counts as decoding, by what it may cost.
cairo_surface_t* PictureStore::drawnSurface(const NSData& file) {
  constexpr int64_t kWorkADecodedPixel = 500;
  if (decodedPixels_ >= kMostDecoded) return nullptr;
  const SVGClaims claims = svgClaimsOf(file.chars());
  const FontLock lock;  // drawings hold text
  cairo_surface_t* surface = decodedSurface(file, claims.mostPixels);
  decodedPixels_ += 10 * file.length();
  if (!surface) return nullptr;
  const int64_t pixels =
      int64_t{cairo_image_surface_get_width(surface)} * cairo_image_surface_get_height(surface);
  decodedPixels_ += static_cast<size_t>(pixels + pixels * claims.workAPixel / kWorkADecodedPixel);
  keptPixels_ += static_cast<size_t>(pixels);
  return surface;
}

const StoredPicture* PictureStore::find(const NSData& file) {
  if (file.isEmpty()) return nullptr;
  const std::string& digest = digestOf(file);
  const auto known = pictures_.find(digest);
  if (known != pictures_.end()) return known->second.surface ? &known->second : nullptr;
  makeRoom();
  StoredPicture& picture = pictures_[digest];
  const ImageDetails details = imageDetailsOf(file);
  if (!details.format) return nullptr;
  const size_t pixels = static_cast<size_t>(details.width) * static_cast<size_t>(details.height);
  if (details.isPlainJPEG) {
    picture.surface = jpegSurface(file, details);
    picture.turn = turnFor(details.orientation);
  } else if (details.format->loader == std::string_view("svg")) {
    picture.surface = drawnSurface(file);
  } else if (decodedPixels_ + pixels <= kMostDecoded) {
    decodedPixels_ += pixels;
    keptPixels_ += pixels;
    picture.surface = decodedSurface(file, 0);
  }
  if (!picture.surface) return nullptr;
  picture.width = cairo_image_surface_get_width(picture.surface);
  picture.height = cairo_image_surface_get_height(picture.surface);
  if (picture.width <= 0 || picture.height <= 0) {
    cairo_surface_destroy(picture.surface);
    picture.surface = nullptr;
    return nullptr;
  }
  attach(picture.surface, CAIRO_MIME_TYPE_UNIQUE_ID, digest);
  return &picture;
}

}  // namespace kelspar
