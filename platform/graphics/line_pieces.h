// Where a line without bounds is cut so that Pango measures it in linear time. Internal to the
// library.
#pragma once

#include <string_view>

#include "platform/graphics/run_cursor.h"

namespace kelspar {

// A line's pieces from its first unit to its last. Cut behind spaces, tabs or characters with all
// of their marks (UAX #29); inside a character only when it has more marks than Pango bears.
class LinePieces {
 public:
  static constexpr size_t kMostTabs = 500;   // for each one Pango adds up what stands before it
  static constexpr size_t kMostMarks = 250;  // of one letter; Pango's cost is their square

  // The units from `begin` to `end`, whose looks are in `looks`.
  LinePieces(std::u16string_view units, size_t begin, size_t end, RunCursor* looks)
      : units_(units), end_(end), pieceEnd_(begin), letter_{begin, begin}, looks_(*looks) {}

  struct Range {
    size_t begin, end;
  };
  // False behind the last one.
  [[nodiscard]] bool next();
  [[nodiscard]] Range piece() const { return {begin_, pieceEnd_}; }
  // When the piece begins with more marks of a letter: that letter, otherwise nothing.
  [[nodiscard]] Range letter() const { return continued_; }

 private:
  [[nodiscard]] bool isFull(size_t at) const;
  [[nodiscard]] double widest(size_t at) const;

  std::u16string_view units_;
  size_t begin_ = 0, end_, pieceEnd_;
  Range letter_, continued_{};  // the last character but for its marks
  double room_ = 0;             // in points, if all are as wide as they can be
  RunCursor& looks_;
};

}  // namespace kelspar
