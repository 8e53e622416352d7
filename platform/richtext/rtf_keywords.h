// The control words that the RTF reader knows (RTF 1.9.1), and what each does. Internal.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelspar {

enum class RTFAction : uint8_t {
  none,         // known, without effect here
  emit,         // `value` is the UTF-16 unit that the word stands for
  skip,         // a destination whose content is not shown
  show,         // a destination whose content is text, also behind "\*"
  paragraph,    // \par, \sect
  line,         // \line
  cell,         // \cell, \nestcell
  row,          // \row, \nestrow
  unicode,      // \u
  skipCount,    // \uc
  font,         // \f
  assocFont,    // \af
  fontTable,    // \fonttbl
  charset,      // \fcharset
  fontPage,     // \cpg
  codePage,     // \ansicpg; or `value`, for \ansi, \mac, \pc, \pca
  defaultFont,  // \deff
  plain,        // \plain
  hidden,       // \v, \deleted
  direction,    // \ltrch (0), \rtlch (1)
  upr,          // \upr: the ANSI form of what \ud repeats in Unicode
  ud,           // \ud
  fromHTML,     // \fromhtml
  htmlTag,      // \htmltag
  htmlRTF,      // \htmlrtf
};

struct RTFKeyword {
  std::string_view word;
  RTFAction action;
  int32_t value;
};

// Null for a word that is not known. Constant time.
[[nodiscard]] const RTFKeyword* findRTFKeyword(std::string_view word);

}  // namespace kelspar
