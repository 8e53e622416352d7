// .eml: GMime says where the parts begin and end, and nothing else.
#include "host/eml_reader.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <mutex>

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "host/eml_bodies.h"
#include "host/tnef_reader.h"

namespace kelspar::host {

namespace {

constexpr int kMostLevels = 200;
constexpr size_t kMostParts = 5000;

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Object = std::unique_ptr<T, Unref>;

void beSilent(const char*, GLogLevelFlags, const char*, void*) {}

void startLibrary() {
  static std::once_flag once;
  std::call_once(once, [] {
    g_mime_init();
    for (const char* domain : {"gmime", "GLib-GObject"}) {
      g_log_set_handler(domain, static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK & ~G_LOG_LEVEL_ERROR),
                        beSilent, nullptr);
    }
  });
}

// The bytes of the first field of that name; nil: there is none.
NSData headerOf(GMimeObject* object, std::string_view name) {
  GMimeHeaderList* list = g_mime_object_get_header_list(object);
  const int count = g_mime_header_list_get_count(list);
  for (int i = 0; i < count; ++i) {
    GMimeHeader* header = g_mime_header_list_get_header_at(list, i);
    if (g_ascii_strcasecmp(g_mime_header_get_name(header), name.data()) != 0) continue;
    const char* raw = g_mime_header_get_raw_value(header);
    return NSData(std::string_view(raw ? raw : ""));
  }
  return nil;
}

NSData bytesOf(GMimeStream* stream) {
  std::string bytes;
  if (!stream) return NSData(std::move(bytes));
  g_mime_stream_reset(stream);
  const gint64 length = g_mime_stream_length(stream);
  if (length > 0) bytes.reserve(static_cast<size_t>(length));
  char chunk[16384];
  for (;;) {
    const ssize_t count = g_mime_stream_read(stream, chunk, sizeof chunk);
    if (count <= 0) break;
    bytes.append(chunk, static_cast<size_t>(count));
  }
  return NSData(std::move(bytes));
}

std::string lowerCase(const NSString& text) {
  std::string lower = text.utf8();
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  return lower;
}

Object<GMimeMessage> parsed(std::string_view bytes) {
  const Object<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size()));
  const Object<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
  return Object<GMimeMessage>(g_mime_parser_construct_message(parser.get(), nullptr));
}

class Reader {
 public:
  Reader(const ReadOptions& options, int depth) : options_(options), depth_(depth) {}

  std::shared_ptr<Message> read(GMimeMessage* source) {
    message_->format = "eml";
    readHeaders(GMIME_OBJECT(source));
    if (GMimeObject* body = g_mime_message_get_mime_part(source)) {
      readPart(body, 0, /*alternative=*/false);
    }
    message_->text = bodies_.takeText();
    message_->html = bodies_.takeHTML();
    return message_;
  }

 private:
  NSString words(GMimeObject* object, std::string_view name) const {
    const NSData raw = headerOf(object, name);
    if (!raw) return nil;
    return MailKelspar::decodeHeader(inUTF8(raw));
  }

  // Raw 8-bit headers in the charset that the user names.
  NSData inUTF8(const NSData& raw) const {
    const bool plain = std::ranges::all_of(raw.chars(), [](char c) { return (c & 0x80) == 0; });
    if (options_.charset.empty() || plain) return raw;
    return NSData(MailKelspar::textFromData(raw, NSString(options_.charset)).utf8());
  }

  std::vector<Mailbox> mailboxes(GMimeObject* object, std::string_view name) const {
    std::vector<Mailbox> list;
    const NSData raw = headerOf(object, name);
    if (!raw) return list;
    for (const id& each : MailKelspar::addressesFromHeader(inUTF8(raw))) {
      const auto entry = each.as<NSDictionary>();
      list.push_back(
          {entry.objectForKey<NSString>(u"name"), entry.objectForKey<NSString>(u"address")});
    }
    return list;
  }

  void readHeaders(GMimeObject* source) {
    message_->subject = words(source, "Subject");
    message_->messageIdentifier = words(source, "Message-Id");
    message_->from = mailboxes(source, "From");
    if (message_->from.empty()) message_->from = mailboxes(source, "Sender");
    message_->to = mailboxes(source, "To");
    message_->cc = mailboxes(source, "Cc");
    message_->bcc = mailboxes(source, "Bcc");
    message_->replyTo = mailboxes(source, "Reply-To");
    message_->sent = MailKelspar::dateFromHeader(words(source, "Date"));
    const NSString received = words(source, "Received");
    const size_t semicolon = received.view().rfind(u';');
    if (semicolon != received.view().npos) {
      message_->received = MailKelspar::dateFromHeader(received.substring(semicolon + 1));
    }
  }

  void readPart(GMimeObject* part, int level, bool alternative) {
    if (level > kMostLevels || ++parts_ > kMostParts) {
      if (!overfull_) message_->faults.emplace_back("it has too many parts");
      overfull_ = true;
    } else if (GMIME_IS_MULTIPART(part)) {
      readMultipart(GMIME_MULTIPART(part), level);
    } else if (GMIME_IS_MESSAGE_PART(part)) {
      readAttachedMessage(GMIME_MESSAGE_PART(part));
    } else if (GMIME_IS_PART(part)) {
      readLeaf(GMIME_PART(part), alternative);
    }
  }

  void readMultipart(GMimeMultipart* multipart, int level) {
    const NSString type = valueOf(headerOf(GMIME_OBJECT(multipart), "Content-Type"));
    const bool alternative = lowerCase(type) == "multipart/alternative";
    const int count = g_mime_multipart_get_count(multipart);
    for (int i = 0; i < count; ++i) {
      readPart(g_mime_multipart_get_part(multipart, i), level + 1, alternative);
    }
  }

