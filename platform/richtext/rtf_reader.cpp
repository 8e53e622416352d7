// The RTF reader: tokens in, characters out.
#include "platform/richtext/rtf_reader.h"

#include <algorithm>
#include <string>

#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"
#include "platform/richtext/NSAttributedString.h"
#include "platform/richtext/rtf_fonts.h"
#include "platform/richtext/rtf_groups.h"
#include "platform/richtext/rtf_keywords.h"
#include "platform/richtext/rtf_tokenizer.h"

namespace kelspar {

namespace {

enum class Destination : uint8_t { body, fontTable, skipped };

// What a group saves and restores.
struct State {
  Destination destination = Destination::body;
  Destination aroundUpr = Destination::body;  // where \upr stands
  bool hidden = false;
  bool rightToLeft = false;  // \rtlch: the text is in the associated font
  bool htmlRTF = false;      // MS-OXRTFEX: RTF that the HTML does not hold
  uint16_t skipCount = 1;    // characters of fallback behind \u
  int32_t font = -1;         // -1: the default font
  int32_t associatedFont = -1;
};

enum class Purpose : uint8_t { plainText, html };

class Reader {
 public:
  Reader(std::string_view bytes, Purpose purpose) : tokens_(bytes), purpose_(purpose) {}

  NSString run() {
    for (RTFToken token = tokens_.next(); token.kind != RTFToken::Kind::end;
         token = tokens_.next()) {
      if (!read(token)) break;
    }
    flush();
    if (purpose_ == Purpose::html && !fromHTML_) return nil;
    return NSString(std::move(out_));
  }

