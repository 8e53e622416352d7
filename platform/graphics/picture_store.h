// Images of a document as Cairo takes them. Internal to the library.
#pragma once

#include <map>
#include <string>
#include <unordered_map>

#include "platform/foundation/foundation.h"

typedef struct _cairo_surface cairo_surface_t;

namespace kelspar {

// From places in the stored image to places in the upright one; both are the unit square.
struct UprightTurn {
  double xx = 1, yx = 0, xy = 0, yy = 1, x0 = 0, y0 = 0;
};

struct StoredPicture {
  cairo_surface_t* surface = nullptr;  // null: cannot be shown
  int width = 0, height = 0;           // as stored, in pixels
  UprightTurn turn;
};

// Images with the same bytes are decoded once, as long as they are small or near each other, and
// stored once in the document. JPEG data go into it as they are. The bytes of one NSData are read
// once, in however many places it is drawn.
class PictureStore {
 public:
  PictureStore() = default;
  PictureStore(const PictureStore&) = delete;
  ~PictureStore();

  // Null for what is no image and when the document has had its pixels (40 million decoded ones).
  // The picture stays until the next call.
  [[nodiscard]] const StoredPicture* find(const NSData& file);

 private:
  [[nodiscard]] const std::string& digestOf(const NSData& file);
  void makeRoom();
  [[nodiscard]] cairo_surface_t* drawnSurface(const NSData& file);

  struct Known {
    NSData file;  // so that no other contents come to stand at its address
    std::string digest;
  };
  std::unordered_map<const NSObject*, Known> known_;  // by contents
  std::map<std::string, StoredPicture> pictures_;     // by the digest of their bytes
  size_t keptPixels_ = 0, decodedPixels_ = 0;
};

}  // namespace kelspar
