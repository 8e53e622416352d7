// Words are shaped once a font, by Pango; lines are broken at spaces, first fit.
#include "platform/graphics/word_lines.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <unordered_map>

#include "platform/graphics/font_lock.h"
#include "platform/graphics/pango_fonts.h"
#include "platform/graphics/pango_text.h"

namespace kelspar {

namespace {

constexpr std::u16string_view kOpening = u"([{\u00A1\u00BF";
constexpr std::u16string_view kQuotes = u"'\"\u00AB\u00BB\u2018\u2019\u201C\u201D";
// Not to begin a line, wherever the space in front of them stands.
constexpr std::u16string_view kClosing = u")]}!?:;,./";
// A line may end behind these, inside a word.
constexpr std::u16string_view kBreaking = u"-/?!|}\u2026";

bool isLetterOrDigit(char16_t c) {
  return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') ||
         c >= 0xC0;
}

// Letters without marks of their own, punctuation whose classes are known here.
bool isPlain(char16_t c) {
  if (c <= 0x7E) return c >= u' ';
  if (c <= 0x24F) return c > 0xA0 && c != 0xAD && c != 0xB4;
  if (c >= 0x370 && c <= 0x481) return true;
  return c == 0x2018 || c == 0x2019 || c == 0x201C || c == 0x201D || c == 0x2022 || c == 0x2026 ||
         c == 0x20AC;
}

bool isIn(std::u16string_view set, char16_t c) { return set.find(c) != set.npos; }

// Whether lines end at its spaces only, and at each of them.
bool breaksAtSpacesOnly(std::u16string_view units) {
  for (size_t i = 0; i < units.size(); ++i) {
    const char16_t c = units[i];
    if (!isPlain(c)) return false;
    const bool isLast = i + 1 == units.size() || units[i + 1] == u' ';
    const bool isFirst = i == 0 || units[i - 1] == u' ';
    if (!isLast && isIn(kBreaking, c)) return false;
    if (isFirst && i > 0 && isIn(kClosing, c)) return false;
    if (isLast && c != u' ' && (isIn(kOpening, c))) return false;
    if (isIn(kOpening, c) && i > 0 && !isLetterOrDigit(units[i - 1])) {
      size_t before = i;
      while (before > 0 && units[before - 1] == u' ') --before;
      if (before == i || (before > 0 && isIn(kQuotes, units[before - 1]))) return false;
    }
  }
  return true;
}

struct WordHash {
  using is_transparent = void;
  size_t operator()(std::u16string_view word) const {
    return std::hash<std::u16string_view>()(word);
  }
};

}  // namespace

class WordLines::Shapes {
 public:
  explicit Shapes(PangoContext* context) : layout_(pango_layout_new(context)) {
    pango_layout_set_single_paragraph_mode(layout_, TRUE);
    pango_layout_set_auto_dir(layout_, FALSE);
  }
  Shapes(const Shapes&) = delete;
  ~Shapes() { g_object_unref(layout_); }

  // Stays until `forgetMany`.
  const WordShape& find(std::u16string_view word, const NSTextAttributes& look) {
    if (!font_ || font_->look.font != look.font) font_ = &fontOf(look);
    const auto known = font_->words.find(word);
    if (known != font_->words.end()) return known->second;
    ++count_;
    return font_->words.emplace(std::u16string(word), shape(word)).first->second;
  }

  void forgetMany() {
    constexpr size_t kMany = 6'000;
    if (count_ < kMany && fonts_.size() < 100) return;
    const FontLock lock;
    fonts_.clear();
    font_ = nullptr;
    count_ = 0;
    maker_.forgetManyFonts();
  }

 private:
  struct Font {
    NSTextAttributes look;
    std::unordered_map<std::u16string, WordShape, WordHash, std::equal_to<>> words;
  };

  Font& fontOf(const NSTextAttributes& look) {
    for (const auto& font : fonts_) {
      if (font->look.font == look.font) return *font;
    }
    fonts_.push_back(std::make_unique<Font>());
    fonts_.back()->look.font = look.font;
    return *fonts_.back();
  }

  WordShape shape(std::u16string_view word) {
    const FontLock lock;
    PangoFontDescription* description = fontDescription(font_->look);
    pango_layout_set_font_description(layout_, description);
    pango_font_description_free(description);
    text_.begin(font_->look, 0);
    text_.append(word, font_->look);
    text_.applyTo(layout_);
    PangoLayoutIter* iter = pango_layout_get_iter(layout_);
    PangoRectangle box;
    pango_layout_iter_get_line_extents(iter, nullptr, &box);
    WordShape result{.width = pango_units_to_double(box.width),
                     .ascent = pango_units_to_double(pango_layout_iter_get_baseline(iter) - box.y),
                     .height = pango_units_to_double(box.height),
                     .runs = {}};
    PageLine line;
    maker_.take(pango_layout_iter_get_line_readonly(iter), text_, 0, &line);
    pango_layout_iter_free(iter);
    result.runs = std::move(line.glyphs);
    return result;
  }

