// How wide the columns of a table become. Internal to the library.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/graphics/paragraph_setter.h"

namespace kelspar {

struct ColumnNeed {
  size_t column = 0, span = 1;
  double width = 0;   // stated; 0: by content
  TextExtent extent;  // of the content, for cells without a width
};

// The columns' widths, which add up to `available` at most: as stated or wanted where there is room
// for that, otherwise between the least and the most that contents can take.
[[nodiscard]] std::vector<double> columnWidths(size_t columns, std::vector<ColumnNeed> cells,
                                               double available);

}  // namespace kelspar