 private:
  // False when the document has ended.
  bool read(const RTFToken& token) {
    switch (token.kind) {
      case RTFToken::Kind::groupStart:
        leaveFallback();
        groups_.open();
        return true;
      case RTFToken::Kind::groupEnd:
        leaveFallback();
        groups_.close();
        return groups_.depth() > 0;
      case RTFToken::Kind::word:
        word(token);
        return true;
      case RTFToken::Kind::symbol:
        symbol(token.byte);
        return true;
      case RTFToken::Kind::hex:
        hexByte(token.byte);
        return true;
      case RTFToken::Kind::text:
        text(token.bytes);
        return true;
      default:
        if (fallback_ > 0) --fallback_;  // \bin and its data count as one character
        return true;
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

  // Bytes of text in the current code page

  void text(std::string_view bytes) {
    starred_ = false;
    if (fallback_ > 0) {
      const size_t skipped = std::min<size_t>(fallback_, bytes.size());
      fallback_ -= static_cast<uint32_t>(skipped);
      bytes.remove_prefix(skipped);
    }
    if (bytes.empty() || !isShown()) return;
    if (pending_.empty() && utf8::asciiPrefix(bytes) == bytes.size()) {
      appendAscii(bytes);
    } else {
      pending_.append(bytes);
    }
  }

  // NULs, which some writers leave behind, are no text.
  void appendAscii(std::string_view bytes) {
    for (size_t at = 0; at < bytes.size(); ++at) {
      const size_t end = scan::findAny(bytes, at, '\0');
      const size_t start = out_.size();
      out_.resize(start + end - at);
      utf8::widen(bytes.substr(at, end - at), out_.data() + start);
      at = end;
    }
  }

  void hexByte(uint8_t byte) {
    starred_ = false;
    if (fallback_ > 0) {
      --fallback_;
    } else if (isShown()) {
      pending_.push_back(static_cast<char>(byte));
    }
  }

  // Decodes the bytes that wait: a character may have come in several escapes.
  void flush() {
    if (pending_.empty()) return;
    page().append(pending_, &out_);
    pending_.clear();
  }

  [[nodiscard]] const CodePage& page() const {
    const State& state = groups_.state();
    const int32_t font = state.rightToLeft ? state.associatedFont : state.font;
    const CodePage* page = fonts_.pageOf(font < 0 ? defaultFont_ : font);
    return page ? *page : *documentPage_;
  }

  // Whether the bytes that wait end in the first half of a character.
  [[nodiscard]] bool awaitsTrailByte() const {
    if (pending_.empty() || page().isSingleByte()) return false;
    bool lead = false;
    for (const char c : pending_) lead = !lead && page().isLeadByte(static_cast<uint8_t>(c));
    return lead;
  }

  // Single characters

  void emit(std::u16string_view units) {
    flush();
    if (isShown()) out_.append(units);
  }

  void symbol(uint8_t c) {
    if (c == '*') {
      starred_ = true;
      return;
    }
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

  void endParagraph() { emit(purpose_ == Purpose::html ? u"\r\n" : u"\n"); }

  // \row turns the tab behind the row's last cell into the row's end.
  void endRow() {
    flush();
    if (!isShown()) return;
    if (out_.ends_with(u'\t')) out_.pop_back();
    if (purpose_ == Purpose::plainText) out_.push_back(u'\n');
  }

  // Typographic characters have names in HTML, whatever the page's charset.
  void emitNamed(char16_t unit) {
    if (purpose_ == Purpose::plainText || unit < 0x80) {
      emit({&unit, 1});
    } else {
      emit(NSString::stringWithFormat(u"&#%u;", static_cast<uint32_t>(unit)));
    }
  }

  // Control words

  void word(const RTFToken& token) {
    const RTFKeyword* keyword = findRTFKeyword(token.bytes);
    const bool ignorable = std::exchange(starred_, false);
    if (!keyword) {
      if (fallback_ > 0) {
        --fallback_;
      } else if (ignorable) {
        enter(Destination::skipped);
      }
      return;
    }
    if (fallback_ > 0) {
      --fallback_;
      return;
    }
    perform(*keyword, token);
  }

  void enter(Destination destination) {
    flush();
    groups_.change().destination = destination;
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
      case RTFAction::cell:
        emit(u"\t");
        break;
      case RTFAction::row:
        endRow();
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
        break;
      case RTFAction::hidden:
        flush();
        groups_.change().hidden = isOn;
        break;
      case RTFAction::direction:
        flush();
        groups_.change().rightToLeft = keyword.value != 0;
        break;
      case RTFAction::htmlRTF:
        flush();
        groups_.change().htmlRTF = isOn;
        break;
      case RTFAction::fromHTML:
        fromHTML_ |= isOn && groups_.depth() == 1;
        break;
      case RTFAction::defaultFont:
        defaultFont_ = token.parameter;
        break;
      default:
        destination(keyword, token);
        break;
    }
  }

  void destination(const RTFKeyword& keyword, const RTFToken& token) {
    const bool isSkipped = groups_.state().destination == Destination::skipped;
    switch (keyword.action) {
      case RTFAction::skip:
        enter(Destination::skipped);
        break;
      case RTFAction::htmlTag:
        if (purpose_ == Purpose::plainText) enter(Destination::skipped);
        break;
      case RTFAction::fontTable:
        if (!isSkipped) enter(Destination::fontTable);
        break;
      case RTFAction::upr:
        if (isSkipped) break;
        groups_.change().aroundUpr = groups_.state().destination;
        enter(Destination::skipped);
        break;
      case RTFAction::ud:
        enter(groups_.state().aroundUpr);
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
      const auto unit = static_cast<char16_t>(value);
      emit({&unit, 1});
    }
    fallback_ = groups_.state().skipCount;
  }

  void selectFont(const RTFKeyword& keyword, int32_t font) {
    flush();
    State& state = groups_.change();
    (keyword.action == RTFAction::font ? state.font : state.associatedFont) = font;
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
  bool fromHTML_ = false;
  std::string pending_;
  std::u16string out_;
};

NSString read(const NSData& rtf, Purpose purpose) {
  const size_t start = findRTFStart(rtf.chars());
  if (start == std::string_view::npos) return nil;
  return Reader(rtf.chars().substr(start), purpose).run();
}

}  // namespace

NSString plainTextFromRTF(const NSData& rtf) { return read(rtf, Purpose::plainText); }

NSAttributedString NSAttributedString::initWithRTF(const NSData& rtf) {
  return NSAttributedString(plainTextFromRTF(rtf));
}

NSString encapsulatedHTMLFromRTF(const NSData& rtf) { return read(rtf, Purpose::html); }

}  // namespace kelspar
