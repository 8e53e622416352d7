// Any bytes as a metafile of either kind: nothing, or a file that is whole and no larger than
// stated, as often as it is asked for; its size is what was asked or one that can be shown.
#include <cmath>
#include <cstdlib>

#include "platform/richtext/device_bitmap.h"
#include "platform/richtext/metafile.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

bool isBearable(double side) { return std::isfinite(side) && side > 0 && side <= 14'400; }

// Tags open and close, and nothing stands in them that would end them.
bool isWhole(std::string_view drawing) {
  int depth = 0;
  for (size_t at = 0; (at = drawing.find('<', at)) != drawing.npos; ++at) {
    const size_t end = drawing.find_first_of("<>", at + 1);
    if (end == drawing.npos || drawing[end] == '<') return false;
    if (drawing[at + 1] == '/') {
      --depth;
    } else if (drawing[end - 1] != '/') {
      ++depth;
    }
    if (depth < 0) return false;
  }
  for (const char c : drawing) {
    if (static_cast<unsigned char>(c) < ' ' && c != '\n') return false;
  }
  return depth == 0 && drawing.starts_with("<svg ") && drawing.ends_with("</svg>\n");
}

void checkPicture(std::string_view bytes, const MetafilePicture& picture) {
  constexpr size_t kLongestDrawing = 700'000, kMostBitmaps = 4'300'000;
  check(picture.file.empty() == picture.type.empty());
  if (picture.file.empty()) return;
  check(isBearable(picture.size.width) && isBearable(picture.size.height));
  if (picture.type == "image/svg+xml") {
    // One bitmap may be behind the last that fits.
    check(picture.file.size() < kLongestDrawing + kMostBitmaps + 48 * bytes.size());
    check(isWhole(picture.file));
  } else {
    check(picture.file.size() <= bytes.size() + 14 || picture.type == "image/bmp");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const MetafileSize wanted : {MetafileSize{100, 50}, MetafileSize{}}) {
    checkPicture(bytes, pictureOfWMF(bytes, wanted));
    checkPicture(bytes, pictureOfEMF(bytes, wanted));
  }
  check(pictureOfEMF(bytes, {9, 9}).file == pictureOfEMF(bytes, {9, 9}).file);
  if (const auto pixels = pixelsOf(bitmapFile(bytes))) {
    const auto again = pixelsOf(bitmapFile(*pixels));
    check(again && again->width == pixels->width && again->colors == pixels->colors);
  }
  return 0;
}
