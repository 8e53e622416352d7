// Lines of a paragraph: one layout of Pango's, used again and again. Pango breaks the lines and
// finds the glyphs; where lines stand is decided here.
#include "platform/graphics/paragraph_setter.h"

#include <pango/pangocairo.h>
#include <unicode/ubidi.h>

#include <algorithm>
#include <cmath>

#include "platform/foundation/scan.h"
#include "platform/graphics/font_lock.h"
#include "platform/graphics/line_maker.h"
#include "platform/graphics/pango_fonts.h"
#include "platform/graphics/pango_text.h"
#include "platform/graphics/run_cursor.h"
#include "platform/graphics/word_lines.h"

namespace kelspar {

namespace {

constexpr size_t kLongestWord = 1'000;  // longer ones are wrapped at any character: linear
constexpr double kNarrowest = 4;        // a line's width

bool isWordEnd(char16_t c) { return c == u' ' || c == u'\t' || c >= 0x2E80; }

// What of a paragraph is laid out at a time.
struct Piece {
  size_t end;
  bool hasLongWord;  // and nothing else
  bool endsLine;     // its last line is complete
};

// Pieces end where lines do: only the last line of one is laid out again with the next. A word
// that is too long for wrapping by words is a piece of its own.
Piece pieceAt(std::u16string_view units, size_t at, size_t end) {
  if (end - at <= kLongestWord) return {end, false, true};
  const size_t limit = std::min(end, at + kLongestPiece);
  for (size_t word = at; word < limit;) {
    size_t wordEnd = word;
    while (wordEnd < end && wordEnd - word <= kLongestPiece && !isWordEnd(units[wordEnd]))
      ++wordEnd;
    if (wordEnd - word > kLongestWord) {
      if (word > at) return {word, false, true};
      const size_t pieceEnd = std::min(wordEnd, limit);
      return {pieceEnd, true, pieceEnd == end};
    }
    word = wordEnd + 1;
  }
  const bool isCutInPair = limit < end && (units[limit] & 0xFC00) == 0xDC00;
  return {isCutInPair ? limit - 1 : limit, false, limit == end};
}

}  // namespace

class ParagraphSetter::Setter {
 public:
  explicit Setter(const NSAttributedString& text)
      : string_(text.string()),
        units_(string_.view()),
        looks_(text),
        context_(newPointContext()),
        layout_(pango_layout_new(context_.get())),
        words_(context_.get()) {
    pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
    pango_layout_set_auto_dir(layout_.get(), FALSE);
  }

  double set(size_t begin, size_t end, Column column, double y, std::vector<PageLine>* lines) {
    setStyle(begin, column);
    y += bounded(style_->spacingBefore, 0.0, kPageHeight);
    findDirection(begin, end);
    for (size_t at = begin; at <= end;) {
      const size_t lineEnd = scan::findAny(units_.substr(0, end), at, u'\x2028', u'\f', u'\v');
      if (!setWords(at, lineEnd, at == begin, &y, lines)) {
        y = setPieces(at, lineEnd, at == begin, y, lines);
      }
      at = lineEnd + 1;
    }
    maker_.forgetManyFonts();
    return y + bounded(style_->spacingAfter, 0.0, kPageHeight);
  }

  TextExtent measure(size_t begin, size_t end) {
    constexpr size_t kLongestMeasured = 2'000;
    constexpr double kLeastOfLong = 72;
    if (begin == end) return {};
    if (end - begin > kLongestMeasured) return {kLeastOfLong, 10 * kPageWidth};
    setStyle(begin, {});
    findDirection(begin, end);
    const double around = std::max(first_, head_) + (column_.width - right_);
    if (!isRightToLeft_ && words_.take(units_, begin, end, &looks_)) {
      const auto [least, most] = words_.extent();
      return {roundedUp(least) + around, roundedUp(most) + around};
    }
    const FontLock lock;
    load(begin, end);
    pango_layout_set_justify(layout_.get(), FALSE);
    pango_layout_set_width(layout_.get(), -1);
    const double most = layoutWidth();
    pango_layout_set_wrap(layout_.get(), PANGO_WRAP_WORD);
    pango_layout_set_width(layout_.get(), 0);
    return {layoutWidth() + around, most + around};
  }

 private:
  double layoutWidth() {
    PangoRectangle box;
    pango_layout_get_extents(layout_.get(), nullptr, &box);
    return roundedUp(pango_units_to_double(box.width));
  }

  // So that what is set as wide as it was measured fits.
  static double roundedUp(double width) { return std::ceil(width * 8) / 8; }

