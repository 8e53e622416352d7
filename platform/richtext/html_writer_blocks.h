// The blocks of a written HTML document: paragraphs, and the quotes, tables and lists around them,
// which stay open as long as the next paragraph stands in them, too. Internal to the HTML writer.
#pragma once

#include <string>
#include <vector>

#include "platform/richtext/html_classes.h"
#include "platform/richtext/html_columns.h"
#include "platform/richtext/html_writer_text.h"

namespace kelspar::html {

// A paragraph without its line end.
struct Paragraph {
  std::vector<Piece> pieces;              // none is empty
  const NSTextAttributes* end = nullptr;  // the look of its end
  const NSParagraphStyle* style = nullptr;
  std::u16string marker;  // of an item, where the list does not show it
  // How the text goes on behind it: the line end that closes the document must be seen, and a
  // line separator must not stand for it.
  bool isLastLine = false, isUnfinished = false;
};

class BlockWriter {
 public:
  BlockWriter(Classes* classes, std::u16string* out)
      : classes_(*classes), out_(*out), text_(classes, out) {}

  void write(Paragraph* paragraph);
  // Closes what is open.
  void finish() { closeQuotes(0); }

 private:
  struct OpenTable {
    NSTextTableCell cell;  // the open one
    size_t lists;          // open outside of the table
    TableColumns columns;
  };
  struct OpenList {
    NSTextList list;
    int64_t next;                  // the number of the next item
    double indent;                 // of the list, from the cell's edge
    const NSParagraphStyle* item;  // of the open item; what is around the list before the first one
  };

  void block(Paragraph* paragraph, const NSParagraphStyle& around);
  void contents(Paragraph* paragraph);
  void item(Paragraph* paragraph);

  bool enterLists(const NSParagraphStyle& style);
  void openList(const NSTextList& list, const NSParagraphStyle& style, bool isInner);
  void closeLists(size_t count);
  [[nodiscard]] size_t listsOutside() const { return tables_.empty() ? 0 : tables_.back().lists; }
  [[nodiscard]] const NSParagraphStyle& around() const;

  void enterCells(const NSParagraphStyle& style);
  void openTable(const NSTextTableCell& cell);
  void nextCell(const NSTextTableCell& cell);
  void rowsUntil(uint16_t row);
  void openCell(const NSTextTableCell& cell);
  void closeTables(size_t count);

  void enterQuotes(const NSParagraphStyle& style);
  void closeQuotes(int level);

  void attribute(std::u16string_view name, int64_t value);
  void endLine(size_t ended = 0);

  Classes& classes_;
  std::u16string& out_;
  TextWriter text_;
  std::vector<OpenTable> tables_;
  std::vector<OpenList> lists_;
  int quotes_ = 0;
};

}  // namespace kelspar::html
