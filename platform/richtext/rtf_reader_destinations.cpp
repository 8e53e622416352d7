// The RTF reader: ends of paragraphs, cells and rows, symbols, destinations and fonts.
#include <algorithm>
#include <utility>

#include "platform/richtext/rtf_document_reader.h"

namespace kelspar {

namespace {

constexpr std::u16string_view kPictureOfShape = u"pib";

}  // namespace

void RTFReader::symbol(uint8_t c) {
  starred_ = false;
  if (fallback_ > 0) {
    --fallback_;
    return;
  }
  const bool html = purpose_ == RTFPurpose::html;
  switch (c) {
    case '\\':
    case '{':
    case '}':
      if (groups_.state().destination == Destination::instruction) {
        const char escaped = static_cast<char>(c);
        describe({&escaped, 1});
        break;
      }
      // The second half of a double-byte character may be one of these, escaped.
      if (isShown()) beginItem();
      if (isShown() && awaitsTrailByte()) {
        pending_.push_back(static_cast<char>(c));
      } else {
        const char16_t unit = c;
        emit({&unit, 1});
      }
      break;
    case '~':
      emit(html ? u"&nbsp;" : u"\u00A0");
      break;
    case '-':
      emit(html ? u"&shy;" : u"\u00AD");
      break;
    case '_':
      emit(html ? u"&#8209;" : u"\u2011");
      break;
    case '\t':
      emit(u"\t");
      break;
    case '\r':
    case '\n':
      endParagraph();
      break;
    default:
      break;
  }
}

void RTFReader::endParagraph() {
  emit(purpose_ == RTFPurpose::html ? u"\r\n" : u"\n");
  if (!isShown()) return;
  endItem();
  lineStart_ = plainLength();
  if (rich_) rich_->paragraphEnds();
}

// A section ends a paragraph that has begun.
void RTFReader::endSection() {
  flush();
  if (purpose_ == RTFPurpose::html || plainLength() > lineStart_) endParagraph();
}

void RTFReader::endCell(bool nested) {
  emit(u"\t");
  if (!isShown()) return;
  endItem();
  cellEnd_ = out_.size();
  plainCellEnd_ = plainLength();
  if (rich_) rich_->cellEnds(nested);
}

// \row turns the tab behind the row's last cell into the row's end.
void RTFReader::endRow(bool nested) {
  flush();
  if (!isShown()) return;
  const bool isBehindCell = cellEnd_ > 0 && plainLength() == plainCellEnd_;
  if (purpose_ == RTFPurpose::html) {
    if (isBehindCell) out_.pop_back();
  } else if (isBehindCell) {
    out_[cellEnd_ - 1] = u'\n';
  } else {
    out_.push_back(u'\n');
  }
  cellEnd_ = 0;
  lineStart_ = plainLength();
  if (rich_) rich_->rowEnds(nested);
}

void RTFReader::writeMarker() {
  const State& state = groups_.state();
  hasMarker_ = true;
  isCounted_ = true;
  numbers_.count(state.list, state.listLevel);
  const std::u16string marker = numbers_.marker(state.list, state.listLevel);
  if (marker.size() > markersLeft_) return;
  markersLeft_ -= marker.size();
  out_.append(marker);
}

// Items that have their marker are counted, too: those without go on from them.
void RTFReader::endItem() {
  const State& state = groups_.state();
  if (state.list > 0 && !isCounted_) numbers_.count(state.list, state.listLevel);
  hasMarker_ = false;
  isCounted_ = false;
}

void RTFReader::endListOfParagraph() {
  if (groups_.state().list == 0 && groups_.state().listLevel == 0) return;
  State& state = groups_.change();
  state.list = 0;
  state.listLevel = 0;
}

// A word of a list's description, or one that makes a paragraph an item.
void RTFReader::list(const RTFKeyword& keyword, int32_t parameter) {
  flush();
  const Destination where = groups_.state().destination;
  if (lists_.word(keyword.value, parameter, where)) return;
  if (where == Destination::body && purpose_ != RTFPurpose::html) {
    State& state = groups_.change();
    (keyword.value == kListOverride ? state.list : state.listLevel) = parameter;
  }
  if (rich_) rich_->word(keyword.value, parameter, true, where);
}

// Typographic characters have names in HTML, whatever the page's charset.
void RTFReader::emitNamed(char16_t unit) {
  if (purpose_ != RTFPurpose::html || unit < 0x80) {
    emit({&unit, 1});
  } else {
    emit(NSString::stringWithFormat(u"&#%u;", static_cast<uint32_t>(unit)));
  }
}

// A word that says how the rest of its group is to be taken.
void RTFReader::setState(const RTFKeyword& keyword, bool isOn) {
  switch (keyword.action) {
    case RTFAction::plain:
      flush();
      groups_.change().font = -1;
      groups_.change().hidden = false;
      if (rich_) rich_->word(kPlain, 0, true, groups_.state().destination);
      break;
    case RTFAction::pard:
      flush();
      endListOfParagraph();
      if (rich_) rich_->word(kParagraphDefault, 0, true, groups_.state().destination);
      break;
    case RTFAction::hidden:
      flush();
      groups_.change().hidden = isOn;
      break;
    case RTFAction::direction:
      flush();
      groups_.change().rightToLeft = keyword.value != 0;
      if (rich_) rich_->word(kDirection, 0, keyword.value != 0, groups_.state().destination);
      break;
    case RTFAction::htmlRTF:
      flush();
      groups_.change().htmlRTF = isOn;
      break;
    case RTFAction::fromHTML:
      fromHTML_ |= isOn && groups_.depth() == 1;
      break;
    default:
      break;
  }
}

void RTFReader::destination(const RTFKeyword& keyword, const RTFToken& token) {
  const Destination around = groups_.state().destination;
  const bool isBody = around == Destination::body;
  switch (keyword.action) {
    case RTFAction::skip:
      skip();
      break;
    case RTFAction::htmlTag:
      if (purpose_ != RTFPurpose::html) skip();
      break;
    case RTFAction::richOnly:
      if (rich_ && isBody) {
        enter(static_cast<Destination>(keyword.value));
      } else {
        skip();
      }
      break;
    case RTFAction::listTables:
      if (isBody && purpose_ != RTFPurpose::html) {
        enter(static_cast<Destination>(keyword.value));
      } else {
        skip();
      }
      break;
    case RTFAction::levelText:
      if (around == Destination::listTable || around == Destination::overrideTable) {
        enter(Destination::levelText);
      } else {
        skip();
      }
      break;
    case RTFAction::itemText:
      if (isBody) hasMarker_ = true;
      break;
    case RTFAction::shapeProperty:
      if (!isBody) {
        skip();
        break;
      }
      enter(Destination::propertyName);
      propertyName_.clear();
      break;
    case RTFAction::shapeValue:
      // A picture that a shape shows; other values are no text.
      if (!isBody || propertyName_ != kPictureOfShape) skip();
      break;
    case RTFAction::instruction:
      if (isBody && purpose_ != RTFPurpose::html) {
        enter(Destination::instruction);
        instruction_.clear();
      } else {
        skip();
      }
      break;
    case RTFAction::fontTable:
      if (isBody) enter(Destination::fontTable);
      break;
    case RTFAction::upr:
      if (around == Destination::skipped) break;
      groups_.change().aroundUpr = around;
      groups_.change().isUpr = true;
      enter(Destination::skipped);
      break;
    case RTFAction::ud:
      // Inside another destination of the \upr it says nothing.
      if (groups_.state().isUpr && around == Destination::skipped) enter(groups_.state().aroundUpr);
      break;
    default:
      describe(keyword, token);
      break;
  }
}

// A word about fields, rows of tables, or the document.
void RTFReader::describe(const RTFKeyword& keyword, const RTFToken& token) {
  switch (keyword.action) {
    case RTFAction::field:
      ++groups_.change().fields;
      break;
    case RTFAction::fieldResult:
      if (rich_) rich_->fieldResult();
      break;
    case RTFAction::nestedRow:
      if (rich_) rich_->nestedTableProperties();
      break;
    case RTFAction::defaultFont:
      if (groups_.state().destination != Destination::body) break;
      defaultFont_ = token.parameter;
      if (rich_) rich_->setDefaultFont(defaultFont_);
      break;
    case RTFAction::charset:
    case RTFAction::fontPage:
      describeFont(keyword, token.parameter);
      break;
    case RTFAction::codePage:
      selectDocumentPage(keyword, token);
      break;
    default:
      break;
  }
}

void RTFReader::selectFont(const RTFKeyword& keyword, int32_t font) {
  flush();
  State& state = groups_.change();
  const bool isAssociated = keyword.action == RTFAction::assocFont;
  (isAssociated ? state.associatedFont : state.font) = font;
  if (state.destination == Destination::fontTable) {
    fontName_.clear();
  } else if (!isAssociated && lists_.word(kFont, font, state.destination)) {
    return;
  } else if (rich_) {
    rich_->word(isAssociated ? kAssociatedFont : kFont, font, true, state.destination);
  }
}

void RTFReader::describeFont(const RTFKeyword& keyword, int32_t value) {
  const State& state = groups_.state();
  if (state.destination != Destination::fontTable || state.font < 0) return;
  if (keyword.action == RTFAction::charset) {
    fonts_.setCharset(state.font, value);
  } else {
    fonts_.setCodePage(state.font, value);
  }
}

void RTFReader::selectDocumentPage(const RTFKeyword& keyword, const RTFToken& token) {
  const int number = keyword.value ? keyword.value : token.parameter;
  flush();
  if (groups_.state().destination != Destination::body) return;
  if (CodePage::known(number)) documentPage_ = &CodePage::numbered(number);
}

}  // namespace kelspar
