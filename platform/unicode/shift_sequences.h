// Whether seven-bit text shifts between sets as ISO 2022 and HZ do. Internal to the detector.
#pragma once

#include <string_view>

namespace kelspar {

// Such bytes are valid ASCII as well, and what is taken for a shift vanishes from the text. So
// these ask for text that is whole. That each pair is a character is left to the decoder. Linear.

// ISO 2022 (RFC 1468, 1554, 1557, 1922): characters of two bytes, none but the known escapes, and
// at the end one byte is a character again.
[[nodiscard]] bool isWholeISO2022(std::string_view bytes);

// HZ (RFC 1843): "~{" is closed on its line, and the pairs in between, four at least, are nearly
// all in the rows of GB 2312 that hold the usual characters. ASCII between braces seldom is.
[[nodiscard]] bool isWholeHZ(std::string_view bytes);

}  // namespace kelspar
