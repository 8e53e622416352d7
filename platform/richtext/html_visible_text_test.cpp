// The text of pages against a plain walk over the tree that another HTML5 parser builds: the tree
// rules, what is hidden, and which words stand on one line, in one cell.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/richtext/html_importer.h"
#include "platform/richtext/html_oracle.h"
#include "platform/richtext/html_style_sheet.h"
#include "platform/richtext/html_white_space.h"

namespace kelspar {
namespace {

// Between two words: nothing, a space, a cell's end, a line's end; the strongest counts.
enum Gap : uint8_t { kNone, kSpace, kCell, kLine };

// The words with the gaps between them as " ", TAB and LF.
class Words {
 public:
  void text(std::u16string_view units, html::WhiteSpace whiteSpace) {
    for (const char16_t c : units) {
      if (!html::isWhiteSpace(c)) {
        unit(c);
      } else if (whiteSpace != html::WhiteSpace::collapse && (c == u'\n' || c == u'\r')) {
        line();
      } else if (whiteSpace == html::WhiteSpace::keep && c == u'\t') {
        widen(kCell);
      } else {
        widen(kSpace);
      }
    }
  }
  // A <br>: behind another line's end it is a line of its own.
  void line() {
    isFresh = false;
    hasEmptyLine_ = gap_ == kLine;
    widen(kLine);
  }
  // The cell's end stands for a line's end before it.
  void endCell() {
    if (!hasEmptyLine_) gap_ = kNone;
  }
  void block() {
    if (!isFresh) widen(kLine);
  }
  void widen(Gap gap) { gap_ = std::max(gap_, gap); }
  // Nothing stands in the cell yet.
  bool isFresh = false;
  [[nodiscard]] size_t size() const { return text_.size(); }
  [[nodiscard]] const std::u16string& text() const { return text_; }

 private:
  void unit(char16_t c) {
    constexpr std::u16string_view kGaps[] = {u"", u" ", u"\t", u"\n"};
    if (!text_.empty()) text_ += kGaps[gap_];
    text_ += c;
    gap_ = kNone;
    isFresh = hasEmptyLine_ = false;
  }
  std::u16string text_;
  Gap gap_ = kNone;
  bool hasEmptyLine_ = false;
};

struct Rule {
  html::Selector selector;
  uint32_t specificity;
  html::Declarations declarations;
};

// Rules and selectors the slow way: each rule at each element, up the tree.
class Style {
 public:
  explicit Style(const GumboNode& document) { find(document); }

  [[nodiscard]] html::Declarations of(const GumboNode& node) const {
    html::Declarations declared;
    const auto* const hidden = attribute(node, "hidden");
    if (hidden) html::parseDeclarations(u"display:none", false, &declared);
    for (const Rule& rule : rules_) {
      if (matches(rule.selector, rule.selector.parts.size() - 1, node)) {
        declared.add(rule.declarations);
      }
    }
    if (const char* const style = attribute(node, "style")) {
      html::parseDeclarations(NSString(style), false, &declared);
    }
    return declared;
  }

  static const char* attribute(const GumboNode& node, const char* name) {
    const auto* const found = gumbo_get_attribute(&node.v.element.attributes, name);
    return found ? found->value : nullptr;
  }
  static html::Tag tagOf(const GumboNode& node) {
    return html::tagNamed(NSString(oracle::nameOf(node)));
  }
  static bool isElement(const GumboNode& node) {
    return node.type == GUMBO_NODE_ELEMENT || node.type == GUMBO_NODE_TEMPLATE;
  }

 private:
  static bool matches(const html::Selector& selector, size_t part, const GumboNode& node) {
    const auto value = [&](const char* name) {
      const char* const text = attribute(node, name);
      return NSString(text ? text : "");
    };
    const NSString classes = value("class"), identifier = value("id");
    if (!selector.parts[part].compound.matches({tagOf(node), classes, identifier})) return false;
    if (part == 0) return true;
    for (const GumboNode* up = node.parent; up && isElement(*up); up = up->parent) {
      if (matches(selector, part - 1, *up)) return true;
      if (selector.parts[part].isChild) return false;
    }
    return false;
  }

  void find(const GumboNode& node) {
    if (isElement(node) && tagOf(node) == html::Tag::style) return read(node);
    const GumboVector* const children = oracle::childrenOf(node);
    for (unsigned i = 0; children && i < children->length; ++i) {
      find(*static_cast<const GumboNode*>(children->data[i]));
    }
  }

