// Bitmaps of enhanced metafiles (MS-EMF), and of EMF+ (MS-EMFPLUS) the images that it keeps as
// files.
#include <utility>

#include "platform/richtext/emf_records.h"
#include "platform/richtext/image_type.h"

namespace kelspar::emf {

namespace {

// Bits that a record keeps as two parts: where the header stands, and the pixels behind it.
std::string bitmapAt(const LittleFields& r, size_t at) {
  return bitmapFile(r.part(r.u32(at), r.u32(at + 4)), r.part(r.u32(at + 8), r.u32(at + 12)));
}

// MS-EMF 2.3.1.3: where the mask is 1, the bitmap; elsewhere what was there.
void masked(const LittleFields& r, MetafileDrawing* drawing) {
  auto pixels = pixelsOf(bitmapAt(r, 84));
  if (!pixels) return drawing->paintPattern(r.u32(40), boxOf(r, 24, 32));
  const auto mask = pixelsOf(bitmapAt(r, 112));
  const bool fits = mask && mask->width == pixels->width && mask->height == pixels->height;
  for (size_t i = 0; i < pixels->colors.size(); ++i) {
    const bool isShown = !fits || (mask->colors[i] & 0xFF) >= 0x80;
    pixels->colors[i] = isShown ? pixels->colors[i] | 0xFF000000 : 0;
  }
  drawing->bitmap(std::move(*pixels), boxOf(r, 24, 32), boxOf(r, 44, 32));
}

// MS-EMF 2.3.1.1: colours may be premultiplied, all may be faint.
void blended(const LittleFields& r, MetafileDrawing* drawing) {
  auto pixels = pixelsOf(bitmapAt(r, 84));
  if (!pixels) return;
  const uint32_t constant = r.u8(42);
  const bool hasAlpha = r.u8(43) == 1;
  for (uint32_t& color : pixels->colors) {
    const uint32_t alpha = hasAlpha ? color >> 24 : 255;
    uint32_t plain = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      const uint32_t channel = color >> shift & 255;
      plain |= (alpha == 0 ? 0 : std::min(255U, channel * 255 / alpha)) << shift;
    }
    color = plain | (alpha * constant / 255) << 24;
  }
  drawing->bitmap(std::move(*pixels), boxOf(r, 24, 32), boxOf(r, 44, 100));
}

void keyed(const LittleFields& r, MetafileDrawing* drawing) {
  auto pixels = pixelsOf(bitmapAt(r, 84));
  if (!pixels) return;
  const uint32_t key = (r.u32(40) & 255) << 16 | (r.u32(40) & 0xFF00) | (r.u32(40) >> 16 & 255);
  for (uint32_t& color : pixels->colors) {
    color = (color & 0xFFFFFF) == key ? 0 : color | 0xFF000000;
  }
  drawing->bitmap(std::move(*pixels), boxOf(r, 24, 32), boxOf(r, 44, 100));
}

}  // namespace

void drawBitmap(uint32_t type, const LittleFields& r, MetafileDrawing* drawing) {
  switch (type) {
    case kBitBlt:
    case kStretchBlt: {
      const MetafileRect to = boxOf(r, 24, 32);
      if (r.u32(88) == 0) return drawing->paintPattern(r.u32(40), to);
      return drawing->bitmap(bitmapAt(r, 84), to,
                             type == kBitBlt ? boxOf(r, 44, 32) : boxOf(r, 44, 100), r.u32(40));
    }
    case kStretchDIBits:
      return drawing->bitmap(bitmapAt(r, 48), boxOf(r, 24, 72), boxOf(r, 32, 40), r.u32(68));
    case kSetDIBitsToDevice: {
      MetafileRect to = boxOf(r, 24, 40);
      return drawing->bitmap(bitmapAt(r, 48), to, boxOf(r, 32, 40), MetafileDrawing::kSourceCopy);
    }
    case kMaskBlt:
      return masked(r, drawing);
    case kAlphaBlend:
      return blended(r, drawing);
    case kTransparentBlt:
      return keyed(r, drawing);
    default:
      return;
  }
}

// MS-EMFPLUS 2.3.5.1 and 2.2.1.4: an image object whose bitmap is a whole file.
CommentImage imageInComment(const LittleFields& r) {
  constexpr uint32_t kEMFPlus = 0x2B464D45, kObject = 0x4008, kImage = 5, kBitmap = 1,
                     kCompressed = 1;
  constexpr size_t kRecordHeader = 12;
  if (r.u32(12) != kEMFPlus) return {};
  for (size_t at = 16; at + kRecordHeader <= r.size();) {
    const uint32_t length = r.u32(at + 4);
    if (length < kRecordHeader) return {};
    const LittleFields object(r.part(at + kRecordHeader, length - kRecordHeader));
    const bool isImage = r.u16(at) == kObject && (r.u16(at + 2) >> 8 & 0x7F) == kImage;
    if (isImage && object.u32(4) == kBitmap && object.u32(24) == kCompressed) {
      const std::string_view file = object.from(28);
      const std::string_view type = imageTypeOf(file);
      if (type == "image/png" || type == "image/jpeg") return {type, file};
    }
    if (length > r.size() - at) return {};
    at += length;
  }
  return {};
}

}  // namespace kelspar::emf
