// What the HTML writer promises of its output: it reads back to the same characters and attributes.
// For the tests and the fuzz target of the writer; no part of the library.
//
// What HTML cannot say is left out of the comparison, and nothing else:
// - characters that HTML forbids and lone surrogates are U+FFFD, links of other schemes are none;
// - lists and tables keep their order, not their numbers; a list that other text interrupts is two;
// - text that is raised and superscript is superscript; a line has its start's paragraph style;
// - cells and rows that are cut off, with other text behind them, are left alone;
// - a line's or a cell's end has its paragraph's style only: it is not seen;
// - so has an item's marker: the list that shows it has the item's look.
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "platform/richtext/html_classes.h"
#include "platform/richtext/html_columns.h"
#include "platform/richtext/html_importer.h"
#include "platform/richtext/html_writer.h"

namespace kelspar::html {

// A text as it is compared: unit by unit, with looks that are shared by the units of a run.
class Comparable {
 public:
  explicit Comparable(const NSAttributedString& text)
      : text_(text), original_(text.string().view()), units_(original_) {
    for (const NSTextRun& run : text.runs()) {
      looks_.push_back(comparable(*run.attributes));
      lookOf_.insert(lookOf_.end(), run.length, looks_.size() - 1);
    }
    for (size_t i = 0; i < units_.size(); ++i) {
      if (isForbidden(i)) units_[i] = u'\uFFFD';
    }
    std::ranges::replace(units_, u'\r', u'\u2028');
    joinLines();
  }

  // Whether cells of one row are separated by tabs, and rows end their lines. RTF that is cut off
  // in the middle has other texts, which HTML cannot say.
  [[nodiscard]] bool hasWholeRows() const {
    for (size_t i = 0; i + 1 < units_.size(); ++i) {
      if (lookOf_[i] == lookOf_[i + 1]) continue;
      const auto& cells = style(look(i)).cells;
      const auto& next = style(look(i + 1)).cells;
      if (cells == next) continue;
      const auto [a, b] = std::ranges::mismatch(cells, next);
      const bool isSameRow =
          a != cells.end() && b != next.end() && a->table == b->table && a->row == b->row;
      if (units_[i] != (isSameRow ? u'\t' : u'\n')) return false;
    }
    return true;
  }

  // Where the first difference is and what it is; empty when there is none.
  [[nodiscard]] std::string differenceTo(const Comparable& other) const {
    if (units_ != other.units_) {
      const auto [a, b] = std::ranges::mismatch(units_, other.units_);
      const size_t at = static_cast<size_t>(a - units_.begin());
      return "characters at " + std::to_string(at) + ": " + around(at) + " | " + other.around(at);
    }
    for (size_t i = 0; i < units_.size(); ++i) {
      const std::string what = difference(look(i), other.look(i), isEnd(i) || isMarker(i));
      if (!what.empty()) return what + " at " + std::to_string(i) + ": " + around(i);
    }
    return {};
  }

 private:
  [[nodiscard]] const NSTextAttributes& look(size_t at) const { return looks_[lookOf_[at]]; }
  [[nodiscard]] static const NSParagraphStyle& style(const NSTextAttributes& look) {
    static const NSParagraphStyle plain;
    return look.paragraph ? *look.paragraph : plain;
  }

  [[nodiscard]] std::string around(size_t at) const {
    const size_t from = at > 8 ? at - 8 : 0;
    std::string text;
    for (const char16_t c : std::u16string_view(units_).substr(from, 20)) {
      text += c == u'\n'    ? "\\n"
              : c == u'\t'  ? "\\t"
              : c == 0x2028 ? "\\l"
                            : NSString(std::u16string_view(&c, 1)).utf8();
    }
    return '"' + text + '"';
  }

  [[nodiscard]] bool isForbidden(size_t at) const {
    const auto is = [this](size_t i, char16_t first) {
      return i < units_.size() && (original_[i] & 0xFC00) == first;
    };
    const auto isCharacter = [&](size_t high) {
      return is(high, 0xD800) && is(high + 1, 0xDC00) && lookOf_[high] == lookOf_[high + 1] &&
             !((original_[high] & 0x3F) == 0x3F && (original_[high + 1] & 0x3FE) == 0x3FE);
    };
    const char16_t c = units_[at];
    if (is(at, 0xD800)) return !isCharacter(at);
    if (is(at, 0xDC00)) return at == 0 || !isCharacter(at - 1);
    if (c < 0x20) return c != u'\t' && c != u'\n' && c != u'\f' && c != u'\r';
    return (c >= 0x7F && c < 0xA0) || (c >= 0xFDD0 && c <= 0xFDEF) || c >= 0xFFFE;
  }

