// The colour operations step by step, on ICU's expressions and with a copy for each step: slow and
// plain, for tests, fuzz targets and benchmarks to compare with.
#pragma once

#include <unicode/locid.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "platform/unicode/NSCharacterSet.h"

namespace kelspar::literal {

using Text = std::u16string;

inline icu::UnicodeString unicode(const Text& text) {
  return {text.data(), static_cast<int32_t>(text.size())};
}

// The groups of the first match, [0] the whole; empty when there is none or the pattern is broken.
inline std::vector<Text> firstMatch(const Text& pattern, const Text& text, uint32_t flags = 0) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString input = unicode(text);
  icu::RegexMatcher matcher(unicode(pattern), flags, status);
  std::vector<Text> groups;
  if (U_FAILURE(status)) return groups;
  matcher.reset(input);
  if (!matcher.find(status) || U_FAILURE(status)) return groups;
  for (int32_t i = 0; i <= matcher.groupCount(); ++i) {
    const icu::UnicodeString group = matcher.group(i, status);
    groups.emplace_back(group.getBuffer(), static_cast<size_t>(group.length()));
  }
  return groups;
}

inline Text group1(const Text& pattern, const Text& text) {
  const auto groups = firstMatch(pattern, text);
  return groups.size() > 1 ? groups[1] : Text();
}

inline Text trimmedText(const Text& text) {
  return Text(stringByTrimming(text, NSCharacterSet::whitespaceAndNewline()).view());
}

inline Text lowerCase(const Text& text) {
  icu::UnicodeString lower = unicode(text);
  lower.toLower(icu::Locale::getRoot());
  return {lower.getBuffer(), static_cast<size_t>(lower.length())};
}

inline void replaceAll(Text& text, const Text& target, const Text& replacement) {
  if (target.empty()) return;
  for (size_t at = 0; (at = text.find(target, at)) != Text::npos; at += replacement.size()) {
    text.replace(at, target.size(), replacement);
  }
}

inline std::vector<Text> split(const Text& text, char16_t separator) {
  std::vector<Text> parts(1);
  for (const char16_t unit : text) {
    if (unit == separator) {
      parts.emplace_back();
    } else {
      parts.back() += unit;
    }
  }
  return parts;
}

// Span colours

inline Text spanItem(const Text& line, const Text& item) {
  if (line.empty() || item.empty()) return {};
  const Text attributes = group1(u"<span([^>]*)>", line);
  if (attributes.empty()) return {};
  return trimmedText(group1(item + u"\\s*:\\s*([^;'\"\\s]+)", attributes));
}

struct Record {
  Text line;
  size_t number;
  Text colour;
};

inline std::vector<Record> lineRecords(const Text& text, const Text& tag, const Text& item) {
  std::vector<Record> records;
  if (tag.empty() || item.empty() || text.empty()) return records;
  const auto lines = split(text, u'\n');
  for (size_t i = 0; i < lines.size(); ++i) {
    const Text colour = spanItem(lines[i], item);
    if (colour.empty() || lines[i].find(tag) == Text::npos) continue;
    records.push_back({lines[i], i, colour});
  }
  return records;
}

// Colours

using RGB = std::array<int32_t, 3>;

inline std::optional<uint32_t> scanHexInt(const Text& text) {
  size_t at = 0;
  while (at < text.size() && NSCharacterSet::whitespaceAndNewline().contains(text[at])) ++at;
  if (text.substr(at, 2) == u"0x" || text.substr(at, 2) == u"0X") at += 2;
  uint32_t value = 0;
  const size_t start = at;
  for (; at < text.size() && text[at] < 0x80 && std::isxdigit(text[at]); ++at) {
    value = value * 16 + static_cast<uint32_t>(std::stoi(std::string(1, char(text[at])), {}, 16));
  }
  return at > start && at == text.size() ? std::optional(value) : std::nullopt;
}

inline std::optional<RGB> hexColour(const Text& receiver) {
  Text text = trimmedText(receiver);
  if (text.starts_with(u"#")) {
    text.erase(0, 1);
  } else if (text.starts_with(u"0x") || text.starts_with(u"0X")) {
    text.erase(0, 2);
  }
  if (text.size() == 3) text = {text[0], text[0], text[1], text[1], text[2], text[2]};
  if (text.size() != 6) return std::nullopt;
  const auto value = scanHexInt(text);
  if (!value) return std::nullopt;
  return RGB{int32_t(*value >> 16 & 255), int32_t(*value >> 8 & 255), int32_t(*value & 255)};
}

inline int32_t intValue(const Text& text) {
  int64_t value = 0;
  for (const char16_t unit : text) {
    if (unit < u'0' || unit > u'9') break;
    value = std::min<int64_t>(value * 10 + (unit - u'0'), INT32_MAX);
  }
  return static_cast<int32_t>(value);
}

inline std::optional<RGB> rgbColour(const Text& receiver) {
  const auto groups = firstMatch(u"rgb\\s*\\(\\s*(\\d+)\\s*,\\s*(\\d+)\\s*,\\s*(\\d+)\\s*\\)",
                                 lowerCase(trimmedText(receiver)), UREGEX_CASE_INSENSITIVE);
  if (groups.size() != 4) return std::nullopt;
  const RGB rgb{intValue(groups[1]), intValue(groups[2]), intValue(groups[3])};
  for (const int32_t part : rgb) {
    if (static_cast<uint32_t>(part) > 255) return std::nullopt;
  }
  return rgb;
}

