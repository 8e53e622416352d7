// Attributed text on pages of a PDF document.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "platform/graphics/pdf_paper.h"
#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

struct PDFOptions {
  // A line that a page's end would cut begins the next page, unless it is higher than a page.
  // Otherwise pages are cut at exact multiples of their height and such a line is drawn on both.
  bool keepsLinesWhole = false;
  PDFPaper paper = {};
  NSString title;  // nil or empty: the text's first line that is not empty
};

struct PDFReport {
  // English names of the scripts that no font here has letters for, each once, by name; "symbols"
  // for what belongs to none. Boxes with code points stand for their characters.
  std::vector<NSString> scriptsWithoutFont;
  bool hasNoFonts = false;  // none at all is installed: pages without letters

  // In words: "no font has the letters of Han, Thai: boxes stand for them"; nil when nothing is
  // missing.
  [[nodiscard]] NSString complaint() const;
  // Writes the complaint, if there is one, to the log.
  void log() const;
};

// Lays `text` out on lines of 550 points, on pages of 715 points unless `paper` says otherwise.
// `write` gets the document in pieces, page by page, and says whether it could take them; after a
// "no" nothing more comes, and what it raises is raised here once the document is closed. A text
// that is not empty has a page at least. The creation date is SOURCE_DATE_EPOCH's where that is
// set. Any thread may call; `write` must not wait for another thread that makes pages, as fonts are
// locked meanwhile. Linear.
//
// Extracted from the pages, the text comes in order and once: of a line that is drawn on two pages,
// only the one with its baseline holds it as text.
PDFReport writePDF(const NSAttributedString& text, const PDFOptions& options,
                   const std::function<bool(std::string_view)>& write);

}  // namespace kelspar
