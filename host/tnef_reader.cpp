// TNEF: a signature, then attributes of the message and of one attachment after the other. Newer
// writers put everything into attributes that hold properties; the older attributes fill the gaps.
#include "host/tnef_reader.h"

#include <algorithm>
#include <optional>

#include "BitKelspar/BitKelspar.h"
#include "MailKelspar/MailKelspar.h"
#include "host/mapi_properties.h"

namespace kelspar::host {

namespace {

constexpr uint32_t kSignature = 0x223E9F78;
constexpr size_t kStart = 6;       // signature and key
constexpr size_t kHeaderSize = 9;  // level, identifier and type, length
constexpr size_t kChecksumSize = 2;
constexpr size_t kObjectIdSize = 16;

enum Attribute : uint32_t {
  kFrom = 0x00008000,
  kSubject = 0x00018004,
  kDateSent = 0x00038005,
  kDateReceived = 0x00038006,
  kMessageIdentifier = 0x00018009,
  kBody = 0x0002800C,
  kAttachData = 0x0006800F,
  kAttachTitle = 0x00018010,
  kRenderData = 0x00069002,  // a new attachment begins
  kMessageProperties = 0x00069003,
  kRecipients = 0x00069004,
  kAttachProperties = 0x00069005,
  kOEMCodePage = 0x00069007,
};

// Reads fields one after the other; past the end everything is 0 and `good` is false.
class Fields {
 public:
  explicit Fields(NSData bytes) : bytes_(std::move(bytes)) {}

  [[nodiscard]] bool good() const { return good_; }
  [[nodiscard]] size_t left() const { return bytes_.length() - at_; }
  uint16_t u16() { return has(2) ? BitKelspar::readU16FromData(bytes_, skip(2)) : uint16_t{0}; }
  uint32_t u32() { return has(4) ? BitKelspar::readU32FromData(bytes_, skip(4)) : 0; }
  NSData take(size_t length) {
    return has(length) ? bytes_.subdata(skip(length), length) : NSData();
  }
  // Values are padded to multiples of four; the last one's padding may be missing.
  NSData takePadded(size_t length) {
    NSData taken = take(length);
    skip(std::min(left(), (4 - length % 4) % 4));
    return taken;
  }

 private:
  bool has(size_t length) {
    good_ = good_ && length <= left();
    return good_;
  }
  size_t skip(size_t length) {
    const size_t from = at_;
    at_ += length;
    return from;
  }

  NSData bytes_;
  size_t at_ = 0;
  bool good_ = true;
};

// 0: a value with a length of its own.
size_t sizeOf(uint16_t type) {
  switch (type) {
    case kMapiInt16:
    case kMapiInt32:
    case kMapiFloat:
    case kMapiError:
    case kMapiBoolean:
      return 4;
    case kMapiDouble:
    case kMapiCurrency:
    case kMapiAppTime:
    case kMapiInt64:
    case kMapiTime:
      return 8;
    case kMapiGuid:
      return 16;
    default:
      return 0;
  }
}

bool isVariable(uint16_t type) {
  return type == kMapiString8 || type == kMapiUnicode || type == kMapiBinary || type == kMapiObject;
}

void skipName(Fields* fields) {
  fields->take(16);
  if (fields->u32() == 0) {
    fields->u32();
  } else {
    fields->takePadded(fields->u32());
  }
}

// One property; false when the list cannot be read on.
bool readProperty(Fields* fields, MapiProperties* properties) {
  const uint16_t type = fields->u16();
  const uint16_t identifier = fields->u16();
  if (identifier >= 0x8000) skipName(fields);
  const uint16_t single = type & ~kMapiMultiple;
  const size_t size = sizeOf(single);
  if (size == 0 && !isVariable(single)) return false;
  const bool counted = type != single || size == 0;
  const uint32_t count = counted ? fields->u32() : 1;
  for (uint32_t i = 0; i < count && fields->good(); ++i) {
    const NSData value = size != 0 ? fields->take(size) : fields->takePadded(fields->u32());
    if (fields->good() && type == single && i == 0 && identifier < 0x8000) {
      properties->add(identifier, type, value);
    }
  }
  return fields->good();
}

// False when the list breaks off.
bool readProperties(Fields* fields, MapiProperties* properties) {
  const uint32_t count = fields->u32();
  for (uint32_t i = 0; i < count; ++i) {
    if (!readProperty(fields, properties)) return false;
  }
  return fields->good();
}

// Year, month, day, hour, minute, second, as 16 bits each, in no stated zone: read as UTC.
NSDate dateOf(const NSData& bytes) {
  if (bytes.length() < 12) return nil;
  const auto field = [&](size_t index) { return BitKelspar::readU16FromData(bytes, 2 * index); };
  const std::string text = std::to_string(field(2)) + " " +
                           std::string("JanFebMarAprMayJunJulAugSepOctNovDec")
                               .substr(3 * (std::clamp<size_t>(field(1), 1, 12) - 1), 3) +
                           " " + std::to_string(field(0)) + " " + std::to_string(field(3)) + ":" +
                           std::to_string(field(4)) + ":" + std::to_string(field(5)) + " +0000";
  return MailKelspar::dateFromHeader(NSString(text));
}

class Reader {
 public:
  Reader(const ReadOptions& options, int depth) : options_(options), depth_(depth) {}

