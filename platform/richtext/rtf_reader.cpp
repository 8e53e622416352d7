// The RTF reader: tokens in, characters out. How the characters look is left to the formatter,
// which is told of every group and format word when attributed text is wanted.
#include "platform/richtext/rtf_reader.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"
#include "platform/richtext/rtf_fonts.h"
#include "platform/richtext/rtf_formatter.h"
#include "platform/richtext/rtf_groups.h"
#include "platform/richtext/rtf_keywords.h"
#include "platform/richtext/rtf_tokenizer.h"

namespace kelspar {

namespace {

using Destination = RTFDestination;

// What a group saves and restores.
struct State {
  Destination destination = Destination::body;
  Destination aroundUpr = Destination::body;  // where \upr stands
  bool isUpr = false;
  bool hidden = false;
  bool rightToLeft = false;  // \rtlch: the text is in the associated font
  bool htmlRTF = false;      // MS-OXRTFEX: RTF that the HTML does not hold
  uint16_t skipCount = 1;    // characters of fallback behind \u
  int32_t font = -1;         // -1: the default font
  int32_t associatedFont = -1;
};

enum class Purpose : uint8_t { plainText, attributed, html };

class Reader {
 public:
  Reader(std::string_view bytes, Purpose purpose) : tokens_(bytes), purpose_(purpose) {
    if (purpose == Purpose::attributed) rich_ = std::make_unique<RTFFormatter>(&out_, &fonts_);
  }

  NSString run() {
    readAll();
    if (purpose_ == Purpose::html && !fromHTML_) return nil;
    return NSString(std::move(out_));
  }

  NSAttributedString runAttributed() {
    readAll();
    std::vector<NSTextRun> runs = rich_->finish();
    return NSAttributedString(NSString(std::move(out_)), std::move(runs));
  }

 private:
  void readAll() {
    // Pages of it that stay empty cost nothing.
    out_.reserve(tokens_.rest().size());
    while (true) {
      const RTFToken token = tokens_.next();
      if (token.kind == RTFToken::Kind::end || !read(token)) break;
    }
    flush();
  }

  // False when the document has ended.
  bool read(const RTFToken& token) {
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

  void endGroup() {
    leaveFallback();
    if (rich_ && groups_.depth() == 1) rich_->endText();
    const Destination ended = groups_.state().destination;
    groups_.close();
    if (!rich_) return;
    rich_->close();
    if (ended == groups_.state().destination) return;
    rich_->leaves(ended);
    if (ended == Destination::picture && isShown()) showPicture();
  }

  void showPicture() {
    auto picture = rich_->takePicture();
    if (!picture) return;
    out_.push_back(u'\uFFFC');
    ++pictures_;
    rich_->attach(std::move(picture));
  }

  // Length of the plain text so far: pictures are no part of it.
  [[nodiscard]] size_t plainLength() const { return out_.size() - pictures_; }

  // \bin and its data count as one character of fallback.
  void binary(std::string_view bytes) {
    if (fallback_ > 0) {
      --fallback_;
    } else if (groups_.state().destination == Destination::picture) {
      rich_->picture().binary(bytes);
    }
  }

  // A group's borders end the run of bytes and what is left of a \u's fallback.
  void leaveFallback() {
    flush();
    fallback_ = 0;
    starred_ = false;
  }

  [[nodiscard]] bool isShown() const {
    const State& state = groups_.state();
    return state.destination == Destination::body &&
           (purpose_ == Purpose::html ? !state.htmlRTF : !state.hidden);
  }

  // Text of tables and of what describes a picture or a field.
  void describe(std::string_view bytes) {
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
      case Destination::instruction: {
        std::u16string units;
        page().append(bytes, &units);
        rich_->instruction(units);
        break;
      }
      default:
        break;
    }
  }

  // A font's name ends in a semicolon.
  void nameFont(std::string_view bytes) {
    constexpr size_t kLongest = 256;
    const size_t end = bytes.find(';');
    fontName_.append(
        bytes.substr(0, std::min(end, kLongest - std::min(fontName_.size(), kLongest))));
    if (end == bytes.npos) return;
    std::u16string name;
    page().append(std::exchange(fontName_, {}), &name);
    if (groups_.state().font >= 0) fonts_.setName(groups_.state().font, name);
  }

  // Bytes of text in the current code page

