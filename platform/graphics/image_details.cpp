// Sizes from GDK-PixBuf's loaders, stopped before the first pixel; resolution and orientation from
// the headers: PNG (pHYs), JFIF, EXIF and TIFF (the same directories), BMP.
#include "platform/graphics/image_details.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "platform/graphics/svg_claims.h"

namespace kelspar {

namespace {

using namespace std::string_view_literals;

constexpr double kCentimetresAnInch = 2.54, kMetresAnInch = 0.0254;

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

// Bytes with an order; what lies outside reads as 0.
class Fields {
 public:
  Fields(std::string_view bytes, bool isBigEndian) : bytes_(bytes), isBigEndian_(isBigEndian) {}

  uint32_t read(size_t at, size_t count) const {
    if (at > bytes_.size() || count > bytes_.size() - at) return 0;
    uint32_t value = 0;
    for (size_t i = 0; i < count; ++i) {
      const size_t place = isBigEndian_ ? i : count - 1 - i;
      value = value << 8 | static_cast<uint8_t>(bytes_[at + place]);
    }
    return value;
  }
  uint32_t u16(size_t at) const { return read(at, 2); }
  uint32_t u32(size_t at) const { return read(at, 4); }
  double ratio(size_t at) const {
    const uint32_t divisor = u32(at + 4);
    return divisor == 0 ? 0 : static_cast<double>(u32(at)) / divisor;
  }

