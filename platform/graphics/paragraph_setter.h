// Paragraphs become lines, with Pango. Internal to the library.
#pragma once

#include <memory>
#include <vector>

#include "platform/graphics/page_line.h"
#include "platform/richtext/NSAttributedString.h"

namespace kelspar {

struct Column {
  double left = 0, width = kPageWidth;
};

// How narrow and how wide a text can be set, in points.
struct TextExtent {
  double least = 0, most = 0;
};

// One text's setter, for one thread.
class ParagraphSetter {
 public:
  explicit ParagraphSetter(const NSAttributedString& text);
  ~ParagraphSetter();
  ParagraphSetter(const ParagraphSetter&) = delete;

  // Appends the lines of the units from `begin` to `end`, which hold no paragraph's end, and gives
  // the y behind them. The paragraph's first line begins at `y`. The style is that of its first
  // unit (of the text's last one at the text's end). Linear.
  double set(size_t begin, size_t end, Column column, double y, std::vector<PageLine>* lines);

  // How wide the paragraph is without wrapping, and when wrapped wherever it can be. Long ones are
  // not measured: they take what there is.
  [[nodiscard]] TextExtent measure(size_t begin, size_t end);

 private:
  class Setter;
  std::unique_ptr<Setter> setter_;
};

}  // namespace kelspar
