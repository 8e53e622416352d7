// An attachment's pixels as Cairo takes them. Internal to the library.
#pragma once

#include "platform/foundation/foundation.h"

typedef struct _cairo_surface cairo_surface_t;

namespace kelspar {

// JPEG data without a stated orientation are handed on as they are. Null for what is no image. To
// be destroyed by the caller.
[[nodiscard]] cairo_surface_t* newImageSurface(const NSData& file);

}  // namespace kelspar
