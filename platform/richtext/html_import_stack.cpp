// Elements on the stack: what is declared for them, and what they do to the layout.
#include <utility>

#include "platform/foundation/scan.h"
#include "platform/richtext/html_import.h"

namespace kelspar::html {

namespace {

// Where HTML stands in SVG and MathML again.
bool holdsHTML(Tag tag) {
  return tag == Tag::foreignObject || tag == Tag::desc || tag == Tag::mi || tag == Tag::mo ||
         tag == Tag::mn || tag == Tag::ms || tag == Tag::mtext;
}

}  // namespace

// What the element's attributes and the style sheets declare for it.
void Import::readDeclarations(Tag tag) {
  declarations_.clear();
  if (!sheet_.isEmpty()) ancestry_ = {};
  const auto attributes = tokens_.attributes();
  if (attributes.empty() && sheet_.isEmpty()) return;
  const Attribute *style = nullptr, *classes = nullptr, *identifier = nullptr;
  bool hidden = false, covered = false;
  for (const Attribute& attribute : attributes) {
    switch (attribute.name.size()) {
      case 2:
        if (!identifier && equalsIgnoringCase(attribute.name, u"id")) identifier = &attribute;
        break;
      case 5:
        if (!style && equalsIgnoringCase(attribute.name, u"style")) style = &attribute;
        if (!classes && equalsIgnoringCase(attribute.name, u"class")) classes = &attribute;
        break;
      case 6:
        hidden = hidden || equalsIgnoringCase(attribute.name, u"hidden");
        break;
      case kCoveredMark.size():
        covered = covered || equalsIgnoringCase(attribute.name, kCoveredMark);
        break;
      default:
        break;
    }
  }
  if (hidden && !covered) parseDeclarations(u"display:none", !looks_, &declarations_);
  if (!sheet_.isEmpty()) {
    applySheet({tag, classes ? classes->raw : std::u16string_view(),
                identifier ? identifier->raw : std::u16string_view()});
  }
  if (!style) return;
  if (scan::findAny(style->raw, 0, u'&') == style->raw.size()) {
    parseDeclarations(style->raw, !looks_, &declarations_);
  } else {
    parseDeclarations(style->value(), !looks_, &declarations_);
  }
}

void Import::applySheet(const Subject& subject) {
  if (!sheet_.hasParts()) return sheet_.apply(subject, {}, &ancestry_, &declarations_);
  if (ancestries_.empty()) {  // the body's tag may be left out
    Declarations unused;
    Ancestry body;
    sheet_.apply({Tag::body, {}, {}}, {}, &body, &unused);
    ancestries_.assign(elements_.size(), {{}, body.self});
    ancestries_.front() = body;
  }
  if (subject.tag == Tag::body) {
    return sheet_.apply(subject, {}, &ancestries_.front(), &declarations_);
  }
  sheet_.apply(subject, ancestries_.back(), &ancestry_, &declarations_);
}

// Opens an element with the declarations that were read for it.
void Import::open(Tag tag, uint16_t name, bool isImplied) {
  OpenElement element;
  element.name = name;
  const OpenElement& parent = elements_.top();
  element.hidden = parent.hidden;
  element.invisible = parent.invisible;
  element.sizeless = parent.sizeless;
  element.foreign = parent.foreign;
  element.whiteSpace = parent.whiteSpace;
  const Declarations& own = declarations_;
  if (own.has(Property::visibility)) {
    element.invisible = !own.visible;
    element.ownVisibility = true;
  }
  const bool isTimes = own.fontSize.unit == Length::Unit::times && own.fontSize.value > 0;
  if (own.has(Property::fontSize) && !isTimes) {
    element.sizeless = own.fontSize.value <= 0;
    element.ownSize = true;
  }
  element.ownHidden = has(tag, kHidden) || own.hides();
  element.hidden = element.hidden || element.ownHidden;
  if (tag == Tag::svg || tag == Tag::math) element.foreign = true;
  if (holdsHTML(tag)) element.foreign = false;
  if (tag == Tag::pre || tag == Tag::listing || tag == Tag::xmp || tag == Tag::plaintext ||
      tag == Tag::textarea) {
    element.whiteSpace = WhiteSpace::keep;
  }
  if (own.has(Property::whiteSpace)) element.whiteSpace = own.whiteSpace;
  const bool isBlock =
      own.has(Property::display) && !has(tag, kTablePart)
          ? own.display == Display::block || (own.display != Display::inlineBox && has(tag, kBlock))
          : has(tag, kBlock);
  element.breaks = isBlock ? 1 : 0;
  push(element);
  if (looks_) {
    looks_->push({tag, isImplied ? nullptr : &tokens_, &declarations_, isBlock,
                  element.whiteSpace != WhiteSpace::collapse});
  }
  if (has(tag, kMarker)) formatting_.push_back({});
  if (!element.hidden) beginLayout(tag);
}

void Import::push(OpenElement element) {
  elements_.push(element);
  tokens_.setForeignContent(element.foreign);
  if (ancestries_.empty()) return;
  ancestries_.push_back(std::exchange(ancestry_, {}));
  ancestries_.back().around |=
      ancestries_[ancestries_.size() - 2].around | ancestries_[ancestries_.size() - 2].self;
}

void Import::pop() {
  const OpenElement element = elements_.top();
  elements_.pop();
  if (!ancestries_.empty()) ancestries_.pop_back();
  const bool holdsText =
      element.tag() == Tag::td || element.tag() == Tag::th || element.tag() == Tag::li;
  if (looks_ && holdsText && layout_.isFresh()) layout_.setLook(looks_->current(), looks_->depth());
  if (looks_) looks_->pop();
  if (element.tag() == Tag::table) tables_.pop_back();
  if (element.formatting) {
    suspendFormatting(elements_.size() + 1);
  }
  if (has(element.tag(), kMarker)) clearFormattingToMarker();
  endLayout(element);
  tokens_.setForeignContent(elements_.top().foreign);
}

void Import::popTo(uint32_t position) {
  while (elements_.size() >= position) pop();
}

// An open paragraph in button scope (13.2.4.2) ends.
void Import::closeP() {
  const uint32_t p = elements_.last(Tag::p);
  if (p > elements_.lastScope() && p > elements_.last(Tag::button)) popTo(p);
}

void Import::beginLayout(Tag tag) {
  OpenElement& element = elements_.top();
  switch (tag) {
    case Tag::p: {
      const auto isZero = [this](Property property, const Length& margin) {
        return declarations_.has(property) && margin.value == 0;
      };
      const bool flushTop = isZero(Property::marginTop, declarations_.marginTop);
      const bool flushBottom = isZero(Property::marginBottom, declarations_.marginBottom);
      layout_.requireBreaks(flushTop ? 1 : 2);
      element.breaks = flushBottom ? 1 : 2;
      return;
    }
    case Tag::ul:
    case Tag::ol:
    case Tag::menu:
    case Tag::dir:
      return beginList(tag);
    case Tag::li:
      return beginItem();
    case Tag::td:
    case Tag::th:
      return layout_.beginCell();
    case Tag::tr:
      return layout_.beginRow(elements_.at(table()).dropsCells);
    default:
      if (element.breaks) layout_.requireBreaks(element.breaks);
  }
}

void Import::endLayout(const OpenElement& element) {
  if (!element.hidden) {
    switch (element.tag()) {
      case Tag::td:
      case Tag::th:
        layout_.endCell();
        break;
      case Tag::tr:
        layout_.endRow();
        break;
      case Tag::li:
        layout_.endItem();
        layout_.requireBreaks(1);
        break;
      case Tag::ul:
      case Tag::ol:
      case Tag::menu:
      case Tag::dir:
        lists_.pop_back();
        [[fallthrough]];
      default:
        if (element.breaks) layout_.requireBreaks(element.breaks);
    }
  }
  if (element.straying) layout_.endStray();
}

}  // namespace kelspar::html
