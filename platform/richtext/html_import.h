// One import of HTML: the tree rules (WHATWG HTML, 13.2.6) as far as they change what is shown,
// over the tokens and without a tree. Internal to the importer.
//
// Implied ends, misnested formatting, text that strays between the parts of a table, SVG and
// MathML; what is open is a stack, and what an element changes is undone when it is taken off.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/richtext/html_columns.h"
#include "platform/richtext/html_importer.h"
#include "platform/richtext/html_layout.h"
#include "platform/richtext/html_looks.h"
#include "platform/richtext/html_open_elements.h"
#include "platform/richtext/html_style_sheet.h"
#include "platform/richtext/html_tokenizer.h"

namespace kelspar::html {

class Import {
 public:
  // With `options` for attributed text, else for plain text. With `sheet`, all rules are known
  // beforehand.
  Import(std::u16string_view html, const HTMLImportOptions* options,
         const StyleSheet* sheet = nullptr);

  // False when a style element has rules for what was read already: then it is to be read once
  // more with all the rules.
  [[nodiscard]] bool run();
  // Once, after that.
  [[nodiscard]] NSString plainText();
  [[nodiscard]] NSAttributedString attributedText();

 private:
  // Formatting that is open, or that comes back behind the block that it was left open in.
  struct Formatting {
    OpenElement element;    // a name of 0: a marker
    uint32_t position = 0;  // where it is open; 0: it is to come back
    uint32_t look = 0;      // what it changes, kept by `looks_`
  };
  struct List {
    bool ordered = false;
    int32_t next = 1;
    NSString style;
    uint32_t bullets = 0;  // lists around it that are not ordered
  };

  struct Table {
    uint32_t identity = 0;
    uint16_t row = 0;  // the next one
    TableColumns columns;
    bool hasLines = false;  // <table border=1>
    std::optional<NSTextEdges> padding;
  };

  // Tokens.
  void text(const Token& token);
  void documentType(const Token& token);
  void startTag(const Token& token);
  void endTag(const Token& token);

  // Start tags.
  void startInForeign(const Token& token);
  void startBody();
  void startVoid(Tag tag);
  void image();
  void startFormatting(Tag tag);
  bool startStyle();
  bool startTablePart(Tag tag);
  void openTable();
  void openPart(Tag tag, bool isImplied = false);
  void enterCell();
  void endImplied(Tag tag);
  void endItemBefore(Tag tag);
  void startElement(const Token& token);

  // End tags.
  bool endTablePart(Tag tag);
  void endFormatting(Tag tag);
  void endBlock(Tag tag);
  void endOther(uint16_t name);

  // The stack.
  void readDeclarations(Tag tag);
  void applySheet(const Subject& subject);
  void open(Tag tag, uint16_t name, bool isImplied = false);
  void push(OpenElement element);
  void pop();
  void popTo(uint32_t position);  // and the element there
  void popAbove(uint32_t position) { popTo(position + 1); }
  void closeP();
  void beginLayout(Tag tag);
  void endLayout(const OpenElement& element);
  void beginList(Tag tag);
  void beginItem();
  [[nodiscard]] uint32_t table() const { return elements_.last(Tag::table); }
  [[nodiscard]] uint32_t section() const;
  [[nodiscard]] bool fosters() { return elements_.top().fosters; }

  // Formatting.
  void reconstruct();
  void addFormatting();
  void removeFormatting(size_t index);
  void suspendFormatting(uint32_t position);
  void clearFormattingToMarker();
  [[nodiscard]] Formatting* findFormatting(uint16_t name);

  Tokenizer tokens_;
  TextLayout layout_;
  OpenElements elements_;
  StyleSheet sheet_;
  bool knowsSheet_;                   // from the start
  Declarations declarations_;         // of the start tag that is being read
  Ancestry ancestry_;                 // and where it stands
  std::vector<Ancestry> ancestries_;  // of the open elements, when they count
  std::vector<Formatting> formatting_;
  std::vector<List> lists_;
  std::vector<Table> tables_;
  const HTMLImportOptions* options_;
  std::unique_ptr<Looks> looks_;  // null for plain text
  uint32_t identities_ = 0;       // of lists and tables
  bool mustReconstruct_ = false;
  bool isQuirky_ = true;       // no document type, or an old one: a table does not end a paragraph
  bool skipsLineEnd_ = false;  // the one that <pre> begins with
};

}  // namespace kelspar::html
