// Colours of HTML that RTF carries, and the RTF groups and colour tables that they belong into.
//
// The receiver is the text that an operation reads. All are linear in it, never raise, log nothing,
// and may be called from any thread.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar::RTFKelsparNSStringAdditions {

// Span colours

// The lines of the receiver (split at "\n") whose first span start tag gives the property
// `searchString` a value and that hold `tag` as well, in order. Each is a LineRecord, a dictionary:
//
//   "LineContent"  the line without its "\n"; a carriage return before it belongs to the line
//   "LineNumber"   its index among all lines, from 0
//   "LineColour"   the value, as `searchLineForSpanItem` gives it
//
// The empty list when an argument or the receiver is nil or empty.
//
//   getLineNumbersForTag(rtf, u"htmltag148", u"color")
[[nodiscard]] NSArray getLineNumbersForTag(const NSString& receiver, const NSString& tag,
                                           const NSString& searchString);

// The value of the property `item` in the first span start tag: up to a semicolon, a quotation mark
// or white space. nil when there is no such value.
//
// Deliberate: `item` goes into the pattern `item\s*:\s*([^;'"\s]+)` as it stands. It is not
// anchored, so "color" finds "background-color" where that comes first, and an item with the syntax
// of regular expressions has its meaning: the value is what the pattern's first group took. A
// broken pattern finds nothing. "rgb(1, 2, 3)" ends at its first blank.
//
//   searchLineForSpanItem(u"<span style='color:#00f'>", u"color")   // "#00f"
[[nodiscard]] NSString searchLineForSpanItem(const NSString& receiver, const NSString& item);

// CSS colours

// The receiver, a colour in any of the three forms below, as an entry of an RTF colour table:
// "\red255\green0\blue0" for "red". Everything else, nil too, is black.
[[nodiscard]] NSString convertToRTFColour(const NSString& receiver);

// The three forms, blanks around them aside. Each writes three numbers from 0 to 255 and is true,
// or writes nothing and is false; a null pointer is false.
//
// Six hexadecimal digits, or three that are doubled, behind "#", "0x" or nothing. Deliberate:
// what is left behind the prefix is scanned as a number, which may again have leading blanks and
// "0x" ("#0xABCD" is 0, 171, 205).
bool parseHexColorWithRed(const NSString& receiver, int32_t* red, int32_t* green, int32_t* blue);
// "rgb(10, 20, 30)" anywhere in the text, in any case. No percentages, no "rgba".
bool parseRGBColorWithRed(const NSString& receiver, int32_t* red, int32_t* green, int32_t* blue);
// One of 21 names in any case: CSS 2.1's, cyan, magenta, grey and windowtext (black).
bool parseNamedColorWithRed(const NSString& receiver, int32_t* red, int32_t* green, int32_t* blue);

// `text` with a backslash before each of . * + ? ^ $ { } ( ) | [ ] \. The receiver is not used.
[[nodiscard]] NSString escapeRegexSpecialCharacters(const NSString& receiver, const NSString& text);

// RTF groups (RTF 1.9.1)

// The first group that begins with "{\" and `tag`, through its closing brace. Braces behind an odd
// number of backslashes are text. nil when there is none or it is not closed.
//
// Deliberate: the name is a plain prefix, so "colortbl" finds "{\colortbl2" as well.
[[nodiscard]] NSString extractRTFTagContent(const NSString& receiver, const NSString& tag);

// The same for `tag` without blanks around it; nil for a tag that is nil, empty or blank.
[[nodiscard]] NSString getContentOfRTFTag(const NSString& receiver, const NSString& tag);

// The receiver with each occurrence of the text of that group replaced; nil for `replacement` is
// the empty text. The receiver itself where there is no such group.
[[nodiscard]] NSString stringByReplacingContentOfTag(const NSString& receiver, const NSString& tag,
                                                     const NSString& replacement);

// Colour tables

// The definitions of the colour-table group `table`: braces and "\colortbl" taken out, no blanks or
// line ends around. The receiver is not used. nil for nil and for the empty text.
[[nodiscard]] NSString extractColorDefinitionsFromTable(const NSString& receiver,
                                                        const NSString& table);

// The receiver's colour table, an entry a ColourBlock, a dictionary:
//
//   "Index"      the entry's position, from 0
//   "RTFColour"  its definition without the semicolon; empty for the automatic colour that leads
//                most tables. Empty definitions further on are dropped.
//
// The empty list when there is no table.
[[nodiscard]] NSArray buildColourBlockArray(const NSString& receiver);

}  // namespace kelspar::RTFKelsparNSStringAdditions