inline std::optional<RGB> namedColour(const Text& receiver) {
  static const std::map<Text, Text> names = {
      {u"aqua", u"00FFFF"},    {u"black", u"000000"},      {u"blue", u"0000FF"},
      {u"cyan", u"00FFFF"},    {u"fuchsia", u"FF00FF"},    {u"gray", u"808080"},
      {u"green", u"008000"},   {u"grey", u"808080"},       {u"lime", u"00FF00"},
      {u"magenta", u"FF00FF"}, {u"maroon", u"800000"},     {u"navy", u"000080"},
      {u"olive", u"808000"},   {u"orange", u"FFA500"},     {u"purple", u"800080"},
      {u"red", u"FF0000"},     {u"silver", u"C0C0C0"},     {u"teal", u"008080"},
      {u"white", u"FFFFFF"},   {u"windowtext", u"000000"}, {u"yellow", u"FFFF00"}};
  const auto found = names.find(lowerCase(trimmedText(receiver)));
  return found == names.end() ? std::nullopt : hexColour(found->second);
}

inline Text rtfColour(const Text& receiver) {
  auto rgb = hexColour(receiver);
  if (!rgb) rgb = rgbColour(receiver);
  if (!rgb) rgb = namedColour(receiver);
  if (!rgb) rgb = RGB{0, 0, 0};
  return Text(
      NSString::stringWithFormat(u"\\red%d\\green%d\\blue%d"_ns, (*rgb)[0], (*rgb)[1], (*rgb)[2])
          .view());
}

// Groups

inline std::optional<Text> group(const Text& text, const Text& tag) {
  const Text opening = u"{\\" + tag;
  const size_t start = text.find(opening);
  if (start == Text::npos) return std::nullopt;
  size_t i = start + opening.size();
  if (i >= text.size()) return std::nullopt;
  int64_t depth = 1;
  for (; i < text.size() && depth != 0; ++i) {
    size_t backslashes = 0;
    while (backslashes < i && text[i - 1 - backslashes] == u'\\') ++backslashes;
    if (backslashes % 2 == 1) continue;
    if (text[i] == u'}') --depth;
    if (text[i] == u'{') ++depth;
  }
  if (depth != 0) return std::nullopt;
  return text.substr(start, i - start);
}

inline Text replacingGroup(Text text, const Text& tag, const Text& replacement) {
  if (const auto found = group(text, tag)) replaceAll(text, *found, replacement);
  return text;
}

// Tables

inline Text definitions(Text table) {
  replaceAll(table, u"{", u"");
  replaceAll(table, u"}", u"");
  replaceAll(table, u"\\colortbl", u"");
  return trimmedText(table);
}

struct Block {
  std::optional<Text> html;
  Text rtf;
};

inline std::vector<Block> blocks(const Text& text) {
  std::vector<Block> result;
  const auto table = group(text, u"colortbl");
  if (!table || definitions(*table).empty()) return result;
  for (const Text& part : split(definitions(*table), u';')) {
    const Text entry = trimmedText(part);
    if (!entry.empty() || result.empty()) result.push_back({std::nullopt, entry});
  }
  return result;
}

inline std::optional<size_t> indexOf(const std::vector<Block>& blocks, const Text& colour) {
  for (size_t i = 0; i < blocks.size(); ++i) {
    if (blocks[i].html == colour) return i;
  }
  return std::nullopt;
}

inline Text tableText(const std::vector<Block>& blocks) {
  if (blocks.empty()) return {};
  Text table = u"{\\colortbl";
  for (const Block& block : blocks) table += block.rtf + u";";
  return table + u"}";
}

inline Text colouredRTF(const Text& rtf) {
  auto table = blocks(rtf);
  const auto records = lineRecords(rtf, u"htmltag148", u"color");
  for (const Record& record : records) {
    const Text colour = spanItem(record.line, u"color");
    if (!indexOf(table, colour)) table.push_back({colour, rtfColour(colour)});
  }
  auto lines = split(rtf, u'\n');
  for (const Record& record : records) {
    const auto index = indexOf(table, spanItem(record.line, u"color"));
    const size_t shown = record.line.find(u"\\htmlrtf0");
    if (!index || shown == Text::npos) continue;
    const Text tail = record.line.substr(shown + 9);
    const NSString tag = NSString::stringWithFormat(u" \\cf%@ "_ns, NSNumber(uint64_t{*index}));
    replaceAll(lines[record.number], tail, Text(tag.view()) + tail);
  }
  Text joined;
  for (size_t i = 0; i < lines.size(); ++i) joined += (i == 0 ? u"" : u"\n") + lines[i];
  return replacingGroup(joined, u"colortbl", tableText(table));
}

inline NSData colouredRTF(const NSData& rtf) {
  const NSString text = RTFKelsparNSDataAdditions::rtfStringFromData(rtf);
  if (!text) return nil;
  return NSData(NSString(colouredRTF(Text(text.view()))).utf8());
}

}  // namespace kelspar::literal
