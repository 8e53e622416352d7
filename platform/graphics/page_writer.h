// Lines onto pages, pages into a PDF document. Internal to the library.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/graphics/page_canvas.h"

namespace kelspar {

// Pages are written as they fill; what is kept is one page's lines. A cut line is drawn on both
// pages, as text on the one with its baseline.
class PageWriter {
 public:
  using Write = std::function<bool(std::string_view)>;
  struct Settings {
    bool keepsLinesWhole = false;
    bool hasLinks = false;  // the document needs a structure
    PDFPaper paper = {};
    std::string title;
  };

  PageWriter(const Settings& settings, const Write& write);
  PageWriter(const PageWriter&) = delete;

  // Takes lines in reading order. Nothing that comes later begins above `y`.
  void add(std::vector<PageLine> lines, double y);

  // Writes what is left. To be called at the end, unless something was raised before; raises what
  // `write` has raised.
  void finish();

  // Writing has failed: what follows would not be seen.
  [[nodiscard]] bool isBroken() const;

 private:
  // A line with its place in the reading order.
  struct Placed {
    size_t order;
    PageLine line;
  };
  static bool isLower(const Placed& a, const Placed& b) { return a.line.top > b.line.top; }
  [[nodiscard]] double pageEnd() const;
  void fetchLines();
  void endPage(bool isLast);

  PageCanvas canvas_;
  bool keepsLinesWhole_;
  double pageHeight_;
  std::vector<Placed> lines_;  // that begin above the page's end, in reading order
  std::vector<Placed> later_;  // a heap: the highest is the first
  size_t count_ = 0;
  double pageTop_ = 0, bottom_ = 0;
};

}  // namespace kelspar
