// Text utilities: decoding of bytes of unknown encoding, byte strings, small helpers of text
// presentation. Class operations; all may be called from any thread, and none keeps state but the
// catalogue of encodings.
#pragma once

#include "platform/dispatch/NSTextField.h"
#include "platform/foundation/foundation.h"
#include "platform/richtext/NSAttributedString.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar {

class StringKelspar {
 public:
  // Encodings

  // Every encoding that can be decoded: display name ("Western (ISO Latin 1)") to its number. Built
  // once; each caller gets a copy of its own. Two encodings of one name both appear, the second as
  // "NAME (NUMBER)".
  [[nodiscard]] static NSMutableDictionary getStringEncodingsForText();

  // The bytes up to the NUL as ASCII, UTF-8, UTF-16 or Windows-1252, whichever accepts them first;
  // the empty string for null and when none does. Deliberate: an even number of bytes that are not
  // UTF-8 is mostly read as UTF-16.
  [[nodiscard]] static NSString stringFromCString(const char* bytes);

  // Whether a decoded text is plausible: at most one in five of its first 100 units is U+FFFD.
  // False for nil and the empty text.
  [[nodiscard]] static bool isValidDecodedString(const NSString& string);

  // A text of bytes in an unknown encoding: a string is given back as it is, data goes through the
  // encoding detector (see stringEncodingForData in NSEncodingDetector.h) and, where that is not
  // certain, through a list of 19 encodings. The empty string for nil, empty data and other values.
  [[nodiscard]] static NSString stringFromNSData(const id& object);

  // Byte strings

  // Whether two zero bytes stand at an even offset below `length`. Deliberate: with an odd length
  // the byte behind the last one is read when that one is 0; the buffer must reach that far.
  [[nodiscard]] static bool utf16CStringIsTerminated(const uint8_t* buffer, uint64_t length);

  // Takes all carriage returns out, in place. Null is left alone.
  static void removeCRsFromString(char* string);

  // The first place in the haystack where the needle stands, by the C library's `tolower`. The
  // haystack itself for an empty needle; null when either is null and when there is none. Linear.
  [[nodiscard]] static const char* caseInsensitiveSearchInString(const char* haystack,
                                                                 const char* needle);

  // A copy with a backslash before every double quote and backslash, to be freed with `free`; null
  // for null and when memory is short.
  [[nodiscard]] static char* escapeString(const char* string);

  // The argument; a place kept in the interface.
  [[nodiscard]] static NSString fixUnicode(const NSString& string);

  // Presentation

  // The translation of `key` in a message catalogue of gettext(3): the text domain is `table`
  // ("Localizable" when nil), its catalogues are LANGUAGE/LC_MESSAGES/TABLE.mo in the folder
  // ../share/locale beside the program's own. The host chooses the language with setlocale(3). The
  // key itself when it has no translation or an empty one; the empty string for no key.
  [[nodiscard]] static NSString localizedStringFor(const NSString& key, const NSString& table);

  // The formatted text (NSFormat.h) as UTF-8 and a line feed, to standard output.
  template <class... Arguments>
  static void printLog(const NSString& format, const Arguments&... arguments) {
    printLine(NSString::stringWithFormat(format, arguments...));
  }

  // `length` letters and digits, each drawn independently and uniformly from 62 by the kernel's
  // generator. Throws std::bad_alloc for more than 2^30.
  [[nodiscard]] static NSString randomStringWithLength(uint64_t length);
  // A random UUID (RFC 4122, version 4), 36 characters, upper case.
  [[nodiscard]] static NSString generateUUIDString();

  // The positions of all occurrences of `needle`, overlapping ones too, counted from 1: a match at
  // the very start is 1. Exact. Empty when either is missing or empty. Linear.
  //
  //   getLocationsOfString(u"aa", u"aaa")  // [1, 2]
  [[nodiscard]] static NSArray getLocationsOfString(const NSString& needle,
                                                    const NSString& haystack);

  // 0 to 25 for a letter of either case; -1 otherwise.
  [[nodiscard]] static int32_t indexOfCharacter(char character);
  // The first element whose first unit is the character; -1 without one, and for characters above
  // 127. Elements that are empty or no strings are passed over.
  [[nodiscard]] static int32_t indexOfCharacter(char character, const NSArray& array);
  // "A" for 0 to "Z" for 25; NUL for any other index.
  [[nodiscard]] static char characterAtIndex(int32_t index);

  // The first words, at most `count`, joined by single blanks. Words are parted by blanks and tabs;
  // a line end inside does not part them.
  [[nodiscard]] static NSString wordsFromString(const NSString& string, uint64_t count);

  // Brings `field` from a placeholder to `target`, digit by digit, and returns at once. The work
  // goes on on the concurrent queue; all that the field gets to hear comes on the main queue.
  //
  // Style 1 or 2: digits spin (/ - \ |) for `duration` with a pause of `interval`. Another style:
  // every digit counts up from 0. Times are in tenths of a second; a pause's fraction is dropped.
  // In the end the field gets `target` itself. There is no way to stop a transition.
  //
  // Deliberate: a spinning target that ends in no digit spins for ever (duration above 0).
  static void transitionText(const NSString& target, int32_t style, uint64_t duration,
                             float interval, const NSTextField& field);

  // The width in points of the text on lines without bounds (the widest one), rounded up to a whole
  // number; 0 for nil and the empty text. Costs one layout of the text.
  [[nodiscard]] static float getWidthForMutableString(const NSAttributedString& string);

  // The text itself where it is at most `maximum` points wide. Otherwise its longest prefix that is
  // so together with an ellipsis (U+2026) behind it, which looks like the text's last character; an
  // empty text where not even the ellipsis fits. The prefix may end inside a surrogate pair. Costs
  // log2(length) + 3 layouts at most.
  [[nodiscard]] static NSAttributedString fitAttributedString(const NSAttributedString& string,
                                                              float maximum);

 private:
  static void printLine(const NSString& line);
};

}  // namespace kelspar
