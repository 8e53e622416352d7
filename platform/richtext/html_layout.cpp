#include "platform/richtext/html_layout.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/scan.h"
#include "platform/richtext/html_white_space.h"

namespace kelspar::html {

namespace {

// How many line ends the text ends in, counted up to `most`.
uint8_t lineEndsBehind(std::u16string_view text, uint8_t most) {
  uint8_t count = 0;
  while (count < most && count < text.size()) {
    const char16_t c = text[text.size() - 1 - count];
    if (c != u'\n' && c != u'\u2028') break;
    ++count;
  }
  return count;
}

}  // namespace

TextLayout::TextLayout(size_t expectedUnits, char16_t lineEnd) : lineEnd_(lineEnd) {
  main_.text.reserve(expectedUnits);
}

void TextLayout::text(std::u16string_view units, WhiteSpace whiteSpace) {
  if (whiteSpace == WhiteSpace::collapse) return collapse(units);
  if (whiteSpace == WhiteSpace::keep) return keep(units);
  for (size_t from = 0; from < units.size();) {
    const size_t end = scan::findAny(units, from, u'\n', u'\r');
    collapse(units.substr(from, end - from));
    if (end == units.size()) return;
    endLine(u'\n');
    const bool isPair = units[end] == u'\r' && end + 1 < units.size() && units[end + 1] == u'\n';
    from = end + (isPair ? 2 : 1);
  }
}

void TextLayout::collapse(std::u16string_view units) {
  for (size_t at = 0; at < units.size();) {
    if (isWhiteSpace(units[at])) {
      noteSpace();
      do {
        ++at;
      } while (at < units.size() && isWhiteSpace(units[at]));
      continue;
    }
    const size_t stop = findCollapsible(units, at);
    size_t end = stop;
    if (stop < units.size() && units[stop] == u'\v') ++end;
    while (end > at && units[end - 1] == u' ') --end;
    append(units.substr(at, end - at));
    at = end;
  }
}

void TextLayout::keep(std::u16string_view units) {
  for (size_t from = 0; from < units.size();) {
    const size_t end = scan::findAny(units, from, u'\n', u'\r');
    if (end > from) append(units.substr(from, end - from));
    if (end == units.size()) return;
    endLine(u'\n');
    const bool isPair = units[end] == u'\r' && end + 1 < units.size() && units[end + 1] == u'\n';
    from = end + (isPair ? 2 : 1);
  }
}

void TextLayout::noteSpace() {
  if (out_->breaks || out_->tabs || out_->fresh || out_->atLineStart()) return;
  if (!std::exchange(out_->space, true)) out_->spaceLook = look_;
}

// A <br> at the end of a block is the block's own line end.
void TextLayout::settleBreak() {
  if (out_->endsInBreak()) out_->text.back() = u'\n';
}

void TextLayout::setLook(uint32_t look, size_t depth) {
  constexpr size_t kDeepest = UINT8_MAX;
  look_ = look;
  if (depth == 0) return;
  if (look >= depths_.size()) depths_.resize(look + size_t{1});
  depths_[look] = static_cast<uint8_t>(std::min(depth, kDeepest));
}

// The first line end belongs to the line that it ends. A blank line behind a table is none of the
// table's last cell.
void TextLayout::flushBreaks() {
  Output& out = *out_;
  settleBreak();
  const uint8_t ends = lineEndsBehind(out.text, out.breaks);
  size_t missing = out.breaks - ends;
  if (missing > 0 && ends == 0) {
    out.text.push_back(u'\n');
    --missing;
  }
  if (missing == 0) return;
  if (!out.runs.empty() && depthOf(look_) < depthOf(out.runs.back().look)) startRun();
  out.text.append(missing, u'\n');
}

// What is due before text or a line end.
void TextLayout::flush() {
  Output& out = *out_;
  out.fresh = false;
  if (out.breaks && !out.text.empty()) flushBreaks();
  if (out.text.empty()) out.leading = std::max(out.leading, out.breaks);
  out.breaks = 0;
  if (out.tabs) out.text.append(std::exchange(out.tabs, 0), u'\t');
  if (!out.marker.empty()) {
    startRun();
    out.text.append(out.marker);
    out.marker.clear();
  }
}

void TextLayout::startRun(uint32_t look) {
  Output& out = *out_;
  if (!out.runs.empty() && out.runs.back().look == look) return;
  out.runs.push_back({out.runs.empty() ? 0 : out.text.size(), look});
}

void TextLayout::append(std::u16string_view units) {
  flush();
  Output& out = *out_;
  if (std::exchange(out.space, false)) {
    startRun(out.spaceLook);
    out.text.push_back(u' ');
  }
  startRun();
  out.text.append(units);
}

void TextLayout::atom(std::u16string_view units, uint32_t look, uint32_t after) {
  flush();  // an item's marker and what else is due has the text's own look
  look_ = look;
  append(units);
  look_ = after;
  startRun();
}

void TextLayout::lineBreak() {
  endLine(lineEnd_);
  out_->broken = out_->text.size();
}

void TextLayout::endLine(char16_t lineEnd) {
  flush();
  out_->space = false;
  startRun();
  out_->text.push_back(lineEnd);
}

void TextLayout::requireBreaks(uint8_t breaks) {
  if (out_->fresh) return;
  out_->space = out_->rowEnd = false;
  settleBreak();
  out_->breaks = std::max(out_->breaks, breaks);
}

void TextLayout::beginItem(std::u16string marker) {
  out_->marker = std::move(marker);
  out_->fresh = true;
}

void TextLayout::endItem() {
  if (!out_->marker.empty()) flush();
  out_->fresh = false;
}

void TextLayout::beginRow(bool drops) {
  Output& out = *out_;
  const bool wasFresh = out.fresh;
  if (std::exchange(out.rowEnd, false)) {
    flush();
    out.text.push_back(u'\n');
  } else {
    requireBreaks(1);
  }
  rows_.push_back({out.text.size(), out.tabs, drops, wasFresh});
}

void TextLayout::beginCell() {
  Row& row = rows_.back();
  out_->space = false;
  if (row.hasCells) separateCells(row);
  row.hasCells = true;
  row.cellStart = out_->text.size();
  out_->fresh = true;
}

// The tab between a cell and the next one.
void TextLayout::separateCells(const Row& row) {
  Output& out = *out_;
  const bool isBroken = out.endsInBreak() && out.text.size() > row.cellStart;
  if (isBroken) out.broken = 0;  // a <br> at the cell's end is the cell's end
  if (row.drops) {
    if (isBroken) out.text.pop_back();
    if (rowHasText()) ++out.tabs;
  } else if (isBroken) {
    out.text.back() = u'\t';
  } else {
    flush();
    if (out.text.size() == row.cellStart) startRun(row.cellLook);
    out.text.push_back(u'\t');
  }
}

void TextLayout::endCell() {
  Row& row = rows_.back();
  row.cellLook = look_;
  out_->fresh = out_->space = out_->rowEnd = false;
  if (rowHasText()) out_->breaks = 0;
}

void TextLayout::endRow() {
  const Row row = rows_.back();
  const bool hasText = rowHasText();
  rows_.pop_back();
  if (!hasText) {
    out_->fresh = row.wasFresh;
    out_->tabs = row.tabsBefore;
  }
  if (row.drops || !row.hasCells || out_->fresh || (hasText && out_->endsInBreak())) {
    if (hasText) out_->tabs = 0;
    return requireBreaks(1);
  }
  out_->rowEnd = true;
}

size_t TextLayout::markTable() {
  if (isStraying()) return SIZE_MAX;
  tables_.push_back({main_.text.size(), main_.breaks, main_.space, nullptr});
  return tables_.size() - 1;
}

void TextLayout::beginStray(size_t table) {
  if (table >= tables_.size() || isStraying()) return;
  Table& target = tables_[table];
  if (!target.strays) target.strays = std::make_unique<Output>();
  out_ = target.strays.get();
}

void TextLayout::endStray() { out_ = &main_; }

TextLayout::Result TextLayout::finish() && {
  settleBreak();
  const bool hasStrays =
      std::ranges::any_of(tables_, [](const Table& table) { return table.strays != nullptr; });
  if (!hasStrays) return {std::move(main_.text), std::move(main_.runs)};
  return merged();
}

TextLayout::Result TextLayout::merged() {
  Result result;
  const auto join = [&result](const Output& part, size_t from, size_t to, uint8_t breaks,
                              bool space) {
    if (from >= to) return;
    if (space && breaks == 0 && !result.text.empty()) result.text.push_back(u' ');
    if (!result.text.empty()) {
      breaks -= std::min(breaks, lineEndsBehind(result.text, breaks));
      if (part.text[from] == u'\n') breaks = 0;
      result.text.append(breaks, u'\n');
    }
    const auto behind = [](size_t at, const Run& run) { return at < run.start; };
    auto run = std::upper_bound(part.runs.begin(), part.runs.end(), from, behind);
    if (run != part.runs.begin()) --run;
    for (; run != part.runs.end() && run->start < to; ++run) {
      const size_t start = result.text.size() + (std::max(run->start, from) - from);
      result.runs.push_back({result.runs.empty() ? 0 : start, run->look});
    }
    result.text.append(part.text, from, to - from);
  };
  size_t from = 0;
  for (const Table& table : tables_) {
    if (!table.strays || table.strays->text.empty()) continue;
    join(main_, from, table.position, 1, false);
    const uint8_t breaks = std::max(table.breaks, table.strays->leading);
    join(*table.strays, 0, table.strays->text.size(), breaks, table.space);
    if (from > table.position) continue;
    from = table.position;  // the line ends that were due there stand before the strays now
    for (uint8_t i = 0; i < table.breaks && from < main_.text.size(); ++i) {
      if (main_.text[from] == u'\n') ++from;
    }
  }
  join(main_, from, main_.text.size(), 1, false);
  return result;
}

}  // namespace kelspar::html
