// Where pages end, and what is drawn on each.
#include "platform/graphics/page_writer.h"

#include <algorithm>

namespace kelspar {

namespace {

constexpr double kTolerance = 1.0 / 1024;  // layout counts in these

}  // namespace

PageWriter::PageWriter(const Settings& settings, const Write& write)
    : canvas_(settings.title, settings.hasLinks, write),
      keepsLinesWhole_(settings.keepsLinesWhole) {}

PageWriter::~PageWriter() {
  while (!isBroken() && bottom_ > pageTop_ + kPageHeight + kTolerance) endPage(false);
  endPage(true);
}

bool PageWriter::isBroken() const { return canvas_.isBroken(); }

void PageWriter::add(std::vector<PageLine> lines, double y) {
  for (PageLine& line : lines) {
    bottom_ = std::max(bottom_, line.bottom);
    lines_.push_back(std::move(line));
  }
  bottom_ = std::max(bottom_, y);
  while (!isBroken() && y >= pageTop_ + kPageHeight + kTolerance) endPage(false);
}

// Up until no line is cut, unless nothing would be left on the page.
double PageWriter::pageEnd() const {
  constexpr int kMostMoves = 200;  // cells side by side can make it move again and again
  const double end = pageTop_ + kPageHeight;
  if (!keepsLinesWhole_) return end;
  double whole = end;
  for (int moves = 0; moves < kMostMoves; ++moves) {
    double up = whole;
    for (const PageLine& line : lines_) {
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
  const double end = pageEnd();
  for (const PageLine& line : lines_) {
    if (line.top < end - kTolerance && line.bottom > pageTop_ + kTolerance) {
      canvas_.draw(line, pageTop_, end);
    }
  }
  std::erase_if(lines_, [end](const PageLine& line) { return line.bottom <= end + kTolerance; });
  canvas_.turnPage(isLast);
  pageTop_ = end;
}

}  // namespace kelspar
