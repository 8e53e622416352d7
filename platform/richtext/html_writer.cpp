// The HTML writer: paragraph by paragraph, with the quotes, tables and lists around it kept open
// as long as the next one stands in them, too.
#include "platform/richtext/html_writer.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "platform/foundation/base64.h"
#include "platform/richtext/html_classes.h"
#include "platform/richtext/text_runs.h"

namespace kelspar {

namespace {

constexpr std::u16string_view kSchemes[] = {u"http:", u"https:", u"mailto:",
                                            u"tel:",  u"ftp:",   u"cid:"};
constexpr std::u16string_view kImageTypes[] = {u"image/png", u"image/jpeg", u"image/gif",
                                               u"image/bmp", u"image/webp"};

bool startsWithScheme(std::u16string_view link, std::u16string_view scheme) {
  if (link.size() < scheme.size()) return false;
  return std::ranges::equal(link.substr(0, scheme.size()), scheme, [](char16_t a, char16_t b) {
    return (a >= u'A' && a <= u'Z' ? a + 0x20 : a) == b;
  });
}

const NSParagraphStyle& styleOf(const NSTextAttributes& attributes) {
  static const NSParagraphStyle plain;
  return attributes.paragraph ? *attributes.paragraph : plain;
}

// The font of most units: it is the document's.
NSFont mostUsedFont(const NSAttributedString& text) {
  std::map<std::pair<std::u16string, double>, size_t> units;
  const std::pair<const std::pair<std::u16string, double>, size_t>* most = nullptr;
  const NSTextAttributes* last = nullptr;
  size_t* count = nullptr;
  for (const NSTextRun& run : text.runs()) {
    const NSFont& font = run.attributes->font;
    if (!last || font.family != last->font.family || font.size != last->font.size) {
      count = &units[{std::u16string(font.family.view()), font.size}];
    }
    last = run.attributes.get();
    *count += run.length;
  }
  for (const auto& entry : units) {
    if (!most || entry.second > most->second) most = &entry;
  }
  NSFont font;
  if (!most) return font;
  if (!most->first.first.empty()) font.family = most->first.first;
  font.size = most->first.second;
  return font;
}

std::u16string decimal(int64_t value) {
  const std::string digits = std::to_string(value);
  return {digits.begin(), digits.end()};
}

// The value of a numeral below 40; 0 for what is none.
int64_t romanValue(std::u16string_view numeral, bool lower) {
  constexpr std::u16string_view kUnits[] = {u"",  u"i",  u"ii",  u"iii",  u"iv",
                                            u"v", u"vi", u"vii", u"viii", u"ix"};
  std::u16string text(numeral);
  for (char16_t& c : text) {
    if (lower != (c >= u'a' && c <= u'z')) return 0;
    c |= 0x20;
  }
  const size_t tens = std::min<size_t>(std::min(text.find_first_not_of(u'x'), text.size()), 3);
  const auto* units = std::ranges::find(kUnits, std::u16string_view(text).substr(tens));
  return units == std::end(kUnits) ? 0 : static_cast<int64_t>(tens) * 10 + (units - kUnits);
}

// A piece of a run.
struct Piece {
  std::u16string_view text;
  const NSTextAttributes* attributes;
};

class Writer {
 public:
  explicit Writer(const NSAttributedString& text)
      : text_(text), keeper_(text.string()), classes_(mostUsedFont(text)) {}

  NSString write() {
    body_.reserve(text_.length() + text_.length() / 4);
    const std::u16string_view units = keeper_.view();
    size_t at = 0;
    const std::span<const NSTextRun> runs = text_.runs();
    for (size_t i = 0; i < runs.size(); ++i) {
      const NSTextAttributes& attributes = *runs[i].attributes;
      const size_t end = at + runs[i].length;
      while (at < end) {
        const size_t lineEnd = std::min(units.find(u'\n', at), end);
        addPiece(units.substr(at, lineEnd - at), attributes);
        at = lineEnd;
        if (at < end) {
          endParagraph(attributes);
          ++at;
        }
      }
      const bool isLast = i + 1 == runs.size();
      if (pieces_.empty() && !isLast) continue;
      if (isLast ? !pieces_.empty() : leavesCell(attributes, *runs[i + 1].attributes)) {
        dropCellEnd();
        endParagraph(attributes);
      }
    }
    closeQuotes(0);
    return finish();
  }

