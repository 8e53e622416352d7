// Text utilities: decoding of bytes of unknown encoding, byte strings, small helpers of text
// presentation. Class operations; all may be called from any thread.
#pragma once

#include "platform/foundation/foundation.h"
#include "platform/unicode/NSStringEncoding.h"

namespace kelspar {

class StringKelspar {
 public:
  // Encodings

  // Every encoding that can be decoded: display name ("Western (ISO Latin 1)") to its number. Built
  // once; each caller gets a copy of its own. Two encodings of one name both appear, the second as
  // "NAME (NUMBER)".
  [[nodiscard]] static NSMutableDictionary getStringEncodingsForText();

  // Presentation

  // The positions of all occurrences of `needle`, overlapping ones too, counted from 1: a match at
  // the very start is 1. Exact. Empty when either is missing or empty. Linear.
  //
  //   getLocationsOfString(u"aa", u"aaa")  // [1, 2]
  [[nodiscard]] static NSArray getLocationsOfString(const NSString& needle,
                                                    const NSString& haystack);
};

}  // namespace kelspar
