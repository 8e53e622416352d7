// Tables (13.2.6.4.9 to 13.2.6.4.15) and lists.
#include <algorithm>

#include "platform/richtext/html_attributes.h"
#include "platform/richtext/html_import.h"
#include "platform/richtext/html_markers.h"

namespace kelspar::html {

namespace {

constexpr float kPixel = 0.75;  // in points

bool isSection(Tag tag) { return tag == Tag::tbody || tag == Tag::thead || tag == Tag::tfoot; }

// Tables that only arrange what is in them say so, or have no lines and no gaps.
bool isForLayout(const Tokenizer& tokens) {
  if (numberOf(tokens.attribute(u"border"), 0) > 0) return false;
  if (const Attribute* role = tokens.attribute(u"role")) {
    if (equalsIgnoringCase(role->raw, u"presentation") || equalsIgnoringCase(role->raw, u"none")) {
      return true;
    }
  }
  for (const std::u16string_view name : {u"cellpadding", u"cellspacing", u"border"}) {
    const Attribute* attribute = tokens.attribute(name);
    if (attribute && attribute->raw == u"0") return true;
  }
  return false;
}

// <ol type>, <li type>
NSString styleOfType(const Attribute* type) {
  if (!type) return nil;
  if (type->raw == u"1") return u"decimal";
  if (type->raw == u"a") return u"lower-alpha";
  if (type->raw == u"A") return u"upper-alpha";
  if (type->raw == u"i") return u"lower-roman";
  if (type->raw == u"I") return u"upper-roman";
  for (const std::u16string_view name : {u"disc", u"circle", u"square", u"none"}) {
    if (equalsIgnoringCase(type->raw, name)) return NSString(name);
  }
  return nil;
}

}  // namespace

// The innermost of table, tbody, thead and tfoot.
uint32_t Import::section() const {
  return std::max({table(), elements_.last(Tag::tbody), elements_.last(Tag::thead),
                   elements_.last(Tag::tfoot)});
}

bool Import::startTablePart(Tag tag) {
  const bool isCell = tag == Tag::td || tag == Tag::th;
  if (tag == Tag::table) {
    const uint32_t inside =
        std::max({elements_.last(Tag::td), elements_.last(Tag::th), elements_.last(Tag::caption)});
    if (table() > inside) popTo(table());  // a table between the parts of a table ends it
    if (!isQuirky_) closeP();
    openTable();
    return true;
  }
  if (!isCell && !isSection(tag) && tag != Tag::tr && tag != Tag::caption) return false;
  if (table() == 0) return true;  // a part of nothing

  if (tag == Tag::caption || isSection(tag)) {
    popAbove(table());
  } else if (tag == Tag::tr) {
    popAbove(section());
  } else if (elements_.last(Tag::tr) > table()) {
    popAbove(elements_.last(Tag::tr));
  } else {
    popAbove(section());
    declarations_.clear();
    ancestry_ = {};
    if (!sheet_.isEmpty()) applySheet({Tag::tr, {}, {}});
    openPart(Tag::tr, /*isImplied=*/true);
  }
  readDeclarations(tag);
  if (isCell || tag == Tag::caption) {
    open(tag, static_cast<uint16_t>(tag));
    if (isCell) enterCell();
    return true;
  }
  openPart(tag);
  return true;
}

void Import::openTable() {
  readDeclarations(Tag::table);
  const size_t number = layout_.markTable();
  tables_.push_back({++identities_, 0, {}, numberOf(tokens_.attribute(u"border"), 0) > 0, {}});
  if (const Attribute* const padding = tokens_.attribute(u"cellpadding")) {
    const float side = kPixel * static_cast<float>(std::clamp(numberOf(padding, 0), 0, 100));
    tables_.back().padding = {side, side, side, side};
  }
  const bool isInLayout = table() != 0 && elements_.at(table()).dropsCells;
  open(Tag::table, static_cast<uint16_t>(Tag::table));
  OpenElement& element = elements_.top();
  element.fosters = true;
  element.table = static_cast<uint32_t>(number);
  element.dropsCells = isInLayout || isForLayout(tokens_);
}

void Import::openPart(Tag tag, bool isImplied) {
  const uint32_t number = elements_.at(table()).table;
  open(tag, static_cast<uint16_t>(tag), isImplied);
  elements_.top().fosters = true;
  elements_.top().table = number;
  if (tag == Tag::tr) {
    Table& table = tables_.back();
    if (table.row < UINT16_MAX) ++table.row;
    table.columns.nextRow();
  }
}

// The cell just opened takes its place in the row.
void Import::enterCell() {
  if (elements_.top().hidden) return;  // it has no place
  Table& table = tables_.back();
  NSTextTableCell cell;
  cell.table = table.identity;
  cell.row = static_cast<uint16_t>(table.row - 1);
  const auto span = [this](std::u16string_view name, int32_t most) {
    return static_cast<uint16_t>(std::clamp(numberOf(tokens_.attribute(name), 1), 1, most));
  };
  cell.column = table.columns.next();
  cell.columnSpan = span(u"colspan", kMostColumnsSpanned);
  cell.rowSpan = span(u"rowspan", kMostRowsSpanned);
  if (const Attribute* const column = tokens_.attribute(kColumnMark)) {
    cell.column = static_cast<uint16_t>(std::clamp(numberOf(column, 0), 0, UINT16_MAX - 1));
  }
  if (tokens_.attribute(kCoveredMark)) cell.rowSpan = 0;
  if (table.hasLines) cell.borders = NSTextBorders::all({kPixel, {}});
  cell.padding = table.padding;
  const uint16_t columns = table.columns.take(cell.column, cell.columnSpan, cell.rowSpan);
  if (!looks_) return;
  looks_->enterCell(cell, {elements_.top().tag(), &tokens_, &declarations_, true, false});
  looks_->setColumns(cell.table, columns);
}

bool Import::endTablePart(Tag tag) {
  switch (tag) {
    case Tag::table:
    case Tag::caption:
    case Tag::tbody:
    case Tag::thead:
    case Tag::tfoot:
    case Tag::tr:
    case Tag::td:
    case Tag::th:
      break;
    default:
      return tag == Tag::col || tag == Tag::colgroup;
  }
  const uint32_t position = elements_.last(tag);
  if (position != 0 && position >= table()) popTo(position);
  return true;
}

void Import::beginList(Tag tag) {
  layout_.requireBreaks(1);
  List list;
  list.ordered = tag == Tag::ol;
  if (list.ordered) list.next = numberOf(tokens_.attribute(u"start"), 1);
  const uint32_t bullets = lists_.empty() ? 0 : lists_.back().bullets;
  list.bullets = bullets + (list.ordered ? 0 : 1);
  list.style = list.ordered   ? u"decimal"_ns
               : bullets == 0 ? u"disc"_ns
               : bullets == 1 ? u"circle"_ns
                              : u"square"_ns;
  if (const NSString style = styleOfType(tokens_.attribute(u"type"))) list.style = style;
  if (declarations_.has(Property::listStyle)) list.style = declarations_.listStyle;
  lists_.push_back(list);
  if (looks_) looks_->enterList({++identities_, list.ordered, list.style, list.next});
}

void Import::beginItem() {
  layout_.requireBreaks(1);
  List list = lists_.empty() ? List{false, 1, u"disc"_ns} : lists_.back();
  list.next = numberOf(tokens_.attribute(u"value"), list.next);
  if (const NSString style = styleOfType(tokens_.attribute(u"type"))) list.style = style;
  if (declarations_.has(Property::listStyle)) list.style = declarations_.listStyle;
  layout_.beginItem(elements_.top().invisible ? std::u16string()
                                              : markerText(list.style, list.next));
  if (!lists_.empty()) lists_.back().next = list.next + 1;
}

}  // namespace kelspar::html
