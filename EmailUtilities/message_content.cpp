// Builds the displayable content: images are inserted from the last to the first, so that earlier
// positions stay valid.
#include <algorithm>

#include "EmailUtilities/EmailUtilities.h"
#include "StringKelspar/StringKelspar.h"
#include "StringKelspar/StringKelsparNSStringAdditions.h"
#include "WebKelspar/WebKelspar.h"
#include "platform/dispatch/dispatch.h"
#include "platform/graphics/NSImage.h"
#include "platform/unicode/NSPredicate.h"

namespace kelspar {

namespace {

bool isRemote(const NSString& source) {
  return source.length() >= 8 && (source.hasPrefix(u"https://") || source.hasPrefix(u"http://"));
}

// The first attachment whose content identifier fits; nil without one.
NSDictionary attachmentFor(const NSString& source, const NSArray& attachments) {
  const NSPredicate fits = NSPredicate::matches(
      source, NSPredicate::caseInsensitive | NSPredicate::diacriticInsensitive);
  for (const id& element : attachments) {
    const auto attachment = element.as<NSDictionary>();
    if (attachment && fits.evaluate(attachment.objectForKey<NSString>(u"AttachContentID"))) {
      return attachment;
    }
  }
  return nil;
}

void insertImage(const NSDictionary& record, const NSArray& lineStarts, const NSArray& attachments,
                 NSMutableAttributedString* content) {
  const auto rawSource = record.objectForKey<NSString>(u"image source");
  if (!rawSource) return;
  namespace Text = StringKelsparNSStringAdditions;
  const NSString source = Text::stringByReplacingOccurrencesOfStringsInArray(
      rawSource, {u"cid:"_ns, u"{"_ns, u"\\"_ns, u"}"_ns}, u""_ns);
  if (isRemote(source)) return;
  const auto paragraph = record.objectForKey<NSNumber>(u"image location");
  const uint64_t index = std::min<uint64_t>(paragraph.unsignedLongValue(), lineStarts.count() - 1);
  const NSDictionary attachment = attachmentFor(source, attachments);
  if (!attachment) return;
  const NSImage image = NSImage::initWithData(attachment.objectForKey<NSData>(u"data"));
  if (!image || image.width() <= 0 || image.height() <= 0) return;
  const auto position = lineStarts.objectAtIndex(index).as<NSNumber>().unsignedLongValue();
  content->insert(image.createAttributedString(), position);
}

// From the end, so that what is still to be replaced stays where it was.
void replaceLineEnds(NSMutableAttributedString* content) {
  const NSAttributedString before = content->copy();
  const NSString characters = before.string();
  const std::u16string_view units = characters.view();
  for (size_t at = units.rfind(u"\r\n"); at != units.npos; at = units.rfind(u"\r\n", at - 1)) {
    content->replaceCharacters(NSRange{at, 2}, u"\n");
    if (at == 0) break;
  }
}

NSAttributedString contentOf(const NSData& rtf, const NSArray& attachments) {
  const NSAttributedString body = NSAttributedString::initWithRTF(rtf);
  if (body.length() == 0) return NSAttributedString::empty();
  NSMutableAttributedString content(body);
  const NSArray images = WebKelspar::imageLocationsFromRTF(rtf);
  const NSArray lineStarts = StringKelspar::getLocationsOfString(u"\n"_ns, body.string());
  if (lineStarts.count() > 0) {
    for (size_t i = images.count(); i-- > 0;) {
      insertImage(images.objectAtIndex(i).as<NSDictionary>(), lineStarts, attachments, &content);
    }
  }
  replaceLineEnds(&content);
  return content.copy();
}

}  // namespace

void EmailUtilities::buildRTFMessageContent(const NSData& rtfData, const NSArray& attachments,
                                            Completion completion) {
  dispatch::async(dispatch::Priority::userInitiated,
                  [rtfData, attachments, completion = std::move(completion)] {
                    const NSAttributedString result = contentOf(rtfData, attachments);
                    if (!completion) return;
                    dispatch::asyncMain([completion, result] { completion(result); });
                  });
}

}  // namespace kelspar
