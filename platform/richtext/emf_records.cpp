// Fields of enhanced metafiles' records (MS-EMF) as values.
#include "platform/richtext/emf_records.h"

#include <algorithm>
#include <cmath>

namespace kelspar::emf {

MetafileRect rectOf(const LittleFields& r, size_t at) {
  const double left = r.i32(at), top = r.i32(at + 4), right = r.i32(at + 8),
               bottom = r.i32(at + 12);
  return {std::min(left, right), std::min(top, bottom), std::abs(right - left),
          std::abs(bottom - top)};
}

MetafileRect boxOf(const LittleFields& r, size_t place, size_t size) {
  return {double(r.i32(place)), double(r.i32(place + 4)), double(r.i32(size)),
          double(r.i32(size + 4))};
}

MetafilePoint pointOf(const LittleFields& r, size_t at) {
  return {double(r.i32(at)), double(r.i32(at + 4))};
}

std::vector<MetafilePoint> pointsOf(const LittleFields& r, size_t at, size_t count, bool isShort) {
  const size_t size = isShort ? 4 : 8;
  count = std::min(count, r.size() > at ? (r.size() - at) / size : 0);
  std::vector<MetafilePoint> points;
  for (size_t i = 0; i < count; ++i) {
    const size_t place = at + i * size;
    points.push_back(isShort ? MetafilePoint{double(r.i16(place)), double(r.i16(place + 2))}
                             : pointOf(r, place));
  }
  return points;
}

MetafileMapping mappingOf(const LittleFields& r, size_t at) {
  return {r.f32(at), r.f32(at + 4), r.f32(at + 8), r.f32(at + 12), r.f32(at + 16), r.f32(at + 20)};
}

MetafileFont fontOf(const LittleFields& r) {
  constexpr size_t kFace = 40, kFaceUnits = 32;
  constexpr int32_t kBold = 600;
  MetafileFont font{.height = double(r.i32(12)),
                    .escapement = r.i32(20) / 10.0,
                    .bold = r.i32(28) >= kBold,
                    .italic = r.u8(32) != 0,
                    .underline = r.u8(33) != 0,
                    .strikethrough = r.u8(34) != 0,
                    .charset = int(r.u8(35)),
                    .face = {}};
  for (size_t i = 0; i < kFaceUnits && r.u16(kFace + 2 * i) != 0; ++i) {
    font.face += static_cast<char16_t>(r.u16(kFace + 2 * i));
  }
  return font;
}

}  // namespace kelspar::emf