  void setStyle(size_t begin, Column column) {
    static const NSParagraphStyle kPlain;
    const NSTextAttributes& look = looks_.lookAt(begin);
    style_ = look.paragraph ? look.paragraph.get() : &kPlain;
    column_ = column;
    const auto indent = [&](double points) { return bounded(points, 0, column.width / 2); };
    first_ = indent(style_->firstLineIndent);
    head_ = indent(style_->headIndent);
    right_ = column.width - indent(std::abs(style_->tailIndent));
    hangMarker(begin);
    right_ = std::max(right_, std::max(first_, head_) + kNarrowest);
  }

  // A list's marker stands in the indent.
  void hangMarker(size_t begin) {
    constexpr double kDigit = 0.5, kGap = 4, kLeast = 16;  // a digit's width in ems
    constexpr size_t kLongestMarker = 12;
    if (style_->lists.empty()) return;
    const auto start = units_.substr(begin, kLongestMarker + 1);
    const size_t tab = scan::findAny(start, 0, u'\t', u'\n');
    if (tab == start.size() || start[tab] != u'\t') return;
    const double size = bounded(looks_.lookAt(begin).font.size, 1, 100);
    const double marker = static_cast<double>(tab) * kDigit * size + kGap;
    const double hang = std::max(first_ < head_ ? head_ - first_ : kLeast, marker);
    first_ = std::max(0.0, std::min(first_, head_ - hang));
  }

  void findDirection(size_t begin, size_t end) {
    constexpr size_t kFar = 1'000;  // strong characters come earlier
    isRightToLeft_ = style_->rightToLeft;
    if (!isRightToLeft_ && style_->alignment != NSTextAlignment::left) {
      const auto* first = units_.data() + begin;
      const auto length = static_cast<int32_t>(std::min(end - begin, kFar));
      isRightToLeft_ = ubidi_getBaseDirection(first, length) == UBIDI_RTL;
    }
    const PangoDirection direction = isRightToLeft_ ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR;
    if (pango_context_get_base_dir(context_.get()) == direction) return;
    const FontLock lock;  // what was laid out is dropped
    pango_context_set_base_dir(context_.get(), direction);
    pango_layout_context_changed(layout_.get());
  }

  void setTabs() {
    const double left = std::min(first_, head_);
    std::vector<NSTextTab> stops = style_->tabStops;
    if (first_ < head_) stops.push_back({.location = head_});
    constexpr double kFarthest = 1e4;
    for (NSTextTab& stop : stops) stop.location = bounded(stop.location, 0, kFarthest);
    std::ranges::sort(stops, {}, &NSTextTab::location);
    const double last = stops.empty() ? 0 : stops.back().location;
    for (double at = kTabDistance; at < column_.width + kTabDistance; at += kTabDistance) {
      if (at > last) stops.push_back({.location = at});
    }
    PangoTabArray* tabs = pango_tab_array_new(static_cast<int>(stops.size()), FALSE);
    int count = 0;
    for (const NSTextTab& stop : stops) {
      if (stop.location <= left) continue;
      using Align = NSTextAlignment;
      const PangoTabAlign align = stop.decimal                      ? PANGO_TAB_DECIMAL
                                  : stop.alignment == Align::right  ? PANGO_TAB_RIGHT
                                  : stop.alignment == Align::center ? PANGO_TAB_CENTER
                                                                    : PANGO_TAB_LEFT;
      pango_tab_array_set_tab(tabs, count++, align, pango_units_from_double(stop.location - left));
    }
    pango_tab_array_resize(tabs, count);
    pango_layout_set_tabs(layout_.get(), tabs);
    pango_tab_array_free(tabs);
  }

  void load(size_t begin, size_t end) {
    const NSTextAttributes& base = looks_.lookAt(begin);
    PangoFontDescription* font = fontDescription(base);
    pango_layout_set_font_description(layout_.get(), font);
    pango_font_description_free(font);
    text_.begin(base, right_ - std::max(first_, head_));
    for (size_t at = begin; at < end;) {
      const NSTextAttributes& look = looks_.lookAt(at);
      const size_t until = std::min(end, looks_.runEnd());
      text_.append(units_.substr(at, until - at), look);
      at = until;
    }
    if (text_.utf8().find('\t') != std::string::npos) setTabs();
    text_.applyTo(layout_.get());
  }

  // The short way, for plain text.
  bool setWords(size_t begin, size_t end, bool isFirst, double* y, std::vector<PageLine>* lines) {
    if (style_->alignment == NSTextAlignment::justified || isRightToLeft_) return false;
    if (!words_.take(units_, begin, end, &looks_)) return false;
    const auto* broken = words_.breakLines(right_ - (isFirst ? first_ : head_), right_ - head_);
    if (!broken) return false;
    for (const WordLines::Line& line : *broken) {
      PageLine& out = lines->emplace_back();
      const double height = lineHeight(line.height, false);
      out.top = *y;
      out.bottom = *y + height;
      out.baseline = line.ascent + height - line.height;
      const double indent = isFirst ? first_ : head_;
      words_.compose(line, column_.left + startOf(line.width, indent), &out);
      *y += height;
      isFirst = false;
    }
    return true;
  }

