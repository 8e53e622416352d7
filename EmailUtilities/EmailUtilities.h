// Message assembly: a body and its attachments become one attributed text.
#pragma once

#include <functional>

#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

class EmailUtilities {
 public:
  using Completion = std::function<void(NSAttributedString)>;

  // buildRTFMessageContent()
  //
  // Reads the RTF body and puts each inline image that it refers to behind the line end of its
  // paragraph; CR LF becomes LF. `attachments` holds dictionaries with "AttachContentID" (text
  // without angle brackets) and "data" (an image file's bytes).
  //
  // Returns at once; the work is done on the concurrent queue and `completion` is posted to the
  // main queue, always asynchronously, with a text that is never nil. Without a completion nothing
  // is called. Unreadable RTF gives the empty text; images that are missing, remote or no images
  // are passed over. Deliberate: an image source is matched as a regular expression, ignoring case
  // and diacritics, so that "." in it fits any character.
  //
  // Linear in the body, the images and their attachments, but for the look-up: each different
  // source is compared with each attachment, twenty million times at most (identifiers longer than
  // 64 units count more), and all expressions together have about a second. Images that are not
  // found by then are passed over.
  static void buildRTFMessageContent(const NSData& rtfData, const NSArray& attachments,
                                     Completion completion);
};

}  // namespace kelspar
