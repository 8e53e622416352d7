// Guesses by the frequency of letters. Internal to the detector.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "platform/unicode/NSStringEncoding.h"

namespace kelspar {

// The encodings that may be tried on bytes that are no UTF-8, the best first. Those suggested get
// the benefit of the doubt.
[[nodiscard]] std::vector<NSStringEncoding> guessEncodings(
    std::string_view bytes, std::span<const NSStringEncoding> suggested);

}  // namespace kelspar
