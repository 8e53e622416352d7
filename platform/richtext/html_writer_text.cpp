#include "platform/richtext/html_writer_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "platform/foundation/base64.h"
#include "platform/foundation/scan.h"
#include "platform/richtext/html_escape.h"
#include "platform/richtext/html_tags.h"
#include "platform/richtext/html_white_space.h"
#include "platform/richtext/html_writer.h"

namespace kelspar {

namespace {

constexpr std::u16string_view kSchemes[] = {u"http:", u"https:", u"mailto:",
                                            u"tel:",  u"ftp:",   u"cid:"};

bool startsWithScheme(std::u16string_view link, std::u16string_view scheme) {
  return html::equalsIgnoringCase(link.substr(0, scheme.size()), scheme);
}

}  // namespace

bool hasSafeScheme(std::u16string_view link) {
  return std::ranges::any_of(kSchemes, [&](auto scheme) { return startsWithScheme(link, scheme); });
}

bool isSafeLink(std::u16string_view link) {
  if (!html::isWritable(link) || link.ends_with(u' ')) return false;
  if (link.starts_with(u'#')) return true;
  return hasSafeScheme(link);
}

namespace html {

namespace {

constexpr std::u16string_view kImageTypes[] = {u"image/png",   u"image/jpeg",   u"image/gif",
                                               u"image/bmp",   u"image/webp",   u"image/x-wmf",
                                               u"image/x-emf", u"image/svg+xml"};

bool isBreak(char16_t c) { return c == 0x2028 || c == u'\r'; }

// Whether white space in the paragraph would collapse.
bool hasWhiteSpaceToKeep(std::span<const Piece> pieces) {
  char16_t before = u'\n';  // at its start and behind a line's end
  for (const Piece& piece : pieces) {
    const std::u16string_view text = piece.text;
    if (text.empty()) continue;
    if (before == u' ' && (text[0] == u' ' || isBreak(text[0]))) return true;
    if (before == u'\n' && text[0] == u' ') return true;
    if (findCollapsible(text, 0) < text.size()) return true;
    for (size_t at = 0; (at = scan::findAny(text, at, 0x2028)) < text.size(); ++at) {
      if (at > 0 && text[at - 1] == u' ') return true;
      if (at + 1 < text.size() && text[at + 1] == u' ') return true;
    }
    before = isBreak(text.back()) ? u'\n' : text.back();
  }
  return before == u' ';
}

}  // namespace

void TextWriter::write(std::span<const Piece> pieces, bool preformatted) {
  const bool keeps = !preformatted && hasWhiteSpaceToKeep(pieces);
  if (keeps) out_ += u"<span class=\"w\">";
  writeLinked(pieces);
  if (keeps) out_ += u"</span>";
}

void TextWriter::writeBreak(const NSTextAttributes& attributes) {
  const std::u16string& name = classOf(attributes);
  if (name.empty()) {
    out_ += u"<br>";
    return;
  }
  out_ += u"<span";
  writeClass(name);
  out_ += u"><br></span>";
}

void TextWriter::writeSeparator(const NSTextAttributes& attributes) {
  const bool isLinked = attributes.link && isSafeLink(attributes.link);
  if (isLinked) openLink(attributes);
  openLook(attributes);
  out_ += u"&#x2028;";
  closeLook(attributes);
  if (isLinked) out_ += u"</a>";
}

void TextWriter::writeClass(std::u16string_view name) {
  if (name.empty()) return;
  out_ += u" class=\"";
  out_ += name;
  out_ += u'"';
}

void TextWriter::writeLinked(std::span<const Piece> pieces) {
  for (size_t i = 0; i < pieces.size();) {
    const NSString& link = pieces[i].attributes->link;
    size_t end = i + 1;
    while (end < pieces.size() && pieces[end].attributes->link == link) ++end;
    const bool isLinked = link && isSafeLink(link);
    if (isLinked) openLink(*pieces[i].attributes);
    for (; i < end; ++i) writePiece(pieces[i]);
    if (isLinked) out_ += u"</a>";
  }
}

void TextWriter::openLink(const NSTextAttributes& attributes) {
  out_ += u"<a href=\"";
  appendEscaped(attributes.link, /*inAttribute=*/true, &out_);
  out_ += u'"';
  if (attributes.foreground || attributes.underline) writeClass(u"k");
  out_ += u'>';
}

void TextWriter::writePiece(const Piece& piece) {
  if (piece.text.empty()) return;
  openLook(*piece.attributes);
  if (piece.attributes->attachment) {
    writeImages(piece);
  } else {
    appendEscaped(piece.text, /*inAttribute=*/false, &out_);
  }
  closeLook(*piece.attributes);
}

void TextWriter::openLook(const NSTextAttributes& attributes) {
  const std::u16string& name = classOf(attributes);
  if (!name.empty()) {
    out_ += u"<span class=\"";
    out_ += name;
    out_ += u"\">";
  }
  if (attributes.font.bold) out_ += u"<b>";
  if (attributes.font.italic) out_ += u"<i>";
  if (attributes.underline) out_ += u"<u>";
  if (attributes.strikethrough) out_ += u"<s>";
}

void TextWriter::closeLook(const NSTextAttributes& attributes) {
  if (attributes.strikethrough) out_ += u"</s>";
  if (attributes.underline) out_ += u"</u>";
  if (attributes.font.italic) out_ += u"</i>";
  if (attributes.font.bold) out_ += u"</b>";
  if (!classOf(attributes).empty()) out_ += u"</span>";
}

// Runs share their attributes, so most looks are found by address.
const std::u16string& TextWriter::classOf(const NSTextAttributes& attributes) {
  if (last_ == &attributes) return *lastClass_;
  const auto [found, isNew] = looks_.try_emplace(&attributes);
  if (isNew) found->second = classes_.look(attributes);
  last_ = &attributes;
  lastClass_ = &found->second;
  return found->second;
}

void TextWriter::writeImages(const Piece& piece) {
  for (size_t i = 0; i < piece.text.size(); ++i) {
    if (piece.text[i] == u'\uFFFC') {
      writeImage(*piece.attributes->attachment);
    } else {
      appendEscaped(piece.text.substr(i, 1), /*inAttribute=*/false, &out_);
    }
  }
}

void TextWriter::writeImage(const NSTextAttachment& image) {
  out_ += u"<img";
  const std::u16string_view source = image.source.view();
  const auto* const type = std::ranges::find(kImageTypes, image.type.view());
  const bool isHere = type != std::end(kImageTypes) && (image.contents || source.empty());
  NSString alternative = image.alternative;
  if (isHere && pictures_.takes(image.contents)) {
    out_ += u" src=\"data:";
    out_ += *type;
    out_ += u";base64,";
    std::string data;
    base64::encode(image.contents.chars(), &data);
    out_.append(data.begin(), data.end());
    out_ += u'"';
  } else if (startsWithScheme(source, u"cid:") || startsWithScheme(source, u"http:") ||
             startsWithScheme(source, u"https:")) {
    out_ += u" src=\"";
    appendEscaped(source, /*inAttribute=*/true, &out_);
    out_ += u'"';
  } else if (isHere && alternative.length() == 0) {
    alternative = image.name;
  }
  out_ += u" alt=\"";
  appendEscaped(alternative, /*inAttribute=*/true, &out_);
  out_ += u'"';

  // Whole pixels are attributes, which mail readers know best.
  constexpr double kPixels = 96.0 / 72, kLargest = 100000;
  const auto isWhole = [](double points) {
    return points >= 0 && points < kLargest && points * kPixels == std::floor(points * kPixels);
  };
  const auto dimension = [&](std::u16string_view name, double points) {
    if (points <= 0) return;
    out_ += name;
    appendNumber(points * kPixels, &out_);
    out_ += u'"';
  };
  if (isWhole(image.width) && isWhole(image.height)) {
    dimension(u" width=\"", image.width);
    dimension(u" height=\"", image.height);
  } else {
    writeClass(classes_.image(image.width, image.height));
  }
  out_ += u'>';
}

}  // namespace html

}  // namespace kelspar
