// How characters and paragraphs of an RTF document look: the numbers that its words give. Internal.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/rtf_keywords.h"

namespace kelspar {

struct RTFLook {
  int32_t font = -1, associatedFont = -1;
  int32_t foreground = 0, background = 0;
  uint32_t link = 0;
  // The paragraph's style, whose look shows where no word was used since: a bit of `stated` for
  // each word. No bit is set without a style.
  int32_t style = -1;
  uint32_t stated = 0;
  int16_t size = 24, associatedSize = 24;  // half points
  int16_t raised = 0;                      // half points
  int8_t script = 0;
  bool bold = false, italic = false, associatedBold = false, associatedItalic = false;
  bool underline = false, strike = false, rightToLeft = false;
  friend bool operator==(const RTFLook&, const RTFLook&) = default;

  // A word of how characters look; false, and nothing happens, for any other.
  bool apply(int32_t word, int32_t parameter, bool isOn);
  // This look, with what another says of the rest.
  [[nodiscard]] RTFLook over(const RTFLook& base) const;

 private:
  // What a word turns on or off; null for any other.
  bool* flagOf(int32_t word);
};

struct RTFParagraph {
  int32_t left = 0, right = 0, first = 0, before = 0, after = 0, line = 0;  // twips
  int32_t tabs = -1;  // the last one of its list
  int32_t list = 0, listLevel = 0, style = -1, tableDepth = 0;
  uint32_t numbering = 0;
  int8_t outline = -1;
  NSTextAlignment alignment = NSTextAlignment::natural;
  bool rightToLeft = false, isMultiple = false, inTable = false;
  friend bool operator==(const RTFParagraph&, const RTFParagraph&) = default;

  // A word of how paragraphs look, tab stops and styles excepted; false for any other.
  bool apply(int32_t word, int32_t parameter, bool isOn);
  // This paragraph, with what another says of the rest.
  [[nodiscard]] RTFParagraph over(const RTFParagraph& base) const;
};

[[nodiscard]] size_t hash(const RTFLook& look);
[[nodiscard]] size_t hash(const RTFParagraph& paragraph);

}  // namespace kelspar
