// Properties as message stores keep them (MS-OXCDATA), common to .msg files and TNEF streams.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "host/message.h"

namespace kelspar::host {

// Property types (MS-OXCDATA 2.11.1).
enum MapiType : uint16_t {
  kMapiInt16 = 0x0002,
  kMapiInt32 = 0x0003,
  kMapiFloat = 0x0004,
  kMapiDouble = 0x0005,
  kMapiCurrency = 0x0006,
  kMapiAppTime = 0x0007,
  kMapiError = 0x000A,
  kMapiBoolean = 0x000B,
  kMapiObject = 0x000D,
  kMapiInt64 = 0x0014,
  kMapiString8 = 0x001E,
  kMapiUnicode = 0x001F,
  kMapiTime = 0x0040,
  kMapiGuid = 0x0048,
  kMapiBinary = 0x0102,
  kMapiMultiple = 0x1000,
};

// Property identifiers (MS-OXPROPS).
enum MapiIdentifier : uint16_t {
  kMapiSubject = 0x0037,
  kMapiClientSubmitTime = 0x0039,
  kMapiSentRepresentingName = 0x0042,
  kMapiSentRepresentingEmail = 0x0065,
  kMapiRecipientType = 0x0C15,
  kMapiSenderName = 0x0C1A,
  kMapiSenderEmail = 0x0C1F,
  kMapiDeliveryTime = 0x0E06,
  kMapiNormalizedSubject = 0x0E1D,
  kMapiSubjectPrefix = 0x003D,
  kMapiBody = 0x1000,
  kMapiCompressedRTF = 0x1009,
  kMapiHTML = 0x1013,
  kMapiInternetMessageIdentifier = 0x1035,
  kMapiDisplayName = 0x3001,
  kMapiEmailAddress = 0x3003,
  kMapiCreationTime = 0x3007,
  kMapiAttachData = 0x3701,
  kMapiAttachFilename = 0x3704,
  kMapiAttachLongFilename = 0x3707,
  kMapiRenderingPosition = 0x370B,
  kMapiAttachMediaType = 0x370E,
  kMapiAttachContentIdentifier = 0x3712,
  kMapiAttachContentLocation = 0x3713,
  kMapiAttachFlags = 0x3714,
  kMapiSmtpAddress = 0x39FE,
  kMapiInternetCodePage = 0x3FDE,
  kMapiMessageLocale = 0x3FF1,
  kMapiMessageCodePage = 0x3FFD,
  kMapiSenderSmtpAddress = 0x5D01,
  kMapiSentRepresentingSmtpAddress = 0x5D02,
  kMapiAttachmentHidden = 0x7FFE,
};

// One object's properties by identifier. Values are little-endian bytes, as stored.
class MapiProperties {
 public:
  // The first value of an identifier counts.
  void add(uint16_t identifier, uint16_t type, NSData bytes) {
    values_.emplace(identifier, Value{type, std::move(bytes)});
  }
  // The page of 8-bit texts; 0: not known.
  // `language`: the page of texts that are not in UTF-8 although that is `number`; 0: not known.
  void setCodePage(uint32_t number, uint32_t language = 0) {
    codePage_ = number;
    languagePage_ = language;
  }
  [[nodiscard]] uint32_t codePage() const { return codePage_; }
  void setCharset(const std::string& label) { charset_ = label; }
  [[nodiscard]] const std::string& charset() const { return charset_; }

  [[nodiscard]] bool isEmpty() const { return values_.empty(); }
  [[nodiscard]] bool has(uint16_t identifier) const { return values_.contains(identifier); }
  // nil when it is absent or of another kind. Trailing NULs of texts are dropped.
  [[nodiscard]] NSString text(uint16_t identifier) const;
  [[nodiscard]] NSData bytes(uint16_t identifier) const;
  // 0 when it is absent.
  [[nodiscard]] uint32_t number(uint16_t identifier) const;
  [[nodiscard]] NSDate date(uint16_t identifier) const;

  // The page that the message's own properties state, or 0.
  [[nodiscard]] uint32_t statedCodePage() const;
  // The page of the message's language; 0: not known.
  [[nodiscard]] uint32_t languagePage() const;

 private:
  struct Value {
    uint16_t type;
    NSData bytes;
  };
  [[nodiscard]] const Value* find(uint16_t identifier) const;

  std::map<uint16_t, Value> values_;
  uint32_t codePage_ = 0, languagePage_ = 0;
  std::string charset_;
};

// Fills what the properties say of a message, of a recipient, of an attachment.
void fillMessage(const MapiProperties& properties, Message* message);
void addRecipient(const MapiProperties& recipient, Message* message);
[[nodiscard]] Attachment attachmentFrom(const MapiProperties& properties);

}  // namespace kelspar::host