  std::shared_ptr<Message> read(const NSData& bytes) {
    message_->format = "tnef";
    size_t at = kStart;
    while (at + kHeaderSize <= bytes.length()) {
      const uint32_t attribute = BitKelspar::readU32FromData(bytes, at + 1);
      const size_t length = BitKelspar::readU32FromData(bytes, at + 5);
      const uint8_t level = bytes.bytes()[at];
      if ((level != 1 && level != 2) || length > bytes.length() - at - kHeaderSize) break;
      take(attribute, bytes.subdata(at + kHeaderSize, length));
      at += kHeaderSize + length + kChecksumSize;
    }
    if (at < bytes.length()) {
      message_->faults.emplace_back("bytes behind the last attribute that can be read");
    }
    finish();
    return message_;
  }

 private:
  struct Part {
    NSData title, data;
    uint32_t position = kNoPosition;
    MapiProperties properties;
  };

  void take(uint32_t attribute, const NSData& value) {
    switch (attribute) {
      case kOEMCodePage:
        codePage_ = BitKelspar::readU32FromData(value, 0);
        break;
      case kFrom:
        from_ = value;
        break;
      case kSubject:
        subject_ = value;
        break;
      case kBody:
        body_ = value;
        break;
      case kMessageIdentifier:
        identifier_ = value;
        break;
      case kDateSent:
        sent_ = dateOf(value);
        break;
      case kDateReceived:
        received_ = dateOf(value);
        break;
      case kMessageProperties:
        takeProperties(value, &properties_);
        break;
      case kRecipients:
        takeRecipients(value);
        break;
      case kRenderData:
        parts_.emplace_back();
        // A kind, the position, a size, flags (MS-OXTNEF 2.1.3.3.15).
        if (value.length() >= 6) part().position = BitKelspar::readU32FromData(value, 2);
        break;
      case kAttachTitle:
        part().title = value;
        break;
      case kAttachData:
        part().data = value;
        break;
      case kAttachProperties:
        takeProperties(value, &part().properties);
        break;
      default:
        break;
    }
  }

  // Streams whose attachments begin without the attribute for it exist.
  Part& part() {
    if (parts_.empty()) parts_.emplace_back();
    return parts_.back();
  }

  void takeProperties(const NSData& value, MapiProperties* properties) {
    Fields fields(value);
    if (!readProperties(&fields, properties)) {
      message_->faults.emplace_back("a list of properties breaks off");
    }
  }