  // A line is a paragraph of one style, its first unit's, unless it crosses cells.
  void joinLines() {
    for (size_t i = 1; i < units_.size(); ++i) {
      if (units_[i - 1] == u'\n' || lookOf_[i] == lookOf_[i - 1]) continue;
      const auto& before = look(i - 1).paragraph;
      if (style(look(i)) == *before || style(look(i)).cells != before->cells) continue;
      NSTextAttributes joined = look(i);
      joined.paragraph = before;
      looks_.push_back(std::move(joined));
      for (size_t j = i, old = lookOf_[i]; j < units_.size() && lookOf_[j] == old; ++j) {
        lookOf_[j] = looks_.size() - 1;
        if (units_[j] == u'\n') break;
      }
    }
  }

  // A line end, and the tab that ends a cell.
  [[nodiscard]] bool isEnd(size_t at) const {
    if (units_[at] == u'\n') return true;
    if (units_[at] != u'\t' || style(look(at)).cells.empty()) return false;
    return at + 1 == units_.size() ||
           !std::ranges::equal(style(look(at)).cells, style(look(at + 1)).cells);
  }

  // In what stands before an item's first tab.
  [[nodiscard]] bool isMarker(size_t at) const {
    constexpr size_t kLongest = 16;
    if (style(look(at)).lists.empty()) return false;
    size_t start = at;
    while (start > 0 && units_[start - 1] != u'\n' && !isEnd(start - 1)) --start;
    const size_t tab = units_.find(u'\t', start);
    return at <= tab && tab != units_.npos && tab - start <= kLongest;
  }

  static void round(double* value) { *value = std::llround(*value * 1000) / 1000.0; }

  NSTextAttributes comparable(NSTextAttributes look) {
    if (!isSafeLink(look.link)) look.link = nil;
    const std::u16string family = safeFamily(look.font.family);
    if (look.superscript != 0) look.baselineOffset = 0;
    look.font.size = boundedSize(look.font.size);
    look.font.family = family.empty() ? NSString() : NSString(family);
    NSParagraphStyle paragraph = style(look);
    for (double* indent :
         {&paragraph.firstLineIndent, &paragraph.headIndent, &paragraph.tailIndent}) {
      *indent = boundedIndent(*indent);
    }
    for (double* value :
         {&paragraph.firstLineIndent, &paragraph.headIndent, &paragraph.tailIndent,
          &paragraph.spacingBefore, &paragraph.spacingAfter, &paragraph.lineHeightMultiple,
          &paragraph.minimumLineHeight, &paragraph.maximumLineHeight}) {
      round(value);
    }
    const auto roundEdges = [](NSTextEdges* edges) {
      for (float* edge : {&edges->top, &edges->right, &edges->bottom, &edges->left}) {
        *edge = static_cast<float>(std::llround(*edge * 1000)) / 1000;
      }
    };
    for (NSTextTableCell& cell : paragraph.cells) {
      roundEdges(&cell.margin);
      if (cell.padding) roundEdges(&*cell.padding);
      cell.table = tables_.try_emplace(cell.table, tables_.size() + 1).first->second;
      cell.columns = 0;  // of the cells that are there
      cell.columnSpan = std::min<uint16_t>(cell.columnSpan, kMostColumnsSpanned);
      cell.rowSpan = std::min<uint16_t>(cell.rowSpan, kMostRowsSpanned);
      round(&cell.width);
    }
    for (NSTextList& list : paragraph.lists) {
      if (!list.ordered) list.startingNumber = 1;  // it has no numbers
    }
    for (NSTextTab& tab : paragraph.tabStops) round(&tab.location);
    if (look.attachment) {
      NSTextAttachment attachment = *look.attachment;
      round(&attachment.width);
      round(&attachment.height);
      look.attachment = std::make_shared<NSTextAttachment>(std::move(attachment));
    }
    renumber(paragraph.cells, &paragraph.lists);
    look.paragraph = std::make_shared<NSParagraphStyle>(std::move(paragraph));
    return look;
  }

  // What differs first.
  static std::string difference(const NSTextAttributes& a, const NSTextAttributes& b,
                                bool paragraphOnly) {
    if (!paragraphOnly) {
      const auto font = [](const NSFont& f) {
        return f.family.utf8() + ' ' + std::to_string(f.size) + (f.bold ? " bold" : "") +
               (f.italic ? " italic" : "");
      };
      if (!(a.font == b.font)) return "font " + font(a.font) + " | " + font(b.font);
      if (a.foreground != b.foreground) return "foreground";
      if (a.background != b.background) return "background";
      if (a.underline != b.underline) return "underline";
      if (a.strikethrough != b.strikethrough) return "strikethrough";
      if (a.superscript != b.superscript) return "superscript";
      if (a.baselineOffset != b.baselineOffset) return "baseline";
      if (a.link != b.link) return "link " + a.link.utf8() + " | " + b.link.utf8();
      if (!a.attachment != !b.attachment) return "attachment";
      if (a.attachment && !(*a.attachment == *b.attachment))
        return "attachment " + describe(*a.attachment) + " | " + describe(*b.attachment);
    }
    return difference(style(a), style(b));
  }

