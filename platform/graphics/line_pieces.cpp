// What Pango does for each tab and each mark grows with what stands before it in the layout, and
// its widths overflow: pieces are small enough in all three.
#include "platform/graphics/line_pieces.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>

#include "platform/graphics/pango_fonts.h"

namespace kelspar {

namespace {

constexpr double kRoom = 1 << 20;   // half of what Pango counts to
constexpr size_t kNearEnd = 1'000;  // where a space is as good an end

// UAX #29, Grapheme_Cluster_Break: what stands with the character before.
bool isMark(UChar32 c) {
  if (c < 0x300) return false;
  const int32_t kind = u_getIntPropertyValue(c, UCHAR_GRAPHEME_CLUSTER_BREAK);
  return kind == U_GCB_EXTEND || kind == U_GCB_ZWJ || kind == U_GCB_SPACING_MARK;
}

}  // namespace

// How wide a character can be, in points.
double LinePieces::widest(size_t at) const {
  constexpr double kEms = 3, kLargest = 10'000, kWidest = 1e6;
  const NSTextAttributes& look = looks_.lookAt(at);
  const double size = look.font.size > 0 ? std::min(look.font.size, kLargest) : 12;
  const double picture = look.attachment ? look.attachment->width : 0;
  return std::max(size * kEms, std::clamp(picture, 0.0, kWidest));
}

bool LinePieces::isFull(size_t at) const {
  const size_t length = at - begin_;
  if (length == 0) return false;
  return length >= kLongestPiece || room_ < 0 ||
         (length >= kLongestPiece - kNearEnd && units_[at - 1] == u' ');
}

bool LinePieces::next() {
  begin_ = pieceEnd_;
  continued_ = {};
  room_ = kRoom;
  double widestInRun = 0;
  size_t at = begin_, runEnd = begin_, marks = 0, tabs = 0;
  while (at < end_ && marks < kMostMarks && tabs < kMostTabs) {
    const size_t start = at;
    UChar32 c = 0;
    U16_NEXT(units_, at, end_, c);
    if (letter_.end > letter_.begin && isMark(c)) {
      if (start == begin_) continued_ = letter_;
      ++marks;
    } else {
      if (isFull(start)) {
        at = start;
        break;
      }
      letter_ = {start, at};
      marks = 0;
    }
    if (start >= runEnd) {
      widestInRun = widest(start);
      runEnd = looks_.runEnd();
    }
    room_ -= widestInRun;
    tabs += c == u'\t';
  }
  pieceEnd_ = at;
  return at > begin_;
}

}  // namespace kelspar
