// Messages as text and RTF.
#include "host/message_text.h"

#include <algorithm>

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "host/body_text.h"
#include "host/message_header.h"
#include "host/open_message.h"
#include "host/rtf_pictures.h"
#include "platform/richtext/rtf_writer.h"

namespace kelspar::host {

namespace {

std::string headerText(const Message& message) {
  std::string text;
  for (const auto& [name, value] : headerLines(message)) text += name + ": " + value + "\n";
  if (!text.empty()) text += '\n';
  return text;
}

NSAttributedString lookOf(const Message& message, const ShowOptions& options) {
  return NSAttributedString::initWithHTML(NSData(htmlOf(message, options)));
}

}  // namespace

std::string bodyTextOf(const Message& message, const BestBody& best) {
  if (best.html) return linesOfHTML(best.html);
  if (best.kind == "rtf") {
    return plainLines(RTFKelsparNSDataAdditions::stringFromRTFData(message.rtf));
  }
  return plainLines(message.text);
}

std::string textOf(const Message& message, const ShowOptions& options) {
  return (options.header ? headerText(message) : "") + bodyTextOf(message, bestBodyOf(message));
}

std::string textOf(const Messages& messages, const ShowOptions& options) {
  std::string texts;
  for (const auto& message : messages) {
    if (!texts.empty()) texts += "\f\n";
    texts += textOf(*message, options);
  }
  return texts;
}

std::string rtfOf(const Message& message, const ShowOptions& options) {
  if (!message.rtf && bestBodyOf(message).html) {
    return std::string(rtfFromAttributedString(lookOf(message, options)).chars());
  }
  if (!message.rtf) {
    return std::string(MailKelspar::rtfFromText(NSString(textOf(message, options))).chars());
  }
  NSData rtf = withPicturesInPlace(message);
  if (options.header) rtf = MailKelspar::putText(NSString(headerText(message)), rtf);
  return std::string(rtf.chars());
}

std::string rtfOf(const Messages& messages, const ShowOptions& options) {
  if (messages.size() == 1) return rtfOf(*messages.front(), options);
  const auto isText = [](const auto& message) { return !bestBodyOf(*message).html; };
  if (std::ranges::all_of(messages, isText)) {
    return std::string(MailKelspar::rtfFromText(NSString(textOf(messages, options))).chars());
  }
  NSMutableAttributedString all;
  for (const auto& message : messages) {
    if (all.length() > 0) all.append(u"\f", {});
    all.append(lookOf(*message, options));
  }
  return std::string(rtfFromAttributedString(all.copy()).chars());
}

}  // namespace kelspar::host
