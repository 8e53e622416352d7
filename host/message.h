// An opened message, whatever file it came from: what readers fill and converters show.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/foundation.h"

namespace kelspar::host {

struct Message;

struct Mailbox {
  NSString name;     // empty or nil: none
  NSString address;  // as it stands in the message; a directory name in messages never sent
};

// Where an RTF body shows an attachment: positions ascend with the marks.
inline constexpr uint32_t kNoPosition = 0xFFFFFFFF;

struct Attachment {
  NSString name;       // as the sender has it: never to be used as a path
  NSString mediaType;  // "image/png"; nil: not stated
  NSString contentIdentifier;
  NSString contentLocation;
  NSData bytes;
  bool isInline = false;  // its disposition or its flags say so
  bool isGiven = false;   // brought along for the body: no part of the message
  uint32_t position = kNoPosition;
  std::shared_ptr<Message> message;  // an attached message that could be opened
};

struct Message {
  std::string format;  // "msg", "tnef", "eml", "mbox" (a message of one)
  NSString subject;
  NSString messageIdentifier;
  std::vector<Mailbox> from, to, cc, bcc, replyTo;
  NSDate sent, received;

  // Bodies; nil: it has none of that kind. `html` is decoded, `rtf` is decompressed.
  NSString text, html;
  NSData rtf;
  bool rtfWasCompressed = false;
  NSString textCharset, htmlCharset;  // as labelled, or the code page's number

  std::vector<Attachment> attachments;
  // What was found wrong, in a line each; the message is shown all the same.
  std::vector<std::string> faults;
};

// What one file holds.
using Messages = std::vector<std::shared_ptr<Message>>;

// What the command line says about reading.
struct ReadOptions {
  std::string charset;  // overrides labels of bodies and headers; empty: none
};

// Messages inside messages are opened this deep; further ones stay attachments.
inline constexpr int kMostNesting = 12;

}  // namespace kelspar::host
