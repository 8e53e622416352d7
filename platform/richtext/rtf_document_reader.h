// The RTF reader at work: tokens in, characters out. How the characters look is left to the
// formatter, which is told of every group and format word when attributed text is wanted. Internal
// to rtf_reader.cpp and rtf_reader_destinations.cpp.
#pragma once

#include <memory>
#include <string>

#include "platform/richtext/rtf_fonts.h"
#include "platform/richtext/rtf_formatter.h"
#include "platform/richtext/rtf_groups.h"
#include "platform/richtext/rtf_keywords.h"
#include "platform/richtext/rtf_list_numbers.h"
#include "platform/richtext/rtf_tokenizer.h"

namespace kelspar {

enum class RTFPurpose : uint8_t { plainText, attributed, html };

class RTFReader {
 public:
  RTFReader(std::string_view bytes, RTFPurpose purpose) : tokens_(bytes), purpose_(purpose) {
    if (purpose == RTFPurpose::attributed) {
      rich_ = std::make_unique<RTFFormatter>(&out_, &fonts_, &lists_);
    }
  }

  NSString run();
  NSAttributedString runAttributed();

 private:
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
    int32_t list = 0;  // \ls of the paragraph
    int32_t listLevel = 0;
    uint32_t fields = 0;  // that the group stands in
  };

  void readAll();
  // Inline: called from one place each, for every token.
  // False when the document has ended.
  inline bool read(const RTFToken& token);
  inline void endGroup();
  void leaves(Destination ended);
  void endField();
  void showPicture();

  // Length of the plain text so far: pictures are no part of it.
  [[nodiscard]] size_t plainLength() const { return out_.size() - pictures_; }

  void binary(std::string_view bytes);
  void leaveFallback();

  [[nodiscard]] bool isShown() const {
    const State& state = groups_.state();
    return state.destination == Destination::body &&
           (purpose_ == RTFPurpose::html ? !state.htmlRTF : !state.hidden);
  }

  void describe(std::string_view bytes);
  void describe(std::string_view bytes, std::u16string* units) const;
  void nameFont(std::string_view bytes);

  // Bytes of text, in the current code page.
  inline void text(std::string_view bytes);
  inline size_t appendASCII(std::string_view bytes);
  inline void hexByte(uint8_t byte);
  // Decodes the bytes that wait: a character may have come in several escapes.
  void flush() {
    if (!pending_.empty()) decodePending();
  }
  void decodePending();

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

  [[nodiscard]] bool awaitsTrailByte();

  void emit(std::u16string_view units) {
    flush();
    if (!isShown()) return;
    beginItem();
    out_.append(units);
  }

  // An item of a list begins with its marker, which we write where its writer did not.
  void beginItem() {
    if (groups_.state().list > 0 && !hasMarker_) writeMarker();
  }
  void writeMarker();
  void endItem();
  void symbol(uint8_t c);
  void endParagraph();
  void endSection();
  void endCell(bool nested);
  void endRow(bool nested);
  void emitNamed(char16_t unit);

  inline void word(const RTFToken& token);
  void skip();
  void enter(Destination destination);
  inline void perform(const RTFKeyword& keyword, const RTFToken& token);
  void setState(const RTFKeyword& keyword, bool isOn);
  void destination(const RTFKeyword& keyword, const RTFToken& token);
  void describe(const RTFKeyword& keyword, const RTFToken& token);
  inline void unicode(const RTFToken& token);
  void list(const RTFKeyword& keyword, int32_t parameter);
  void endListOfParagraph();

  // Bytes of symbol fonts are written as private characters, too.
  [[nodiscard]] char16_t glyph(char16_t unit) const {
    if ((unit & 0xFF00) != 0xF000) return unit;
    const RTFSymbolFont symbols = symbolFont();
    const auto byte = static_cast<uint8_t>(unit);
    return symbols == RTFSymbolFont::none || byte < 0x20 ? unit : unitOfSymbol(symbols, byte);
  }

  void selectFont(const RTFKeyword& keyword, int32_t font);
  void describeFont(const RTFKeyword& keyword, int32_t value);
  void selectDocumentPage(const RTFKeyword& keyword, const RTFToken& token);

  RTFTokenizer tokens_;
  const RTFPurpose purpose_;
  RTFGroups<State> groups_;
  RTFFontTable fonts_;
  RTFLists lists_;
  RTFListNumbers numbers_{&lists_, &fonts_};
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
  bool hasMarker_ = false;  // the paragraph has its marker: the writer's, or ours
  bool isCounted_ = false;  // and it is counted
  size_t markersLeft_ = 0;  // units of markers that may come: a document of items stays small
  std::u16string instruction_;
  std::u16string propertyName_;  // of a shape
  char16_t symbol_ = 0;          // that a field stands for, unless it has a result
  size_t symbolAt_ = 0;          // in `out_`
  std::u16string out_;
  size_t pictures_ = 0;                    // in `out_`
  size_t lineStart_ = 0;                   // in the plain text
  size_t cellEnd_ = 0, plainCellEnd_ = 0;  // behind the last cell's tab; in `out_`, the plain text
  std::unique_ptr<RTFFormatter> rich_;     // for attributed text alone
};

}  // namespace kelspar
