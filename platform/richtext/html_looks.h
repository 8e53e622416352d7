// The looks of the open elements and of the text in them, for the attributed import. Internal to
// the importer.
#pragma once

#include <memory>
#include <vector>

#include "platform/richtext/NSAttributedString.h"
#include "platform/richtext/html_layout.h"
#include "platform/richtext/html_style.h"
#include "platform/richtext/html_tokenizer.h"

namespace kelspar::html {

// What a start tag brings along: its attributes and what is declared for it.
struct Source {
  Tag tag = Tag::none;
  const Tokenizer* attributes = nullptr;  // null: the element is implied
  const Declarations* declarations = nullptr;
  bool isBlock = false;
  bool keepsWhiteSpace = false;
};

class Looks {
 public:
  Looks();

  // An element opens in the one that is open: it looks like that, but for what `source` changes.
  void push(const Source& source);
  void pop();
  // The body's own tag, which comes when the body is open already.
  void changeBody(const Source& source);

  // Formatting that comes back behind a block: `save` keeps what the top element changed, `again`
  // opens an element that changes the same, `release` forgets it.
  [[nodiscard]] uint32_t save();
  void again(uint32_t saved);
  void release(uint32_t saved);
  // The element at `position` (from 1) ends, and those in it stay open: its changes are undone.
  void forget(uint32_t position);

  // The top element's paragraphs are items of the list, or stand in the cell.
  void enterList(const NSTextList& list);
  void enterCell(NSTextTableCell cell, const Source& source);
  void setColumns(uint32_t table, uint16_t columns);

  // The number of the present look; of the same with an attachment.
  [[nodiscard]] uint32_t current();
  // In how many boxes it is.
  [[nodiscard]] size_t depth() const;
  [[nodiscard]] uint32_t withAttachment(std::shared_ptr<const NSTextAttachment> attachment);

  [[nodiscard]] NSAttributedString finish(TextLayout::Result&& result);

 private:
  struct Level {
    NSTextAttributes style;
    uint32_t own = 0;  // bits of what the element changed
  };

  void apply(const Source& source, Level* level);
  void enterBlock(const Source& source, NSParagraphStyle* paragraph, Level* level);
  void setParagraph(NSParagraphStyle&& paragraph, Level* level);
  [[nodiscard]] NSParagraphStyle paragraph() const;

  std::vector<Level> levels_;
  std::vector<Level> saved_;
  std::vector<uint32_t> free_;
  std::vector<std::shared_ptr<const NSTextAttributes>> looks_;
  std::vector<std::shared_ptr<NSParagraphStyle>> inCells_;
  std::vector<uint16_t> columns_;  // by table
  uint32_t blocks_ = 0;            // that are boxes
  bool isFresh_ = false;           // the last look is the present one
};

}  // namespace kelspar::html
