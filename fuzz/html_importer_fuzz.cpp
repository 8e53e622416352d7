// Any bytes give text, no longer than a few times the input, and the same with attributes: the runs
// cover the text, attachments stand on U+FFFC, scripts are no links.
#include <cstdint>
#include <cstdlib>

#include "platform/richtext/html_importer.h"

using namespace kelspar;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData html(bytes, size);
  const NSString plain = plainTextFromHTML(html);
  require(static_cast<bool>(plain));
  // The most that a few units of input give: an item's marker.
  require(plain.length() <= 8 * size + 8);

  HTMLImportOptions options;
  options.dataForContentIdentifier = [](const NSString&) { return NSData({1, 2, 3}); };
  const NSAttributedString attributed = attributedTextFromHTML(html, options);
  NSMutableString lines(attributed.string().view());
  lines.replaceOccurrences(u"\u2028", u"\n");
  const NSString text = lines.copy();
  bool hasImages = false;
  size_t at = 0;
  for (const NSTextRun& run : attributed.runs()) {
    require(run.length > 0 && run.attributes != nullptr);
    const NSTextAttributes& look = *run.attributes;
    require(look.font.size > 0 && look.font.size < 1e6);
    require(!look.link.view().starts_with(u"javascript:"));
    if (look.attachment) {
      hasImages = true;
      for (const char16_t c : text.view().substr(at, run.length))
        require(c == 0xFFFC || c == u'\n');
    }
    if (look.paragraph) {
      require(look.paragraph->lists.size() <= 16 && look.paragraph->cells.size() <= 16);
      for (const NSTextTableCell& cell : look.paragraph->cells) require(cell.column < cell.columns);
    }
    at += run.length;
  }
  require(at == text.length());
  NSMutableString plainLines(plain.view());
  plainLines.replaceOccurrences(u"\u2028", u"\n");
  require(hasImages || text == plainLines.copy());
  return 0;
}
