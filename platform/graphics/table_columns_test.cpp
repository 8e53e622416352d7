#include "platform/graphics/table_columns.h"

#include <gtest/gtest.h>

namespace kelspar {
namespace {

ColumnNeed cell(size_t column, double least, double most, size_t span = 1, double width = 0) {
  ColumnNeed need;
  need.column = column;
  need.span = span;
  need.width = width;
  need.extent = {least, most};
  return need;
}

struct Row {
  const char* name;
  std::vector<ColumnNeed> cells;
  double available;
  std::vector<double> widths;
};
class TableColumns : public testing::TestWithParam<Row> {};
TEST_P(TableColumns, Have) {
  const auto widths =
      columnWidths(GetParam().widths.size(), GetParam().cells, GetParam().available);
  ASSERT_EQ(widths.size(), GetParam().widths.size());
  for (size_t i = 0; i < widths.size(); ++i)
    EXPECT_NEAR(widths[i], GetParam().widths[i], 1e-9) << i;
}
const Row kRows[] = {
    {"WhatTheyAskFor", {cell(0, 10, 20), cell(1, 10, 30)}, 100, {20, 30}},
    {"SpaceBetweenLeastAndMost", {cell(0, 10, 50), cell(1, 10, 90)}, 80, {30, 50}},
    {"TheirLeast", {cell(0, 40, 50), cell(1, 60, 90)}, 100, {40, 60}},
    {"ALabelBesideALongWord", {cell(0, 60, 60), cell(1, 900, 900)}, 550, {60, 490}},
    {"EqualPartsOfTooLittle", {cell(0, 700, 700), cell(1, 900, 900)}, 550, {275, 275}},
    {"TheRestInEqualParts",
     {cell(0, 50, 50), cell(1, 700, 700), cell(2, 900, 900)},
     550,
     {50, 250, 250}},
    {"StatedWidths", {cell(0, 10, 20, 1, 100), cell(1, 10, 20)}, 200, {100, 20}},
    {"Spans", {cell(0, 10, 10), cell(1, 10, 10), cell(0, 40, 40, 2)}, 200, {20, 20}},
    {"Nothing", {}, 100, {}},
};
INSTANTIATE_TEST_SUITE_P(Widths, TableColumns, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kelspar
