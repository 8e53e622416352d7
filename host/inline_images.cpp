// Images by content identifier and by content location.
#include "host/inline_images.h"

#include <map>

#include "MailKelspar/MailKelspar.h"
#include "host/base64_text.h"

namespace kelspar::host {

namespace {

constexpr size_t kLargestInlineImage = size_t{32} << 20;

bool isImage(const Attachment& attachment) {
  return attachment.bytes.length() <= kLargestInlineImage &&
         !imageType(attachment.bytes.chars()).empty();
}

// What tags refer to it by; one that has a location alone goes by its number.
std::string identifierOf(const Attachment& attachment, size_t number) {
  if (!attachment.contentIdentifier.isEmpty()) return attachment.contentIdentifier.utf8();
  return attachment.contentLocation.isEmpty() ? "" : "part-" + std::to_string(number);
}

std::map<std::string, const Attachment*> imagesOf(const Message& message) {
  std::map<std::string, const Attachment*> images;
  size_t number = 0;
  for (const Attachment& attachment : message.attachments) {
    const std::string identifier = identifierOf(attachment, number++);
    if (!identifier.empty() && isImage(attachment)) images.emplace(identifier, &attachment);
  }
  return images;
}

std::map<std::u16string_view, std::string> identifiersByLocation(const Message& message) {
  std::map<std::u16string_view, std::string> identifiers;
  size_t number = 0;
  for (const Attachment& attachment : message.attachments) {
    std::string identifier = identifierOf(attachment, number++);
    if (attachment.contentLocation.isEmpty() || !isImage(attachment)) continue;
    identifiers.emplace(attachment.contentLocation.view(), std::move(identifier));
  }
  return identifiers;
}

bool isBlank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; }

struct Value {
  size_t start = 0, end = 0;  // 0: there is none
};

// The value behind "src" at `at`: quoted, or up to a blank or the tag's end.
Value valueBehind(std::u16string_view html, size_t at) {
  while (at < html.size() && isBlank(html[at])) ++at;
  if (at == html.size() || html[at] != u'=') return {};
  do ++at;
  while (at < html.size() && isBlank(html[at]));
  if (at == html.size()) return {};
  const bool isQuoted = html[at] == u'"' || html[at] == u'\'';
  const size_t start = isQuoted ? at + 1 : at;
  const size_t end = isQuoted ? html.find(html[at], start) : html.find_first_of(u" \t\r\n>", start);
  return {start, std::min(end, html.size())};
}

bool isSource(std::u16string_view html, size_t at) {
  return at > 0 && (isBlank(html[at - 1]) || html[at - 1] == u'"' || html[at - 1] == u'\'') &&
         at + 3 < html.size() && (html[at] | 0x20) == u's' && (html[at + 1] | 0x20) == u'r' &&
         (html[at + 2] | 0x20) == u'c';
}

std::u16string withoutReferences(std::u16string_view value) {
  std::u16string plain(value);
  for (size_t at = 0; (at = plain.find(u"&amp;", at)) != plain.npos;) plain.erase(++at, 4);
  return plain;
}

}  // namespace

std::string imageType(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG")) return "image/png";
  if (bytes.starts_with("\xFF\xD8\xFF")) return "image/jpeg";
  if (bytes.starts_with("GIF8")) return "image/gif";
  if (bytes.starts_with("BM")) return "image/bmp";
  if (bytes.starts_with("RIFF") && bytes.find("WEBP") == 8) return "image/webp";
  return "";
}

NSString withLocationsAsIdentifiers(const Message& message, const NSString& text) {
  const auto identifiers = identifiersByLocation(message);
  if (identifiers.empty()) return text;
  const std::u16string_view html = text.view();
  std::u16string replaced;
  size_t copied = 0;
  for (size_t at = 0; (at = html.find_first_of(u"sS", at)) != html.npos;) {
    const Value value = isSource(html, at) ? valueBehind(html, at + 3) : Value{};
    if (value.start == 0) {
      ++at;
      continue;
    }
    at = value.end;
    const auto found =
        identifiers.find(withoutReferences(html.substr(value.start, value.end - value.start)));
    if (found == identifiers.end()) continue;
    replaced.append(html.substr(copied, value.start - copied));
    replaced.append(NSString("cid:" + found->second).view());
    copied = value.end;
  }
  if (copied == 0) return text;
  return NSString(std::move(replaced.append(html.substr(copied))));
}

// Safe HTML writes src="cid:..." in exactly this form. An image that stands in many places is put
// into the first ones only: a small message must not become a large page.
std::string withInlineImages(const Message& message, const std::string& html) {
  constexpr std::string_view kSource = "src=\"cid:";
  const auto images = imagesOf(message);
  if (images.empty()) return html;
  size_t budget = 2 * kLargestInlineImage;
  std::string page;
  size_t copied = 0;
  for (size_t at = 0; (at = html.find(kSource, at)) != html.npos;) {
    const size_t from = at + kSource.size();
    const size_t end = std::min(html.find('"', from), html.size());
    const NSString identifier =
        MailKelspar::bareContentIdentifier(NSString(html.substr(from, end - from)));
    const auto found = images.find(identifier.utf8());
    if (found != images.end() && found->second->bytes.length() <= budget) {
      const NSData& bytes = found->second->bytes;
      budget -= bytes.length();
      page.append(html, copied, at - copied);
      page.append("src=\"data:" + imageType(bytes.chars()) + ";base64,");
      page.append(base64Text(bytes.chars()));
      copied = end;
    }
    at = end;
  }
  return page.append(html, copied, html.npos);
}

}  // namespace kelspar::host
