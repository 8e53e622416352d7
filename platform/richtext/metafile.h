// Windows metafiles (MS-WMF, MS-EMF, MS-EMFPLUS) as pictures that everybody shows. Internal.
#pragma once

#include <string>
#include <string_view>

namespace kelspar {

struct MetafileSize {
  double width = 0, height = 0;  // points
};

// A file of another kind with the same picture; empty when nothing is drawn or the records are no
// metafile's. `type` is its media type.
struct MetafilePicture {
  std::string_view type;
  std::string file;
  MetafileSize size;
};

// A metafile that only carries a bitmap over its whole area gives that bitmap (BMP, or the PNG or
// JPEG of an EMF+ image), any other a drawing (SVG) of at most 512 KB and 4 MB of bitmaps.
//
// `size` is what the document states; a side of 0 is taken from the file. Kept: lines, shapes,
// texts, bitmaps with their masks, pens, brushes' colours, fonts, mappings. Not kept: clipping,
// patterns, raster operations other than those that icons are made with.
//
// Linear in the bytes, whatever they claim.
[[nodiscard]] MetafilePicture pictureOfWMF(std::string_view bytes, MetafileSize size);
[[nodiscard]] MetafilePicture pictureOfEMF(std::string_view bytes, MetafileSize size);

}  // namespace kelspar
