// The letters beyond ASCII that languages use, the most frequent first. Internal to the detector.
#pragma once

#include <span>
#include <string_view>

namespace kelspar {

struct LanguageLetters {
  const char* language;         // ISO 639
  std::u16string_view letters;  // lower case, by falling frequency
};
[[nodiscard]] std::span<const LanguageLetters> languageLetters();

// Code pages that hold text of these languages; the price, in bits, says how seldom one is met.
struct CodePageLanguages {
  uint64_t encoding;
  int price;
  std::string_view languages;  // parted by blanks
};
[[nodiscard]] std::span<const CodePageLanguages> codePageLanguages();

// Frequent characters of the East Asian languages, in no particular order within a list.
extern const std::u16string_view kFrequentSimplified;
extern const std::u16string_view kFrequentTraditional;
extern const std::u16string_view kFrequentKanji;
extern const std::u16string_view kFrequentHangul;

}  // namespace kelspar