  void read(const GumboNode& style) {
    const char* const media = attribute(style, "media");
    if (media && !html::StyleSheet::appliesToMedia(NSString(media))) return;
    const GumboVector& children = style.v.element.children;
    if (children.length == 0) return;
    const NSString css(static_cast<const GumboNode*>(children.data[0])->v.text.text);
    html::StyleSheet::forEachRule(css, [this](std::u16string_view selectors,
                                              std::u16string_view body) {
      html::Declarations declarations;
      html::parseDeclarations(body, false, &declarations);
      for (size_t from = 0; from <= selectors.size();) {
        const size_t end = std::min(selectors.find(u',', from), selectors.size());
        if (auto selector = html::Selector::parse(selectors.substr(from, end - from))) {
          const uint32_t specificity = selector->specificity();
          const auto behind = std::ranges::upper_bound(rules_, specificity, {}, &Rule::specificity);
          rules_.insert(behind, {std::move(*selector), specificity, declarations});
        }
        from = end + 1;
      }
    });
  }

  std::vector<Rule> rules_;
};

struct Look {
  bool invisible = false, sizeless = false;
  html::WhiteSpace whiteSpace = html::WhiteSpace::collapse;
};

class Walk {
 public:
  explicit Walk(const oracle::Document& document) : style_(*document.document()) {
    node(*document.root(), {});
  }
  [[nodiscard]] const std::u16string& text() const { return words_.text(); }

 private:
  void node(const GumboNode& node, Look look) {
    if (Style::isElement(node)) return element(node, look);
    if (node.type == GUMBO_NODE_COMMENT || look.invisible || look.sizeless) return;
    words_.text(NSString(node.v.text.text), look.whiteSpace);
  }

  void children(const GumboNode& node, const Look& look) {
    const GumboVector& children = node.v.element.children;
    for (unsigned i = 0; i < children.length; ++i) {
      this->node(*static_cast<const GumboNode*>(children.data[i]), look);
    }
  }

  void element(const GumboNode& node, Look look) {
    const html::Tag tag = Style::tagOf(node);
    const html::Declarations declared = style_.of(node);
    // A page whose body waits for a script is read all the same.
    if (html::has(tag, html::kHidden) || (declared.hides() && tag != html::Tag::body)) return;
    if (declared.has(html::Property::visibility)) look.invisible = !declared.visible;
    if (declared.has(html::Property::fontSize) &&
        (declared.fontSize.unit == html::Length::Unit::points || declared.fontSize.value <= 0)) {
      look.sizeless = declared.fontSize.value <= 0;
    }
    for (const html::Tag keeper : {html::Tag::pre, html::Tag::textarea, html::Tag::listing,
                                   html::Tag::xmp, html::Tag::plaintext}) {
      if (tag == keeper) look.whiteSpace = html::WhiteSpace::keep;
    }
    if (declared.has(html::Property::whiteSpace)) look.whiteSpace = declared.whiteSpace;
    if (tag == html::Tag::br) {
      if (!look.invisible) words_.line();
      return;
    }
    if (tag == html::Tag::tr) return row(node, look);
    if (tag == html::Tag::td || tag == html::Tag::th) return cell(node, look);
    bool isBlock = html::has(tag, html::kBlock);
    if (declared.has(html::Property::display) && !html::has(tag, html::kTablePart)) {
      isBlock = declared.display == html::Display::block ||
                (declared.display != html::Display::inlineBox && isBlock);
    }
    if (isBlock) words_.block();
    children(node, look);
    if (isBlock) words_.block();
  }

  void row(const GumboNode& node, const Look& look) {
    const bool wasFresh = words_.isFresh;
    const size_t before = words_.size();
    const size_t cellsOutside = std::exchange(cells_, 0);
    const size_t rowOutside = std::exchange(rowStart_, before);
    words_.block();
    children(node, look);
    cells_ = cellsOutside;
    rowStart_ = rowOutside;
    words_.isFresh = words_.size() == before && wasFresh;
    words_.block();
  }

  void cell(const GumboNode& node, const Look& look) {
    if (cells_++ > 0 && words_.size() > rowStart_) words_.widen(kCell);
    words_.isFresh = true;
    children(node, look);
    words_.isFresh = false;
    if (words_.size() > rowStart_) words_.endCell();
  }

