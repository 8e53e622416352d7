// Character and paragraph properties (RTF 1.9.1, "Font (Character) Formatting Properties",
// "Paragraph Formatting Properties").
#include "platform/richtext/rtf_looks.h"

#include <algorithm>

#include "platform/richtext/rtf_tables.h"

namespace kelspar {

namespace {

constexpr int32_t kLargest = 3276, kUsualRaise = 6;  // half points

size_t mix(size_t hash, uint64_t value) {
  hash = (hash ^ value) * 0x9E3779B97F4A7C15u;
  return hash ^ hash >> 29;
}

uint64_t pack(int32_t a, int32_t b) {
  return uint64_t{static_cast<uint32_t>(a)} << 32 | static_cast<uint32_t>(b);
}

template <class... Words>
constexpr uint32_t bits(Words... words) {
  static_assert(kDirection < 32);
  return ((1u << words) | ...);
}

}  // namespace

size_t hash(const RTFLook& look) {
  size_t hash = mix(0, pack(look.font, look.associatedFont));
  hash = mix(hash, pack(look.foreground, look.background));
  hash = mix(hash, pack(static_cast<int32_t>(look.link), look.size << 16 | (look.raised & 0xFFFF)));
  hash = mix(hash, pack(look.style, static_cast<int32_t>(look.stated)));
  return mix(hash, uint64_t{look.bold} | uint64_t{look.italic} << 1 |
                       uint64_t{look.underline} << 2 | uint64_t{look.strike} << 3 |
                       uint64_t{look.rightToLeft} << 4 |
                       static_cast<uint64_t>(look.script + 1) << 5);
}

size_t hash(const RTFParagraph& paragraph) {
  size_t hash = mix(0, pack(paragraph.left, paragraph.right));
  hash = mix(hash, pack(paragraph.first, paragraph.before));
  hash = mix(hash, pack(paragraph.after, paragraph.line));
  hash = mix(hash, pack(paragraph.tabs, paragraph.list));
  hash = mix(hash, pack(paragraph.listLevel, paragraph.style));
  return mix(hash, pack(static_cast<int32_t>(paragraph.numbering),
                        static_cast<int32_t>(paragraph.alignment) << 8 | paragraph.outline));
}

bool* RTFLook::flagOf(int32_t word) {
  switch (word) {
    case kBold:
      return &bold;
    case kItalic:
      return &italic;
    case kUnderline:
      return &underline;
    case kStrike:
      return &strike;
    case kAssociatedBold:
      return &associatedBold;
    case kAssociatedItalic:
      return &associatedItalic;
    case kDirection:
      return &rightToLeft;
    default:
      return nullptr;
  }
}

bool RTFLook::apply(int32_t word, int32_t parameter, bool isOn) {
  if (word > kDirection) return false;
  if (style >= 0) stated |= 1u << word;
  if (bool* const flag = flagOf(word)) {
    *flag = isOn;
    return true;
  }
  const auto points = static_cast<int16_t>(parameter > 0 ? std::min(parameter, kLargest) : 24);
  const bool isStated = parameter != 0 || !isOn;
  const auto raise =
      static_cast<int16_t>(isStated ? std::clamp(parameter, -kLargest, kLargest) : kUsualRaise);
  switch (word) {
    case kPlain: {
      const uint32_t kept = link;
      *this = {};
      link = kept;
      break;
    }
    case kNoUnderline:
      underline = false;
      break;
    case kSuperscript:
      script = isOn ? 1 : 0;
      break;
    case kSubscript:
      script = isOn ? -1 : 0;
      break;
    case kNoScript:
      script = 0;
      break;
    case kRaise:
      raised = raise;
      break;
    case kLower:
      raised = static_cast<int16_t>(-raise);
      break;
    case kSize:
      size = points;
      break;
    case kForeground:
      foreground = parameter;
      break;
    case kBackground:
    case kHighlight:
      background = parameter;
      break;
    case kAssociatedSize:
      associatedSize = points;
      break;
    case kFont:
      font = parameter;
      break;
    case kAssociatedFont:
      associatedFont = parameter;
      break;
    default:
      break;
  }
  return true;
}

RTFLook RTFLook::over(const RTFLook& base) const {
  constexpr RTFLook kDefault;
  RTFLook look = *this;
  const auto take = [&](auto RTFLook::*field, uint32_t words) {
    if ((stated & words) == 0 && this->*field == kDefault.*field) look.*field = base.*field;
  };
  take(&RTFLook::font, bits(kFont));
  take(&RTFLook::associatedFont, bits(kAssociatedFont));
  take(&RTFLook::foreground, bits(kForeground));
  take(&RTFLook::background, bits(kBackground, kHighlight));
  take(&RTFLook::size, bits(kSize));
  take(&RTFLook::associatedSize, bits(kAssociatedSize));
  take(&RTFLook::raised, bits(kRaise, kLower));
  take(&RTFLook::script, bits(kSuperscript, kSubscript, kNoScript));
  take(&RTFLook::bold, bits(kBold));
  take(&RTFLook::italic, bits(kItalic));
  take(&RTFLook::associatedBold, bits(kAssociatedBold));
  take(&RTFLook::associatedItalic, bits(kAssociatedItalic));
  take(&RTFLook::underline, bits(kUnderline, kNoUnderline));
  take(&RTFLook::strike, bits(kStrike));
  return look;
}

bool RTFParagraph::apply(int32_t word, int32_t parameter, bool isOn) {
  switch (word) {
    case kAlignLeft:
      alignment = NSTextAlignment::left;
      return true;
    case kAlignRight:
      alignment = NSTextAlignment::right;
      return true;
    case kAlignCenter:
      alignment = NSTextAlignment::center;
      return true;
    case kAlignJustified:
      alignment = NSTextAlignment::justified;
      return true;
    case kLeftIndent:
      left = parameter;
      return true;
    case kRightIndent:
      right = parameter;
      return true;
    case kFirstIndent:
      first = parameter;
      return true;
    case kSpaceBefore:
      before = parameter;
      return true;
    case kSpaceAfter:
      after = parameter;
      return true;
    case kLineSpacing:
      line = parameter;
      return true;
    case kLineSpacingMultiple:
      isMultiple = isOn;
      return true;
    case kRightToLeftParagraph:
      rightToLeft = true;
      return true;
    case kLeftToRightParagraph:
      rightToLeft = false;
      return true;
    case kOutlineLevel:
      outline = static_cast<int8_t>(std::clamp(parameter, 0, 9));
      return true;
    case kInTable:
      inTable = isOn;
      return true;
    case kTableLevel:
      tableDepth = std::clamp(parameter, 0, RTFTables::kDeepest);
      return true;
    case kListOverride:
      list = parameter;
      return true;
    case kListLevelOfParagraph:
      listLevel = parameter;
      return true;
    default:
      return false;
  }
}

RTFParagraph RTFParagraph::over(const RTFParagraph& base) const {
  constexpr RTFParagraph kDefault;
  RTFParagraph paragraph = *this;
  const auto take = [&](auto RTFParagraph::*field) {
    if (this->*field == kDefault.*field) paragraph.*field = base.*field;
  };
  take(&RTFParagraph::left);
  take(&RTFParagraph::right);
  take(&RTFParagraph::first);
  take(&RTFParagraph::before);
  take(&RTFParagraph::after);
  take(&RTFParagraph::line);
  take(&RTFParagraph::isMultiple);
  take(&RTFParagraph::tabs);
  take(&RTFParagraph::alignment);
  take(&RTFParagraph::rightToLeft);
  return paragraph;
}

}  // namespace kelspar
