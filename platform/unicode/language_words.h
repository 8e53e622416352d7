// Everyday words as a sign of a text's language. Internal to the detector.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kelspar {

// For each row of `languageLetters()`, how many words of the text are everyday words of that
// language. Words hold ASCII letters alone, so that they read the same under every code page;
// languages that are not written in Latin letters have none. Looks at a few hundred words at most.
[[nodiscard]] std::vector<uint16_t> countEverydayWords(std::string_view bytes);

}  // namespace kelspar
