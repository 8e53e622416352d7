// The HTML writer: the document's frame and its font, and the text cut into paragraphs.
#include "platform/richtext/html_writer.h"

#include <algorithm>
#include <map>

#include "platform/foundation/scan.h"
#include "platform/richtext/html_writer_blocks.h"

namespace kelspar {

namespace {

const NSParagraphStyle& styleOf(const NSTextAttributes& attributes) {
  static const NSParagraphStyle kPlain;
  return attributes.paragraph ? *attributes.paragraph : kPlain;
}

// The font of most units: it is the document's.
NSFont mostUsedFont(const NSAttributedString& text) {
  std::map<std::pair<std::u16string, double>, size_t> units;
  const std::pair<const std::pair<std::u16string, double>, size_t>* most = nullptr;
  const NSTextAttributes* last = nullptr;
  size_t* count = nullptr;
  for (const NSTextRun& run : text.runs()) {
    const NSFont& font = run.attributes->font;
    if (!last || font.family != last->font.family || font.size != last->font.size) {
      count = &units[{std::u16string(font.family.view()), font.size}];
    }
    last = run.attributes.get();
    *count += run.length;
  }
  for (const auto& entry : units) {
    if (!most || entry.second > most->second) most = &entry;
  }
  NSFont font;
  if (!most) return font;
  if (!most->first.first.empty()) font.family = most->first.first;
  font.size = most->first.second;
  return font;
}

// Whether a paragraph ends between two runs because its cell does.
bool leavesCell(const NSTextAttributes& a, const NSTextAttributes& b) {
  return styleOf(a).cells != styleOf(b).cells;
}

class Writer {
 public:
  explicit Writer(const NSAttributedString& text)
      : text_(text), string_(text.string()), classes_(mostUsedFont(text)) {}

  NSString write() {
    body_.reserve(text_.length() + text_.length() / 4);
    const std::u16string_view units = string_.view();
    const std::span<const NSTextRun> runs = text_.runs();
    size_t at = 0;
    for (size_t i = 0; i < runs.size(); ++i) {
      const NSTextAttributes& attributes = *runs[i].attributes;
      const size_t end = at + runs[i].length;
      while (at < end) {
        const size_t lineEnd = scan::findAny(units.substr(0, end), at, u'\n');
        addPiece(units.substr(at, lineEnd - at), attributes);
        at = lineEnd;
        if (at == end) break;
        ++at;
        paragraph_.isLastLine = at == units.size();
        endParagraph(attributes);
      }
      if (!hasText_) continue;
      const bool isLast = i + 1 == runs.size();
      if (isLast || leavesCell(attributes, *runs[i + 1].attributes)) {
        paragraph_.isUnfinished = isLast;
        if (!isLast) dropCellEnd();
        endParagraph(attributes);
      }
    }
    blocks_.finish();
    return finish();
  }

 private:
  NSString finish() {
    std::u16string out =
        u"<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title></title>\n<style>\n";
    out += classes_.sheet();
    out += u"</style>\n</head>\n<body>\n";
    out += body_;
    out += u"</body>\n</html>\n";
    return NSString(std::move(out));
  }

  void addPiece(std::u16string_view text, const NSTextAttributes& attributes) {
    if (text.empty()) return;
    if (!hasText_) paragraph_.style = &styleOf(attributes);
    hasText_ = true;
    paragraph_.pieces.push_back({text, &attributes});
  }

  // The tab between a cell and the next one is no text of its own.
  void dropCellEnd() {
    html::Piece& last = paragraph_.pieces.back();
    if (paragraph_.style->cells.empty() || !last.text.ends_with(u'\t')) return;
    last.text.remove_suffix(1);
    if (last.text.empty()) paragraph_.pieces.pop_back();
  }

  void endParagraph(const NSTextAttributes& end) {
    if (!hasText_) paragraph_.style = &styleOf(end);
    paragraph_.end = &end;
    blocks_.write(&paragraph_);
    paragraph_.pieces.clear();
    paragraph_.isLastLine = paragraph_.isUnfinished = hasText_ = false;
  }

  const NSAttributedString& text_;
  const NSString string_;
  std::u16string body_;
  html::Classes classes_;
  html::BlockWriter blocks_{&classes_, &body_};
  html::Paragraph paragraph_;
  bool hasText_ = false;
};

}  // namespace

NSString htmlFromAttributedString(const NSAttributedString& text) {
  return text ? Writer(text).write() : nil;
}

}  // namespace kelspar