 private:
  std::string_view bytes_;
  bool isBigEndian_;
};

void setDots(double across, double down, ImageDetails* details) {
  constexpr double kLeast = 18,
                   kMost = 4'800;  // beyond: scanners' mistakes and jokes
  const auto isSensible = [](double dots) { return dots >= kLeast && dots <= kMost; };
  if (!isSensible(across) || !isSensible(down)) return;
  details->dotsAcross = across;
  details->dotsDown = down;
}

// A TIFF 6.0 file, or what an EXIF segment holds of one: the first directory.
void readTIFF(std::string_view bytes, ImageDetails* details) {
  constexpr uint32_t kOrientation = 274, kAcross = 282, kDown = 283, kUnit = 296;
  constexpr size_t kMostEntries = 200, kEntrySize = 12;
  if (!bytes.starts_with("II") && !bytes.starts_with("MM")) return;
  const Fields fields(bytes, bytes[0] == 'M');
  const size_t directory = fields.u32(4);
  const size_t entries = std::min<size_t>(fields.u16(directory), kMostEntries);
  double across = 0, down = 0;
  uint32_t unit = 2;
  for (size_t i = 0; i < entries; ++i) {
    const size_t entry = directory + 2 + i * kEntrySize;
    const uint32_t tag = fields.u16(entry);
    if (tag == kOrientation) {
      const uint32_t value = fields.u16(entry + 8);
      if (value >= 1 && value <= 8) details->orientation = static_cast<int>(value);
    }
    if (tag == kAcross) across = fields.ratio(fields.u32(entry + 8));
    if (tag == kDown) down = fields.ratio(fields.u32(entry + 8));
    if (tag == kUnit) unit = fields.u16(entry + 8);
  }
  const double scale = unit == 2 ? 1 : unit == 3 ? kCentimetresAnInch : 0;
  setDots(across * scale, down * scale, details);
}

bool isFrameHeader(uint32_t marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// JPEG's segments up to the frame header. EXIF's resolution counts where JFIF
// states none.
void readJPEG(std::string_view bytes, ImageDetails* details) {
  const Fields fields(bytes, true);
  bool hasDots = false;
  for (size_t at = 2; at + 4 <= bytes.size() && fields.read(at, 1) == 0xFF;) {
    const uint32_t marker = fields.read(at + 1, 1);
    if (marker == 0xFF) {
      ++at;
      continue;
    }
    const size_t length = fields.u16(at + 2);
    const std::string_view segment = bytes.substr(at + 4, length < 2 ? 0 : length - 2);
    if (marker == 0xE0 && segment.starts_with("JFIF\0"sv) && !hasDots) {
      const uint32_t unit = fields.read(at + 11, 1);
      const double scale = unit == 1 ? 1 : unit == 2 ? kCentimetresAnInch : 0;
      setDots(fields.u16(at + 12) * scale, fields.u16(at + 14) * scale, details);
      hasDots = scale > 0;
    } else if (marker == 0xE1 && segment.starts_with("Exif\0\0"sv)) {
      const ImageDetails before = *details;
      readTIFF(segment.substr(6), details);
      if (hasDots) setDots(before.dotsAcross, before.dotsDown, details);
    } else if (isFrameHeader(marker)) {
      const uint32_t colors = fields.read(at + 9, 1);
      details->isPlainJPEG = fields.read(at + 4, 1) == 8 && (colors == 1 || colors == 3);
      details->height = static_cast<int>(fields.u16(at + 5));
      details->width = static_cast<int>(fields.u16(at + 7));
      return;
    }
    if (length < 2) return;
    at += 2 + length;
  }
}

void readPNG(std::string_view bytes, ImageDetails* details) {
  const Fields fields(bytes, true);
  for (size_t at = 8; at + 12 <= bytes.size();) {
    const std::string_view type = bytes.substr(at + 4, 4);
    if (type == "IDAT") return;
    if (type == "pHYs" && fields.read(at + 16, 1) == 1) {
      setDots(fields.u32(at + 8) * kMetresAnInch, fields.u32(at + 12) * kMetresAnInch, details);
    }
    at += size_t{12} + fields.u32(at);
  }
}

void readBMP(std::string_view bytes, ImageDetails* details) {
  const Fields fields(bytes, false);
  if (fields.u32(14) < 40) return;  // the old header has no resolution
  setDots(fields.u32(38) * kMetresAnInch, fields.u32(42) * kMetresAnInch, details);
}

// RFC 9649: a bit stream alone, lossy or lossless, or behind a header for both. The loader would
// decode the whole image to tell its size.
PixelSize readWebPSize(std::string_view bytes) {
  const Fields fields(bytes, false);
  const std::string_view chunk = bytes.substr(0, 30).substr(std::min<size_t>(bytes.size(), 12));
  const auto sizeOf = [](uint32_t width, uint32_t height) {
    return PixelSize{static_cast<int>(width), static_cast<int>(height)};
  };
  if (chunk.starts_with("VP8 ")) return sizeOf(fields.u16(26) & 0x3FFF, fields.u16(28) & 0x3FFF);
  if (chunk.starts_with("VP8X")) return sizeOf(fields.read(24, 3) + 1, fields.read(27, 3) + 1);
  if (!chunk.starts_with("VP8L") || fields.read(20, 1) != 0x2F) return {};
  const uint32_t sizes = fields.u32(21);
  return sizeOf((sizes & 0x3FFF) + 1, (sizes >> 14 & 0x3FFF) + 1);
}

bool isInstalled(const char* loaderName) {
  GdkPixbufLoader* loader = gdk_pixbuf_loader_new_with_type(loaderName, nullptr);
  if (!loader) return false;
  gdk_pixbuf_loader_close(loader, nullptr);
  g_object_unref(loader);
  return true;
}

// What a loader would take memory for before it sees that the file is not that long.
bool areClaimsBearable(std::string_view bytes, std::string_view loader) {
  const Fields fields(bytes, false);
  if (loader == "bmp") {
    constexpr uint32_t kLongestHeader = 124, kShortHeader = 12, kMostColors = 65'536;
    const bool hasColorCount = fields.u32(14) > kShortHeader;
    return fields.u32(14) <= kLongestHeader && fields.u32(10) <= bytes.size() &&
           (!hasColorCount || fields.u32(46) <= kMostColors);
  }
  if (loader == "svg") return svgClaimsOf(bytes).mostPixels > 0;
  if (loader != "ico") return true;
  constexpr size_t kEntrySize = 16;
  for (size_t i = 0; i < fields.u16(4); ++i) {
    const size_t entry = 6 + i * kEntrySize;
    if (entry + kEntrySize > bytes.size() || fields.u32(entry + 12) > bytes.size()) return false;
  }
  return true;
}

}  // namespace

ImageDetails imageDetailsOf(const NSData& file) {
  ImageDetails details;
  const std::string_view bytes = file.chars();
  const ImageFormat& format = imageFormatOf(bytes);
  if (!format.loader) return {};
  const std::string_view loader = format.loader;
  if (!areClaimsBearable(bytes, loader)) return {};
  if (loader == "jpeg") readJPEG(bytes, &details);
  if (loader == "png") readPNG(bytes, &details);
  if (loader == "bmp") readBMP(bytes, &details);
  if (loader == "tiff") readTIFF(bytes, &details);
  if (!details.isPlainJPEG) {
    const bool isWebP = loader == "webp";
    if (isWebP && !isInstalled(format.loader)) return {};
    const PixelSize size = isWebP ? readWebPSize(bytes) : readSize(file, format.loader);
    details.width = size.width;
    details.height = size.height;
  }
  if (!isImageSizeBearable(details.width, details.height)) return {};
  details.format = &format;
  return details;
}

}  // namespace kelspar