 private:
  struct OpenTable {
    uint32_t table;
    uint16_t row, column;
    size_t lists;  // open outside of it
  };
  struct OpenList {
    uint32_t identity;
    bool ordered;
    int64_t next;
    double indent;  // of its items, from the cell's edge; 0: as lists are
  };

  NSString finish() {
    std::u16string out =
        u"<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title></title>\n<style>\n";
    out += classes_.sheet();
    out += u"</style>\n</head>\n<body>\n";
    out += body_;
    out += u"</body>\n</html>\n";
    return NSString(std::move(out));
  }

  void addPiece(std::u16string_view text, const NSTextAttributes& attributes) {
    if (text.empty()) return;
    if (pieces_.empty()) style_ = &styleOf(attributes);
    pieces_.push_back({text, &attributes});
  }

  // Whether a paragraph ends between two runs because its cell does.
  static bool leavesCell(const NSTextAttributes& a, const NSTextAttributes& b) {
    const auto& left = styleOf(a).cells;
    const auto& right = styleOf(b).cells;
    if (left.empty() && right.empty()) return false;
    return !std::ranges::equal(left, right, sameCell);
  }

  static bool sameCell(const NSTextTableCell& a, const NSTextTableCell& b) {
    return a.table == b.table && a.row == b.row && a.column == b.column;
  }

  void dropCellEnd() {
    if (pieces_.empty() || style_->cells.empty() || !pieces_.back().text.ends_with(u'\t')) return;
    pieces_.back().text.remove_suffix(1);
  }

  // Blocks

  void endParagraph(const NSTextAttributes& attributes) {
    if (pieces_.empty()) style_ = &styleOf(attributes);
    if (!style_->cells.empty() && style_->cells.back().rowSpan == 0) {
      pieces_.clear();  // covered by a neighbour
      return;
    }
    enterQuotes();
    enterCells();
    if (style_->lists.empty()) {
      closeLists(listsOutside());
      paragraph();
    } else {
      item();
    }
    pieces_.clear();
  }

  // `around`: what the item that it stands in is indented by.
  void paragraph(double around = 0) {
    NSParagraphStyle style = *style_;
    style.headIndent -= around;
    style.firstLineIndent -= around;
    std::u16string name = u"p";
    if (style_->preformatted) {
      name = u"pre";
    } else if (style_->headingLevel >= 1 && style_->headingLevel <= 6) {
      name = u"h" + decimal(style_->headingLevel);
    }
    body_ += u'<' + name;
    writeClass(classes_.paragraph(style));
    body_ += u'>';
    const size_t start = body_.size();
    writePieces();
    if (body_.size() == start && style_->cells.empty()) body_ += u"<br>";
    body_ += u"</" + name + u'>';
    endLine();
  }

  void item() {
    const bool goesOn = enterLists();
    const std::u16string_view marker = takeMarker();
    const NSTextList& list = style_->lists.back();
    OpenList& open = lists_.back();
    if (goesOn && marker.empty()) {
      paragraph(open.indent);  // one more of the same item
      return;
    }
    if (goesOn) {
      body_ += u"</li>";
      endLine(1);
    }
    body_ += u"<li";
    int64_t value = 0;
    const double indent = open.indent > 0 ? style_->headIndent - open.indent : 0;
    const std::u16string name = classes_.item(*style_, indent);
    if (isGenerated(list, marker, &value)) {
      if (list.ordered && value != open.next) body_ += u" value=\"" + decimal(value) + u"\"";
      open.next = value + 1;
      writeClass(name);
      body_ += u'>';
    } else {
      writeClass(name.empty() ? u"n" : u"n " + name);
      body_ += u'>';
      if (!marker.empty()) {
        body_ += u"<span class=\"w\">";
        writeText(marker);
        body_ += u"</span>";
      }
    }
    writePieces();
  }

  // The marker at the paragraph's start, its tab with it: taken off the pieces. Empty: none.
  std::u16string_view takeMarker() {
    constexpr size_t kLongest = 16;
    marker_.clear();
    size_t used = 0;
    for (const Piece& piece : pieces_) {
      const size_t tab = piece.text.find(u'\t');
      marker_ += piece.text.substr(0, std::min(tab, kLongest));
      if (marker_.size() > kLongest || piece.attributes->attachment) return {};
      if (tab == piece.text.npos) {
        ++used;
        continue;
      }
      marker_ += u'\t';
      pieces_[used].text.remove_prefix(tab + 1);
      pieces_.erase(pieces_.begin(), pieces_.begin() + static_cast<ptrdiff_t>(used));
      return marker_;
    }
    return {};
  }