  static NSString valueOf(const NSData& header) {
    return MailKelspar::parametersOfHeader(header).objectForKey<NSString>(u"");
  }

  void readAttachedMessage(GMimeMessagePart* part) {
    Attachment attachment = described(GMIME_OBJECT(part));
    attachment.bytes = NSData(std::string());
    if (GMimeMessage* inside = g_mime_message_part_get_message(part)) {
      const Object<GMimeStream> stream(g_mime_stream_mem_new());
      g_mime_object_write_to_stream(GMIME_OBJECT(inside), nullptr, stream.get());
      attachment.bytes = bytesOf(stream.get());
      if (depth_ < kMostNesting) attachment.message = Reader(options_, depth_ + 1).read(inside);
    }
    if (attachment.name.isEmpty() && attachment.message && !attachment.message->subject.isEmpty()) {
      attachment.name = NSString(std::u16string(attachment.message->subject.view()) + u".eml");
    }
    message_->attachments.push_back(std::move(attachment));
  }

  Attachment described(GMimeObject* part) {
    Attachment attachment;
    const NSDictionary type = MailKelspar::parametersOfHeader(headerOf(part, "Content-Type"));
    const NSDictionary disposition =
        MailKelspar::parametersOfHeader(headerOf(part, "Content-Disposition"));
    attachment.name = disposition.objectForKey<NSString>(u"filename");
    if (attachment.name.isEmpty()) attachment.name = type.objectForKey<NSString>(u"name");
    attachment.mediaType = type.objectForKey<NSString>(u"");
    attachment.contentIdentifier = MailKelspar::bareContentIdentifier(words(part, "Content-Id"));
    attachment.contentLocation = words(part, "Content-Location");
    attachment.isInline = lowerCase(disposition.objectForKey<NSString>(u"")) == "inline";
    return attachment;
  }

  void readLeaf(GMimePart* part, bool alternative) {
    GMimeObject* object = GMIME_OBJECT(part);
    Attachment attachment = described(object);
    const NSData content = contentOf(part);
    attachment.bytes =
        MailKelspar::decodeTransfer(content, words(object, "Content-Transfer-Encoding"));
    std::string type = lowerCase(attachment.mediaType);
    if (type.find('/') == std::string::npos) type = "text/plain";  // RFC 2045, 5.2
    const NSString disposition = valueOf(headerOf(object, "Content-Disposition"));
    const bool isFile = lowerCase(disposition) == "attachment" || !attachment.name.isEmpty();
    if (!isFile && takeBody(object, type, attachment.bytes, alternative)) return;
    if (isTNEF(attachment.bytes) && takeTNEF(attachment.bytes)) return;
    message_->attachments.push_back(std::move(attachment));
  }

  static NSData contentOf(GMimePart* part) {
    GMimeDataWrapper* content = g_mime_part_get_content(part);
    return bytesOf(content ? g_mime_data_wrapper_get_stream(content) : nullptr);
  }

  bool takeBody(GMimeObject* part, const std::string& type, const NSData& bytes, bool alternative) {
    if (type == "text/rtf" || type == "application/rtf") {
      if (message_->rtf || !RTFKelsparNSDataAdditions::stringFromRTFData(bytes)) return false;
      message_->rtf = bytes;
      return true;
    }
    if (type != "text/plain" && type != "text/html") return false;
    NSString charset = MailKelspar::parametersOfHeader(headerOf(part, "Content-Type"))
                           .objectForKey<NSString>(u"charset");
    const bool isHTML = type == "text/html";
    if (isHTML && !MailKelspar::encodingOfCharsetLabel(charset)) {
      charset = MailKelspar::charsetDeclaredByHTML(bytes);
    }
    if (!options_.charset.empty()) charset = NSString(options_.charset);
    const NSString text = MailKelspar::textFromData(bytes, charset);
    if (isHTML) {
      if (bodies_.addHTML(text, alternative)) message_->htmlCharset = charset;
    } else {
      if (bodies_.addText(text, alternative)) message_->textCharset = charset;
    }
    return true;
  }

  bool takeTNEF(const NSData& bytes) {
    const auto inside = readTNEF(bytes, options_, depth_ + 1);
    if (!inside) return false;
    if (!message_->rtf) {
      message_->rtf = inside->rtf;
      message_->rtfWasCompressed = inside->rtfWasCompressed;
    }
    bodies_.offer(inside->text, inside->html);
    if (!message_->subject) message_->subject = inside->subject;
    std::ranges::move(inside->attachments, std::back_inserter(message_->attachments));
    std::ranges::move(inside->faults, std::back_inserter(message_->faults));
    return true;
  }

  const ReadOptions& options_;
  const int depth_;
  std::shared_ptr<Message> message_ = std::make_shared<Message>();
  EMLBodies bodies_;
  size_t parts_ = 0;
  bool overfull_ = false;
};

}  // namespace

bool looksLikeEML(const NSData& bytes) {
  std::string_view text = bytes.chars().substr(0, 1000);
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  const size_t colon = text.find(':');
  if (colon == 0 || colon == text.npos || text.front() == '<') return false;
  return std::ranges::all_of(text.substr(0, colon), [](char c) { return c > ' ' && c < 127; });
}

std::shared_ptr<Message> readEML(const NSData& bytes, const ReadOptions& options, int depth) {
  if (bytes.isEmpty()) return nullptr;
  startLibrary();
  Object<GMimeMessage> source = parsed(bytes.chars());
  // What does not begin with a header field is all body.
  if (!source) source = parsed("\n" + std::string(bytes.chars()));
  return source ? Reader(options, depth).read(source.get()) : nullptr;
}

}  // namespace kelspar::host
