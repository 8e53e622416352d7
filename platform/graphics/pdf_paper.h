// Paper for pages of a PDF document.
#pragma once

#include <optional>

#include "platform/foundation/NSString.h"

namespace kelspar {

// Pages hold lines of 550 points. By default the page is what they need, without margins.
struct PDFPaper {
  double width = 550, height = 715;     // points
  double left = 0, top = 0, scale = 1;  // where the lines begin; how large they are drawn

  // How much of the text's height a page holds.
  [[nodiscard]] double textHeight() const { return (height - 2 * top) / scale; }

  // "A3", "A4", "A5", "B5", "Letter", "Legal", "Tabloid", in any case, or "WIDTHxHEIGHT" in
  // millimetres, 50 to 2,000 a side. Margins are half an inch above and below and at least 20
  // points at the sides; on narrow paper lines are drawn smaller. Nothing for anything else.
  [[nodiscard]] static std::optional<PDFPaper> named(const NSString& name);

  // The paper with that margin above and below, and at least that at the sides; lines are drawn
  // smaller where they would not fit between. Nothing for a margin that is negative or no number,
  // and for one that leaves less than an inch.
  [[nodiscard]] std::optional<PDFPaper> withMargin(double points) const;
};

}  // namespace kelspar