  // Whether an HTML list of this kind shows this very marker, and for which number.
  static bool isGenerated(const NSTextList& list, std::u16string_view marker, int64_t* value) {
    if (marker.empty()) return false;
    marker.remove_suffix(1);
    if (!list.ordered) {
      const std::u16string_view kind = list.marker.view();
      return (kind == u"disc" && marker == u"\u2022") ||
             (kind == u"circle" && marker == u"\u25E6") ||
             (kind == u"square" && marker == u"\u25AA");
    }
    if (!marker.ends_with(u'.') || marker.size() < 2 || marker.size() > 9) return false;
    marker.remove_suffix(1);
    if (list.marker == u"decimal") {
      *value = 0;
      for (const char16_t c : marker) {
        if (c < u'0' || c > u'9') return false;
        *value = *value * 10 + (c - u'0');
      }
      return marker[0] != u'0';
    }
    if (list.marker == u"lower-roman" || list.marker == u"upper-roman") {
      *value = romanValue(marker, list.marker == u"lower-roman");
      return *value > 0;
    }
    const bool lower = list.marker == u"lower-alpha";
    if (!lower && list.marker != u"upper-alpha") return false;
    const char16_t first = lower ? u'a' : u'A';
    if (marker.size() != 1 || marker[0] < first || marker[0] > first + 25) return false;
    *value = marker[0] - first + 1;
    return true;
  }

  // Opens and closes lists until the paragraph's own is the innermost one. Whether an item of it
  // is open already.
  bool enterLists() {
    const size_t outside = listsOutside();
    constexpr size_t kDeepest = 16;
    const size_t depth = std::min(style_->lists.size(), kDeepest);
    size_t same = 0;
    while (same < depth && outside + same < lists_.size() &&
           lists_[outside + same].identity == style_->lists[same].identity &&
           lists_[outside + same].ordered == style_->lists[same].ordered) {
      ++same;
    }
    closeLists(outside + same);
    if (same == depth) return true;
    for (size_t i = same; i < depth; ++i) {
      const NSTextList& list = style_->lists[i];
      body_ += list.ordered ? u"<ol" : u"<ul";
      if (list.ordered && list.startingNumber != 1) {
        body_ += u" start=\"" + decimal(list.startingNumber) + u"\"";
      }
      const double around = lists_.size() > outside ? lists_.back().indent : 0;
      const double indent = i + 1 == depth ? style_->headIndent - around : 0;
      writeClass(classes_.list(list, indent));
      body_ += u'>';
      endLine();
      lists_.push_back(
          {list.identity, list.ordered, list.startingNumber, indent > 0 ? style_->headIndent : 0});
      if (i + 1 < depth) body_ += u"<li class=\"n\">";
    }
    return false;
  }

  // Between blocks, for whoever reads the source; not inside an item, where white space is kept.
  // `ended`: lists whose item has just ended.
  void endLine(size_t ended = 0) {
    if (lists_.size() == ended) body_ += u'\n';
  }

  void closeLists(size_t count) {
    while (lists_.size() > count) {
      body_ += u"</li>";
      endLine(1);
      body_ += lists_.back().ordered ? u"</ol>" : u"</ul>";
      lists_.pop_back();
      endLine();
    }
  }

  [[nodiscard]] size_t listsOutside() const { return tables_.empty() ? 0 : tables_.back().lists; }

  void enterCells() {
    const auto& cells = style_->cells;
    constexpr size_t kDeepest = 16;
    const size_t depth = std::min(cells.size(), kDeepest);
    size_t same = 0;
    while (same < depth && same < tables_.size() && tables_[same].table == cells[same].table &&
           tables_[same].row == cells[same].row && tables_[same].column == cells[same].column) {
      ++same;
    }
    const bool sameTable =
        same < depth && same < tables_.size() && tables_[same].table == cells[same].table;
    closeTables(same + (sameTable ? 1 : 0));
    if (sameTable) nextCell(cells[same++]);
    for (size_t i = same; i < depth; ++i) openTable(cells[i]);
  }

  void openTable(const NSTextTableCell& cell) {
    closeLists(listsOutside());
    body_ += u"<table>";
    endLine();
    body_ += u"<tbody>";
    endLine();
    body_ += u"<tr>";
    tables_.push_back({cell.table, cell.row, cell.column, 0});
    tables_.back().lists = lists_.size();
    openCell(cell);
  }

