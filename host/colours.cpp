// The colours of a body as a table on the screen, one a line, with swatches on a terminal.
#include "host/colours.h"

#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSArrayAdditions.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "host/convert.h"
#include "host/files.h"
#include "host/terminal_text_field.h"

namespace kelspar::host {

namespace {

namespace RTF = RTFKelsparNSStringAdditions;

using Lines = std::map<std::string, std::vector<uint64_t>>;

// The number behind `word` in a definition such as "\red255\green0\blue0"; 0 without one, and for
// one that is beyond all bounds.
int component(const std::string& definition, const char* word) {
  const size_t at = definition.find(word);
  if (at == definition.npos) return 0;
  int value = 0;
  std::from_chars(definition.data() + at + std::char_traits<char>::length(word),
                  definition.data() + definition.size(), value);
  return value & 0xFF;
}

std::string shown(const std::string& definition, bool hasSwatches) {
  if (definition.empty()) return hasSwatches ? "     automatic" : "automatic";
  const std::array rgb{component(definition, "\\red"), component(definition, "\\green"),
                       component(definition, "\\blue")};
  char text[64];
  if (hasSwatches) {
    std::snprintf(text, sizeof text, "\x1b[48;2;%d;%d;%dm    \x1b[0m #%02X%02X%02X  ", rgb[0],
                  rgb[1], rgb[2], rgb[0], rgb[1], rgb[2]);
  } else {
    std::snprintf(text, sizeof text, "#%02X%02X%02X  ", rgb[0], rgb[1], rgb[2]);
  }
  return text;
}

bool isKnown(const NSString& colour) {
  int32_t red, green, blue;
  return RTF::parseHexColorWithRed(colour, &red, &green, &blue) ||
         RTF::parseRGBColorWithRed(colour, &red, &green, &blue) ||
         RTF::parseNamedColorWithRed(colour, &red, &green, &blue);
}

// As the message has it, but nothing that a terminal would obey, and not for pages.
std::string spelled(const NSString& colour) {
  constexpr size_t kLongest = 40;
  std::u16string text = terminalText(colour.view().substr(0, kLongest));
  if (colour.length() > kLongest) text += u"...";
  return NSString(text).utf8();
}

// "3, 7-9": counted from 1, as editors do.
std::string ranges(const std::vector<uint64_t>& lines) {
  std::string text;
  for (size_t i = 0; i < lines.size();) {
    size_t last = i;
    while (last + 1 < lines.size() && lines[last + 1] == lines[last] + 1) ++last;
    if (!text.empty()) text += ", ";
    text += std::to_string(lines[i] + 1);
    if (last > i) text += "-" + std::to_string(lines[last] + 1);
    i = last + 1;
  }
  return text;
}

Lines linesByColour(const NSArray& records) {
  Lines lines;
  for (const id& element : records) {
    const auto record = element.as<NSDictionary>();
    lines[record.objectForKey<NSString>(u"LineColour").utf8()].push_back(
        record.objectForKey<NSNumber>(u"LineNumber").unsignedLongValue());
  }
  return lines;
}

std::string row(const NSDictionary& block, const Lines& lines, bool hasSwatches) {
  const uint64_t index = block.objectForKey<NSNumber>(u"Index").unsignedLongValue();
  const NSString html = block.objectForKey<NSString>(u"HTMLColour");
  char start[32];
  std::snprintf(start, sizeof start, "%4llu  ", static_cast<unsigned long long>(index));
  std::string text = start + shown(block.objectForKey<NSString>(u"RTFColour").utf8(), hasSwatches);
  if (!html) return text + (text.ends_with(' ') ? "table\n" : "  table\n");
  const auto& where = lines.at(html.utf8());
  text += spelled(html) + (isKnown(html) ? "" : " (not known)");
  return text + (where.size() == 1 ? "  line " : "  lines ") + ranges(where) + "\n";
}

}  // namespace

void colours(const ColoursOptions& options) {
  const NSData rtf = rtfOf(readInput(options.input), inputName(options.input));
  const NSString text = RTFKelsparNSDataAdditions::rtfStringFromData(rtf);
  const NSArray records = RTF::getLineNumbersForTag(text, u"htmltag148"_ns, u"color"_ns);
  NSMutableArray blocks{RTF::buildColourBlockArray(text)};
  RTFKelspar::generateRTFColourBlockArray(
      blocks,
      RTFKelsparNSArrayAdditions::generateArrayForDictionaryKey(records, u"LineContent"_ns));
  const Lines lines = linesByColour(records);
  const bool hasSwatches = isatty(STDOUT_FILENO) && !std::getenv("NO_COLOR");
  std::string output;
  for (const id& block : blocks) output += row(block.as<NSDictionary>(), lines, hasSwatches);
  writeOutput("", output);
}

}  // namespace kelspar::host
