#include "platform/richtext/html_attributes.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "platform/foundation/base64.h"
#include "platform/foundation/hex.h"

namespace kelspar::html {

namespace {

// A URL as pages write it: without white space around it and without line ends and tabs in it.
std::u16string urlOf(const Tokenizer& tag, std::u16string_view name) {
  const Attribute* const attribute = tag.attribute(name);
  if (!attribute) return {};
  std::u16string url = attribute->value();
  std::erase_if(url, [](char16_t c) { return c == u'\n' || c == u'\r' || c == u'\t'; });
  while (!url.empty() && url.back() <= u' ') url.pop_back();
  url.erase(0, static_cast<size_t>(std::ranges::find_if(url, [](char16_t c) { return c > u' '; }) -
                                   url.begin()));
  return url;
}

bool hasScheme(std::u16string_view url, std::u16string_view scheme) {
  return url.size() > scheme.size() && url[scheme.size()] == u':' &&
         equalsIgnoringCase(url.substr(0, scheme.size()), scheme);
}

std::string percentDecoded(std::u16string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
        hexValue(text[i + 2]) >= 0) {
      bytes.push_back(static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2])));
      i += 2;
    } else if (text[i] < 0x80) {
      bytes.push_back(static_cast<char>(text[i]));
    } else {
      bytes += NSString(text.substr(i, 1)).utf8();
    }
  }
  return bytes;
}

// RFC 2397: "data:image/png;base64,...".
void readDataURL(std::u16string_view url, NSTextAttachment* attachment) {
  const size_t comma = url.find(u',');
  if (comma == url.npos) return;
  const auto head = url.substr(5, comma - 5);
  attachment->type = NSString(head.substr(0, head.find(u';')));
  if (comma + 1 == url.size()) return;  // only its type is known
  std::string bytes = percentDecoded(url.substr(comma + 1));
  if (head.find(u";base64") != head.npos) {
    std::erase_if(bytes, [](char c) { return c == ' '; });
    const auto decoded = base64::decodeStrict(NSString(bytes));
    if (!decoded) return;
    bytes = *decoded;
  }
  attachment->contents = NSData(std::move(bytes));
}

}  // namespace

int32_t numberOf(const Attribute* attribute, int32_t otherwise) {
  if (!attribute) return otherwise;
  std::u16string_view text = attribute->raw;
  while (!text.empty() && text.front() <= u' ') text.remove_prefix(1);
  const bool negative = text.starts_with(u'-');
  if (negative || text.starts_with(u'+')) text.remove_prefix(1);
  int64_t value = 0;
  size_t digits = 0;
  for (; digits < text.size() && text[digits] >= u'0' && text[digits] <= u'9'; ++digits) {
    value = std::min<int64_t>(value * 10 + (text[digits] - u'0'), 1'000'000'000);
  }
  if (digits == 0) return otherwise;
  return static_cast<int32_t>(negative ? -value : value);
}

double pointsOf(const Tokenizer& tag, std::u16string_view name) {
  const Attribute* const attribute = tag.attribute(name);
  if (!attribute || attribute->raw.find(u'%') != attribute->raw.npos) return 0;
  return std::max(0, numberOf(attribute, 0)) * 0.75;
}

double fontSizeOf(const Tokenizer& tag) {
  constexpr double kSizes[] = {7.5, 9.75, 12, 13.5, 18, 24, 36};
  const Attribute* const size = tag.attribute(u"size");
  if (!size || size->raw.empty()) return 0;
  const bool isStep = size->raw[0] == u'+' || size->raw[0] == u'-';
  int32_t step = numberOf(size, isStep ? 0 : -1);
  if (step < 0 && !isStep) return 0;
  if (isStep) step += 3;
  return kSizes[std::clamp(step, 1, 7) - 1];
}

NSTextAlignment alignmentNamed(std::u16string_view name, NSTextAlignment otherwise) {
  if (equalsIgnoringCase(name, u"left")) return NSTextAlignment::left;
  if (equalsIgnoringCase(name, u"right")) return NSTextAlignment::right;
  if (equalsIgnoringCase(name, u"center")) return NSTextAlignment::center;
  if (equalsIgnoringCase(name, u"middle")) return NSTextAlignment::center;
  if (equalsIgnoringCase(name, u"justify")) return NSTextAlignment::justified;
  return otherwise;
}

NSString linkOf(const Tokenizer& tag) {
  const std::u16string url = urlOf(tag, u"href");
  if (url.empty()) return nil;
  for (const std::u16string_view scheme : {u"javascript", u"vbscript", u"data"}) {
    if (hasScheme(url, scheme)) return nil;
  }
  return NSString(url);
}

std::shared_ptr<NSTextAttachment> attachmentOf(const Tokenizer& tag,
                                               const HTMLImportOptions& options) {
  const std::u16string url = urlOf(tag, u"src");
  const Attribute* const alternative = tag.attribute(u"alt");
  if (url.empty() && (tag.attribute(u"src") || !alternative)) return nullptr;
  auto attachment = std::make_shared<NSTextAttachment>();
  attachment->width = pointsOf(tag, u"width");
  attachment->height = pointsOf(tag, u"height");
  if (alternative && !alternative->raw.empty()) {
    attachment->alternative = NSString(alternative->value());
  }
  if (url.empty()) return attachment;
  if (hasScheme(url, u"data")) {
    readDataURL(url, attachment.get());
    return attachment;
  }
  const Attribute* const width = tag.attribute(u"width");
  const Attribute* const height = tag.attribute(u"height");
  if (width && height && numberOf(width, 2) <= 1 && numberOf(height, 2) <= 1) return nullptr;
  attachment->source = NSString(url);
  if (hasScheme(url, u"cid")) {
    attachment->name = NSString(percentDecoded(std::u16string_view(url).substr(4)));
    if (options.dataForContentIdentifier) {
      attachment->contents = options.dataForContentIdentifier(attachment->name);
    }
  }
  return attachment;
}

}  // namespace kelspar::html