  void nextCell(const NSTextTableCell& cell) {
    OpenTable& open = tables_.back();
    closeLists(open.lists);
    body_ += u"</td>";
    if (cell.row != open.row) {
      body_ += u"</tr>";
      endLine();
      body_ += u"<tr>";
    }
    open.row = cell.row;
    open.column = cell.column;
    openCell(cell);
  }

  void openCell(const NSTextTableCell& cell) {
    body_ += u"<td";
    if (cell.rowSpan > 1) body_ += u" rowspan=\"" + decimal(cell.rowSpan) + u"\"";
    if (cell.columnSpan > 1) body_ += u" colspan=\"" + decimal(cell.columnSpan) + u"\"";
    writeClass(classes_.cell(cell));
    body_ += u'>';
  }

  void closeTables(size_t count) {
    while (tables_.size() > count) {
      closeLists(tables_.back().lists);
      body_ += u"</td></tr>";
      endLine();
      body_ += u"</tbody>";
      endLine();
      body_ += u"</table>";
      endLine();
      tables_.pop_back();
    }
  }

  void enterQuotes() {
    constexpr int kDeepest = 32;
    const int level = std::clamp<int>(style_->quoteLevel, 0, kDeepest);
    if (level == quotes_) return;
    closeQuotes(std::min(level, quotes_));
    for (; quotes_ < level; ++quotes_) body_ += u"<blockquote>\n";
  }

  void closeQuotes(int level) {
    closeTables(0);
    closeLists(0);
    for (; quotes_ > level; --quotes_) body_ += u"</blockquote>\n";
  }

  // Text

  void writeClass(std::u16string_view name) {
    if (name.empty()) return;
    body_ += u" class=\"";
    body_ += name;
    body_ += u'"';
  }

  // Whether white space in the paragraph would collapse.
  [[nodiscard]] bool hasWhiteSpaceToKeep() const {
    bool isEmpty = true;
    char16_t before = u' ';  // at its start and behind a line's end, too
    for (const Piece& piece : pieces_) {
      for (const char16_t c : piece.text) {
        const bool isBreak = c == 0x2028 || c == u'\r';
        if (c == u'\t' || c == u'\f') return true;
        if (before == u' ' && (c == u' ' || (isBreak && !isEmpty))) return true;
        before = isBreak ? u' ' : c;
        isEmpty = false;
      }
    }
    return before == u' ' && !isEmpty;
  }

  void writePieces() {
    const bool keeps = !style_->preformatted && hasWhiteSpaceToKeep();
    if (keeps) body_ += u"<span class=\"w\">";
    writeLinkedPieces();
    if (keeps) body_ += u"</span>";
  }

  void writeLinkedPieces() {
    for (size_t i = 0; i < pieces_.size();) {
      const NSString& link = pieces_[i].attributes->link;
      size_t end = i + 1;
      while (end < pieces_.size() && pieces_[end].attributes->link == link) ++end;
      const bool isLinked = link && isSafeLink(link);
      if (isLinked) openLink(pieces_[i]);
      for (; i < end; ++i) writePiece(pieces_[i]);
      if (isLinked) body_ += u"</a>";
    }
  }

  void openLink(const Piece& piece) {
    body_ += u"<a href=\"";
    writeText(piece.attributes->link, /*isAttribute=*/true);
    body_ += u'"';
    if (piece.attributes->foreground || piece.attributes->underline) writeClass(u"k");
    body_ += u'>';
  }

  void writePiece(const Piece& piece) {
    if (piece.text.empty()) return;
    const NSTextAttributes& attributes = *piece.attributes;
    const std::u16string& name = lookOf(attributes);
    if (!name.empty()) {
      body_ += u"<span";
      writeClass(name);
      body_ += u'>';
    }
    if (attributes.font.bold) body_ += u"<b>";
    if (attributes.font.italic) body_ += u"<i>";
    if (attributes.underline) body_ += u"<u>";
    if (attributes.strikethrough) body_ += u"<s>";
    if (attributes.attachment) {
      for (const char16_t c : piece.text) {
        if (c == u'\uFFFC') {
          writeImage(*attributes.attachment);
        } else {
          writeText({&c, 1});
        }
      }
    } else {
      writeText(piece.text);
    }
    if (attributes.strikethrough) body_ += u"</s>";
    if (attributes.underline) body_ += u"</u>";
    if (attributes.font.italic) body_ += u"</i>";
    if (attributes.font.bold) body_ += u"</b>";
    if (!name.empty()) body_ += u"</span>";
  }

