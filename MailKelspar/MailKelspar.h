// Mail as people read it: where an exact operation keeps an oddity of its contract, its readable
// sibling stands here and follows the published format.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar {

class MailKelspar {
 public:
  // The whole HTML that an RTF body encapsulates (MS-OXRTFEX): the htmltag contents and the words
  // between them, escapes and code pages decoded, without what \htmlrtf hides. The readable sibling
  // of RTFKelspar::extractHTMLFromEncapsulatedRTF, which yields the markup alone.
  //
  // nil for nil, for bytes that are no RTF, and for RTF without \fromhtml. A charset that the HTML
  // declares is that of the message it was sent in; what is written out as UTF-8 should go through
  // `htmlDeclaringUTF8` first.
  [[nodiscard]] static NSString htmlFromEncapsulatedRTF(const NSData& rtf);

  // The same HTML with every charset that its meta elements declare replaced by utf-8. The argument
  // itself when there is none; nil for nil.
  [[nodiscard]] static NSString htmlDeclaringUTF8(const NSString& html);

  // The RTF bytes of a stored body: compressed ("LZFu") or, unlike `getRTFForData`, stored as it is
  // ("MELA"; what stands behind the 16-byte header, cut to the raw size). nil for anything else,
  // and for a blob under 16 bytes.
  [[nodiscard]] static NSData rtfFromStoredBody(const NSData& blob);
};

}  // namespace kelspar
