// End tags, and formatting that outlives the block it was opened in (13.2.6.4.7, 13.2.4.3).
#include <algorithm>

#include "platform/richtext/html_import.h"

namespace kelspar::html {

namespace {

// Formatting that can come back at once; further ones push the oldest out. Pages keep three of a
// kind.
constexpr ptrdiff_t kMostFormatting = 32;

constexpr Tag kHeadings[] = {Tag::h1, Tag::h2, Tag::h3, Tag::h4, Tag::h5, Tag::h6};

}  // namespace

void Import::endTag(const Token& token) {
  skipsLineEnd_ = false;
  const Tag tag = token.tag;
  if (elements_.top().foreign) {
    const uint16_t name = elements_.number(Tag::unknown, token.text);
    const uint32_t root = std::max(elements_.last(Tag::svg), elements_.last(Tag::math));
    if (elements_.last(name) > root) return popTo(elements_.last(name));
  }
  if (has(tag, kFormatting)) return endFormatting(tag);
  if (endTablePart(tag)) return;
  switch (tag) {
    case Tag::html:
    case Tag::head:
    case Tag::body:
    case Tag::form:
      return;
    case Tag::br:
      return startVoid(tag);
    case Tag::unknown:
      return endOther(elements_.number(tag, token.text));
    default:
      break;
  }
  if (has(tag, kSpecial | kScope)) return endBlock(tag);
  endOther(static_cast<uint16_t>(tag));
}

void Import::endBlock(Tag tag) {
  uint32_t position = elements_.last(tag);
  uint32_t scope = elements_.lastScope();
  if (has(tag, kHeading)) {
    for (const Tag heading : kHeadings) position = std::max(position, elements_.last(heading));
  } else if (tag == Tag::p) {
    scope = std::max(scope, elements_.last(Tag::button));
  } else if (tag == Tag::li) {
    scope = std::max({scope, elements_.last(Tag::ul), elements_.last(Tag::ol)});
  } else if (has(tag, kScope) && position == scope && scope > 0) {
    --scope;
  }
  if (position > scope) return popTo(position);
  // An end without a start is an empty paragraph.
  if (tag != Tag::p || elements_.top().hidden) return;
  const bool strays = fosters() && !layout_.isStraying();
  if (strays) layout_.beginStray(elements_.top().table);
  layout_.requireBreaks(2);
  if (strays) layout_.endStray();
}

// An element that is neither special nor formatting: nothing special may stand in between.
void Import::endOther(uint16_t name) {
  const uint32_t position = elements_.last(name);
  if (position > 0 && position >= elements_.lastSpecial()) popTo(position);
}

void Import::startFormatting(Tag tag) {
  if (tag == Tag::a || tag == Tag::nobr) {
    if (findFormatting(static_cast<uint16_t>(tag))) endFormatting(tag);
  }
  if (mustReconstruct_ && !fosters()) reconstruct();
  readDeclarations(tag);
  const bool strays = fosters() && !layout_.isStraying();
  if (strays) layout_.beginStray(elements_.top().table);
  open(tag, static_cast<uint16_t>(tag));
  elements_.top().straying = strays;
  addFormatting();
}

// The top element stands in the list of formatting as well.
void Import::addFormatting() {
  elements_.top().formatting = true;
  formatting_.push_back({elements_.top(), elements_.size(), looks_ ? looks_->save() : 0});
  const auto marker = std::ranges::find(formatting_.rbegin(), formatting_.rend(), uint16_t{0},
                                        [](const Formatting& each) { return each.element.name; });
  if (marker - formatting_.rbegin() > kMostFormatting) {
    removeFormatting(static_cast<size_t>(marker.base() - formatting_.begin()));
  }
}

void Import::removeFormatting(size_t index) {
  if (looks_ && formatting_[index].element.name != 0) looks_->release(formatting_[index].look);
  formatting_.erase(formatting_.begin() + static_cast<ptrdiff_t>(index));
}

// From the end to the marker of the cell or the like that is open.
Import::Formatting* Import::findFormatting(uint16_t name) {
  for (size_t i = formatting_.size(); i-- > 0;) {
    if (formatting_[i].element.name == 0) return nullptr;
    if (formatting_[i].element.name == name) return &formatting_[i];
  }
  return nullptr;
}

void Import::suspendFormatting(uint32_t position) {
  for (size_t i = formatting_.size(); i-- > 0;) {
    if (formatting_[i].element.name == 0) return;
    if (formatting_[i].position != position) continue;
    formatting_[i].position = 0;
    mustReconstruct_ = true;
    return;
  }
}

void Import::reconstruct() {
  mustReconstruct_ = false;
  size_t first = formatting_.size();
  while (first > 0 && formatting_[first - 1].element.name != 0) --first;
  for (size_t i = first; i < formatting_.size(); ++i) {
    if (formatting_[i].position != 0) continue;
    OpenElement element = formatting_[i].element;
    element.straying = false;
    element.breaks = 0;
    const OpenElement& parent = elements_.top();
    element.hidden = parent.hidden || element.ownHidden;
    if (!element.ownVisibility) element.invisible = parent.invisible;
    if (!element.ownSize) element.sizeless = parent.sizeless;
    element.whiteSpace = parent.whiteSpace;
    element.foreign = parent.foreign;
    push(element);
    if (looks_) looks_->again(formatting_[i].look);
    formatting_[i].position = elements_.size();
  }
}

void Import::clearFormattingToMarker() {
  while (!formatting_.empty()) {
    const bool isMarker = formatting_.back().element.name == 0;
    removeFormatting(formatting_.size() - 1);
    if (isMarker) break;
  }
  mustReconstruct_ = true;  // what was left open outside, if anything
}

// The adoption agency (13.2.6.4.7): the element ends, blocks that were opened in it stay.
void Import::endFormatting(Tag tag) {
  const auto name = static_cast<uint16_t>(tag);
  Formatting* const formatting = findFormatting(name);
  if (!formatting) return endOther(name);
  const uint32_t position = formatting->position;
  if (position != 0 && position < elements_.lastScope()) return;
  removeFormatting(static_cast<size_t>(formatting - formatting_.data()));
  if (position == 0) return;
  if (position > elements_.lastSpecial()) return popTo(position);
  elements_.forget(position);
  elements_.at(position).formatting = false;
  if (looks_) looks_->forget(position);
}

}  // namespace kelspar::html
