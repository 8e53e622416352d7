// The tokens in turn, and start tags. End tags, formatting, tables and the stack have files of
// their own.
#include "platform/richtext/html_import.h"

#include <algorithm>

#include "platform/richtext/html_attributes.h"
#include "platform/richtext/html_white_space.h"

namespace kelspar::html {

namespace {

bool isAllSpace(std::u16string_view text) { return std::ranges::all_of(text, isWhiteSpace); }

bool isHeading(Tag tag) { return has(tag, kHeading); }

// Tags that say nothing here: what they stand for is there anyway.
bool isIgnored(Tag tag) {
  return tag == Tag::html || tag == Tag::head || tag == Tag::form || tag == Tag::frameset ||
         tag == Tag::col || tag == Tag::colgroup || tag == Tag::frame;
}

// Elements of SVG and MathML that are more than a name.
bool isKnownInForeign(Tag tag) {
  switch (tag) {
    case Tag::svg:
    case Tag::math:
    case Tag::foreignObject:
    case Tag::desc:
    case Tag::title:
    case Tag::style:
    case Tag::script:
    case Tag::metadata:
    case Tag::defs:
    case Tag::mi:
    case Tag::mo:
    case Tag::mn:
    case Tag::ms:
    case Tag::mtext:
    case Tag::annotationXml:
      return true;
    default:
      return false;
  }
}

}  // namespace

Import::Import(std::u16string_view html, const HTMLImportOptions* options, const StyleSheet* sheet)
    : tokens_(html),
      layout_(html.size() / 4, options ? u'\u2028' : u'\n'),
      sheet_(sheet ? *sheet : StyleSheet(/*layoutOnly=*/options == nullptr)),
      knowsSheet_(sheet != nullptr),
      options_(options) {
  if (options_) looks_ = std::make_unique<Looks>();
  OpenElement body;
  body.name = static_cast<uint16_t>(Tag::body);
  push(body);  // it is never taken off
}

NSString Import::plainText() { return NSString(std::move(layout_).finish().text); }

NSAttributedString Import::attributedText() { return looks_->finish(std::move(layout_).finish()); }

bool Import::run() {
  for (;;) {
    const Token& token = tokens_.next();
    switch (token.kind) {
      case Token::Kind::text:
        text(token);
        break;
      case Token::Kind::startTag:
        if (token.tag == Tag::style && !elements_.top().foreign) {
          if (!startStyle()) return false;
        } else {
          startTag(token);
        }
        break;
      case Token::Kind::endTag:
        endTag(token);
        break;
      case Token::Kind::doctype:
        documentType(token);
        break;
      case Token::Kind::end:
        return true;
      default:
        break;
    }
  }
}

// 13.2.6.4.1, as far as mail goes.
void Import::documentType(const Token& token) {
  const bool isFirst = elements_.size() == 1 && layout_.isEmpty();
  if (!isFirst) return;
  std::u16string type(token.text);
  for (char16_t& c : type) c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 0x20) : c;
  const auto says = [&](std::u16string_view what) { return type.find(what) != type.npos; };
  const bool hasSystem = says(u"http://");
  isQuirky_ = !says(u"html") || says(u"//dtd html 3") || says(u"//dtd html 4.0 tr") ||
              says(u"//dtd html 4.0 fr") || says(u"//dtd html 4.0//") ||
              (!hasSystem && (says(u"html 4.01 tr") || says(u"html 4.01 fr")));
}

void Import::text(const Token& token) {
  std::u16string_view units = token.text;
  if (std::exchange(skipsLineEnd_, false) && !token.isReference) {
    if (units.starts_with(u'\r')) units.remove_prefix(1);
    if (units.starts_with(u'\n')) units.remove_prefix(1);
  }
  if (mustReconstruct_ && !fosters() && !isAllSpace(units)) reconstruct();
  const OpenElement& top = elements_.top();
  if (top.hidden || top.invisible || top.sizeless) return;
  if (looks_) layout_.setLook(looks_->current(), looks_->depth());
  if (fosters()) {
    if (isAllSpace(units)) return;
    const bool isFirst = !layout_.isStraying();
    if (isFirst) layout_.beginStray(elements_.top().table);
    layout_.text(units, elements_.top().whiteSpace);
    if (isFirst) layout_.endStray();
    return;
  }
  layout_.text(units, elements_.top().whiteSpace);
}

void Import::startTag(const Token& token) {
  skipsLineEnd_ = false;
  if (elements_.top().foreign) return startInForeign(token);
  const Tag tag = token.tag;
  if (tag == Tag::body) return startBody();
  if (isIgnored(tag)) return;
  if (has(tag, kFormatting)) return startFormatting(tag);
  if (startTablePart(tag)) return;
  endImplied(tag);
  if (has(tag, kVoid) || tag == Tag::image) return startVoid(tag);
  if (mustReconstruct_ && !has(tag, kBlock | kHidden)) reconstruct();
  startElement(token);
}

