// Paper by name (ISO 216; ANSI/ASME Y14.1) or by millimetres.
#include "platform/graphics/pdf_paper.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace kelspar {

namespace {

struct Row {
  std::string_view name;
  double width, height;  // millimetres
};
constexpr Row kPapers[] = {
    {"a3", 297, 420},        {"a4", 210, 297},         {"a5", 148, 210},          {"b5", 176, 250},
    {"legal", 215.9, 355.6}, {"letter", 215.9, 279.4}, {"tabloid", 279.4, 431.8},
};

constexpr double kPointsInMillimetre = 72 / 25.4;
constexpr double kTop = 36, kLeastSide = 20, kInch = 72;

PDFPaper withMargins(PDFPaper paper, double top, double leastSide) {
  const double lines = PDFPaper().width;
  paper.scale = std::min(1.0, (paper.width - 2 * leastSide) / lines);
  paper.left = (paper.width - paper.scale * lines) / 2;
  paper.top = top;
  return paper;
}

PDFPaper paperOf(double widthInMillimetres, double heightInMillimetres) {
  PDFPaper paper;
  paper.width = widthInMillimetres * kPointsInMillimetre;
  paper.height = heightInMillimetres * kPointsInMillimetre;
  return withMargins(paper, kTop, kLeastSide);
}

// False: `text` is no number of that range.
bool parseSide(std::string_view text, double* millimetres) {
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, *millimetres, std::chars_format::fixed);
  return result.ec == std::errc() && result.ptr == end && *millimetres >= 50 &&
         *millimetres <= 2000;
}

}  // namespace

std::optional<PDFPaper> PDFPaper::named(const NSString& name) {
  std::string lower = name.utf8();
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  for (const Row& row : kPapers) {
    if (row.name == lower) return paperOf(row.width, row.height);
  }
  const std::string_view sides = lower;
  const size_t cross = sides.find('x');
  double width = 0, height = 0;
  if (cross == sides.npos || !parseSide(sides.substr(0, cross), &width) ||
      !parseSide(sides.substr(cross + 1), &height)) {
    return {};
  }
  return paperOf(width, height);
}

std::optional<PDFPaper> PDFPaper::withMargin(double points) const {
  // "Not at least" refuses NaN as well.
  if (!(points >= 0) || std::min(width, height) - 2 * points < kInch) return {};
  return withMargins(*this, points, points);
}

}  // namespace kelspar
