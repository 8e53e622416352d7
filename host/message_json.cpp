// Messages as JSON records, and what they hold as lines for people.
#include "BitKelspar/BitKelspar.h"
#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "host/body_text.h"
#include "host/date.h"
#include "host/json_text.h"
#include "host/message_text.h"
#include "host/open_message.h"

namespace kelspar::host {

namespace {

std::string jsonOfMailboxes(const std::vector<Mailbox>& list) {
  return jsonArray(list, [](const Mailbox& mailbox) {
    return JsonObject().add("name", mailbox.name).add("address", mailbox.address).text();
  });
}

NSString dateText(const NSDate& date) {
  const std::string text = isoDate(date);
  return text.empty() ? NSString() : NSString(text);
}

std::string jsonOfAttachment(const Attachment& attachment) {
  JsonObject json;
  json.add("name", attachment.name)
      .add("mediaType", attachment.mediaType)
      .add("size", uint64_t{attachment.bytes.length()})
      .add("contentId", attachment.contentIdentifier)
      .add("inline", attachment.isInline);
  if (attachment.message) json.addRaw("message", jsonOf(*attachment.message));
  return json.text();
}

struct SafeBody {
  NSString html;  // nil: the body is no HTML
  uint64_t removed = 0;
};

SafeBody safeBodyOf(const BestBody& best) {
  if (!best.html) return {};
  const NSDictionary safe = MailKelspar::safeHTML(best.html);
  return {safe.objectForKey<NSString>(u"html"),
          safe.objectForKey<NSNumber>(u"removed").unsignedLongValue()};
}

std::string sizeText(size_t bytes) {
  return BitKelspar::formatSize(static_cast<double>(bytes)).utf8();
}

void addBody(const char* label, const std::string& what, std::string* out) {
  *out += std::string(label) + ": " + what + "\n";
}

std::string labelled(const NSString& label) {
  return label.isEmpty() ? ", no charset stated" : ", charset " + oneLine(label);
}

void addTime(const char* label, const NSDate& date, std::string* out) {
  if (!date) return;
  *out += std::string(label) + ": " + readableDate(date) + "\n";
  *out += std::string(label) + ", ISO 8601: " + isoDate(date) + "\n";
  constexpr std::pair<const char*, const char*> kForms[] = {
      {"seconds since 1970", "unix"},
      {"100 ns since 1601 (MAPI)", "mapi"},
      {"OLE", "ole"},
      {"HFS", "hfs"},
      {"VMS", "vms"},
      {"CF", "cf"},
  };
  for (const auto& [name, form] : kForms) {
    *out += std::string(label) + ", " + name + ": " + dateAs(date, form) + "\n";
  }
}

// What the document says of its bytes beyond ASCII (RTF 1.9.1, \ansicpg), in its first words.
std::string codePageOf(const NSData& rtf) {
  constexpr std::string_view kWord = "\\ansicpg";
  const std::string_view head = rtf.chars().substr(0, 1024);
  const size_t at = head.find(kWord);
  std::string_view digits = at == head.npos ? "" : head.substr(at + kWord.size(), 5);
  digits = digits.substr(0, digits.find_first_not_of("0123456789"));
  return digits.empty() ? ", no code page stated" : ", code page " + std::string(digits);
}

void addInfo(const Message& message, const std::string& indent, std::string* out) {
  std::string lines = "Format: " + message.format + "\n";
  lines += "Subject: " + oneLine(message.subject) + "\n";
  addTime("Sent", message.sent, &lines);
  addTime("Received", message.received, &lines);
  if (message.text) {
    addBody("Plain body",
            std::to_string(message.text.length()) + " characters" + labelled(message.textCharset),
            &lines);
  }
  if (message.html) {
    addBody("HTML body",
            std::to_string(message.html.length()) + " characters" + labelled(message.htmlCharset),
            &lines);
  }
  if (message.rtf) {
    addBody("RTF body",
            sizeText(message.rtf.length()) +
                (message.rtfWasCompressed ? ", stored compressed" : "") +
                (RTFKelspar::isEncapsulatedHTML(message.rtf) ? ", encapsulates HTML"
                                                             : ", encapsulates no HTML") +
                codePageOf(message.rtf),
            &lines);
  }
  const BestBody best = bestBodyOf(message);
  addBody("Shown body", best.kind.empty() ? "none" : best.kind, &lines);
  if (const uint64_t removed = safeBodyOf(best).removed) {
    addBody("Removed", remoteContents(removed), &lines);
  }
  addBody("Attachments", std::to_string(message.attachments.size()), &lines);
  for (const std::string& fault : message.faults) addBody("Fault", fault, &lines);
  for (size_t at = 0; at < lines.size();) {
    const size_t end = lines.find('\n', at) + 1;
    *out += indent + lines.substr(at, end - at);
    at = end;
  }
  for (const Attachment& attachment : message.attachments) {
    *out +=
        indent + "  " +
        jsonString(attachment.name.isEmpty() ? NSString(u"unnamed") : attachment.name) + " " +
        (attachment.mediaType.isEmpty() ? "no type" : oneLine(attachment.mediaType)) + " " +
        sizeText(attachment.bytes.length()) +
        (attachment.contentIdentifier.isEmpty() ? ""
                                                : " cid:" + oneLine(attachment.contentIdentifier)) +
        "\n";
    if (attachment.message) addInfo(*attachment.message, indent + "    ", out);
  }
}

}  // namespace

std::string jsonOf(const Message& message, uint64_t* removed) {
  const BestBody best = bestBodyOf(message);
  const SafeBody body = safeBodyOf(best);
  if (removed) *removed += body.removed;
  JsonObject json;
  json.add("format", message.format.c_str())
      .add("subject", message.subject)
      .add("messageId", message.messageIdentifier)
      .addRaw("from", jsonOfMailboxes(message.from))
      .addRaw("to", jsonOfMailboxes(message.to))
      .addRaw("cc", jsonOfMailboxes(message.cc))
      .addRaw("bcc", jsonOfMailboxes(message.bcc))
      .addRaw("replyTo", jsonOfMailboxes(message.replyTo))
      .add("sent", dateText(message.sent))
      .add("received", dateText(message.received))
      .add("body", best.kind.c_str())
      .add("text", NSString(bodyTextOf(message, best)))
      .add("html", body.html)
      .add("removedRemoteContents", body.removed)
      .addRaw("attachments", jsonArray(message.attachments, jsonOfAttachment))
      .addRaw("faults", jsonArray(message.faults, [](const std::string& fault) {
                return jsonString(NSString(fault));
              }));
  return json.text();
}

std::string infoOf(const Message& message) {
  std::string out;
  addInfo(message, "", &out);
  return out;
}

}  // namespace kelspar::host
