// Bitmaps of metafiles as BMP files, and their pixels: sizes are checked before anything is made.
#include "platform/richtext/device_bitmap.h"

#include <algorithm>

#include "platform/richtext/little_fields.h"

namespace kelspar {

namespace {

constexpr size_t kFileHeader = 14, kInfoHeader = 40;
constexpr uint32_t kUncompressed = 0, kBitFields = 3;

void putLittle(uint32_t value, std::string* out) {
  for (int shift = 0; shift < 32; shift += 8) *out += static_cast<char>(value >> shift);
}

void putFileHeader(size_t length, size_t pixels, std::string* out) {
  *out += "BM";
  putLittle(static_cast<uint32_t>(length), out);
  putLittle(0, out);
  putLittle(static_cast<uint32_t>(pixels), out);
}

// Where the pixels begin behind the header; 0 for no proper bitmap.
size_t pixelsAt(std::string_view bitmap) {
  constexpr int64_t kMost = 100'000'000, kLongestSide = 30'000;
  const LittleFields fields(bitmap);
  const uint64_t header = fields.u32(0);
  if (header < kInfoHeader || header > bitmap.size()) return 0;
  const int64_t width = fields.i32(4), height = std::abs(int64_t{fields.i32(8)});
  if (width <= 0 || height == 0 || width > kLongestSide || height > kLongestSide) return 0;
  if (width * height > kMost) return 0;
  const uint32_t depth = fields.u16(14);
  uint64_t colors = fields.u32(32);
  if (colors == 0 && depth <= 8) colors = uint64_t{1} << depth;
  const bool hasMasks = fields.u32(16) == kBitFields && header == kInfoHeader;
  const uint64_t pixels = header + (hasMasks ? 12 : 0) + colors * 4;
  return pixels <= bitmap.size() ? pixels : 0;
}

uint32_t fiveBits(uint32_t value) { return value << 3 | value >> 2; }

uint32_t colorOf(const LittleFields& fields, uint32_t depth, size_t row, size_t x) {
  constexpr uint32_t kOpaque = 0xFF000000;
  const size_t palette = kFileHeader + fields.u32(kFileHeader);
  switch (depth) {
    case 16: {
      const uint32_t value = fields.u16(row + 2 * x);
      return kOpaque | fiveBits(value >> 10 & 31) << 16 | fiveBits(value >> 5 & 31) << 8 |
             fiveBits(value & 31);
    }
    case 24:
      return kOpaque | fields.u16(row + 3 * x) | fields.u8(row + 3 * x + 2) << 16;
    case 32:
      return fields.u32(row + 4 * x);
    default: {
      const size_t bit = x * depth;
      const uint32_t value = fields.u8(row + bit / 8) >> (8 - depth - bit % 8);
      return kOpaque | (fields.u32(palette + 4 * size_t{value & ((1U << depth) - 1)}) & ~kOpaque);
    }
  }
}

}  // namespace

std::string bitmapFile(std::string_view bitmap) {
  const size_t pixels = pixelsAt(bitmap);
  if (pixels == 0) return {};
  std::string file;
  putFileHeader(bitmap.size() + kFileHeader, pixels + kFileHeader, &file);
  return file.append(bitmap);
}

std::string bitmapFile(std::string_view headerAndColors, std::string_view pixels) {
  const size_t colorsEnd = pixelsAt(headerAndColors);
  if (colorsEnd == 0) return {};
  return bitmapFile(std::string(headerAndColors.substr(0, colorsEnd)).append(pixels));
}

std::optional<Pixels> pixelsOf(std::string_view file) {
  constexpr size_t kMost = 4'000'000;
  const LittleFields fields(file);
  const uint32_t depth = fields.u16(28), compression = fields.u32(30);
  if (depth == 0 || depth > 32 || (depth > 8 ? depth % 8 != 0 : 8 % depth != 0)) return {};
  if (compression != kUncompressed && !(compression == kBitFields && depth == 32)) return {};
  const int64_t stated = fields.i32(22);
  const size_t width = fields.u32(18), wanted = static_cast<size_t>(std::abs(stated));
  const size_t first = fields.u32(10), stride = (width * depth + 31) / 32 * 4;
  if (width == 0 || width * wanted > kMost || first > file.size()) return {};
  // Some records keep only the rows that they draw, under the header of them all.
  const size_t height = std::min(wanted, (file.size() - first) / stride);
  if (height == 0 || height < wanted / 2) return {};
  Pixels pixels{static_cast<int>(width), static_cast<int>(height), {}};
  pixels.colors.reserve(width * height);
  for (size_t y = 0; y < height; ++y) {
    const size_t row = first + (stated < 0 ? y : height - 1 - y) * stride;
    for (size_t x = 0; x < width; ++x) pixels.colors.push_back(colorOf(fields, depth, row, x));
  }
  return pixels;
}

std::string bitmapFile(const Pixels& pixels) {
  constexpr size_t kV4Header = 108, kBefore = kFileHeader + kV4Header;
  std::string file;
  putFileHeader(kBefore + pixels.colors.size() * 4, kBefore, &file);
  putLittle(kV4Header, &file);
  putLittle(static_cast<uint32_t>(pixels.width), &file);
  putLittle(static_cast<uint32_t>(pixels.height), &file);
  putLittle(32 << 16 | 1, &file);
  putLittle(kBitFields, &file);
  putLittle(static_cast<uint32_t>(pixels.colors.size() * 4), &file);
  file.append(16, '\0');
  for (const uint32_t mask : {0xFF0000U, 0xFF00U, 0xFFU, 0xFF000000U}) putLittle(mask, &file);
  file += "BGRs";  // sRGB
  file.append(kBefore - file.size(), '\0');
  const auto width = static_cast<ptrdiff_t>(pixels.width);
  for (ptrdiff_t y = pixels.height - 1; y >= 0; --y) {
    for (ptrdiff_t x = 0; x < width; ++x) {
      putLittle(pixels.colors[static_cast<size_t>(y * width + x)], &file);
    }
  }
  return file;
}

}  // namespace kelspar
