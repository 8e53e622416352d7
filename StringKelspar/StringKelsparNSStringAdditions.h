// String cleanup: what mail of doubtful quality leaves in a text. Operations on strings.
//
// The receiver comes first. Positions and lengths count UTF-16 code units, and units are compared
// one by one unless case is ignored (full Unicode case folding then). What finds nothing to do
// gives the receiver itself back. A missing receiver gives nil or false where nothing else is said.
// All are linear in their input and may run on any thread.
#pragma once

#include "platform/foundation/foundation.h"
#include "platform/unicode/NSCharacterSet.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar::StringKelsparNSStringAdditions {

// Trimming

// Without the U+0000 units at the end.
[[nodiscard]] NSString trimTrailingNulls(const NSString& receiver);

// From the first unit on that is not in the set; empty when there is none. A missing receiver
// counts as empty here and in the next.
[[nodiscard]] NSString stringByTrimmingLeadingCharactersInSet(const NSString& receiver,
                                                              const NSCharacterSet& set);
// Between the first and the last unit that are not in the set.
[[nodiscard]] NSString stringByTrimmingLeadingAndTrailingCharactersInSet(const NSString& receiver,
                                                                         const NSCharacterSet& set);

// Without `string` at the end or the start, once, if it stands there; case counts.
[[nodiscard]] NSString removeTrailingString(const NSString& receiver, const NSString& string);
[[nodiscard]] NSString removeLeadingString(const NSString& receiver, const NSString& string);

// Splitting

// The pieces between the occurrences of `separator`, case ignored, empty ones included. A separator
// that is missing, empty or not found: the receiver alone. Never empty.
[[nodiscard]] NSMutableArray componentsSeparatedByCaseInsensitiveString(const NSString& receiver,
                                                                        const NSString& separator);

// Splits at the first separator of the list that occurs at all; elements that are no strings, or
// empty, are passed over. Without preserveCase, receiver and separator are upper-cased and compared
// exactly, and the pieces come back upper-cased, also where no separator occurs: the intended
// result.
//
// nil without separators; an empty or missing receiver gives one empty piece.
[[nodiscard]] NSArray stringSeparatedWithComponents(const NSString& receiver,
                                                    const NSArray& separators);
[[nodiscard]] NSArray stringSeparatedWithComponents(const NSString& receiver,
                                                    const NSArray& separators, bool preserveCase);

// Replacing: a missing replacement is the empty string.

// Each unit that occurs in `characters` is replaced on its own.
[[nodiscard]] NSString stringByReplacingOccurrencesOfCharactersInString(
    const NSString& receiver, const NSString& characters, const NSString& replacement);

// Every element replaced in turn, exactly; a later one sees what an earlier one produced. Empty
// strings are passed over, elements that are no strings are logged and passed over. Each element
// costs a search of the text as it then is.
//
//   stringByReplacingOccurrencesOfStringsInArray(u"cid:{a}", {u"cid:"_ns, u"{"_ns, u"}"_ns}, u"")
//       // "a"
[[nodiscard]] NSString stringByReplacingOccurrencesOfStringsInArray(const NSString& receiver,
                                                                    const NSArray& strings,
                                                                    const NSString& replacement);

// Every occurrence of `target`, case ignored. ("Occurences" is the operation's name.)
[[nodiscard]] NSString stringByReplacingOccurencesOfCaseInsensitiveString(
    const NSString& receiver, const NSString& target, const NSString& replacement);

// Cleaning

// Words joined by single blanks: runs of white space (no line ends) become one, none is left at
// the ends. Line ends stay as they are.
[[nodiscard]] NSString condenseWhitespace(const NSString& receiver);

// Without U+0000-0008, U+000B and U+000E-001F.
[[nodiscard]] NSString cleanString(const NSString& receiver);

// Without U+0000, U+0001 and U+00A0; of every other unit the low byte.
// Deliberate: "Ā" (U+0100) becomes U+0000.
[[nodiscard]] NSString trimCharsInString(const NSString& receiver);

// Runs of line feeds become one, then carriage returns go.
// Deliberate order: LF CR LF becomes two line feeds.
[[nodiscard]] NSString replaceDoubleNewline(const NSString& receiver);

// Cuts the text where it turns into units from U+3001 on: at the third of them, unless they come
// before four lower ones. The cut keeps as many units as lower ones were counted, wherever they
// stand. U+0000 behind a lower unit ends the count.
[[nodiscard]] NSString truncateAtGarbageCharacters(const NSString& receiver);

// Garbage cut off, percent escapes decoded as UTF-8 (if all are valid), unassigned characters taken
// out, both ends trimmed.
[[nodiscard]] NSString zapGremlins(const NSString& receiver);

// From lines (mbox): a line that begins with any number of ">" and "From " gets one ">" more, or
// loses one. LF, CR LF and a lone CR end lines and are kept. Empty or missing: the empty string.
[[nodiscard]] NSString escapeFromLines(const NSString& receiver);
[[nodiscard]] NSString unescapeFromLines(const NSString& receiver);

// Decoding

// "%XX" to bytes, other characters as their UTF-8 bytes, then all bytes as text in `encoding`; nil
// when they are not valid in it.
//
// Deliberate: only as many UTF-8 bytes are read as the receiver has units, and an escape must end
// before that bound, not at it. The two digits are read as scanf's "%x" does (blanks, a sign, "0x",
// one digit); what is no number gives the value of the last good escape, 0 at first.
//
//   decodedStringFromPercentEscapesUsingEncoding(u"a%41b%4", NSUTF8StringEncoding)  // "aAb%4"
[[nodiscard]] NSString decodedStringFromPercentEscapesUsingEncoding(const NSString& receiver,
                                                                    NSStringEncoding encoding);

// Questions

// Whether the text is HTML by its beginning and end, its doctype or two of three tags.
// Deliberate: a text of 13 to 19 units is never HTML by its ends.
[[nodiscard]] bool isHTML(const NSString& receiver);

// Whether the value is a text, well-formed, of letters, marks, digits and common punctuation: all
// of it (strict), or all but 5 % of its units. Any value may be asked.
[[nodiscard]] bool isValidNSStringWithStrictCheck(const id& receiver, bool strict);

}  // namespace kelspar::StringKelsparNSStringAdditions
