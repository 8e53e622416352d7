// Which SVG drawings are drawn, and how large. Internal to the library.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelspar {

struct SVGClaims {
  int64_t mostPixels = 0;  // what it may be given; 0: it is not drawn
  int64_t workAPixel = 0;  // plain shapes that may cover it
};

// So that a drawing takes a second or two, and bounded memory.
//
// A few lines of SVG can keep a renderer busy for hours: filters, copies of copies, shapes with a
// hundred thousand corners. Files of more than 128 KB (images inside not counted), with entities
// of their own, with filters, copies, patterns, markers or masks are refused, and so are images
// inside that are no bearable PNG, JPEG, GIF, BMP or WebP in base64.
[[nodiscard]] SVGClaims svgClaimsOf(std::string_view file);

}  // namespace kelspar
