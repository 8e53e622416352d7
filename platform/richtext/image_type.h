// What kind of picture a file's first bytes announce. Internal to the library.
#pragma once

#include <string_view>

namespace kelspar {

// PNG, JPEG, GIF, BMP, TIFF, icons and WebP by their signatures, as MIME types; empty for any other
// bytes.
[[nodiscard]] std::string_view imageTypeOf(std::string_view bytes);

}  // namespace kelspar