  Style style_;
  Words words_;
  size_t cells_ = 0;     // of the row at hand
  size_t rowStart_ = 0;  // the words' size before it
};

// Our text as words and gaps.
std::u16string wordsOf(std::u16string_view text) {
  Words words;
  words.text(text, html::WhiteSpace::keep);
  return words.text();
}

// List markers are ours alone: without them.
void expectSameWords(const NSString& page) {
  const NSString ours = plainTextFromHTML(
      NSString(u"<style>li{list-style:none!important}</style>" + std::u16string(page.view())));
  const oracle::Document document(page.utf8());
  const std::u16string expected = Walk(document).text();
  const std::u16string actual = wordsOf(ours);
  if (actual == expected) return;
  const auto at = static_cast<size_t>(std::ranges::mismatch(actual, expected).in1 - actual.begin());
  const size_t from = at > 60 ? at - 60 : 0;
  ADD_FAILURE() << "at " << at << "\nours:   " << NSString(actual.substr(from, 120))
                << "\noracle: " << NSString(expected.substr(from, 120));
}

struct Row {
  const char* name;
  std::u16string_view html;
};
constexpr Row kRows[] = {
    {"ImpliedEnds", u"<p>a<p>b<ul><li>c<li>d</ul>e<dl><dt>f<dd>g</dl><select><option>h<option>i"},
    {"Misnested", u"<b>a<i>b</b>c</i>d<p><b>e<div>f</b>g</div>h"},
    {"Strays", u"<table>a<tr>b<td>c</td>d</tr></table>e<table><b>f</b><tr><td>g</table>"},
    {"Tables", u"<table><tr><td>a<td>b<tr><td><p>c<p>d<td><div>e</div></table>f"},
    {"NestedTables", u"<table><tr><td><table><tr><td>a<td>b</table><td>c<table><tr><td>d</table>"},
    {"EmptyCells", u"<table><tr><td><td>a<td><td>b<tr><td><tr><td>c</table>"},
    {"Captions", u"<table><caption>a</caption><thead><tr><th>b<tbody><tr><td>c<tfoot><tr><td>d"},
    {"PreAndText", u"a <pre>\n b  c\n</pre> d<textarea>\ne\nf</textarea>g"},
    {"Hidden", u"a<p hidden>b</p><script>c</script><template>d</template><noscript>e</noscript>"},
    {"Selectors",
     u"<style>.a .b, td > i, #c b.d{display:none}</style><p class=a><b class=b>x</b>y</p>"
     u"<table><tr><td><i>z</i><b><i>u</i></b></table><p id=c><b class='e d'>v</b>w"},
    {"Visibility", u"<p style='visibility:hidden'>a<b style='visibility:visible'>b</b>c</p>d"},
    {"NoSize", u"<td style='font-size:0'>a<b style='font-size:9px'>b</b>c</td>d"},
    {"Foreign", u"a<svg><text>b</text><title>c</title></svg><math><mi>d</mi></math>e"},
    {"ButtonsAndForms", u"<form>a<button>b<p>c</button>d</form><label>e<input value=f>g"},
    {"Anchors", u"<a>a<a>b</a><nobr>c<nobr>d</nobr>e"},
    {"HeadingsInHeadings", u"<h1>a<h2>b</h1>c<p>d</h2>e"},
    {"DisplayChanges",
     u"a<span style='display:block'>b</span>c<div style='display:inline'>d</div>e"},
};
class VisibleText : public testing::TestWithParam<Row> {};
TEST_P(VisibleText, HasTheWalksWords) { expectSameWords(NSString(GetParam().html)); }
INSTANTIATE_TEST_SUITE_P(Rows, VisibleText, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

// Every short text over tags whose starts and ends the tree rules join.
TEST(VisibleText, OfAllShortPages) {
  constexpr std::u16string_view kPieces[] = {u"<p>",      u"</p>",  u"<b>",     u"</b>", u"<div>",
                                             u"</div>",   u"<li>",  u"<table>", u"<tr>", u"<td>",
                                             u"</table>", u"</td>", u"<ul>"};
  constexpr size_t kMost = 4;
  for (size_t length = 1; length <= kMost; ++length) {
    std::vector<size_t> at(length);
    bool isPlain = false;  // not in quirks mode
    for (bool more = true; more;) {
      isPlain = !isPlain;
      std::u16string html = isPlain ? u"<!DOCTYPE html>w" : u"w";
      char16_t word = u'a';
      for (const size_t piece : at) (html += kPieces[piece]) += word++;
      expectSameWords(NSString(html));
      ASSERT_FALSE(testing::Test::HasFailure()) << NSString(html);
      more = false;
      for (size_t i = 0; i < length && !more; ++i) {
        at[i] = (at[i] + 1) % std::size(kPieces);
        more = at[i] != 0;
      }
    }
  }
}

#ifdef KELSPAR_CORPUS
TEST(VisibleText, OfTheCorpus) {
  size_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KELSPAR_CORPUS "/html")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const NSString text(std::string{std::istreambuf_iterator<char>(file), {}});
    std::u16string page(text.view());
    // The other parser has U+FFFD for controls.
    std::ranges::replace_if(
        page, [](char16_t c) { return (c < 0x20 && (c < u'\t' || c > u'\r')) || c == 0x7F; }, u'?');
    SCOPED_TRACE(entry.path());
    expectSameWords(NSString(std::move(page)));
    ++files;
  }
  EXPECT_GT(files, 200u);
}
#endif

}  // namespace
}  // namespace kelspar
