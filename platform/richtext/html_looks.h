// The looks of the open elements and of the text in them, for the attributed import. Internal to
// the library.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "platform/richtext/NSAttributedString.h"
#include "platform/richtext/html_importer.h"
#include "platform/richtext/html_style.h"
#include "platform/richtext/html_tokenizer.h"

namespace kelspar::html {

class Looks {
 public:
  explicit Looks(const HTMLImportOptions& options);

  // An element opens: its look is its parent's, changed by what it is, by its attributes and by
  // its declarations. One that comes back (formatting behind a block) has no tag token any more:
  // `again` opens it as it was.
  void push(Tag tag, const Tokenizer& tag_, const Declarations& declarations, bool isBlock);
  void again(uint32_t saved);
  void pop();
  // The element at `position` (from 1) ends here, those in it stay open: its changes are undone.
  void forget(uint32_t position);
  // The changes that the top element made, to be used with `again`.
  [[nodiscard]] uint32_t save();
  void release(uint32_t saved);

  void enterList(const NSTextList& list);
  void enterCell(const NSTextTableCell& cell, const Tokenizer& tag,
                 const Declarations& declarations);
  // Adds to the table's columns.
  void setColumns(uint32_t table, uint16_t columns);

  // The number of the present look, and that of an image that stands in it.
  [[nodiscard]] uint32_t current();
  [[nodiscard]] uint32_t withAttachment(std::shared_ptr<const NSTextAttachment> attachment);
  // What an <img> refers to; null when nothing would be shown (a pixel that counts readers).
  [[nodiscard]] std::shared_ptr<const NSTextAttachment> attachmentOf(
      const Tokenizer& tag, const Declarations& declarations);

  // The text with the looks of its runs.
  [[nodiscard]] NSAttributedString finish(TextLayout::Result&& result);

 private:
  struct Level {
    NSTextAttributes style;
    uint32_t own = 0;  // bits of what the element changed
  };
  void applyTag(Tag tag, const Tokenizer& token, Level* level);
  void applyDeclarations(const Declarations& declarations, bool isBlock, Level* level);
  void applyParagraph(Tag tag, const Tokenizer& token, const Declarations& declarations,
                      Level* level);

  const HTMLImportOptions& options_;
  std::vector<Level> levels_;
  std::vector<Level> saved_;
  std::vector<uint32_t> freeSaved_;
  std::vector<std::shared_ptr<const NSTextAttributes>> looks_;
  std::vector<std::shared_ptr<NSParagraphStyle>> inCells_;
  std::vector<uint16_t> columns_;
  bool changed_ = true;
  uint32_t current_ = 0;
};

}  // namespace kelspar::html
