// Messages as text, HTML and RTF.
#include "host/message_text.h"

#include <map>

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "host/base64_text.h"
#include "host/message_header.h"
#include "host/open_message.h"

namespace kelspar::host {

namespace {

constexpr size_t kLargestInlineImage = size_t{32} << 20;

std::string escaped(std::string_view text) {
  std::string html;
  for (const char c : text) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\r':
        break;
      case '\0':
        break;
      default:
        html += c;
    }
  }
  return html;
}

// Line feeds alone, lines inside paragraphs as lines, no NULs, one line feed at the end.
std::string plainLines(const NSString& text) {
  std::u16string plain;
  const std::u16string_view units = text.view();
  for (size_t i = 0; i < units.size(); ++i) {
    const char16_t c = units[i];
    if (c == u'\0') continue;
    if (c == u'\r') {
      if (i + 1 == units.size() || units[i + 1] != u'\n') plain += u'\n';
    } else {
      plain += c == u'\u2028' || c == u'\u2029' ? u'\n' : c;
    }
  }
  while (!plain.empty() && plain.back() == u'\n') plain.pop_back();
  std::string utf8 = NSString(std::move(plain)).utf8();
  if (!utf8.empty()) utf8 += '\n';
  return utf8;
}

std::string bodyText(const Message& message) {
  const BestBody best = bestBodyOf(message);
  if (best.html) return plainLines(MailKelspar::textFromHTML(best.html));
  if (best.kind == "rtf") {
    return plainLines(RTFKelsparNSDataAdditions::stringFromRTFData(message.rtf));
  }
  return plainLines(message.text);
}

// The type by content: the label may lie, and what it says goes into a page.
std::string imageType(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG")) return "image/png";
  if (bytes.starts_with("\xFF\xD8\xFF")) return "image/jpeg";
  if (bytes.starts_with("GIF8")) return "image/gif";
  if (bytes.starts_with("BM")) return "image/bmp";
  if (bytes.starts_with("RIFF") && bytes.substr(8, 4) == "WEBP") return "image/webp";
  return "";
}

std::map<std::string, const Attachment*> imagesOf(const Message& message) {
  std::map<std::string, const Attachment*> images;
  for (const Attachment& attachment : message.attachments) {
    if (attachment.bytes.length() > kLargestInlineImage) continue;
    if (imageType(attachment.bytes.chars()).empty()) continue;
    if (!attachment.contentIdentifier.isEmpty()) {
      images.emplace(attachment.contentIdentifier.utf8(), &attachment);
    }
  }
  return images;
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

std::string bodyHTML(const Message& message, uint64_t* removed) {
  const BestBody best = bestBodyOf(message);
  if (!best.html) {
    return "<div style=\"white-space: pre-wrap\">" + escaped(bodyText(message)) + "</div>\n";
  }
  const NSDictionary safe = MailKelspar::safeHTML(best.html);
  *removed = safe.objectForKey<NSNumber>(u"removed").unsignedLongValue();
  return withInlineImages(message, safe.objectForKey<NSString>(u"html").utf8()) + "\n";
}

std::string rtfEscaped(const NSString& text) {
  std::string rtf;
  for (const char16_t c : text.view()) {
    if (c == u'\n' || c == u'\u2028') {
      rtf += "\\par\n";
    } else if (c == u'\t') {
      rtf += "\\tab ";
    } else if (c == u'\\' || c == u'{' || c == u'}') {
      rtf += '\\';
      rtf += static_cast<char>(c);
    } else if (c >= 128) {
      rtf += "\\u" + std::to_string(static_cast<int16_t>(c)) + "?";
    } else if (c >= u' ') {
      rtf += static_cast<char>(c);
    }
  }
  return rtf;
}

}  // namespace

std::string textOf(const Message& message, const ShowOptions& options) {
  std::string text;
  if (options.header) {
    for (const auto& [name, value] : headerLines(message)) text += name + ": " + value + "\n";
    if (!text.empty()) text += '\n';
  }
  return text + bodyText(message);
}

std::string htmlOf(const Message& message, const ShowOptions& options) {
  uint64_t removed = 0;
  const std::string body = bodyHTML(message, &removed);
  std::string html = "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>" +
                     escaped(message.subject.utf8()) + "</title>\n</head>\n<body>\n";
  if (options.header) {
    std::string rows;
    for (const auto& [name, value] : headerLines(message)) {
      rows += "<tr><th align=\"left\" valign=\"top\">" + name + "</th><td>" + escaped(value) +
              "</td></tr>\n";
    }
    if (removed > 0) {
      rows += "<tr><th align=\"left\" valign=\"top\">Removed</th><td>" + std::to_string(removed) +
              " remote contents</td></tr>\n";
    }
    if (!rows.empty()) html += "<table>\n" + rows + "</table>\n<hr>\n";
  }
  return html + body + "</body>\n</html>\n";
}

std::string rtfOf(const Message& message, const ShowOptions& options) {
  // The message's own RTF is the best there is; a header cannot be put into it.
  if (message.rtf) return std::string(message.rtf.chars());
  return "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\\f0\\fs20\n" +
         rtfEscaped(NSString(textOf(message, options))) + "}\n";
}

}  // namespace kelspar::host