// Start tags whose presence ends what is open (13.2.6.4.7).
void Import::endImplied(Tag tag) {
  if (has(tag, kClosesP)) closeP();
  switch (tag) {
    case Tag::li:
    case Tag::dd:
    case Tag::dt:
      return endItemBefore(tag);
    case Tag::option:
    case Tag::optgroup:
      if (elements_.top().tag() == Tag::option) pop();
      return;
    case Tag::button:
      if (elements_.last(Tag::button) > elements_.lastScope()) popTo(elements_.last(Tag::button));
      return;
    default:
      break;
  }
  if (isHeading(tag) && isHeading(elements_.top().tag())) pop();
}

// An item ends the one before it, unless a list or the like stands between.
void Import::endItemBefore(Tag tag) {
  const uint32_t barrier = elements_.lastItemBarrier();
  if (barrier == 0) return;
  const Tag there = elements_.at(barrier).tag();
  const bool isSame = tag == Tag::li ? there == Tag::li : there == Tag::dd || there == Tag::dt;
  if (isSame) popTo(barrier);
  closeP();
}

void Import::startVoid(Tag tag) {
  readDeclarations(tag);
  ancestry_ = {};  // it is not opened
  const bool isSeen =
      declarations_.has(Property::visibility) ? declarations_.visible : !elements_.top().invisible;
  if (elements_.top().hidden || declarations_.hides() || !isSeen) return;
  const bool strays = fosters() && !layout_.isStraying() && !has(tag, kHidden);
  if (strays) layout_.beginStray(elements_.top().table);
  if (looks_) layout_.setLook(looks_->current(), looks_->depth());
  if (tag == Tag::br) layout_.lineBreak();
  if ((tag == Tag::img || tag == Tag::image) && looks_) image();
  if (tag == Tag::hr) layout_.requireBreaks(1);
  if (strays) layout_.endStray();
}

// An image is a character of attributed text, and nothing in plain text.
void Import::image() {
  if (auto attachment = attachmentOf(tokens_, *options_)) {
    const auto setSize = [this](Property property, const Length& declared, double* size) {
      if (!declarations_.has(property) || declared.unit != Length::Unit::points) return;
      if (declared.value > 0) *size = declared.value;
    };
    setSize(Property::width, declarations_.width, &attachment->width);
    setSize(Property::imageHeight, declarations_.imageHeight, &attachment->height);
    const uint32_t look = looks_->withAttachment(std::move(attachment));
    layout_.atom(u"\uFFFC", look, looks_->current());
  }
}

// The body is there from the start; its tag adds to it.
void Import::startBody() {
  readDeclarations(Tag::body);
  if (declarations_.has(Property::whiteSpace)) {
    elements_.at(1).whiteSpace = declarations_.whiteSpace;
  }
  if (looks_) looks_->changeBody({Tag::body, &tokens_, &declarations_, true, false});
}

// False: its rules come too late for what is open or was shown already.
bool Import::startStyle() {
  skipsLineEnd_ = false;
  const uint32_t before = sheet_.rules();
  if (knowsSheet_) {
    while (tokens_.next().kind == Token::Kind::text) {
    }
    return true;
  }
  sheet_.readElement(&tokens_);
  const bool isLate = elements_.size() > 1 || !layout_.isEmpty();
  return !isLate || sheet_.rules() == before;
}

// SVG and MathML (13.2.6.5): text is shown as it comes; HTML's own tags end them.
void Import::startInForeign(const Token& token) {
  if (has(token.tag, kBreakout)) {
    while (elements_.top().foreign) pop();
    return startTag(token);
  }
  if (token.selfClosing) return;
  readDeclarations(token.tag);
  const Tag tag = isKnownInForeign(token.tag) ? token.tag : Tag::unknown;
  open(tag, elements_.number(tag, token.text));
}

void Import::startElement(const Token& token) {
  const Tag tag = token.tag;
  readDeclarations(tag);
  const bool strays = fosters() && !layout_.isStraying() && !has(tag, kHidden);
  if (strays) layout_.beginStray(elements_.top().table);
  open(tag, elements_.number(tag, token.text));
  elements_.top().straying = strays;
  if ((tag == Tag::svg || tag == Tag::math) && token.selfClosing) return pop();
  if (tag == Tag::pre || tag == Tag::listing || tag == Tag::textarea) skipsLineEnd_ = true;
}

}  // namespace kelspar::html
