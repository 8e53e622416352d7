// Pages: HTML bodies made safe, RTF bodies by the HTML writer, plain ones as they are.
#include "host/message_html.h"

#include "MailKelspar/MailKelspar.h"
#include "WebKelspar/WebKelspar.h"
#include "host/inline_images.h"
#include "host/message_header.h"
#include "host/open_message.h"
#include "host/rtf_pictures.h"

namespace kelspar::host {

namespace {

struct SafeHTML {
  std::string text;
  uint64_t removed = 0;
};

SafeHTML madeSafe(const NSString& html) {
  const NSDictionary safe = MailKelspar::safeHTML(html);
  return {safe.objectForKey<NSString>(u"html").utf8(),
          safe.objectForKey<NSNumber>(u"removed").unsignedLongValue()};
}

// Looks of its own: style sheets of the body are not meant for it.
std::string row(const std::string& name, const std::string& value) {
  constexpr const char* kLook = "sans-serif; color: #000; background-color: #fff\">";
  return std::string("<tr><th align=\"left\" valign=\"top\" style=\"font: bold 10pt ") + kLook +
         name + "</th><td align=\"left\" style=\"font: 10pt " + kLook + escapedHTML(value) +
         "</td></tr>\n";
}

std::string headerTable(const Message& message, uint64_t removed) {
  std::string rows;
  for (const auto& [name, value] : headerLines(message)) rows += row(name, value);
  if (removed > 0) {
    rows += row("Removed", remoteContents(removed));
  }
  return rows.empty() ? "" : "<table>\n" + rows + "</table>\n<hr>\n<p></p>\n";
}

}  // namespace

std::string escapedHTML(std::string_view text) {
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
      case '\0':
        break;
      default:
        html += c;
    }
  }
  return html;
}

std::string remoteContents(uint64_t count) {
  return std::to_string(count) + (count == 1 ? " remote content" : " remote contents");
}

std::string pageOf(const NSString& title, const std::string& body) {
  return "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>" +
         escapedHTML(title.utf8()) + "</title>\n</head>\n<body>\n" + body + "</body>\n</html>\n";
}

std::string bodyHTML(const Message& message, uint64_t* removed) {
  const BestBody best = bestBodyOf(message);
  if (best.html) {
    const SafeHTML safe = madeSafe(withLocationsAsIdentifiers(message, best.html));
    *removed = safe.removed;
    return withInlineImages(message, safe.text) + "\n";
  }
  if (best.kind == "rtf") {
    const NSString html = WebKelspar::htmlFromRTFData(withPicturesInPlace(message));
    return madeSafe(html).text + "\n";
  }
  return "<div style=\"white-space: pre-wrap\">" + escapedHTML(textOf(message, {.header = false})) +
         "</div>\n";
}

std::string htmlOf(const Messages& messages, const ShowOptions& options) {
  std::string bodies;
  for (const auto& message : messages) {
    uint64_t removed = 0;
    const std::string body = bodyHTML(*message, &removed);
    if (options.removed) *options.removed += removed;
    if (!bodies.empty()) bodies += "<hr>\n";
    bodies += (options.header ? headerTable(*message, removed) : "") + body;
  }
  return pageOf(messages.empty() ? nil : messages.front()->subject, bodies);
}

std::string htmlOf(const Message& message, const ShowOptions& options) {
  return htmlOf({std::make_shared<Message>(message)}, options);
}

}  // namespace kelspar::host