  static std::string difference(const NSParagraphStyle& a, const NSParagraphStyle& b) {
    const auto differ = [](const char* name, double x, double y) {
      return std::string(name) + ' ' + std::to_string(x) + " | " + std::to_string(y);
    };
    if (a == b) return {};
    if (a.alignment != b.alignment) return "alignment";
    if (a.rightToLeft != b.rightToLeft) return "direction";
    if (a.headIndent != b.headIndent) return differ("head indent", a.headIndent, b.headIndent);
    if (a.firstLineIndent != b.firstLineIndent) {
      return differ("first-line indent", a.firstLineIndent, b.firstLineIndent);
    }
    if (a.tailIndent != b.tailIndent) return differ("tail indent", a.tailIndent, b.tailIndent);
    if (a.spacingBefore != b.spacingBefore) {
      return differ("space before", a.spacingBefore, b.spacingBefore);
    }
    if (a.spacingAfter != b.spacingAfter) {
      return differ("space after", a.spacingAfter, b.spacingAfter);
    }
    if (a.lineHeightMultiple != b.lineHeightMultiple) return "line height";
    if (a.minimumLineHeight != b.minimumLineHeight) return "minimum line height";
    if (a.maximumLineHeight != b.maximumLineHeight) return "maximum line height";
    if (a.headingLevel != b.headingLevel) return "heading level";
    if (a.preformatted != b.preformatted) return "preformatted";
    if (a.quoteLevel != b.quoteLevel) return "quote level";
    if (a.tabStops != b.tabStops) return "tab stops " + describe(a) + " | " + describe(b);
    if (a.lists != b.lists) return "lists " + describe(a) + " | " + describe(b);
    return "cells " + describe(a) + " | " + describe(b);
  }

  static std::string bordersOf(const NSTextBorders& borders) {
    std::string text = " borders";
    for (const NSTextBorder& side : {borders.top, borders.right, borders.bottom, borders.left}) {
      text += ' ' + std::to_string(side.width) + (side.color == NSColor{} ? "" : " coloured");
    }
    return text;
  }

  static std::string describe(const NSTextAttachment& it) {
    return it.type.utf8() + ' ' + std::to_string(it.contents.length()) +
           (it.contents ? " " : " nil ") + std::to_string(it.width) + 'x' +
           std::to_string(it.height) + ' ' + it.source.utf8() + ' ' + it.name.utf8() + ' ' +
           it.alternative.utf8() + (it.alternative ? "" : "nil");
  }

  static std::string describe(const NSParagraphStyle& style) {
    std::string text;
    for (const NSTextTab& tab : style.tabStops) {
      text += "<" + std::to_string(tab.location) + ' ' +
              std::to_string(static_cast<int>(tab.alignment)) + (tab.decimal ? " decimal>" : ">");
    }
    for (const NSTextList& list : style.lists) {
      text += "[" + std::to_string(list.identity) + ' ' + (list.ordered ? "ol " : "ul ") +
              list.marker.utf8() + ' ' + std::to_string(list.startingNumber) + "]";
    }
    for (const NSTextTableCell& cell : style.cells) {
      text += "{" + std::to_string(cell.table) + " row " + std::to_string(cell.row) + '+' +
              std::to_string(cell.rowSpan) + " column " + std::to_string(cell.column) + '+' +
              std::to_string(cell.columnSpan) + " of " + std::to_string(cell.columns) + " width " +
              std::to_string(cell.width) + bordersOf(cell.borders) +
              (cell.background ? " filled" : "") + "}";
    }
    return text;
  }

  // Lists that go on since the paragraph before keep their numbers, others get new ones.
  void renumber(const std::vector<NSTextTableCell>& cells, std::vector<NSTextList>* lists) {
    size_t same = 0;
    if (cells == cells_) {
      while (same < lists->size() && same < open_.size() && (*lists)[same] == open_[same].first) {
        ++same;
      }
    }
    cells_ = cells;
    open_.resize(same);
    for (size_t i = 0; i < lists->size(); ++i) {
      NSTextList& list = (*lists)[i];
      if (i >= same) open_.emplace_back(list, ++numbered_);
      list.identity = open_[i].second;
    }
  }

  NSAttributedString text_;
  std::u16string original_, units_;
  std::vector<NSTextAttributes> looks_;
  std::vector<size_t> lookOf_;
  std::map<uint32_t, uint32_t> tables_;
  std::vector<std::pair<NSTextList, uint32_t>> open_;  // lists, and their numbers
  std::vector<NSTextTableCell> cells_;
  uint32_t numbered_ = 0;
};

// The first difference between a text and what its HTML reads back to; empty when there is none.
[[nodiscard]] inline std::string roundTripDifference(const NSAttributedString& text) {
  const Comparable original(text);
  if (!original.hasWholeRows()) return {};
  return original.differenceTo(Comparable(attributedTextFromHTML(htmlFromAttributedString(text))));
}

}  // namespace kelspar::html
