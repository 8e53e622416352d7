// The marks stand in the order of the attachments' positions (MS-OXCMSG 2.2.2.16).
#include "host/rtf_pictures.h"

#include <algorithm>

#include "MailKelspar/MailKelspar.h"
#include "host/inline_images.h"
#include "host/message_header.h"

namespace kelspar::host {

namespace {

constexpr size_t kLargestPictures = size_t{32} << 20;  // in all: each byte is two digits

id shownInPlace(const Attachment& attachment, size_t* budget) {
  const std::string type = imageType(attachment.bytes.chars());
  const bool isPicture = type == "image/png" || type == "image/jpeg";
  if (!isPicture || attachment.bytes.length() > *budget) {
    return NSString("[" + nameOf(attachment) + "]");
  }
  *budget -= attachment.bytes.length();
  return attachment.bytes;
}

}  // namespace

NSData withPicturesInPlace(const Message& message) {
  std::vector<const Attachment*> marked;
  for (const Attachment& attachment : message.attachments) {
    if (attachment.position != kNoPosition) marked.push_back(&attachment);
  }
  std::ranges::stable_sort(marked, {}, &Attachment::position);
  size_t budget = kLargestPictures;
  std::vector<id> items;
  for (const Attachment* attachment : marked) items.push_back(shownInPlace(*attachment, &budget));
  return MailKelspar::placePictures(NSArray(std::move(items)), message.rtf);
}

}  // namespace kelspar::host