  // Runs share their attributes, so most looks are found by address.
  const std::u16string& lookOf(const NSTextAttributes& attributes) {
    const auto [found, isNew] = looks_.try_emplace(&attributes);
    if (isNew) found->second = classes_.look(attributes);
    return found->second;
  }

  void writeImage(const NSTextAttachment& image) {
    body_ += u"<img";
    const std::u16string_view source = image.source.view();
    const auto* type = std::ranges::find(kImageTypes, image.type.view());
    if (!image.contents.isEmpty() && type != std::end(kImageTypes)) {
      std::string data;
      base64::encode(image.contents.chars(), &data);
      body_ += u" src=\"data:";
      body_ += *type;
      body_ += u";base64,";
      body_.append(data.begin(), data.end());
      body_ += u'"';
    } else if (startsWithScheme(source, u"cid:") || startsWithScheme(source, u"http:") ||
               startsWithScheme(source, u"https:")) {
      body_ += u" src=\"";
      writeText(source, /*isAttribute=*/true);
      body_ += u'"';
    }
    body_ += u" alt=\"";
    writeText(image.alternative, /*isAttribute=*/true);
    body_ += u'"';
    constexpr double kPixels = 96.0 / 72, kLargest = 100000;
    const auto dimension = [&](std::u16string_view name, double points) {
      if (!(points > 0 && points < kLargest)) return;
      body_ += name;
      body_ += decimal(std::max<int64_t>(1, std::llround(points * kPixels)));
      body_ += u'"';
    };
    dimension(u" width=\"", image.width);
    dimension(u" height=\"", image.height);
    body_ += u'>';
  }

  static bool isPlain(char16_t c) {
    return c >= 0x20 && c != u'&' && c != u'<' && c != u'>' && c != u'"' &&
           (c < 0x7F || (c > 0xA0 && c != 0x2028 && c < 0xD800) || (c >= 0xE000 && c < 0xFDD0) ||
            (c > 0xFDEF && c < 0xFFFC));
  }

  void writeText(std::u16string_view text, bool isAttribute = false) {
    for (size_t i = 0; i < text.size();) {
      size_t plain = i;
      while (plain < text.size() && isPlain(text[plain])) ++plain;
      body_ += text.substr(i, plain - i);
      if (plain == text.size()) return;
      i = plain + writeSpecial(text.substr(plain), isAttribute);
    }
  }

  // Writes what is no plain unit; returns how many units it took.
  size_t writeSpecial(std::u16string_view text, bool isAttribute) {
    const char16_t c = text[0];
    switch (c) {
      case u'&':
        body_ += u"&amp;";
        return 1;
      case u'<':
        body_ += u"&lt;";
        return 1;
      case u'>':
        body_ += u"&gt;";
        return 1;
      case u'"':
        body_ += u"&quot;";
        return 1;
      case 0xA0:
        body_ += u"&nbsp;";
        return 1;
      case u'\t':
        body_ += u'\t';
        return 1;
      case u'\f':
        body_ += u'\f';
        return 1;
      case u'\n':
      case u'\r':
      case 0x2028:
        body_ += isAttribute ? u" " : u"<br>";
        return 1;
      case 0xFFFC:
        body_ += c;
        return 1;
      default:
        break;
    }
    const bool isPair =
        c >= 0xD800 && c < 0xDC00 && text.size() > 1 && (text[1] & 0xFC00) == 0xDC00;
    // The last two places of each plane are no characters.
    const bool isCharacter = isPair && !((text[1] & 0x3FE) == 0x3FE && (c & 0x3F) == 0x3F);
    if (isCharacter) {
      body_ += text.substr(0, 2);
    } else {
      body_ += u'\uFFFD';
    }
    return isPair ? 2 : 1;
  }

  const NSAttributedString& text_;
  const NSString keeper_;
  html::Classes classes_;
  std::u16string body_;
  std::vector<Piece> pieces_;  // of the paragraph at hand
  const NSParagraphStyle* style_ = nullptr;
  std::u16string marker_;
  std::vector<OpenTable> tables_;
  std::vector<OpenList> lists_;
  int quotes_ = 0;
  std::unordered_map<const NSTextAttributes*, std::u16string> looks_;
};

}  // namespace

bool isSafeLink(std::u16string_view link) {
  if (link.starts_with(u'#')) return true;
  return std::ranges::any_of(kSchemes, [&](auto scheme) { return startsWithScheme(link, scheme); });
}

NSString htmlFromAttributedString(const NSAttributedString& text) {
  return text ? Writer(text).write() : nil;
}

}  // namespace kelspar