  double setPieces(size_t at, size_t end, bool isFirst, double y, std::vector<PageLine>* lines) {
    do {
      const FontLock lock;
      const Piece piece = pieceAt(units_, at, end);
      load(at, piece.end);
      const double left = std::min(first_, head_);
      pango_layout_set_wrap(layout_.get(),
                            piece.hasLongWord ? PANGO_WRAP_CHAR : PANGO_WRAP_WORD_CHAR);
      pango_layout_set_width(layout_.get(), pango_units_from_double(right_ - left));
      pango_layout_set_indent(layout_.get(), pango_units_from_double(isFirst ? first_ - head_ : 0));
      pango_layout_set_justify(layout_.get(), style_->alignment == NSTextAlignment::justified);
      const int count = pango_layout_get_line_count(layout_.get());
      const int taken = piece.endsLine || count == 1 ? count : count - 1;
      y = takeLines(taken, isFirst, y, lines);
      if (taken < count) {
        const PangoLayoutLine* next = pango_layout_get_line_readonly(layout_.get(), taken);
        at += text_.unitsBefore(static_cast<size_t>(next->start_index));
      } else {
        at = piece.end;
      }
      isFirst = false;
    } while (at < end);
    return y;
  }

  double takeLines(int count, bool isFirst, double y, std::vector<PageLine>* lines) {
    PangoLayoutIter* iter = pango_layout_get_iter(layout_.get());
    for (int i = 0; i < count; ++i) {
      PangoRectangle box;
      pango_layout_iter_get_line_extents(iter, nullptr, &box);
      const double ascent = pango_units_to_double(pango_layout_iter_get_baseline(iter) - box.y);
      const double own = pango_units_to_double(box.height);
      PangoLayoutLine* line = pango_layout_iter_get_line_readonly(iter);
      PageLine& out = lines->emplace_back();
      const double height = lineHeight(own, hasPicture(line));
      out.top = y;
      out.bottom = y + height;
      out.baseline = ascent + height - own;  // what is added stands above
      const double indent = isFirst && i == 0 ? first_ : head_;
      maker_.take(line, text_, column_.left + startOf(pango_units_to_double(box.width), indent),
                  &out);
      y += height;
      pango_layout_iter_next_line(iter);
    }
    pango_layout_iter_free(iter);
    return y;
  }

  bool hasPicture(const PangoLayoutLine* line) const {
    const auto start = static_cast<size_t>(line->start_index);
    return text_.hasPictures(start, start + static_cast<size_t>(line->length));
  }

  double lineHeight(double own, bool hasPicture) const {
    double height = own;
    if (style_->lineHeightMultiple > 0) height *= bounded(style_->lineHeightMultiple, 0.1, 20);
    const auto bound = [](double points) { return bounded(points, 0, kPageHeight); };
    height = std::max(height, bound(style_->minimumLineHeight));
    const double most = bound(style_->maximumLineHeight);
    return most > 0 && !hasPicture ? std::min(height, most) : height;
  }

  // x of a line that is `width` wide, from the column's left edge.
  double startOf(double width, double indent) const {
    using Align = NSTextAlignment;
    Align align = style_->alignment;
    if (align == Align::natural || align == Align::justified) {
      align = isRightToLeft_ ? Align::right : Align::left;
    }
    const double from = isRightToLeft_ ? column_.width - right_ : indent;
    const double to = isRightToLeft_ ? column_.width - indent : right_;
    if (align == Align::left) return from;
    const double space = to - from - width;
    return from + (align == Align::center ? space / 2 : space);
  }

  NSString string_;
  std::u16string_view units_;
  RunCursor looks_;
  std::unique_ptr<PangoContext, Release> context_;
  std::unique_ptr<PangoLayout, Release> layout_;
  PangoText text_;
  LineMaker maker_;
  WordLines words_;
  const NSParagraphStyle* style_ = nullptr;
  Column column_;
  double first_ = 0, head_ = 0, right_ = 0;  // indents and right end, from the column's left edge
  bool isRightToLeft_ = false;
};

ParagraphSetter::ParagraphSetter(const NSAttributedString& text)
    : setter_((FontLock(), std::make_unique<Setter>(text))) {}

ParagraphSetter::~ParagraphSetter() {
  const FontLock lock;
  setter_.reset();
}

double ParagraphSetter::set(size_t begin, size_t end, Column column, double y,
                            std::vector<PageLine>* lines) {
  return setter_->set(begin, end, column, y, lines);
}

TextExtent ParagraphSetter::measure(size_t begin, size_t end) {
  return setter_->measure(begin, end);
}

}  // namespace kelspar