  void takeRecipients(const NSData& value) {
    Fields fields(value);
    const uint32_t count = fields.u32();
    for (uint32_t i = 0; i < count && fields.left() > 0; ++i) {
      MapiProperties row;
      const bool whole = readProperties(&fields, &row);
      if (!row.isEmpty()) recipients_.push_back(std::move(row));
      if (!whole) break;
    }
  }

  NSString text(const NSData& bytes) const {
    const NSString label =
        options_.charset.empty() ? NSString(std::to_string(codePage_)) : NSString(options_.charset);
    const NSString text = MailKelspar::textFromData(bytes, label);
    return text.substring(0, std::min(text.length(), text.view().find(u'\0')));
  }

  void prepare(MapiProperties* properties) const {
    properties->setCodePage(codePage_);
    properties->setCharset(options_.charset);
  }

  void finish() {
    if (codePage_ == 0) codePage_ = properties_.statedCodePage();
    prepare(&properties_);
    fillMessage(properties_, message_.get());
    if (!message_->subject && subject_) message_->subject = text(subject_);
    if (!message_->messageIdentifier && identifier_)
      message_->messageIdentifier = text(identifier_);
    if (!message_->text && !message_->html && !message_->rtf && body_) {
      message_->text = text(body_);
      message_->textCharset = NSString(std::to_string(codePage_));
    }
    if (!message_->sent) message_->sent = sent_;
    if (!message_->received) message_->received = received_;
    if (message_->from.empty()) addOldSender();
    for (MapiProperties& recipient : recipients_) {
      prepare(&recipient);
      addRecipient(recipient, message_.get());
    }
    for (Part& part : parts_) addAttachment(&part);
  }

  // A "triple": four lengths, a display name, an address behind its type and a colon.
  void addOldSender() {
    if (from_.length() < 8) return;
    const size_t nameLength = BitKelspar::readU16FromData(from_, 4);
    const size_t addressLength = BitKelspar::readU16FromData(from_, 6);
    if (8 + nameLength + addressLength > from_.length()) return;
    const NSString name = text(from_.subdata(8, nameLength));
    NSString address = text(from_.subdata(8 + nameLength, addressLength));
    const size_t colon = address.view().find(u':');
    if (colon != address.view().npos) address = address.substring(colon + 1);
    message_->from.push_back({name, address});
  }

  void addAttachment(Part* part) {
    prepare(&part->properties);
    Attachment attachment = attachmentFrom(part->properties);
    if (attachment.name.isEmpty() && part->title) attachment.name = text(part->title);
    if (!attachment.bytes) attachment.bytes = part->data;
    if (attachment.position == kNoPosition) attachment.position = part->position;
    openMessage(*part, &attachment);
    message_->attachments.push_back(std::move(attachment));
  }

  void openMessage(const Part& part, Attachment* attachment) const {
    const NSData object = part.properties.bytes(kMapiAttachData);
    if (object.length() <= kObjectIdSize || depth_ >= kMostNesting) return;
    const NSData inside = object.subdata(kObjectIdSize);
    if (!isTNEF(inside)) return;
    attachment->bytes = inside;
    attachment->message = readTNEF(inside, options_, depth_ + 1);
  }

  const ReadOptions& options_;
  const int depth_;
  std::shared_ptr<Message> message_ = std::make_shared<Message>();
  uint32_t codePage_ = 0;
  NSData from_, subject_, body_, identifier_;
  NSDate sent_, received_;
  MapiProperties properties_;
  std::vector<MapiProperties> recipients_;
  std::vector<Part> parts_;
};

}  // namespace

bool isTNEF(const NSData& bytes) {
  return bytes.length() >= kStart && BitKelspar::readU32FromData(bytes, 0) == kSignature;
}

std::shared_ptr<Message> readTNEF(const NSData& bytes, const ReadOptions& options, int depth) {
  return isTNEF(bytes) ? Reader(options, depth).read(bytes) : nullptr;
}

}  // namespace kelspar::host
