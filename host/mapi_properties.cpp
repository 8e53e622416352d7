// What stored properties mean for a message as people see it.
#include "host/mapi_properties.h"

#include "BitKelspar/BitKelspar.h"
#include "MailKelspar/MailKelspar.h"
#include "TimeKelspar/TimeKelspar.h"

namespace kelspar::host {

namespace {

constexpr uint32_t kUTF16Page = 1200, kUTF8Page = 65001;

// Pages with escapes between charsets: bodies travel in them, strings are not stored in them.
bool isForTransport(uint32_t page) { return page >= 50000 && page < 53000; }

// The Windows page of a language (the low ten bits of a locale, MS-LCID 2.2); 0: not known.
uint32_t pageOfLocale(uint32_t locale) {
  switch (locale & 0x3FF) {
    case 0x04:
      return (locale & 0xFC00) == 0x0800 || (locale & 0xFC00) == 0x1000 ? 936 : 950;
    case 0x11:
      return 932;
    case 0x12:
      return 949;
    case 0x19:
    case 0x22:
      return 1251;
    case 0x08:
      return 1253;
    case 0x1F:
      return 1254;
    case 0x0D:
      return 1255;
    case 0x01:
      return 1256;
    case 0x1E:
      return 874;
    case 0x05:
    case 0x0E:
    case 0x15:
      return 1250;
    default:
      return 0;
  }
}

NSString withoutTrailingNULs(const NSString& text) {
  size_t length = text.length();
  while (length > 0 && text.view()[length - 1] == 0) --length;
  return text.substring(0, length);
}

NSString firstOf(const MapiProperties& properties, std::initializer_list<uint16_t> identifiers) {
  for (const uint16_t identifier : identifiers) {
    const NSString text = properties.text(identifier);
    if (!text.isEmpty()) return text;
  }
  return nil;
}

// An address of the Internet among several of which some are directory names ("/o=...").
NSString addressOf(const MapiProperties& properties, std::initializer_list<uint16_t> identifiers) {
  NSString found;
  for (const uint16_t identifier : identifiers) {
    const NSString text = properties.text(identifier);
    if (text.isEmpty()) continue;
    if (text.view().find(u'@') != text.view().npos) return text;
    if (!found) found = text;
  }
  return found;
}

void addSender(const MapiProperties& properties, Message* message) {
  Mailbox sender{firstOf(properties, {kMapiSentRepresentingName, kMapiSenderName}),
                 addressOf(properties, {kMapiSentRepresentingSmtpAddress, kMapiSenderSmtpAddress,
                                        kMapiSentRepresentingEmail, kMapiSenderEmail})};
  if (sender.name || sender.address) message->from.push_back(sender);
}

NSString subjectOf(const MapiProperties& properties) {
  const NSString subject = properties.text(kMapiSubject);
  // A subject may begin with two units that give its prefix's length (MS-OXCMSG 2.2.1.46).
  if (subject.length() >= 2 && subject.view()[0] == 1) return subject.substring(2);
  if (subject) return subject;
  const NSString rest = properties.text(kMapiNormalizedSubject);
  if (!rest) return nil;
  return NSString(std::u16string(properties.text(kMapiSubjectPrefix).view()) +
                  std::u16string(rest.view()));
}

void fillHTML(const MapiProperties& properties, Message* message) {
  const NSString text = properties.text(kMapiHTML);
  if (!text.isEmpty()) {
    message->html = text;
    return;
  }
  const NSData bytes = properties.bytes(kMapiHTML);
  if (bytes.isEmpty()) return;
  const uint32_t page = properties.number(kMapiInternetCodePage);
  if (!properties.charset().empty()) {
    message->htmlCharset = NSString(properties.charset());
    message->html = MailKelspar::textFromData(bytes, message->htmlCharset);
    return;
  }
  NSString declared = MailKelspar::charsetDeclaredByHTML(bytes);
  if (page != 0) declared = NSString(std::to_string(page));
  message->htmlCharset = declared;
  message->html = MailKelspar::textFromData(bytes, declared);
}

void fillRTF(const MapiProperties& properties, Message* message) {
  const NSData stored = properties.bytes(kMapiCompressedRTF);
  if (stored.isEmpty()) return;
  message->rtf = MailKelspar::rtfFromStoredBody(stored);
  message->rtfWasCompressed = true;
  if (!message->rtf) message->faults.emplace_back("its compressed RTF body cannot be read");
}

}  // namespace

const MapiProperties::Value* MapiProperties::find(uint16_t identifier) const {
  const auto found = values_.find(identifier);
  return found == values_.end() ? nullptr : &found->second;
}

NSString MapiProperties::text(uint16_t identifier) const {
  const Value* value = find(identifier);
  if (!value) return nil;
  if (value->type == kMapiUnicode) {
    return withoutTrailingNULs(MailKelspar::textFromData(
        value->bytes.subdata(0, value->bytes.length() & ~size_t{1}), u"utf-16le"));
  }
  if (value->type != kMapiString8) return nil;
  if (!charset_.empty()) {
    return withoutTrailingNULs(MailKelspar::textFromData(value->bytes, NSString(charset_)));
  }
  // Bodies may be in UTF-8 while the store's own strings are in the language's page.
  const bool isInPage = codePage_ != kUTF8Page || NSString::fromUTF8(value->bytes.chars());
  const NSString label(std::to_string(isInPage ? codePage_ : languagePage_));
  return withoutTrailingNULs(MailKelspar::textFromData(value->bytes, label));
}

NSData MapiProperties::bytes(uint16_t identifier) const {
  const Value* value = find(identifier);
  const bool isBytes = value && (value->type == kMapiBinary || value->type == kMapiObject);
  return isBytes ? value->bytes : NSData();
}

uint32_t MapiProperties::number(uint16_t identifier) const {
  const Value* value = find(identifier);
  if (!value) return 0;
  if (value->type == kMapiInt32) return BitKelspar::readU32FromData(value->bytes, 0);
  if (value->type == kMapiInt16 || value->type == kMapiBoolean) {
    return BitKelspar::readU16FromData(value->bytes, 0);
  }
  return 0;
}

NSDate MapiProperties::date(uint16_t identifier) const {
  const Value* value = find(identifier);
  if (!value || value->type != kMapiTime || value->bytes.length() < 8) return nil;
  const uint64_t time = BitKelspar::readU64FromData(value->bytes, 0);
  constexpr auto kEndOfTime = UINT64_C(0x0CB34557A3DD4000);  // stands for "none"
  return time < kEndOfTime ? TimeKelspar::dateFromMAPITime(time) : NSDate();
}

uint32_t MapiProperties::statedCodePage() const {
  // 8-bit texts are in the message's page; one in Unicode says nothing of them.
  for (const uint16_t identifier : {kMapiMessageCodePage, kMapiInternetCodePage}) {
    const uint32_t page = number(identifier);
    if (page == 0 || page == kUTF16Page || isForTransport(page)) continue;
    if (page != kUTF8Page || codePage_ == 0) return page;
  }
  return languagePage();
}

uint32_t MapiProperties::languagePage() const { return pageOfLocale(number(kMapiMessageLocale)); }

void fillMessage(const MapiProperties& properties, Message* message) {
  if (const NSString subject = subjectOf(properties)) message->subject = subject;
  if (const NSString identifier = properties.text(kMapiInternetMessageIdentifier)) {
    message->messageIdentifier = identifier;
  }
  if (message->from.empty()) addSender(properties, message);
  for (const uint16_t identifier : {kMapiClientSubmitTime, kMapiCreationTime}) {
    if (!message->sent) message->sent = properties.date(identifier);
  }
  if (const NSDate received = properties.date(kMapiDeliveryTime)) message->received = received;
  if (const NSString text = properties.text(kMapiBody)) {
    message->text = text;
    message->textCharset = properties.codePage() == 0
                               ? NSString(u"utf-16le")
                               : NSString(std::to_string(properties.codePage()));
  }
  fillHTML(properties, message);
  fillRTF(properties, message);
}

void addRecipient(const MapiProperties& recipient, Message* message) {
  const Mailbox mailbox{recipient.text(kMapiDisplayName),
                        addressOf(recipient, {kMapiSmtpAddress, kMapiEmailAddress})};
  if (mailbox.name.isEmpty() && mailbox.address.isEmpty()) return;
  // The low bits are the role; the rest tells of resending (MS-OXOMSG 2.2.3.1).
  switch (recipient.number(kMapiRecipientType) & 0xF) {
    case 0:
      break;  // the originator
    case 2:
      message->cc.push_back(mailbox);
      break;
    case 3:
      message->bcc.push_back(mailbox);
      break;
    default:
      message->to.push_back(mailbox);
  }
}

Attachment attachmentFrom(const MapiProperties& properties) {
  constexpr uint32_t kRelatedToBody = 4;  // the flag attRenderedInBody (MS-OXCMSG 2.2.2.18)
  Attachment attachment;
  attachment.name =
      firstOf(properties, {kMapiAttachLongFilename, kMapiAttachFilename, kMapiDisplayName});
  attachment.mediaType = properties.text(kMapiAttachMediaType);
  attachment.contentIdentifier =
      MailKelspar::bareContentIdentifier(properties.text(kMapiAttachContentIdentifier));
  attachment.contentLocation = properties.text(kMapiAttachContentLocation);
  attachment.bytes = properties.bytes(kMapiAttachData);
  attachment.isInline = (properties.number(kMapiAttachFlags) & kRelatedToBody) != 0 ||
                        (properties.number(kMapiAttachmentHidden) & 1) != 0;
  if (properties.has(kMapiRenderingPosition)) {
    attachment.position = properties.number(kMapiRenderingPosition);
  }
  return attachment;
}

}  // namespace kelspar::host
