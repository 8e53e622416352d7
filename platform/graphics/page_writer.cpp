// Where pages end, and what is drawn on each.
#include "platform/graphics/page_writer.h"

#include <algorithm>

namespace kelspar {

namespace {

constexpr double kTolerance = 1.0 / 1024;  // layout counts in these

}  // namespace

PageWriter::PageWriter(const Settings& settings, const Write& write)
    : canvas_(settings.paper, settings.title, settings.hasLinks, write),
      keepsLinesWhole_(settings.keepsLinesWhole),
      pageHeight_(settings.paper.textHeight()) {}

void PageWriter::finish() {
  while (!isBroken() && bottom_ > pageTop_ + pageHeight_ + kTolerance) endPage(false);
  endPage(true);
  canvas_.finish();
}

bool PageWriter::isBroken() const { return canvas_.isBroken(); }

void PageWriter::add(std::vector<PageLine> lines, double y) {
  for (PageLine& line : lines) {
    bottom_ = std::max(bottom_, line.bottom);
    later_.push_back({count_++, std::move(line)});
    std::ranges::push_heap(later_, isLower);
  }
  bottom_ = std::max(bottom_, y);
  while (!isBroken() && y >= pageTop_ + pageHeight_ + kTolerance) endPage(false);
}

// Lines of cells side by side come one cell after the other, down to its end.
void PageWriter::fetchLines() {
  const double end = pageTop_ + pageHeight_;
  while (!later_.empty() && later_.front().line.top < end) {
    std::ranges::pop_heap(later_, isLower);
    lines_.push_back(std::move(later_.back()));
    later_.pop_back();
  }
  std::ranges::sort(lines_, {}, &Placed::order);
}

// Up until no line is cut, unless nothing would be left on the page.
double PageWriter::pageEnd() const {
  constexpr int kMostMoves = 200;  // cells side by side can make it move again and again
  const double end = pageTop_ + pageHeight_;
  if (!keepsLinesWhole_) return end;
  double whole = end;
  for (int moves = 0; moves < kMostMoves; ++moves) {
    double up = whole;
    for (const auto& [order, line] : lines_) {
      const bool isCut = line.top < whole - kTolerance && line.bottom > whole + kTolerance;
      if (isCut && !line.mayBeCut) up = std::min(up, line.top);
    }
    if (up == whole) return whole;
    if (up <= pageTop_ + kTolerance) return end;
    whole = up;
  }
  return end;
}

void PageWriter::endPage(bool isLast) {
  fetchLines();
  const double end = pageEnd();
  for (const auto& [order, line] : lines_) {
    if (line.top < end - kTolerance && line.bottom > pageTop_ + kTolerance) {
      canvas_.draw(line, pageTop_, end);
    }
  }
  std::erase_if(lines_,
                [end](const Placed& placed) { return placed.line.bottom <= end + kTolerance; });
  canvas_.turnPage(isLast);
  pageTop_ = end;
}

}  // namespace kelspar
