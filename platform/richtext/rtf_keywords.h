// The control words that the RTF reader knows (RTF 1.9.1), and what each does. Internal.
#pragma once

#include <cstdint>
#include <string_view>

namespace kelspar {

enum class RTFAction : uint8_t {
  emit,         // `value` is the UTF-16 unit that the word stands for
  skip,         // a destination whose content is not shown
  show,         // a destination whose content is text, also behind "\*"
  itemText,     // \listtext, \pntext: the marker of a list's item
  paragraph,    // \par
  section,      // \sect: ends a paragraph that has begun
  line,         // \line
  cell,         // \cell; \nestcell, with a `value` of 1
  row,          // \row; \nestrow, with a `value` of 1
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
  pard,         // \pard
  hidden,       // \v, \deleted
  direction,    // \ltrch (0), \rtlch (1)
  upr,          // \upr: the ANSI form of what \ud repeats in Unicode
  ud,           // \ud
  fromHTML,     // \fromhtml
  htmlTag,      // \htmltag
  htmlRTF,      // \htmlrtf
  richOnly,     // a destination that matters to attributed text alone; `value` is an RTFDestination
  field,        // \field
  instruction,  // \fldinst
  fieldResult,  // \fldrslt
  shapeProperty,  // \sn: the name of a shape's property
  shapeValue,     // \sv: its value
  listTables,     // \listtable, \listoverridetable; `value` is an RTFDestination
  levelText,      // \leveltext
  list,           // describes lists, or names a paragraph's; `value` is an RTFFormatWord
  nestedRow,      // \nesttableprops: its words define a row of the nested table
  format,         // how text looks; `value` is one of RTFFormatWord
};

// What the reader does with the text of a group.
enum class RTFDestination : uint8_t {
  body,
  fontTable,
  skipped,
  listTable,
  overrideTable,
  levelText,
  instruction,
  propertyName,  // \sn
  // For attributed text alone; plain text skips them.
  colorTable,
  styleSheet,
  numbering,  // \pn
  picture,
};

// Words that change how text looks, by what they change.
enum RTFFormatWord : int32_t {
  // Characters
  kPlain,
  kBold,
  kItalic,
  kUnderline,
  kNoUnderline,
  kStrike,
  kSuperscript,
  kSubscript,
  kNoScript,
  kRaise,
  kLower,
  kSize,
  kForeground,
  kBackground,
  kHighlight,
  kAssociatedBold,
  kAssociatedItalic,
  kAssociatedSize,
  kFont,
  kAssociatedFont,
  kDirection,
  // Paragraphs
  kParagraphDefault,
  kAlignLeft,
  kAlignRight,
  kAlignCenter,
  kAlignJustified,
  kLeftIndent,
  kRightIndent,
  kFirstIndent,
  kSpaceBefore,
  kSpaceAfter,
  kLineSpacing,
  kLineSpacingMultiple,
  kTabStop,
  kTabRight,
  kTabCenter,
  kTabDecimal,
  kRightToLeftParagraph,
  kLeftToRightParagraph,
  kOutlineLevel,
  kStyle,
  kCharacterStyle,
  kInTable,
  kTableLevel,
  kListOverride,
  kListLevelOfParagraph,
  // Rows of tables
  kRowDefault,
  kCellEdge,
  kCellBackground,
  kCellBorderTop,
  kCellBorderRight,
  kCellBorderBottom,
  kCellBorderLeft,
  kBorderWidth,
  kBorderColor,
  kBorderNone,
  kFirstMerged,
  kMerged,
  kFirstMergedDown,
  kMergedDown,
  // Colours
  kRed,
  kGreen,
  kBlue,
  // Lists
  kList,
  kListLevel,
  kListId,
  kNumberFormat,
  kStartAt,
  kFollow,
  kOverride,
  kOverrideLevel,
  kOverrideStart,
  kOverrideFormat,
  kBulletNumbering,
  kDecimal,
  kUpperAlpha,
  kLowerAlpha,
  kUpperRoman,
  kLowerRoman,
  kNumberingStart,
  // Pictures
  kPNG,
  kJPEG,
  kMetafile,
  kEnhancedMetafile,
  kBitmap,
  kDeviceBitmap,
  kPictureWidth,
  kPictureHeight,
  kWantedWidth,
  kWantedHeight,
  kScaleX,
  kScaleY,
};

struct RTFKeyword {
  std::string_view word;
  RTFAction action;
  int32_t value;
};

// Null for a word that is not known. `key` is rtf::keyOf(word). Constant time.
[[nodiscard]] const RTFKeyword* findRTFKeyword(std::string_view word, uint64_t key);

}  // namespace kelspar
