// The RTF reader: groups, bytes of text and what control words ask for.
#include "platform/richtext/rtf_reader.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/foundation/scan.h"
#include "platform/richtext/rtf_document_reader.h"
#include "platform/richtext/rtf_fields.h"

namespace kelspar {

NSString RTFReader::run() {
  readAll();
  if (purpose_ == RTFPurpose::html && !fromHTML_) return nil;
  return NSString(std::move(out_));
}

NSAttributedString RTFReader::runAttributed() {
  readAll();
  std::vector<NSTextRun> runs = rich_->finish();
  return NSAttributedString(NSString(std::move(out_)), std::move(runs));
}

void RTFReader::readAll() {
  // Pages of it that stay empty cost nothing.
  out_.reserve(tokens_.rest().size());
  markersLeft_ = tokens_.rest().size();
  while (true) {
    const RTFToken token = tokens_.next();
    if (token.kind == RTFToken::Kind::end || !read(token)) break;
  }
  flush();
}

// False when the document has ended.
bool RTFReader::read(const RTFToken& token) {
  const bool first = std::exchange(atGroupStart_, false);
  switch (token.kind) {
    case RTFToken::Kind::groupStart:
      leaveFallback();
      atGroupStart_ = true;
      groups_.open();
      if (rich_) rich_->open();
      return true;
    case RTFToken::Kind::groupEnd:
      endGroup();
      return groups_.depth() > 0;
    case RTFToken::Kind::word:
      word(token);
      return true;
    case RTFToken::Kind::symbol:
      if (token.byte == '*') {
        starred_ = first;  // in the middle of a group it says nothing
      } else {
        symbol(token.byte);
      }
      return true;
    case RTFToken::Kind::hex:
      hexByte(token.byte);
      return true;
    case RTFToken::Kind::text:
      text(token.bytes);
      return true;
    default:
      binary(token.bytes);
      return true;
  }
}

void RTFReader::endGroup() {
  leaveFallback();
  if (rich_ && groups_.depth() == 1) rich_->endText();
  const Destination ended = groups_.state().destination;
  const uint32_t fields = groups_.state().fields;
  groups_.close();
  if (rich_) rich_->close();
  if (ended != groups_.state().destination) leaves(ended);
  if (fields > groups_.state().fields) endField();
}

void RTFReader::leaves(Destination ended) {
  switch (ended) {
    case Destination::listTable:
    case Destination::overrideTable:
      lists_.tablesEnd();
      break;
    case Destination::levelText:
      lists_.levelTextEnds();
      break;
    case Destination::instruction:
      symbol_ = symbolOfField(instruction_);
      symbolAt_ = out_.size();
      if (rich_) rich_->instruction(instruction_);
      break;
    case Destination::picture:
      if (isShown()) showPicture();
      break;
    default:
      if (rich_) rich_->leaves(ended);
      break;
  }
}

// The result of a symbol's field is the symbol in its font, or nothing but that font.
void RTFReader::endField() {
  const char16_t symbol = std::exchange(symbol_, u'\0');
  if (symbol != 0 && out_.size() == symbolAt_) emit({&symbol, 1});
}

void RTFReader::showPicture() {
  auto picture = rich_->takePicture();
  if (!picture) return;
  out_.push_back(u'\uFFFC');
  ++pictures_;
  rich_->attach(std::move(picture));
}

// \bin and its data count as one character of fallback.
void RTFReader::binary(std::string_view bytes) {
  if (fallback_ > 0) {
    --fallback_;
  } else if (groups_.state().destination == Destination::picture) {
    rich_->picture().binary(bytes);
  }
}

// A group's borders end the run of bytes and what is left of a \u's fallback.
void RTFReader::leaveFallback() {
  flush();
  fallback_ = 0;
  starred_ = false;
}

// Text of tables and of what describes a picture or a field.
void RTFReader::describe(std::string_view bytes) {
  switch (groups_.state().destination) {
    case Destination::fontTable:
      nameFont(bytes);
      break;
    case Destination::colorTable:
      for (const char c : bytes) {
        if (c == ';') rich_->colorEnds();
      }
      break;
    case Destination::styleSheet:
      rich_->styleText(std::u16string(bytes.begin(), bytes.end()));
      break;
    case Destination::picture:
      rich_->picture().hex(bytes);
      break;
    case Destination::instruction:
      describe(bytes, &instruction_);
      break;
    case Destination::propertyName:
      describe(bytes, &propertyName_);
      break;
    case Destination::levelText: {
      std::u16string units;
      describe(bytes, &units);
      lists_.levelText(units);
      break;
    }
    default:
      break;
  }
}

void RTFReader::describe(std::string_view bytes, std::u16string* units) const {
  constexpr size_t kLongest = 4096;
  if (units->size() < kLongest) page().append(bytes.substr(0, kLongest), units);
}

// A font's name ends in a semicolon.
void RTFReader::nameFont(std::string_view bytes) {
  constexpr size_t kLongest = 256;
  const size_t end = bytes.find(';');
  fontName_.append(bytes.substr(0, std::min(end, kLongest - std::min(fontName_.size(), kLongest))));
  if (end == bytes.npos) return;
  std::u16string name;
  page().append(std::exchange(fontName_, {}), &name);
  if (groups_.state().font >= 0) fonts_.setName(groups_.state().font, name);
}

void RTFReader::text(std::string_view bytes) {
  starred_ = false;
  if (fallback_ > 0) {
    const size_t skipped = std::min<size_t>(fallback_, bytes.size());
    fallback_ -= static_cast<uint32_t>(skipped);
    bytes.remove_prefix(skipped);
  }
  if (bytes.empty()) return;
  if (!isShown()) {
    describe(bytes);
    return;
  }
  beginItem();
  if (pending_.empty() && symbolFont() == RTFSymbolFont::none) {
    // ASCII goes straight to the text; what else there is waits to be decoded.
    do {
      bytes.remove_prefix(appendASCII(bytes));
      // NULs, which some writers leave behind, are no text.
      while (bytes.starts_with('\0')) bytes.remove_prefix(1);
    } while (!bytes.empty() && static_cast<uint8_t>(bytes[0]) < 0x80);
    pending_.append(bytes);
  } else {
    pending_.append(bytes);
  }
}

// Appends the ASCII that `bytes` begin with, up to a NUL, and returns its length.
size_t RTFReader::appendASCII(std::string_view bytes) {
  constexpr size_t kBlock = 256;
  char16_t units[kBlock];
  size_t at = 0;
  while (at < bytes.size()) {
    const size_t size = std::min(bytes.size() - at, kBlock);
    const size_t done = scan::widenASCII(bytes.substr(at, size), units);
    out_.append(units, done);
    at += done;
    if (done < size) break;
  }
  return at;
}

void RTFReader::hexByte(uint8_t byte) {
  starred_ = false;
  if (fallback_ > 0) {
    --fallback_;
  } else if (isShown()) {
    beginItem();
    pending_.push_back(static_cast<char>(byte));
  } else {
    const char c = static_cast<char>(byte);
    describe({&c, 1});
  }
}

void RTFReader::decodePending() {
  if (const RTFSymbolFont symbols = symbolFont(); symbols != RTFSymbolFont::none) {
    for (const char c : pending_) {
      if (c != 0) out_.push_back(unitOfSymbol(symbols, static_cast<uint8_t>(c)));
    }
  } else {
    decodingPage().append(pending_, &out_);
  }
  pending_.clear();
  scanned_ = 0;
  lead_ = false;
}

// Whether the bytes that wait end in the first half of a character.
bool RTFReader::awaitsTrailByte() {
  if (pending_.empty() || page().isSingleByte()) return false;
  for (; scanned_ < pending_.size(); ++scanned_) {
    lead_ = !lead_ && page().isLeadByte(static_cast<uint8_t>(pending_[scanned_]));
  }
  return lead_;
}

void RTFReader::word(const RTFToken& token) {
  const RTFKeyword* keyword = findRTFKeyword(token.bytes, token.key);
  const bool ignorable = std::exchange(starred_, false);
  if (!keyword) {
    if (fallback_ > 0) {
      --fallback_;
    } else if (ignorable) {
      skip();
    }
    return;
  }
  if (fallback_ > 0) {
    --fallback_;
    return;
  }
  perform(*keyword, token);
}

// The rest of the group is not looked at.
void RTFReader::skip() {
  enter(Destination::skipped);
  tokens_.skipGroup();
}

void RTFReader::enter(Destination destination) {
  flush();
  groups_.change().destination = destination;
  if (rich_) rich_->enters(destination);
}

void RTFReader::perform(const RTFKeyword& keyword, const RTFToken& token) {
  const bool isOn = !token.hasParameter || token.parameter != 0;
  switch (keyword.action) {
    case RTFAction::emit:
      emitNamed(static_cast<char16_t>(keyword.value));
      break;
    case RTFAction::paragraph:
      endParagraph();
      break;
    case RTFAction::line:
      emit(purpose_ == RTFPurpose::html ? u"\r\n" : u"\u2028");
      break;
    case RTFAction::section:
      endSection();
      break;
    case RTFAction::cell:
      endCell(keyword.value != 0);
      break;
    case RTFAction::row:
      endRow(keyword.value != 0);
      break;
    case RTFAction::format:
      flush();
      if (rich_) rich_->word(keyword.value, token.parameter, isOn, groups_.state().destination);
      break;
    case RTFAction::unicode:
      unicode(token);
      break;
    case RTFAction::skipCount:
      groups_.change().skipCount = static_cast<uint16_t>(std::clamp(token.parameter, 0, 65535));
      break;
    case RTFAction::font:
    case RTFAction::assocFont:
      selectFont(keyword, token.parameter);
      break;
    case RTFAction::plain:
    case RTFAction::pard:
    case RTFAction::hidden:
    case RTFAction::direction:
    case RTFAction::htmlRTF:
    case RTFAction::fromHTML:
      setState(keyword, isOn);
      break;
    case RTFAction::list:
      list(keyword, token.parameter);
      break;
    default:
      destination(keyword, token);
      break;
  }
}

// \u: one UTF-16 unit, signed; some writers give a whole code point instead.
void RTFReader::unicode(const RTFToken& token) {
  const Destination where = groups_.state().destination;
  const auto value =
      static_cast<uint32_t>(token.parameter < 0 ? token.parameter + 65536 : token.parameter);
  if (value >= 0x10000 && value <= 0x10FFFF) {
    const char16_t pair[] = {static_cast<char16_t>(0xD7C0 + (value >> 10)),
                             static_cast<char16_t>(0xDC00 + (value & 0x3FF))};
    emit({pair, 2});
  } else if (value < 0x10000 && value != 0) {
    const auto unit = glyph(static_cast<char16_t>(value));
    emit({&unit, 1});
    if (where == Destination::instruction) instruction_.push_back(unit);
  }
  if (value < 0x10000 && where == Destination::levelText) {
    const auto unit = static_cast<char16_t>(value);  // counts and places of numbers, too
    lists_.levelText({&unit, 1});
  }
  fallback_ = groups_.state().skipCount;
}

namespace {

// The document without what stands before it.
std::optional<std::string_view> documentIn(const NSData& rtf) {
  const size_t start = findRTFStart(rtf.chars());
  if (start == std::string_view::npos) return {};
  return rtf.chars().substr(start);
}

NSString read(const NSData& rtf, RTFPurpose purpose) {
  const auto document = documentIn(rtf);
  return document ? RTFReader(*document, purpose).run() : nil;
}

}  // namespace

NSString plainTextFromRTF(const NSData& rtf) { return read(rtf, RTFPurpose::plainText); }

NSString encapsulatedHTMLFromRTF(const NSData& rtf) { return read(rtf, RTFPurpose::html); }

NSAttributedString NSAttributedString::initWithRTF(const NSData& rtf) {
  const auto document = documentIn(rtf);
  return document ? RTFReader(*document, RTFPurpose::attributed).runAttributed() : nil;
}

}  // namespace kelspar