  PangoLayout* layout_;
  PangoText text_;
  LineMaker maker_;
  std::vector<std::unique_ptr<Font>> fonts_;
  Font* font_ = nullptr;  // the last one asked for
  size_t count_ = 0;
};

WordLines::WordLines(PangoContext* context) : shapes_(std::make_unique<Shapes>(context)) {}

WordLines::~WordLines() = default;

bool WordLines::take(std::u16string_view units, size_t begin, size_t end, RunCursor* looks) {
  constexpr size_t kLongest = 20'000;
  if (end - begin > kLongest || !breaksAtSpacesOnly(units.substr(begin, end - begin))) return false;
  shapes_->forgetMany();
  tokens_.clear();
  for (size_t at = begin; at < end;) {
    const NSTextAttributes& look = looks->lookAt(at);
    const size_t until = std::min(end, looks->runEnd());
    if (!takeRun(units.substr(at, until - at), look)) return false;
    at = until;
  }
  return !tokens_.empty();
}

bool WordLines::takeRun(std::u16string_view units, const NSTextAttributes& look) {
  constexpr size_t kLongestWord = 64;
  if (look.attachment || look.superscript != 0 || look.baselineOffset != 0) return false;
  for (size_t at = 0; at < units.size();) {
    const bool isSpace = units[at] == u' ';
    size_t end = at + 1;
    if (!isSpace) end = std::min(units.find(u' ', at), units.size());
    if (end - at > kLongestWord) return false;
    tokens_.push_back({&shapes_->find(units.substr(at, end - at), look), &look, isSpace});
    at = end;
  }
  return true;
}

void WordLines::endLine(size_t first, size_t last) {
  Line line{.first = first, .last = last, .width = 0, .ascent = 0, .height = 0};
  double below = 0;
  for (size_t i = first; i < last; ++i) {
    const WordShape& shape = *tokens_[i].shape;
    line.width += shape.width;
    line.ascent = std::max(line.ascent, shape.ascent);
    below = std::max(below, shape.height - shape.ascent);
  }
  line.height = line.ascent + below;
  lines_.push_back(line);
}

const std::vector<WordLines::Line>* WordLines::breakLines(double firstWidth, double width) {
  constexpr double kTolerance = 1.0 / PANGO_SCALE;
  lines_.clear();
  size_t first = 0, fitting = 0;  // behind the last word that is known to fit
  double used = 0;                // up to the word at hand
  for (size_t at = 0; at < tokens_.size();) {
    // A word, with its parts of other looks, or one space.
    size_t end = at + 1;
    double extent = tokens_[at].shape->width;
    if (!tokens_[at].isSpace) {
      for (; end < tokens_.size() && !tokens_[end].isSpace; ++end)
        extent += tokens_[end].shape->width;
    }
    const double room = lines_.empty() ? firstWidth : width;
    if (!tokens_[at].isSpace && used + extent > room + kTolerance) {
      if (fitting == first) return nullptr;
      endLine(first, fitting);
      first = fitting = at;
      used = 0;
      continue;
    }
    used += extent;
    at = end;
    if (!tokens_[end - 1].isSpace) fitting = end;
  }
  // A paragraph of spaces only has a line as well.
  endLine(first, std::max(fitting, std::min(first + 1, tokens_.size())));
  return &lines_;
}

WordLines::Extent WordLines::extent() const {
  Extent extent{.least = 0, .most = 0};
  double word = 0;
  for (const Token& token : tokens_) {
    word = token.isSpace ? 0 : word + token.shape->width;
    extent.least = std::max(extent.least, word);
    extent.most += token.shape->width;
  }
  return extent;
}

bool WordLines::canJoin(const GlyphRun& run, const GlyphRun& next, NSColor color) {
  return run.font == next.font && run.color == color && run.kind == GlyphKind::text &&
         next.kind == GlyphKind::text && !run.isBackward && !next.isBackward;
}

void WordLines::appendGlyphs(const GlyphRun& from, const Token& token, double x, PageLine* out) {
  const NSColor color = token.look->foreground.value_or(NSColor());
  if (out->glyphs.empty() || !canJoin(out->glyphs.back(), from, color)) {
    GlyphRun& run = out->glyphs.emplace_back();
    run.font = from.font;
    run.color = color;
    run.isBackward = from.isBackward;
    run.kind = from.kind;
    run.width = from.width;
  }
  GlyphRun& run = out->glyphs.back();
  for (const PageGlyph& glyph : from.glyphs) {
    run.glyphs.push_back({glyph.index, x + glyph.x, out->baseline + glyph.y});
  }
  run.clusters.insert(run.clusters.end(), from.clusters.begin(), from.clusters.end());
  run.text += from.text;
}

void WordLines::compose(const Line& line, double x, PageLine* out) {
  for (size_t i = line.first; i < line.last;) {
    const NSTextAttributes* look = tokens_[i].look;
    const double left = x;
    const size_t first = i;
    for (; i < line.last && tokens_[i].look == look; ++i) {
      for (const GlyphRun& run : tokens_[i].shape->runs) appendGlyphs(run, tokens_[i], x, out);
      x += tokens_[i].shape->width;
    }
    const auto& runs = tokens_[first].shape->runs;
    if (look->background || look->link || look->underline || look->strikethrough) {
      decorate(runs.empty() ? nullptr : runs[0].font.get(), out->baseline, left, x, *look, out);
    }
  }
}

}  // namespace kelspar
