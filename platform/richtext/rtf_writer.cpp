// The RTF writer: each run is a group of its own, each paragraph states all of its properties.
#include "platform/richtext/rtf_writer.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include "platform/richtext/picture_budget.h"
#include "platform/richtext/rtf_escape.h"

namespace kelspar {

namespace {

constexpr double kTwips = 20, kHalfPoints = 2;

int scaled(double points, double factor) {
  constexpr double kMost = 31680;  // 22 inches in twips: the format's own bound
  return static_cast<int>(std::lround(std::clamp(points * factor, -kMost, kMost)));
}

void word(const char* name, int value, std::string* rtf) {
  *rtf += '\\';
  *rtf += name;
  *rtf += std::to_string(value);
}

void wordUnlessZero(const char* name, double points, std::string* rtf) {
  if (const int value = scaled(points, kTwips)) word(name, value, rtf);
}

class Writer {
 public:
  explicit Writer(const NSAttributedString& text) : text_(text) {}

  std::string document() {
    std::string body;
    size_t at = 0;
    const NSParagraphStyle* style = nullptr;
    for (const NSTextRun& run : text_.runs()) {
      const auto& attributes = *run.attributes;
      const NSParagraphStyle& own = attributes.paragraph ? *attributes.paragraph : plain_;
      if (style != &own) paragraph(own, &body);
      style = &own;
      this->run(text_.string().view().substr(at, run.length), attributes, &body);
      at += run.length;
    }
    // A default font that is none: text without a family names none.
    const std::string head =
        "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff" + std::to_string(fonts_.size());
    return head + fontTable() + colorTable() + "\n" + body + "}";
  }

 private:
  int number(const NSFont& font) {
    const std::u16string name(font.family.view());
    return fonts_.try_emplace(name, static_cast<int>(fonts_.size())).first->second;
  }

  // From 1; 0 is the reader's own colour.
  int number(const NSColor& color) {
    const int key = color.red << 16 | color.green << 8 | color.blue;
    return colors_.try_emplace(key, static_cast<int>(colors_.size()) + 1).first->second;
  }

  [[nodiscard]] std::string fontTable() const {
    std::string table = "{\\fonttbl";
    for (const auto& [name, number] : fonts_) {
      table += "{\\f" + std::to_string(number) + "\\fnil ";
      rtf::appendText(name, &table);
      table += ";}";
    }
    return table + "}";
  }

  [[nodiscard]] std::string colorTable() const {
    std::map<int, int> keys;
    for (const auto& [key, number] : colors_) keys[number] = key;
    std::string table = "{\\colortbl;";
    for (const auto& [number, key] : keys) {
      word("red", key >> 16, &table);
      word("green", key >> 8 & 255, &table);
      word("blue", key & 255, &table);
      table += ';';
    }
    return table + "}";
  }

  static void paragraph(const NSParagraphStyle& style, std::string* rtf) {
    constexpr const char* kAlignments[] = {"", "\\ql", "\\qc", "\\qr", "\\qj"};
    *rtf += "\\pard";
    *rtf += kAlignments[static_cast<size_t>(style.alignment)];
    if (style.rightToLeft) *rtf += "\\rtlpar";
    wordUnlessZero("li", style.headIndent, rtf);
    wordUnlessZero("fi", style.firstLineIndent - style.headIndent, rtf);
    wordUnlessZero("ri", style.tailIndent, rtf);
    wordUnlessZero("sb", style.spacingBefore, rtf);
    wordUnlessZero("sa", style.spacingAfter, rtf);
    if (style.lineHeightMultiple > 0) {
      word("sl", scaled(style.lineHeightMultiple, 240), rtf);
      *rtf += "\\slmult1";
    } else if (style.maximumLineHeight > 0) {
      word("sl", -scaled(style.maximumLineHeight, kTwips), rtf);
    } else {
      wordUnlessZero("sl", style.minimumLineHeight, rtf);
    }
    if (style.headingLevel > 0) word("outlinelevel", style.headingLevel - 1, rtf);
    for (const NSTextTab& tab : style.tabStops) {
      if (tab.decimal) *rtf += "\\tqdec";
      if (tab.alignment == NSTextAlignment::right) *rtf += "\\tqr";
      if (tab.alignment == NSTextAlignment::center) *rtf += "\\tqc";
      word("tx", scaled(tab.location, kTwips), rtf);
    }
    *rtf += '\n';
  }

  void look(const NSTextAttributes& attributes, std::string* rtf) {
    const NSFont& font = attributes.font;
    if (font.family) word("f", number(font), rtf);
    word("fs", std::max(1, scaled(font.size, kHalfPoints)), rtf);
    if (font.bold) *rtf += "\\b";
    if (font.italic) *rtf += "\\i";
    if (attributes.underline) *rtf += "\\ul";
    if (attributes.strikethrough) *rtf += "\\strike";
    if (attributes.superscript > 0) *rtf += "\\super";
    if (attributes.superscript < 0) *rtf += "\\sub";
    const int raised = scaled(attributes.baselineOffset, kHalfPoints);
    if (raised != 0) word(raised > 0 ? "up" : "dn", std::abs(raised), rtf);
    if (attributes.foreground) word("cf", number(*attributes.foreground), rtf);
    if (attributes.background) {
      word("chshdng0\\chcbpat", number(*attributes.background), rtf);
      word("cb", number(*attributes.background), rtf);
    }
  }

  void run(std::u16string_view units, const NSTextAttributes& attributes, std::string* rtf) {
    const bool isLink = attributes.link && attributes.link.length() > 0;
    if (isLink) {
      *rtf += "{\\field{\\*\\fldinst HYPERLINK \"";
      rtf::appendText(escapedLink(attributes.link), rtf);
      *rtf += "\"}{\\fldrslt ";
    }
    *rtf += '{';
    look(attributes, rtf);
    *rtf += ' ';
    if (attributes.attachment) {
      for (size_t i = 0; i < units.size(); ++i) picture(*attributes.attachment, rtf);
    } else {
      rtf::appendText(units, rtf);
    }
    *rtf += isLink ? "}}}" : "}";
  }

  void picture(const NSTextAttachment& image, std::string* rtf) {
    if (pictures_.takes(image.contents)) {
      rtf::appendPicture(image.contents.chars(),
                         {scaled(image.width, kTwips), scaled(image.height, kTwips)}, rtf);
    } else {
      rtf::appendText(image.alternative.length() > 0 ? image.alternative.view() : image.name.view(),
                      rtf);
    }
  }

  // A field's argument: backslashes are doubled, quotation marks have an escape of URLs.
  static std::u16string escapedLink(const NSString& link) {
    std::u16string escaped;
    for (const char16_t c : link.view()) {
      if (c == u'"')
        escaped += u"%22";
      else
        escaped.append(c == u'\\' ? 2 : 1, c);
    }
    return escaped;
  }

  const NSAttributedString text_;
  const NSParagraphStyle plain_;
  std::map<std::u16string, int> fonts_;
  std::map<int, int> colors_;
  PictureBudget pictures_;
};

}  // namespace

NSData rtfFromAttributedString(const NSAttributedString& text) {
  return text ? NSData(Writer(text).document()) : nil;
}

}  // namespace kelspar
