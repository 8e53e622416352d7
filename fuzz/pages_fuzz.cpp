// Any attributed text becomes lines in order and a document with the pages that
// their height asks for. The bytes are a small language: what a run looks like,
// then its units.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "platform/graphics/pdf_pages.h"
#include "platform/graphics/text_flow.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

class Reader {
 public:
  Reader(const uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}
  [[nodiscard]] bool isAtEnd() const { return at_ >= size_; }
  uint8_t byte() { return isAtEnd() ? 0 : bytes_[at_++]; }
  // Points as they come, now and then absurd ones.
  double points() {
    const uint8_t kind = byte();
    if (kind < 200) return kind;
    if (kind < 250) return -kind;
    double value = 0;
    uint8_t raw[sizeof value];
    for (uint8_t& part : raw) part = byte();
    std::memcpy(&value, raw, sizeof value);
    return value;
  }
  NSData data(size_t count) {
    count = std::min(count, size_ - std::min(at_, size_));
    at_ += count;
    return NSData(bytes_ + at_ - count, count);
  }

 private:
  const uint8_t* bytes_;
  size_t size_, at_ = 0;
};

std::shared_ptr<const NSParagraphStyle> styleFrom(Reader& in) {
  auto style = std::make_shared<NSParagraphStyle>();
  const uint8_t flags = in.byte();
  style->alignment = static_cast<NSTextAlignment>(in.byte() % 5);
  style->rightToLeft = flags & 1;
  if (flags & 2) {
    style->firstLineIndent = in.points();
    style->headIndent = in.points();
    style->tailIndent = in.points();
  }
  if (flags & 4) style->spacingBefore = style->spacingAfter = in.points();
  if (flags & 8) {
    style->lineHeightMultiple = in.points();
    style->minimumLineHeight = in.points();
    style->maximumLineHeight = in.points();
  }
  if (flags & 16) style->lists.push_back({.identity = 1, .ordered = true, .marker = u"decimal"});
  for (int tabs = flags & 32 ? in.byte() % 4 : 0; tabs > 0; --tabs) {
    style->tabStops.push_back({.location = in.points(),
                               .alignment = static_cast<NSTextAlignment>(in.byte() % 5),
                               .decimal = tabs == 2});
  }
  for (int depth = flags & 64 ? in.byte() % 9 : 0; depth > 0; --depth) {
    NSTextTableCell cell{.table = in.byte() % 4u, .row = in.byte(), .column = in.byte()};
    cell.rowSpan = in.byte() % 5;
    cell.columnSpan = in.byte() % 5;
    cell.columns = in.byte();
    if (depth % 2 == 0) cell.width = in.points();
    if (depth % 3 == 0) {
      for (NSTextBorder* side : {&cell.borders.top, &cell.borders.right, &cell.borders.left}) {
        *side = {static_cast<float>(in.points()), {in.byte(), 0, 0}};
      }
    }
    if (depth % 3 == 1) cell.background = NSColor{1, 2, 3};
    style->cells.push_back(cell);
  }
  return style;
}

NSTextAttributes lookFrom(Reader& in) {
  NSTextAttributes look;
  const uint8_t flags = in.byte();
  if (flags & 1) look.paragraph = styleFrom(in);
  if (flags & 2) look.font.size = in.points();
  if (flags & 4) look.background = NSColor{9, 9, 9};
  if (flags & 8) look.link = NSString(std::string("http:") + static_cast<char>(in.byte()));
  if (flags & 16) look.superscript = static_cast<int8_t>(in.byte() % 3 - 1);
  if (flags & 32) look.baselineOffset = in.points();
  if (flags & 64) {
    auto attachment = std::make_shared<NSTextAttachment>();
    attachment->width = in.points();
    attachment->height = in.points();
    attachment->contents = in.data(in.byte());
    look.attachment = std::move(attachment);
  }
  look.underline = look.strikethrough = look.font.bold = flags & 128;
  return look;
}

NSAttributedString textFrom(Reader& in) {
  constexpr char16_t kUnits[] = u"\n\t\r\u2028\u2029\f\uFFFC \u05D0\u0627\u0301\u4E2D\U0001F600-";
  NSMutableAttributedString text;
  while (!in.isAtEnd()) {
    const NSTextAttributes look = lookFrom(in);
    std::u16string units;
    for (int count = in.byte() % 64; count > 0; --count) {
      const uint8_t byte = in.byte();
      if (byte >= 0x20 && byte < 0x7F) {
        units += static_cast<char16_t>(byte);
      } else if (byte > 0xF0) {
        units.append(200, byte % 2 ? u'w' : u' ');
      } else {
        units += byte < 0x20 ? kUnits[byte % (std::size(kUnits) - 1)]
                             : static_cast<char16_t>(byte << 8 | in.byte());
      }
    }
    text.append(units, look);
  }
  return text.copy();
}

void checkLine(const PageLine& line) {
  check(std::isfinite(line.top) && std::isfinite(line.bottom) && line.bottom >= line.top);
  check(std::isfinite(line.baseline));
  for (const GlyphRun& run : line.glyphs) {
    check(run.font != nullptr);
    for (const PageGlyph& glyph : run.glyphs) check(std::isfinite(glyph.x + glyph.y));
    if (run.kind == GlyphKind::missing) continue;
    size_t bytes = 0, glyphs = 0;
    for (const PageCluster& cluster : run.clusters) {
      check(cluster.bytes >= 0 && cluster.glyphs >= 0 && cluster.bytes + cluster.glyphs > 0);
      bytes += static_cast<size_t>(cluster.bytes);
      glyphs += static_cast<size_t>(cluster.glyphs);
    }
    check(bytes == run.text.size() && glyphs == run.glyphs.size());
  }
  for (const Fill& fill : line.fills)
    check(std::isfinite(fill.x + fill.y + fill.width + fill.height));
  for (const Picture& picture : line.pictures) {
    check(picture.width > 0 && picture.height > 0 && picture.width <= kPageWidth + 1);
    check(std::isfinite(picture.x + picture.y + picture.width + picture.height));
  }
}

// The height that the lines take.
double checkLayout(const NSAttributedString& text) {
  double reached = 0, height = 0;
  layOut(text, [&](const std::vector<PageLine>& lines, double y) {
    check(std::isfinite(y) && y >= reached);
    for (const PageLine& line : lines) {
      checkLine(line);
      check(line.top >= reached - 20);  // a border stands half outside
      height = std::max(height, line.bottom);
    }
    reached = y;
    height = std::max(height, y);
    return true;
  });
  return height;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  constexpr size_t kLongest = 4'000;
  constexpr double kPages = 40;
  if (size > kLongest) return 0;
  Reader in(bytes, size);
  const NSAttributedString text = textFrom(in);
  if (text.length() == 0) return 0;
  const double height = checkLayout(text);
  if (height > kPages * kPageHeight) return 0;  // nothing new, and slow
  for (const bool keeps : {false, true}) {
    std::string document;
    writePDF(text, {.keepsLinesWhole = keeps, .title = nil}, [&](std::string_view piece) {
      document.append(piece);
      return true;
    });
    check(document.starts_with("%PDF-") && document.ends_with("%%EOF\n"));
    size_t pages = 0;
    for (size_t at = 0; (at = document.find("/Type /Page ", at)) != document.npos; ++at) ++pages;
    const double least = std::max(1.0, std::ceil((height - 1.0 / 1024) / kPageHeight));
    check(keeps ? static_cast<double>(pages) >= least : static_cast<double>(pages) == least);
  }
  return 0;
}
