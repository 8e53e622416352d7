// What stands in a paragraph of a written HTML document: text with its looks, links, images.
// Internal to the HTML writer.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/richtext/NSTextAttributes.h"
#include "platform/richtext/html_classes.h"
#include "platform/richtext/picture_budget.h"

namespace kelspar::html {

// A piece of a run.
struct Piece {
  std::u16string_view text;
  const NSTextAttributes* attributes;
};

class TextWriter {
 public:
  TextWriter(Classes* classes, std::u16string* out) : classes_(*classes), out_(*out) {}

  // The pieces as phrasing content. White space that would collapse stands in a span that keeps it,
  // unless the paragraph does (`preformatted`).
  void write(std::span<const Piece> pieces, bool preformatted);
  // A line end of that look.
  void writeBreak(const NSTextAttributes& attributes);
  // The character U+2028 itself: a <br> there would be the paragraph's own end.
  void writeSeparator(const NSTextAttributes& attributes);
  // ` class="..."`; nothing for no name.
  void writeClass(std::u16string_view name);

 private:
  void writeLinked(std::span<const Piece> pieces);
  void openLink(const NSTextAttributes& attributes);
  void writePiece(const Piece& piece);
  void openLook(const NSTextAttributes& attributes);
  void closeLook(const NSTextAttributes& attributes);
  void writeImages(const Piece& piece);
  void writeImage(const NSTextAttachment& image);
  const std::u16string& classOf(const NSTextAttributes& attributes);

  Classes& classes_;
  std::u16string& out_;
  PictureBudget pictures_;
  std::unordered_map<const NSTextAttributes*, std::u16string> looks_;  // classes by address
  const NSTextAttributes* last_ = nullptr;
  const std::u16string* lastClass_ = nullptr;
};

}  // namespace kelspar::html
