// Looks at decoded pictures. For tests.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelspar::testtools {

// ARGB of the pixel in the middle (below and right of it), as Cairo keeps it; 0 for no picture.
uint32_t colorInTheMiddle(std::string_view file);

// The same of what a loader makes of the file by itself, red and blue changed.
uint32_t loadedColor(const char* name, std::string_view file);

// Whether the file is found again once its bytes can no longer be read.
bool isKnownWithoutItsBytes(std::string_view file);

}  // namespace kelspar::testtools
