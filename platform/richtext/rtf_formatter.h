// How the characters of an RTF document look: the reader's second half, there only when attributed
// text is asked for. The reader appends characters to a text; the formatter watches its end and
// keeps the runs. Internal.
#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/richtext/NSAttributedString.h"
#include "platform/richtext/rtf_fonts.h"
#include "platform/richtext/rtf_groups.h"
#include "platform/richtext/rtf_lists.h"
#include "platform/richtext/rtf_looks.h"
#include "platform/richtext/rtf_picture.h"
#include "platform/richtext/rtf_tables.h"

namespace kelspar {

class RTFFormatter {
 public:
  RTFFormatter(const std::u16string* text, const RTFFontTable* fonts, RTFLists* lists)
      : text_(*text), fonts_(*fonts), lists_(*lists) {}

  void open() { groups_.open(); }
  void close();

  void word(int32_t word, int32_t parameter, bool isOn, RTFDestination destination);
  void setDefaultFont(int32_t font) { defaultFont_ = font; }

  // A group of this kind begins, ends; text stands in it.
  void enters(RTFDestination destination);
  void leaves(RTFDestination destination);
  void colorEnds();
  void styleText(std::u16string_view name);  // up to the semicolon
  // A field's instruction, and its result.
  void instruction(std::u16string_view text);
  void fieldResult();
  RTFPicture& picture() { return picture_; }
  void nestedTableProperties();

  // The text's last unit ends a paragraph, a cell, a row.
  void paragraphEnds();
  void cellEnds(bool nested);
  void rowEnds(bool nested);

  // The document ends here, in a paragraph perhaps.
  void endText();

  // The picture that the group described, or null. The reader appends U+FFFC and calls `attach`.
  [[nodiscard]] std::shared_ptr<const NSTextAttachment> takePicture();
  void attach(std::shared_ptr<const NSTextAttachment> attachment);

  // The runs of the whole text.
  [[nodiscard]] std::vector<NSTextRun> finish();

 private:
  // What groups save and restore: numbers, so that a change in each of a million nested groups is a
  // few bytes each.
  struct State {
    uint32_t look = 0, paragraph = 0;  // kUnnumbered: as look_, paragraph_ stand
    bool nestedProperties = false;
  };
  static constexpr uint32_t kUnnumbered = UINT32_MAX;
  struct Tab {
    int32_t location;
    int32_t previous;
    NSTextAlignment alignment;
    bool decimal;
  };
  struct Span {
    size_t end;
    uint32_t look;
    std::shared_ptr<const NSTextAttachment> attachment;
  };
  // A style: its look and its paragraph, numbered, and the heading that it stands for.
  struct Style {
    uint32_t look = 0, paragraph = 0;
    int8_t heading = 0;
  };
  template <class Format>
  struct Hash {
    size_t operator()(const Format& format) const { return kelspar::hash(format); }
  };
  bool characterWord(int32_t word, int32_t parameter, bool isOn);
  bool paragraphWord(int32_t word, int32_t parameter, bool isOn);
  void tabStop(int32_t location);
  void defineStyle(std::u16string_view name);
  void useStyle(int32_t word, int32_t number);
  bool colorWord(int32_t word, int32_t parameter);
  [[nodiscard]] int32_t tableDepth() const;

  [[nodiscard]] const Style* styleNumbered(int32_t number) const;
  [[nodiscard]] RTFLook& changeLook();
  [[nodiscard]] RTFParagraph& changeParagraph();
  [[nodiscard]] State& changeState();

  // Notes the look of what has been appended since the last time.
  void settle();
  uint32_t numberOfLook();
  void endParagraph(int32_t depth);
  void takeBodyRuns(const RTFParagraph& paragraph);
  void takeCellRuns(const RTFParagraph& paragraph, int32_t depth);
  [[nodiscard]] std::shared_ptr<NSParagraphStyle> makeStyle(const RTFParagraph& paragraph) const;
  [[nodiscard]] NSTextAttributes attributesOf(const RTFLook& look) const;
  [[nodiscard]] std::optional<NSColor> color(int32_t number) const;

  const std::u16string& text_;
  const RTFFontTable& fonts_;
  RTFLists& lists_;
  RTFGroups<State> groups_;
  RTFLook look_;
  RTFParagraph paragraph_;
  int32_t defaultFont_ = 0;

  std::vector<std::optional<NSColor>> colors_;
  NSColor nextColor_;
  bool hasColor_ = false;
  std::unordered_map<int32_t, Style> sheet_;  // by number
  int32_t nextStyle_ = 0;                     // the one that the style sheet describes
  std::u16string styleName_;
  NSTextList numbering_;  // of \pn, until \pard
  uint32_t lastNumbering_ = 0;
  std::vector<NSTextList> numberings_;
  std::vector<Tab> tabs_;
  NSTextTab nextTab_;
  std::vector<NSString> links_;  // numbered from 1
  std::unordered_map<std::u16string, uint32_t> numberOfLink_;
  uint32_t pendingLink_ = 0;
  RTFPicture picture_;
  RTFTables tables_;

  // Every format that was numbered, and its number; the plain ones are number 0.
  template <class Format>
  class Numbers {
   public:
    uint32_t of(const Format& format) {
      if (formats_[latest_] == format) return latest_;
      std::swap(latest_, before_);  // two looks take turns, often
      if (formats_[latest_] == format) return latest_;
      const auto next = static_cast<uint32_t>(formats_.size());
      const auto [found, isNew] = numbers_.try_emplace(format, next);
      if (isNew) formats_.push_back(format);
      return latest_ = found->second;
    }
    [[nodiscard]] const Format& operator[](uint32_t number) const { return formats_[number]; }

   private:
    std::vector<Format> formats_{Format{}};
    std::unordered_map<Format, uint32_t, Hash<Format>> numbers_{{Format{}, 0}};
    uint32_t latest_ = 0, before_ = 0;
  };
  Numbers<RTFLook> looks_;
  Numbers<RTFParagraph> paragraphs_;
  std::vector<Span> spans_;  // of the paragraph at hand
  size_t settled_ = 0;       // units whose look is noted
  size_t paragraphStart_ = 0;
  std::unordered_map<RTFParagraph, uint32_t, Hash<RTFParagraph>> numberOfStyle_;
  std::vector<std::shared_ptr<const NSParagraphStyle>> styles_;
  std::unordered_map<uint64_t, std::shared_ptr<const NSTextAttributes>> attributes_;
  std::vector<NSTextRun> runs_;
};

}  // namespace kelspar
