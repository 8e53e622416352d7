// Measuring attributed text, and cutting it to a width.
#include <cmath>

#include "StringKelspar/StringKelspar.h"
#include "platform/graphics/text_width.h"

namespace kelspar {

float StringKelspar::getWidthForMutableString(const NSAttributedString& string) {
  return static_cast<float>(std::ceil(widthOfText(string)));
}

NSAttributedString StringKelspar::fitAttributedString(const NSAttributedString& string,
                                                      float maximum) {
  if (string.length() == 0) return string;
  if (maximum <= 0) return NSAttributedString::empty();
  if (getWidthForMutableString(string) <= maximum) return string;

  const size_t length = string.length();
  const NSAttributedString ellipsis(u"\u2026"_ns, string.attributesAtIndex(length - 1));
  if (getWidthForMutableString(ellipsis) > maximum) return NSAttributedString::empty();
  const auto cutAt = [&](size_t units) {
    NSMutableAttributedString cut(string.attributedSubstring({0, units}));
    cut.append(ellipsis);
    return cut.copy();
  };
  NSAttributedString best = ellipsis;
  size_t low = 0, high = length;
  while (low <= high) {
    const size_t middle = low + (high - low) / 2;
    if (middle == 0) break;
    NSAttributedString cut = cutAt(middle);
    if (getWidthForMutableString(cut) <= maximum) {
      best = std::move(cut);
      low = middle + 1;
    } else {
      high = middle - 1;
    }
  }
  return best;
}

}  // namespace kelspar
