// From lines that are laid out to pages that are written, a few dozen lines at a time. On one
// thread: a second one would wait for the fonts' lock, which costs more than it gains.
#include "platform/graphics/pdf_pages.h"

#include <unicode/uscript.h>

#include <algorithm>
#include <set>

#include "platform/foundation/NSLog.h"
#include "platform/foundation/scan.h"
#include "platform/graphics/page_writer.h"
#include "platform/graphics/pango_fonts.h"
#include "platform/graphics/text_flow.h"

namespace kelspar {

namespace {

std::string titleFor(const NSAttributedString& text, const PDFOptions& options) {
  constexpr size_t kLongest = 120;
  const NSString string = text.string();
  std::u16string_view title = options.title ? options.title.view() : std::u16string_view();
  const std::u16string_view units = string.view();
  for (size_t at = 0; title.empty() && at < units.size();) {
    const size_t end = scan::findAny(units, at, u'\n', u'\r', u'\x2028', u'\x2029');
    title = units.substr(at, end - at);
    const auto isWord = [](char16_t c) { return c > u' ' && c != 0xA0 && c != 0xFFFC; };
    const auto* const first = std::ranges::find_if(title, isWord);
    title.remove_prefix(static_cast<size_t>(first - title.begin()));
    at = end + 1;
  }
  title = title.substr(0, kLongest);
  if (!title.empty() && (title.back() & 0xFC00) == 0xD800) title.remove_suffix(1);
  std::u16string clean(title);
  std::ranges::replace_if(
      clean, [](char16_t c) { return c < u' ' || c == 0xFFFC; }, u' ');
  return NSString(std::move(clean)).utf8();
}

// What fonts there are not.
class FontFaults {
 public:
  void look(const std::vector<PageLine>& lines) {
    for (const PageLine& line : lines) {
      for (const GlyphRun& run : line.glyphs) {
        hasGlyphs_ = true;
        if (run.kind == GlyphKind::missing) scripts_.insert(scriptOf(run.glyphs[0].index));
      }
    }
  }
  [[nodiscard]] PDFReport report() const {
    PDFReport report;
    report.hasNoFonts = !hasGlyphs_ && !isAnyFontInstalled();
    for (const UScriptCode script : scripts_) {
      report.scriptsWithoutFont.push_back(
          script == USCRIPT_COMMON ? u"symbols"_ns
                                   : NSString(std::string_view(uscript_getName(script))));
    }
    std::ranges::sort(report.scriptsWithoutFont, {}, &NSString::view);
    return report;
  }

 private:
  static UScriptCode scriptOf(unsigned long codePoint) {
    UErrorCode status = U_ZERO_ERROR;
    const UScriptCode script = uscript_getScript(static_cast<UChar32>(codePoint), &status);
    const bool isNone =
        U_FAILURE(status) || script == USCRIPT_INHERITED || script == USCRIPT_UNKNOWN;
    return isNone ? USCRIPT_COMMON : script;
  }

  std::set<UScriptCode> scripts_;
  bool hasGlyphs_ = false;
};

bool hasLinks(const NSAttributedString& text) {
  return std::ranges::any_of(
      text.runs(), [](const NSTextRun& run) { return static_cast<bool>(run.attributes->link); });
}

}  // namespace

NSString PDFReport::complaint() const {
  if (hasNoFonts) return u"no font is installed: there are no letters"_ns;
  if (scriptsWithoutFont.empty()) return nil;
  std::u16string names;
  for (const NSString& script : scriptsWithoutFont) {
    if (!names.empty()) names += u", ";
    names += script.view();
  }
  return NSString(u"no font has the letters of " + names + u": boxes stand for them");
}

void PDFReport::log() const {
  if (const NSString text = complaint()) NSLog(u"Warning: %@"_ns, text);
}

PDFReport writePDF(const NSAttributedString& text, const PDFOptions& options,
                   const std::function<bool(std::string_view)>& write) {
  if (text.length() == 0) return {};
  FontFaults faults;
  PageWriter pages({.keepsLinesWhole = options.keepsLinesWhole,
                    .hasLinks = hasLinks(text),
                    .paper = options.paper,
                    .title = titleFor(text, options)},
                   write);
  layOut(text, [&pages, &faults](std::vector<PageLine> lines, double y) {
    faults.look(lines);
    pages.add(std::move(lines), y);
    return !pages.isBroken();
  });
  pages.finish();
  return faults.report();
}

}  // namespace kelspar
