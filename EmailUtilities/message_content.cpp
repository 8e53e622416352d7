// Builds the displayable content: images are inserted from the last to the first, so that earlier
// positions stay valid.
#include <algorithm>
#include <map>
#include <string>

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

// The pictures of one message by their sources. Each source is looked up once, and all of them
// together cost what honest messages never come near: a hostile source is an expression that takes
// seconds on one identifier.
class Pictures {
 public:
  explicit Pictures(const NSArray& attachments) : attachments_(attachments) {}

  // One character; nil without a picture.
  const NSAttributedString& find(const NSString& source) {
    const auto [known, isNew] = known_.try_emplace(std::u16string(source.view()));
    if (isNew) known->second = pictureOf(attachmentFor(source));
    return known->second;
  }

 private:
  // The first attachment whose content identifier fits; nil without one.
  NSDictionary attachmentFor(const NSString& source) {
    const NSPredicate fits = NSPredicate::matches(
        source, NSPredicate::caseInsensitive | NSPredicate::diacriticInsensitive);
    for (const id& element : attachments_) {
      const auto attachment = element.as<NSDictionary>();
      if (!attachment) continue;
      const auto identifier = attachment.objectForKey<NSString>(u"AttachContentID");
      if (!canCompare(identifier)) return nil;
      if (fits.evaluate(identifier, &steps_)) return attachment;
    }
    return nil;
  }

  bool canCompare(const NSString& identifier) {
    constexpr size_t kUnitsForOne = 64;
    const size_t cost = 1 + identifier.length() / kUnitsForOne;
    if (cost > comparisons_) return false;
    comparisons_ -= cost;
    return true;
  }

  static NSAttributedString pictureOf(const NSDictionary& attachment) {
    const NSImage image = NSImage::initWithData(attachment.objectForKey<NSData>(u"data"));
    if (!image || image.width() <= 0 || image.height() <= 0) return nil;
    return image.createAttributedString();
  }

  NSArray attachments_;
  std::map<std::u16string, NSAttributedString> known_;
  size_t comparisons_ = 20'000'000;
  int32_t steps_ = 2'000;
};

void insertImage(const NSDictionary& record, const NSArray& lineStarts, Pictures* pictures,
                 NSMutableAttributedString* content) {
  const auto rawSource = record.objectForKey<NSString>(u"image source");
  if (!rawSource) return;
  namespace Text = StringKelsparNSStringAdditions;
  const NSString source = Text::stringByReplacingOccurrencesOfStringsInArray(
      rawSource, {u"cid:"_ns, u"{"_ns, u"\\"_ns, u"}"_ns}, u""_ns);
  if (isRemote(source)) return;
  const auto paragraph = record.objectForKey<NSNumber>(u"image location");
  const uint64_t index = std::min<uint64_t>(paragraph.unsignedLongValue(), lineStarts.count() - 1);
  const NSAttributedString& picture = pictures->find(source);
  if (!picture) return;
  const auto position = lineStarts.objectAtIndex(index).as<NSNumber>().unsignedLongValue();
  content->insert(picture, position);
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
    Pictures pictures(attachments);
    for (size_t i = images.count(); i-- > 0;) {
      insertImage(images.objectAtIndex(i).as<NSDictionary>(), lineStarts, &pictures, &content);
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