  void text(std::string_view bytes) {
    starred_ = false;
    if (fallback_ > 0) {
      const size_t skipped = std::min<size_t>(fallback_, bytes.size());
      fallback_ -= static_cast<uint32_t>(skipped);
      bytes.remove_prefix(skipped);
    }
    if (bytes.empty()) return;
    if (!isShown()) {
      describe(bytes);
    } else if (pending_.empty() && symbolFont() == RTFSymbolFont::none) {
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
  size_t appendASCII(std::string_view bytes) {
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

  void hexByte(uint8_t byte) {
    starred_ = false;
    if (fallback_ > 0) {
      --fallback_;
    } else if (isShown()) {
      pending_.push_back(static_cast<char>(byte));
    } else {
      const char c = static_cast<char>(byte);
      describe({&c, 1});
    }
  }

  // Decodes the bytes that wait: a character may have come in several escapes.
  void flush() {
    if (pending_.empty()) return;
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

  // Half of a double-byte character alone is a bullet or a dash of a writer that kept Latin fonts'
  // bytes under an Asian charset.
  [[nodiscard]] const CodePage& decodingPage() const {
    const CodePage& page = this->page();
    const bool isHalf = pending_.size() == 1 && page.isLeadByte(static_cast<uint8_t>(pending_[0]));
    return isHalf ? CodePage::numbered(1252) : page;
  }

  [[nodiscard]] int32_t font() const {
    const State& state = groups_.state();
    const int32_t font = state.rightToLeft ? state.associatedFont : state.font;
    return font < 0 ? defaultFont_ : font;
  }

  [[nodiscard]] RTFSymbolFont symbolFont() const { return fonts_.symbolFontOf(font()); }

  [[nodiscard]] const CodePage& page() const {
    const CodePage* page = fonts_.pageOf(font());
    return page ? *page : *documentPage_;
  }

  // Whether the bytes that wait end in the first half of a character.
  [[nodiscard]] bool awaitsTrailByte() {
    if (pending_.empty() || page().isSingleByte()) return false;
    for (; scanned_ < pending_.size(); ++scanned_) {
      lead_ = !lead_ && page().isLeadByte(static_cast<uint8_t>(pending_[scanned_]));
    }
    return lead_;
  }

  // Single characters

  void emit(std::u16string_view units) {
    flush();
    if (isShown()) out_.append(units);
  }

  void symbol(uint8_t c) {
    starred_ = false;
    if (fallback_ > 0) {
      --fallback_;
      return;
    }
    const bool html = purpose_ == Purpose::html;
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

  void endParagraph() {
    emit(purpose_ == Purpose::html ? u"\r\n" : u"\n");
    if (!isShown()) return;
    lineStart_ = plainLength();
    if (rich_) rich_->paragraphEnds();
  }

  // A section ends a paragraph that has begun.
  void endSection() {
    flush();
    if (purpose_ == Purpose::html || plainLength() > lineStart_) endParagraph();
  }

  void endCell(bool nested) {
    emit(u"\t");
    if (!isShown()) return;
    cellEnd_ = out_.size();
    plainCellEnd_ = plainLength();
    if (rich_) rich_->cellEnds(nested);
  }

  // \row turns the tab behind the row's last cell into the row's end.
  void endRow(bool nested) {
    flush();
    if (!isShown()) return;
    const bool isBehindCell = cellEnd_ > 0 && plainLength() == plainCellEnd_;
    if (purpose_ == Purpose::html) {
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

  // Typographic characters have names in HTML, whatever the page's charset.
  void emitNamed(char16_t unit) {
    if (purpose_ != Purpose::html || unit < 0x80) {
      emit({&unit, 1});
    } else {
      emit(NSString::stringWithFormat(u"&#%u;", static_cast<uint32_t>(unit)));
    }
  }

  // Control words

  void word(const RTFToken& token) {
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
  void skip() {
    enter(Destination::skipped);
    tokens_.skipGroup();
  }

  void enter(Destination destination) {
    flush();
    groups_.change().destination = destination;
    if (rich_) rich_->enters(destination);
  }

  void perform(const RTFKeyword& keyword, const RTFToken& token) {
    const bool isOn = !token.hasParameter || token.parameter != 0;
    switch (keyword.action) {
      case RTFAction::emit:
        emitNamed(static_cast<char16_t>(keyword.value));
        break;
      case RTFAction::paragraph:
        endParagraph();
        break;
      case RTFAction::line:
        emit(purpose_ == Purpose::html ? u"\r\n" : u"\u2028");
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
        flush();
        groups_.change().font = -1;
        groups_.change().hidden = false;
        if (rich_) rich_->word(kPlain, 0, true, groups_.state().destination);
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
        destination(keyword, token);
        break;
    }
  }

  void destination(const RTFKeyword& keyword, const RTFToken& token) {
    const Destination around = groups_.state().destination;
    const bool isBody = around == Destination::body;
    switch (keyword.action) {
      case RTFAction::skip:
        skip();
        break;
      case RTFAction::htmlTag:
        if (purpose_ != Purpose::html) skip();
        break;
      case RTFAction::richOnly:
        if (rich_ && isBody) {
          enter(static_cast<Destination>(keyword.value));
        } else {
          skip();
        }
        break;
      case RTFAction::fieldResult:
        if (rich_) rich_->fieldResult();
        break;
      case RTFAction::nestedRow:
        if (rich_) rich_->nestedTableProperties();
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
        if (groups_.state().isUpr) enter(groups_.state().aroundUpr);
        break;
      case RTFAction::defaultFont:
        if (!isBody) break;
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

  // \u: one UTF-16 unit, signed; some writers give a whole code point instead.
  void unicode(const RTFToken& token) {
    const auto value =
        static_cast<uint32_t>(token.parameter < 0 ? token.parameter + 65536 : token.parameter);
    if (value >= 0x10000 && value <= 0x10FFFF) {
      const char16_t pair[] = {static_cast<char16_t>(0xD7C0 + (value >> 10)),
                               static_cast<char16_t>(0xDC00 + (value & 0x3FF))};
      emit({pair, 2});
    } else if (value < 0x10000 && value != 0) {
      const auto unit = glyph(static_cast<char16_t>(value));
      emit({&unit, 1});
      if (groups_.state().destination == Destination::instruction) rich_->instruction({&unit, 1});
    }
    fallback_ = groups_.state().skipCount;
  }

  // Bytes of symbol fonts are written as private characters, too.
  [[nodiscard]] char16_t glyph(char16_t unit) const {
    if ((unit & 0xFF00) != 0xF000) return unit;
    const RTFSymbolFont symbols = symbolFont();
    const auto byte = static_cast<uint8_t>(unit);
    return symbols == RTFSymbolFont::none || byte < 0x20 ? unit : unitOfSymbol(symbols, byte);
  }

  void selectFont(const RTFKeyword& keyword, int32_t font) {
    flush();
    State& state = groups_.change();
    const bool isAssociated = keyword.action == RTFAction::assocFont;
    (isAssociated ? state.associatedFont : state.font) = font;
    if (state.destination == Destination::fontTable) {
      fontName_.clear();
    } else if (rich_) {
      rich_->word(isAssociated ? kAssociatedFont : kFont, font, true, state.destination);
    }
  }

  void describeFont(const RTFKeyword& keyword, int32_t value) {
    const State& state = groups_.state();
    if (state.destination != Destination::fontTable || state.font < 0) return;
    if (keyword.action == RTFAction::charset) {
      fonts_.setCharset(state.font, value);
    } else {
      fonts_.setCodePage(state.font, value);
    }
  }

  void selectDocumentPage(const RTFKeyword& keyword, const RTFToken& token) {
    const int number = keyword.value ? keyword.value : token.parameter;
    flush();
    if (groups_.state().destination != Destination::body) return;
    if (CodePage::known(number)) documentPage_ = &CodePage::numbered(number);
  }

  RTFTokenizer tokens_;
  const Purpose purpose_;
  RTFGroups<State> groups_;
  RTFFontTable fonts_;
  const CodePage* documentPage_ = &CodePage::numbered(1252);
  int32_t defaultFont_ = 0;
  uint32_t fallback_ = 0;  // characters still to be skipped behind \u
  bool starred_ = false;   // "\*" stands right before
  bool atGroupStart_ = false;
  bool fromHTML_ = false;
  std::string pending_;
  size_t scanned_ = 0;  // bytes of it that were looked at for halves of characters
  bool lead_ = false;
  std::string fontName_;
  std::u16string out_;
  size_t pictures_ = 0;                    // in `out_`
  size_t lineStart_ = 0;                   // in the plain text
  size_t cellEnd_ = 0, plainCellEnd_ = 0;  // behind the last cell's tab; in `out_`, the plain text
  std::unique_ptr<RTFFormatter> rich_;     // for attributed text alone
};

// The document without what stands before it.
std::optional<std::string_view> documentIn(const NSData& rtf) {
  const size_t start = findRTFStart(rtf.chars());
  if (start == std::string_view::npos) return {};
  return rtf.chars().substr(start);
}

NSString read(const NSData& rtf, Purpose purpose) {
  const auto document = documentIn(rtf);
  return document ? Reader(*document, purpose).run() : nil;
}

}  // namespace

NSString plainTextFromRTF(const NSData& rtf) { return read(rtf, Purpose::plainText); }

NSString encapsulatedHTMLFromRTF(const NSData& rtf) { return read(rtf, Purpose::html); }

NSAttributedString NSAttributedString::initWithRTF(const NSData& rtf) {
  const auto document = documentIn(rtf);
  return document ? Reader(*document, Purpose::attributed).runAttributed() : nil;
}

}  // namespace kelspar
