// Makes the colours that encapsulated HTML has in its spans show in the RTF around it: a \cf in
// each coloured line, and a colour table that knows the colours. One pass over the text and one for
// the table, instead of a search through all colours for each line.
#include <string>
#include <unordered_map>
#include <vector>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "RTFKelspar/colour_table.h"
#include "RTFKelspar/rtf_groups.h"
#include "RTFKelspar/span_items.h"
#include "platform/foundation/utf8.h"

namespace kelspar {

namespace {

// Over bytes for ASCII, which RTF should be, over units for everything else: the answers are the
// same.
template <class Char>
class ColourPipeline {
 public:
  using Text = std::basic_string<Char>;
  using View = std::basic_string_view<Char>;

  explicit ColourPipeline(View rtf)
      : rtf_(rtf),
        opening_(ascii("{\\colortbl")),
        definitions_(colourDefinitions(findGroup(rtf, View(opening_)).in(rtf))),
        entries_(colourEntries(View(definitions_))) {}

  Text run() {
    output_.reserve(rtf_.size() + rtf_.size() / 4);  // room for a tag in every line
    rewriteLines();
    // The table is looked for in the rewritten text: a tag may have come between its parts.
    const RTFGroup group = findGroup(View(output_), View(opening_));
    if (group.isFound()) replaceGroup(output_, group, View(table()));
    return std::move(output_);
  }

 private:
  static Text ascii(std::string_view text) { return Text(text.begin(), text.end()); }

  // Every line with a span start tag is looked at once; the text between them is copied as it is.
  void rewriteLines() {
    size_t copied = 0;
    for (size_t next = 0; next < rtf_.size();) {
      const size_t span = findWord(rtf_, "<span", next);
      if (span == rtf_.npos) break;
      size_t start = span;
      while (start > next && rtf_[start - 1] != '\n') --start;
      const size_t end = scan::findAny(rtf_, span, '\n');
      const View line = rtf_.substr(start, end - start);
      next = end + 1;
      const View tail = colouredTail(line, spanColour(spanAttributes(line, span - start)));
      if (tail.empty()) continue;
      output_.append(rtf_, copied, start - copied);
      appendTagged(line, tail);
      copied = end;
    }
    output_.append(rtf_, copied);
  }

  // What the tag goes before, once the colour has its entry in the table; empty when the line is to
  // stay as it is. A line that ends with "\htmlrtf0" does: there is nothing to colour.
  View colouredTail(View line, View colour) {
    constexpr std::string_view kShown = "\\htmlrtf0";
    if (colour.empty() || findWord(line, "htmltag148") == line.npos) return {};
    tag_ = ascii(" \\cf" + std::to_string(indexOf(colour)) + " ");
    const size_t shown = findWord(line, kShown);
    return shown == line.npos ? View() : line.substr(shown + kShown.size());
  }

  // Each spelling of a colour has an entry of its own, behind those that the table had.
  size_t indexOf(View colour) {
    const auto [entry, isNew] = indexes_.try_emplace(colour, entries_.size() + added_.size());
    if (isNew) added_.push_back(colour);
    return entry->second;
  }

  // Deliberate: the tag goes before each occurrence of the tail in the line, and the tail may be as
  // short as a carriage return.
  void appendTagged(View line, View tail) {
    BasicTextSearch<Char> search(tail, line);
    size_t from = 0;
    for (size_t at; (at = search.next()) != View::npos; from = at + tail.size()) {
      output_.append(line, from, at - from).append(tag_).append(tail);
    }
    output_.append(line, from);
  }

  [[nodiscard]] Text table() const {
    if (entries_.empty() && added_.empty()) return {};
    Text table = opening_;
    for (const View entry : entries_) (table += entry) += ';';
    for (const View colour : added_) {
      const NSString entry = RTFKelsparNSStringAdditions::convertToRTFColour(NSString(colour));
      table.append(entry.view().begin(), entry.view().end()) += ';';
    }
    return table += '}';
  }

  View rtf_;
  Text opening_, definitions_;
  std::vector<View> entries_;  // parts of the definitions
  std::unordered_map<View, size_t> indexes_;
  std::vector<View> added_;  // parts of the text, as the keys above
  Text tag_, output_;
};

}  // namespace

NSData RTFKelspar::generateRTFColourTagsFromEmbeddedHTMLInRTF(const NSData& rtf) {
  const auto bytes = rtf.chars();
  if (rtf && utf8::asciiPrefix(bytes) == bytes.size()) {
    return NSData(ColourPipeline<char>(bytes).run());
  }
  const NSString text = RTFKelsparNSDataAdditions::rtfStringFromData(rtf);
  if (!text) return nil;
  const std::u16string coloured = ColourPipeline<char16_t>(text.view()).run();
  std::string result;
  utf8::append(coloured, &result);
  return NSData(std::move(result));
}

}  // namespace kelspar
