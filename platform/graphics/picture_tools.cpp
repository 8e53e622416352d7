// Decoded pictures through the store that documents use, and through the loaders alone.
#include "platform/graphics/picture_tools.h"

#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <sys/mman.h>

#include <algorithm>

#include "platform/graphics/picture_store.h"

namespace kelspar::testtools {

uint32_t colorInTheMiddle(std::string_view file) {
  PictureStore store;
  const StoredPicture* picture = store.find(NSData(file));
  if (!picture) return 0;
  cairo_surface_flush(picture->surface);
  const unsigned char* row =
      cairo_image_surface_get_data(picture->surface) +
      static_cast<ptrdiff_t>(cairo_image_surface_get_stride(picture->surface)) *
          (picture->height / 2);
  return reinterpret_cast<const uint32_t*>(row)[picture->width / 2];
}

uint32_t loadedColor(const char* name, std::string_view file) {
  GdkPixbufLoader* loader = gdk_pixbuf_loader_new_with_type(name, nullptr);
  if (!loader) return 0;
  gdk_pixbuf_loader_write(loader, reinterpret_cast<const guchar*>(file.data()), file.size(),
                          nullptr);
  gdk_pixbuf_loader_close(loader, nullptr);
  uint32_t color = 0;
  if (const GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(loader)) {
    const guchar* at = gdk_pixbuf_read_pixels(pixels) +
                       gdk_pixbuf_get_height(pixels) / 2 * gdk_pixbuf_get_rowstride(pixels) +
                       gdk_pixbuf_get_width(pixels) / 2 * gdk_pixbuf_get_n_channels(pixels);
    for (int i = 0; i < gdk_pixbuf_get_n_channels(pixels); ++i) {
      color |= static_cast<uint32_t>(at[i]) << 8 * i;
    }
  }
  g_object_unref(loader);
  return color;
}

bool isKnownWithoutItsBytes(std::string_view file) {
  void* pages =
      mmap(nullptr, file.size(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) return false;
  std::ranges::copy(file, static_cast<char*>(pages));
  bool isKnown = false;
  {
    const NSData data = NSData::fromStatic({static_cast<const uint8_t*>(pages), file.size()});
    PictureStore store;
    const StoredPicture* picture = store.find(data);
    mprotect(pages, file.size(), PROT_NONE);
    isKnown = picture && store.find(data) == picture;
  }
  munmap(pages, file.size());
  return isKnown;
}

}  // namespace kelspar::testtools
