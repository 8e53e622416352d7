// From control words to runs of attributes.
#include "platform/richtext/rtf_formatter.h"

#include <algorithm>
#include <utility>

#include "platform/richtext/rtf_fields.h"
#include "platform/richtext/text_runs.h"

namespace kelspar {

namespace {

constexpr double kTwips = 20, kHalfPoints = 2;
constexpr size_t kLongestName = 256;  // of a style
constexpr int32_t kFarthest = 31680;  // 22 inches in twips: the format's own bound

double twips(int32_t value) { return std::clamp(value, -kFarthest, kFarthest) / kTwips; }

// "heading 1" to "heading 6", as style names go.
int8_t headingNamed(std::u16string_view name) {
  constexpr std::u16string_view kHeading = u"heading ";
  if (name.size() < kHeading.size() + 1) return 0;
  for (size_t i = 0; i < kHeading.size(); ++i) {
    if ((name[i] | 0x20) != kHeading[i]) return 0;
  }
  const char16_t digit = name[kHeading.size()];
  const bool ends = name.size() == kHeading.size() + 1 || name[kHeading.size() + 1] == u',';
  return ends && digit >= u'1' && digit <= u'6' ? static_cast<int8_t>(digit - u'0') : 0;
}

}  // namespace

RTFFormatter::State& RTFFormatter::changeState() {
  if (groups_.isUntouched()) {
    (void)numberOfLook();
    State& saved = groups_.held();
    if (saved.paragraph == kUnnumbered) saved.paragraph = paragraphs_.of(paragraph_);
  }
  return groups_.change();
}

RTFLook& RTFFormatter::changeLook() {
  changeState().look = kUnnumbered;
  return look_;
}

RTFParagraph& RTFFormatter::changeParagraph() {
  changeState().paragraph = kUnnumbered;
  return paragraph_;
}

uint32_t RTFFormatter::numberOfLook() {
  uint32_t& number = groups_.held().look;
  if (number == kUnnumbered) number = looks_.of(look_);
  return number;
}

void RTFFormatter::nestedTableProperties() { changeState().nestedProperties = true; }

void RTFFormatter::close() {
  settle();
  const bool restores = !groups_.isUntouched();
  if (!groups_.close() || !restores) return;
  const State& state = groups_.state();
  if (state.look != kUnnumbered) look_ = looks_[state.look];
  if (state.paragraph != kUnnumbered) paragraph_ = paragraphs_[state.paragraph];
}

void RTFFormatter::word(int32_t word, int32_t parameter, bool isOn, RTFDestination destination) {
  if (destination == RTFDestination::picture && picture_.word(word, parameter)) return;
  if (destination == RTFDestination::colorTable && colorWord(word, parameter)) return;
  if (destination == RTFDestination::numbering) {
    (void)lists_.word(word, parameter, destination);
    return;
  }
  if (destination == RTFDestination::styleSheet && (word == kStyle || word == kCharacterStyle)) {
    nextStyle_ = parameter;
    return;
  }
  if (characterWord(word, parameter, isOn) || paragraphWord(word, parameter, isOn)) return;
  const bool isColor = word == kCellBackground || word == kBorderColor;
  (void)tables_.word(word, parameter, groups_.state().nestedProperties ? tableDepth() : 1,
                     isColor ? color(parameter) : std::nullopt);
}

bool RTFFormatter::characterWord(int32_t word, int32_t parameter, bool isOn) {
  if (word > kDirection) return false;
  RTFLook look = look_;
  (void)look.apply(word, parameter, isOn);
  if (look == look_) return true;  // nothing to save
  settle();
  changeLook() = look;
  return true;
}

bool RTFFormatter::paragraphWord(int32_t word, int32_t parameter, bool isOn) {
  if (word > kListLevelOfParagraph) return false;
  switch (word) {
    case kParagraphDefault:
      changeParagraph() = {};
      numbering_ = {};
      nextTab_ = {};
      if (look_.style < 0) break;
      settle();
      changeLook().style = -1;
      changeLook().stated = 0;
      break;
    case kTabStop:
      tabStop(parameter);
      break;
    case kTabRight:
      nextTab_.alignment = NSTextAlignment::right;
      break;
    case kTabCenter:
      nextTab_.alignment = NSTextAlignment::center;
      break;
    case kTabDecimal:
      nextTab_.decimal = true;
      break;
    case kStyle:
    case kCharacterStyle:
      useStyle(word, parameter);
      break;
    default:
      (void)changeParagraph().apply(word, parameter, isOn);
      break;
  }
  return true;
}

void RTFFormatter::tabStop(int32_t location) {
  RTFParagraph& paragraph = changeParagraph();
  tabs_.push_back({location, paragraph.tabs, nextTab_.alignment, nextTab_.decimal});
  paragraph.tabs = static_cast<int32_t>(tabs_.size()) - 1;
  nextTab_ = {};
}

bool RTFFormatter::colorWord(int32_t word, int32_t parameter) {
  if (word != kRed && word != kGreen && word != kBlue) return false;
  const auto level = static_cast<uint8_t>(std::clamp(parameter, 0, 255));
  (word == kRed ? nextColor_.red : word == kGreen ? nextColor_.green : nextColor_.blue) = level;
  hasColor_ = true;
  return true;
}

void RTFFormatter::colorEnds() {
  colors_.push_back(hasColor_ ? std::optional(nextColor_) : std::nullopt);
  nextColor_ = {};
  hasColor_ = false;
}

std::optional<NSColor> RTFFormatter::color(int32_t number) const {
  if (number < 0 || static_cast<size_t>(number) >= colors_.size()) return {};
  return colors_[static_cast<size_t>(number)];
}

void RTFFormatter::enters(RTFDestination destination) {
  if (destination == RTFDestination::picture) picture_ = {};
  if (destination == RTFDestination::numbering) lists_.numberingBegins();
}

void RTFFormatter::leaves(RTFDestination destination) {
  if (destination != RTFDestination::numbering) return;
  const NSTextList list = lists_.numbering(lastNumbering_);
  if (list.identity == 0) return;
  lastNumbering_ = list.identity;
  numbering_ = list;
}

void RTFFormatter::instruction(std::u16string_view text) {
  const std::u16string target = targetOfHyperlink(text);
  pendingLink_ = 0;
  if (target.empty()) return;
  uint32_t& number = numberOfLink_[target];
  if (number == 0) {
    links_.emplace_back(target);
    number = static_cast<uint32_t>(links_.size());
  }
  pendingLink_ = number;
}

void RTFFormatter::fieldResult() {
  if (pendingLink_ == 0) return;
  settle();
  changeLook().link = std::exchange(pendingLink_, 0);
}

// A style is described by the words before its name; style 0 needs no number.
void RTFFormatter::styleText(std::u16string_view name) {
  while (true) {
    const size_t end = name.find(u';');
    styleName_.append(name.substr(0, std::min(end, kLongestName - styleName_.size())));
    if (end == name.npos) break;
    defineStyle(std::exchange(styleName_, {}));
    nextStyle_ = 0;
    name.remove_prefix(end + 1);
  }
}

void RTFFormatter::defineStyle(std::u16string_view name) {
  Style style;
  style.heading = headingNamed(name);
  if (style.heading == 0 && paragraph_.outline >= 0 && paragraph_.outline < 6) {
    style.heading = static_cast<int8_t>(paragraph_.outline + 1);
  }
  style.look = looks_.of(look_);
  style.paragraph = paragraphs_.of(paragraph_);
  sheet_.try_emplace(nextStyle_, style);
}

const RTFFormatter::Style* RTFFormatter::styleNumbered(int32_t number) const {
  const auto found = sheet_.find(number);
  return found == sheet_.end() ? nullptr : &found->second;
}

// What a style says is said again by writers that follow the format, but not by all.
void RTFFormatter::useStyle(int32_t word, int32_t number) {
  const Style* style = styleNumbered(number);
  if (word == kStyle) changeParagraph().style = number;
  if (!style) return;
  settle();
  if (word == kCharacterStyle) {
    RTFLook& look = changeLook();
    look = look.over(looks_[style->look]);
    return;
  }
  RTFParagraph& paragraph = changeParagraph();
  paragraph = paragraph.over(paragraphs_[style->paragraph]);
  RTFLook& look = changeLook();
  look.style = style->look == 0 ? -1 : number;
  look.stated = 0;
}

int32_t RTFFormatter::tableDepth() const {
  const RTFParagraph& paragraph = paragraph_;
  return std::max(paragraph.tableDepth, paragraph.inTable ? 1 : 0);
}

void RTFFormatter::settle() {
  if (text_.size() == settled_) return;
  const uint32_t look = numberOfLook();
  settled_ = text_.size();
  if (!spans_.empty() && spans_.back().look == look && !spans_.back().attachment) {
    spans_.back().end = settled_;
  } else {
    spans_.push_back({settled_, look, nullptr});
  }
}

std::shared_ptr<const NSTextAttachment> RTFFormatter::takePicture() {
  return std::exchange(picture_, {}).attachment();
}

void RTFFormatter::attach(std::shared_ptr<const NSTextAttachment> attachment) {
  settled_ = text_.size();
  spans_.push_back({settled_, numberOfLook(), std::move(attachment)});
}

void RTFFormatter::paragraphEnds() {
  const int32_t depth = tableDepth();
  endParagraph(depth == 0 && tables_.isInRow() ? 1 : depth);
}

void RTFFormatter::cellEnds(bool nested) {
  const int32_t depth = nested ? std::max(2, tableDepth()) : 1;
  endParagraph(depth);
  tables_.cellEnds(depth);
}

void RTFFormatter::rowEnds(bool nested) {
  const int32_t depth = nested ? std::max(2, tableDepth()) : 1;
  if (text_.size() > paragraphStart_) endParagraph(depth);
  tables_.rowEnds(depth);
}

void RTFFormatter::endParagraph(int32_t depth) {
  settle();
  RTFParagraph paragraph = paragraph_;
  paragraph.numbering = 0;
  if (numbering_.identity != 0) {
    if (numberings_.empty() || !(numberings_.back() == numbering_)) {
      numberings_.push_back(numbering_);
    }
    paragraph.numbering = static_cast<uint32_t>(numberings_.size());
  }
  if (depth == 0) {
    takeBodyRuns(paragraph);
  } else {
    takeCellRuns(paragraph, depth);
  }
  spans_.clear();
  paragraphStart_ = text_.size();
}

// Paragraphs and runs that look alike share what says so.
void RTFFormatter::takeBodyRuns(const RTFParagraph& paragraph) {
  tables_.closeBelow(0);
  const auto [found, isNew] =
      numberOfStyle_.try_emplace(paragraph, static_cast<uint32_t>(styles_.size()));
  if (isNew) styles_.push_back(makeStyle(paragraph));
  const uint32_t style = found->second;
  size_t start = paragraphStart_;
  for (Span& span : spans_) {
    auto& attributes = attributes_[uint64_t{style} << 32 | span.look];
    if (!attributes) {
      auto made = std::make_shared<NSTextAttributes>(attributesOf(looks_[span.look]));
      made->paragraph = styles_[style];
      attributes = std::move(made);
    }
    auto used = attributes;
    if (span.attachment) {
      auto attached = std::make_shared<NSTextAttributes>(*attributes);
      attached->attachment = std::move(span.attachment);
      used = std::move(attached);
    }
    if (!runs_.empty() && runs_.back().attributes == used) {
      runs_.back().length += span.end - start;
    } else {
      runs_.push_back({span.end - start, std::move(used)});
    }
    start = span.end;
  }
}

// A cell's style is its own: it is filled in when the row is known.
void RTFFormatter::takeCellRuns(const RTFParagraph& paragraph, int32_t depth) {
  const std::shared_ptr<NSParagraphStyle> style = makeStyle(paragraph);
  tables_.paragraph(style, depth);
  size_t start = paragraphStart_;
  for (Span& span : spans_) {
    auto attributes = std::make_shared<NSTextAttributes>(attributesOf(looks_[span.look]));
    attributes->paragraph = style;
    attributes->attachment = std::move(span.attachment);
    runs_.push_back({span.end - start, std::move(attributes)});
    start = span.end;
  }
}

std::shared_ptr<NSParagraphStyle> RTFFormatter::makeStyle(const RTFParagraph& paragraph) const {
  auto style = std::make_shared<NSParagraphStyle>();
  style->alignment = paragraph.alignment;
  style->rightToLeft = paragraph.rightToLeft;
  style->headIndent = twips(paragraph.left);
  style->firstLineIndent = twips(paragraph.left) + twips(paragraph.first);
  style->tailIndent = twips(paragraph.right);
  style->spacingBefore = std::max(0.0, twips(paragraph.before));
  style->spacingAfter = std::max(0.0, twips(paragraph.after));
  // \sl: 240ths of a line when it is a multiple, at least so much when positive, else exactly.
  if (paragraph.line != 0 && paragraph.isMultiple) {
    style->lineHeightMultiple = std::clamp(paragraph.line, 24, 24000) / 240.0;
  } else if (paragraph.line != 0) {
    style->minimumLineHeight = std::abs(twips(paragraph.line));
    if (paragraph.line < 0) style->maximumLineHeight = style->minimumLineHeight;
  }
  if (paragraph.outline >= 0 && paragraph.outline < 6) {
    style->headingLevel = static_cast<int8_t>(paragraph.outline + 1);
  } else if (const Style* named = styleNumbered(paragraph.style); named && paragraph.outline < 0) {
    style->headingLevel = named->heading;
  }
  constexpr size_t kTabStops = 64;
  for (int32_t tab = paragraph.tabs; tab >= 0 && style->tabStops.size() < kTabStops;
       tab = tabs_[static_cast<size_t>(tab)].previous) {
    const Tab& stop = tabs_[static_cast<size_t>(tab)];
    style->tabStops.push_back({twips(stop.location), stop.alignment, stop.decimal});
  }
  std::ranges::reverse(style->tabStops);
  style->lists = lists_.listsOf(paragraph.list, paragraph.listLevel);
  if (paragraph.numbering > 0) style->lists = {numberings_[paragraph.numbering - 1]};
  return style;
}

NSTextAttributes RTFFormatter::attributesOf(const RTFLook& stated) const {
  const Style* style = styleNumbered(stated.style);
  const RTFLook look = style ? stated.over(looks_[style->look]) : stated;
  NSTextAttributes attributes;
  const int32_t font =
      look.rightToLeft && look.associatedFont >= 0 ? look.associatedFont : look.font;
  attributes.font.family = fonts_.nameOf(font < 0 ? defaultFont_ : font);
  attributes.font.size = (look.rightToLeft ? look.associatedSize : look.size) / kHalfPoints;
  attributes.font.bold = look.rightToLeft ? look.associatedBold : look.bold;
  attributes.font.italic = look.rightToLeft ? look.associatedItalic : look.italic;
  attributes.foreground = color(look.foreground);
  if (look.background != 0) attributes.background = color(look.background);
  attributes.underline = look.underline;
  attributes.strikethrough = look.strike;
  attributes.superscript = look.script;
  attributes.baselineOffset = look.raised / kHalfPoints;
  if (look.link) attributes.link = links_[look.link - 1];
  return attributes;
}

void RTFFormatter::endText() {
  if (text_.size() > paragraphStart_) paragraphEnds();
}

std::vector<NSTextRun> RTFFormatter::finish() {
  endText();
  tables_.closeBelow(0);
  return std::move(runs_);
}

}  // namespace kelspar
