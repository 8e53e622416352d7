// Records of enhanced metafiles (MS-EMF), and places as they hold them. Internal.
#pragma once

#include <string_view>
#include <vector>

#include "platform/richtext/little_fields.h"
#include "platform/richtext/metafile_drawing.h"

namespace kelspar::emf {

// MS-EMF 2.1.1.
enum Record : uint32_t {
  kHeader = 1,
  kPolyBezier = 2,
  kPolygon = 3,
  kPolyline = 4,
  kPolyBezierTo = 5,
  kPolylineTo = 6,
  kPolyPolyline = 7,
  kPolyPolygon = 8,
  kSetWindowExtent = 9,
  kSetWindowOrigin = 10,
  kSetViewportExtent = 11,
  kSetViewportOrigin = 12,
  kEndOfFile = 14,
  kSetMapMode = 17,
  kSetPolyFillMode = 19,
  kSetTextAlign = 22,
  kSetTextColor = 24,
  kSetBackground = 25,
  kMoveTo = 27,
  kSaveDC = 33,
  kRestoreDC = 34,
  kSetWorldTransform = 35,
  kModifyWorldTransform = 36,
  kSelectObject = 37,
  kCreatePen = 38,
  kCreateBrush = 39,
  kDeleteObject = 40,
  kEllipse = 42,
  kRectangle = 43,
  kRoundRect = 44,
  kArc = 45,
  kChord = 46,
  kPie = 47,
  kLineTo = 54,
  kBeginPath = 59,
  kEndPath = 60,
  kCloseFigure = 61,
  kFillPath = 62,
  kStrokeAndFillPath = 63,
  kStrokePath = 64,
  kAbortPath = 68,
  kComment = 70,
  kBitBlt = 76,
  kStretchBlt = 77,
  kMaskBlt = 78,
  kSetDIBitsToDevice = 80,
  kStretchDIBits = 81,
  kCreateFont = 82,
  kTextOut = 84,
  kPolyBezier16 = 85,
  kPolyPolygon16 = 91,
  kCreateMonoBrush = 93,
  kCreatePatternBrush = 94,
  kExtCreatePen = 95,
  kAlphaBlend = 114,
  kTransparentBlt = 116,
};

// Corners that may come in any order.
[[nodiscard]] MetafileRect rectOf(const LittleFields& r, size_t at);
// Place and size, each where it stands.
[[nodiscard]] MetafileRect boxOf(const LittleFields& r, size_t place, size_t size);
[[nodiscard]] MetafilePoint pointOf(const LittleFields& r, size_t at);
// As many as there are, of 16 or 32 bits a number.
[[nodiscard]] std::vector<MetafilePoint> pointsOf(const LittleFields& r, size_t at, size_t count,
                                                  bool isShort);
[[nodiscard]] MetafileMapping mappingOf(const LittleFields& r, size_t at);
// Of a record that makes a font.
[[nodiscard]] MetafileFont fontOf(const LittleFields& r);

// A record that draws a bitmap; others draw nothing.
void drawBitmap(uint32_t type, const LittleFields& r, MetafileDrawing* drawing);

// An image that a comment keeps as a whole file.
struct CommentImage {
  std::string_view type, file;
};
// Empty without one.
[[nodiscard]] CommentImage imageInComment(const LittleFields& r);

}  // namespace kelspar::emf
