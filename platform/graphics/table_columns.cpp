// Cells of one column first, then those that span several: what these need beyond what their
// columns have is shared out.
#include "platform/graphics/table_columns.h"

#include <algorithm>
#include <numeric>

namespace kelspar {

namespace {

struct Width {
  double least = 0, most = 0;
  bool isStated = false;
};

void widen(const ColumnNeed& cell, std::vector<Width>* columns) {
  const auto first = columns->begin() + static_cast<std::ptrdiff_t>(cell.column);
  const auto last = first + static_cast<std::ptrdiff_t>(cell.span);
  const bool isStated = cell.width > 0;
  const double least = isStated ? cell.width : cell.extent.least;
  const double most = isStated ? cell.width : std::max(cell.extent.most, least);
  double leastHad = 0, mostHad = 0;
  std::ptrdiff_t open = 0;
  for (auto column = first; column != last; ++column) {
    leastHad += column->least;
    mostHad += column->most;
    open += !column->isStated;
  }
  if (open == 0) return;
  for (auto column = first; column != last; ++column) {
    if (column->isStated) continue;
    const auto share = static_cast<double>(open);
    column->least += std::max(0.0, least - leastHad) / share;
    column->most += std::max(0.0, most - mostHad) / share;
    column->most = std::max(column->most, column->least);
  }
  if (isStated && cell.span == 1) first->isStated = true;
}

// How wide a column may be where not all can have what they need: narrow ones keep what they need,
// and the others have the rest in equal parts.
double widestInNeed(const std::vector<Width>& columns, double available) {
  std::vector<double> needs;
  for (const Width& column : columns) needs.push_back(column.least);
  std::ranges::sort(needs);
  for (size_t i = 0; i < needs.size(); ++i) {
    const double share = available / static_cast<double>(needs.size() - i);
    if (needs[i] > share) return share;
    available -= needs[i];
  }
  return needs.empty() ? 0 : needs.back();
}

}  // namespace

std::vector<double> columnWidths(size_t columns, std::vector<ColumnNeed> cells, double available) {
  // Stated widths before contents, so that contents fill what is left open.
  std::ranges::stable_sort(cells, {}, [](const ColumnNeed& cell) {
    return std::pair(cell.span, cell.width > 0 ? 0 : 1);
  });
  std::vector<Width> widths(columns);
  for (const ColumnNeed& cell : cells) {
    if (cell.column + cell.span <= columns) widen(cell, &widths);
  }
  double least = 0, most = 0;
  for (const Width& width : widths) {
    least += width.least;
    most += width.most;
  }
  const double widest = least >= available ? widestInNeed(widths, available) : 0;
  std::vector<double> result;
  for (const Width& width : widths) {
    if (most <= available) {
      result.push_back(width.most);
    } else if (least >= available) {
      result.push_back(std::min(width.least, widest));
    } else {
      result.push_back(width.least +
                       (width.most - width.least) * (available - least) / (most - least));
    }
  }
  return result;
}

}  // namespace kelspar
