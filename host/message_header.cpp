// Header block: decoded names, dates in the reader's zone, attachments by name and size.
#include "host/message_header.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "BitKelspar/BitKelspar.h"
#include "host/body_text.h"
#include "host/message_text.h"
#include "platform/calendar/NSDateFormatter.h"

namespace kelspar::host {

namespace {

std::string shown(const Mailbox& mailbox) {
  const std::string name = oneLine(mailbox.name), address = oneLine(mailbox.address);
  if (name.empty() || name == address) return address;
  // A directory's name for somebody tells readers nothing.
  const bool isDirectoryName = address.starts_with("/") && address.find('@') == address.npos;
  return address.empty() || isDirectoryName ? name : name + " <" + address + ">";
}

void addMailboxes(const char* label, const std::vector<Mailbox>& list,
                  std::vector<std::pair<std::string, std::string>>* lines) {
  std::string value;
  for (const Mailbox& mailbox : list) value += (value.empty() ? "" : ", ") + shown(mailbox);
  if (!value.empty()) lines->emplace_back(label, value);
}

// False for no date, and for damage: years of five digits, dates before the common era.
bool fieldsOf(const NSDate& date, bool utc, tm* fields) {
  const double seconds = date.secondsSince1970();
  if (!date || std::abs(seconds) > 6.0e10) return false;
  const auto time = static_cast<time_t>(seconds);
  return (utc ? gmtime_r(&time, fields) : localtime_r(&time, fields)) != nullptr;
}

// The locale that the environment asks dates to be in (POSIX, 8.2); empty for POSIX's own.
std::string localeOfDates() {
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(name);
    if (!value || !*value) continue;
    const std::string locale = std::string(value).substr(0, std::strcspn(value, ".@"));
    return locale == "C" || locale == "POSIX" ? "" : locale;
  }
  return "";
}

}  // namespace

std::string readableDate(const NSDate& date) {
  tm fields{};
  char text[80];
  if (!fieldsOf(date, false, &fields)) return "";
  static const std::string locale = localeOfDates();
  if (!locale.empty()) {
    return NSDateFormatter::fullDateLongTime(NSString(locale)).stringFromDate(date).utf8();
  }
  return {text, strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S %z", &fields)};
}

std::string isoDate(const NSDate& date) {
  tm fields{};
  char text[80];
  if (!fieldsOf(date, true, &fields)) return "";
  return {text, strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &fields)};
}

std::string nameOf(const Attachment& attachment) {
  std::string name = oneLine(attachment.name);
  if (name.empty() && attachment.message) name = oneLine(attachment.message->subject);
  return name.empty() ? "unnamed" : name;
}

std::vector<std::pair<std::string, std::string>> headerLines(const Message& message) {
  std::vector<std::pair<std::string, std::string>> lines;
  addMailboxes("From", message.from, &lines);
  addMailboxes("To", message.to, &lines);
  addMailboxes("Cc", message.cc, &lines);
  addMailboxes("Bcc", message.bcc, &lines);
  const NSDate date = message.sent ? message.sent : message.received;
  if (const std::string text = readableDate(date); !text.empty()) lines.emplace_back("Date", text);
  if (!message.subject.isEmpty()) lines.emplace_back("Subject", oneLine(message.subject));
  std::string files;
  for (const Attachment& attachment : message.attachments) {
    if (attachment.isGiven) continue;
    files += (files.empty() ? "" : ", ") + nameOf(attachment);
    if (attachment.bytes) {
      const auto size = static_cast<double>(attachment.bytes.length());
      files += " (" + BitKelspar::formatSize(size).utf8() + ")";
    }
  }
  if (!files.empty()) lines.emplace_back("Attachments", files);
  return lines;
}

}  // namespace kelspar::host
