// Device-independent bitmaps (MS-WMF 2.2.2.9): a header, colours, rows of pixels. Internal.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelspar {

// A BITMAPFILEHEADER before the bitmap; nothing when it has no proper header of its own, or one
// that asks for more pixels than anybody would look at.
[[nodiscard]] std::string bitmapFile(std::string_view bitmap);

// Of the same bitmap in two parts, as enhanced metafiles keep it.
[[nodiscard]] std::string bitmapFile(std::string_view headerAndColors, std::string_view pixels);

// Pixels from the first row down, 0xAARRGGBB, not premultiplied.
struct Pixels {
  int width = 0, height = 0;
  std::vector<uint32_t> colors;
};

// What `bitmapFile` gave, decoded: 1, 4, 8, 16, 24 and 32 bits without compression. Pixels of 32
// bits keep their fourth byte, all others are opaque. Rows that are missing at the end are left
// out. Nothing for what is compressed, has more than 4 million pixels or less than half its rows.
[[nodiscard]] std::optional<Pixels> pixelsOf(std::string_view file);

// A BMP file with transparency (BITMAPV4HEADER).
[[nodiscard]] std::string bitmapFile(const Pixels& pixels);

}  // namespace kelspar
