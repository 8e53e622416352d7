// HTML to text and to attributed text. One reference is another HTML5 parser with a walk over its
// tree; the plain one is a byte loop that drops what stands between "<" and ">" and copies the
// rest: it knows no references, no layout and nothing hidden.
#include <benchmark/benchmark.h>
#include <gumbo.h>

#include <string>
#include <vector>

#include "platform/richtext/html_importer.h"

namespace {

using namespace kelspar;

// What newsletters are made of: tables in tables, styles in attributes, a preheader, references.
constexpr std::string_view kNewsletter =
    "<table role=\"presentation\" width=\"600\" cellpadding=\"0\" cellspacing=\"0\" border=\"0\">"
    "<tr>\n  <td align=\"left\" valign=\"top\" style=\"font-family: Arial, sans-serif; font-size: "
    "14px; line-height: 20px; color: #333333; padding: 10px 20px;\">\n    <h2 style=\"margin: 0; "
    "font-size: 18px\">Offers of the week</h2>\n    <p>The quick brown fox jumps over the lazy "
    "dog, and then it does the same again &amp; again,\n    until somebody tells it&nbsp;to "
    "stop. <a href=\"https://example.org/offer?id=12345&amp;from=mail\" style=\"color: #0066cc\">"
    "Read more</a> &raquo;</p>\n    <div style=\"display:none;max-height:0\">hidden</div>\n"
    "    <img src=\"https://example.org/spacer.gif\" width=\"1\" height=\"1\" alt=\"\">\n  </td>"
    "</tr>\n</table>\n";
constexpr std::string_view kOffice =
    "<p class=MsoNormal style='margin:0cm;margin-bottom:.0001pt'><span lang=EN-GB "
    "style='font-size:11.0pt;font-family:\"Calibri\",sans-serif;color:#1F497D'>Dear all, please "
    "find attached the minutes of our meeting on Thursday.<o:p></o:p></span></p>\n";
constexpr std::string_view kProse =
    "<p>It was the best of times, it was the worst of times, it was the age of wisdom, it was "
    "the age of foolishness, it was the epoch of belief, it was the epoch of incredulity.</p>\n";

std::string repeated(std::string_view pattern, int64_t size) {
  std::string text;
  while (text.size() < static_cast<size_t>(size)) text += pattern;
  return text;
}

std::u16string droppingTags(const std::u16string& html) {
  std::u16string text;
  bool inTag = false;
  for (const char16_t c : html) {
    if (c == u'<') inTag = true;
    if (!inTag) text.push_back(c);
    if (c == u'>') inTag = false;
  }
  return text;
}

// Another HTML5 parser, its tree walked for the text: what stands in head, scripts and styles left
// out, a line for each block.
std::string walked(const std::string& html) {
  GumboOptions options = kGumboDefaultOptions;
  options.max_errors = 0;
  GumboOutput* const output = gumbo_parse_with_options(&options, html.data(), html.size());
  std::string text;
  std::vector<const GumboNode*> open{output->root};
  while (!open.empty()) {
    const GumboNode* const node = open.back();
    open.pop_back();
    if (node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE) {
      text += node->v.text.text;
    }
    if (node->type != GUMBO_NODE_ELEMENT) continue;
    const GumboElement& element = node->v.element;
    if (element.tag == GUMBO_TAG_HEAD || element.tag == GUMBO_TAG_SCRIPT ||
        element.tag == GUMBO_TAG_STYLE) {
      continue;
    }
    if (element.tag == GUMBO_TAG_P || element.tag == GUMBO_TAG_DIV || element.tag == GUMBO_TAG_TR ||
        element.tag == GUMBO_TAG_BR) {
      text += '\n';
    }
    for (unsigned i = element.children.length; i-- > 0;) {
      open.push_back(static_cast<const GumboNode*>(element.children.data[i]));
    }
  }
  gumbo_destroy_output(&options, output);
  return text;
}

void finish(benchmark::State& state, size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
  state.SetComplexityN(static_cast<int64_t>(bytes));
}

void BM_Reference(benchmark::State& state, std::string_view pattern) {
  const std::string html = repeated(pattern, state.range(0));
  const std::u16string units(html.begin(), html.end());
  for (auto _ : state) benchmark::DoNotOptimize(droppingTags(units));
  finish(state, html.size());
}

void BM_OtherParser(benchmark::State& state, std::string_view pattern) {
  const std::string html = repeated(pattern, state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(walked(html));
  finish(state, html.size());
}

void BM_HTMLToText(benchmark::State& state, std::string_view pattern) {
  const std::string html = repeated(pattern, state.range(0));
  const NSString units(html);
  for (auto _ : state) benchmark::DoNotOptimize(plainTextFromHTML(units));
  finish(state, html.size());
}

void BM_HTMLBytesToText(benchmark::State& state, std::string_view pattern) {
  const NSData html(repeated(pattern, state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(plainTextFromHTML(html));
  finish(state, html.length());
}

void BM_HTMLToAttributed(benchmark::State& state, std::string_view pattern) {
  const std::string html = repeated(pattern, state.range(0));
  const NSString units(html);
  for (auto _ : state) benchmark::DoNotOptimize(attributedTextFromHTML(units));
  finish(state, html.size());
}

#define EACH(run, name, pattern) \
  BENCHMARK_CAPTURE(run, name, pattern)->Arg(1 << 20)->Unit(benchmark::kMillisecond)
EACH(BM_Reference, newsletter, kNewsletter);
EACH(BM_OtherParser, newsletter, kNewsletter);
EACH(BM_HTMLToText, newsletter, kNewsletter);
EACH(BM_HTMLBytesToText, newsletter, kNewsletter);
EACH(BM_HTMLToAttributed, newsletter, kNewsletter);
EACH(BM_Reference, office, kOffice);
EACH(BM_OtherParser, office, kOffice);
EACH(BM_HTMLToText, office, kOffice);
EACH(BM_HTMLToAttributed, office, kOffice);
EACH(BM_Reference, prose, kProse);
EACH(BM_OtherParser, prose, kProse);
EACH(BM_HTMLToText, prose, kProse);
EACH(BM_HTMLToAttributed, prose, kProse);

// As long as mail never is: the cost of a byte stays the same.
BENCHMARK_CAPTURE(BM_HTMLToText, long, kNewsletter)
    ->Arg(1 << 20)
    ->Arg(10 << 20)
    ->Arg(100 << 20)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK_CAPTURE(BM_HTMLToAttributed, long, kOffice)
    ->Arg(1 << 20)
    ->Arg(10 << 20)
    ->Arg(100 << 20)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

// Hostile: nothing is closed, or everything is nested, and the cost stays a line.
#define HOSTILE(name, pattern)                          \
  BENCHMARK_CAPTURE(BM_HTMLToText, name, pattern)       \
      ->RangeMultiplier(8)                              \
      ->Range(1 << 14, 1 << 20)                         \
      ->Complexity(benchmark::oN);                      \
  BENCHMARK_CAPTURE(BM_HTMLToAttributed, name, pattern) \
      ->RangeMultiplier(8)                              \
      ->Range(1 << 14, 1 << 20)                         \
      ->Complexity(benchmark::oN)
HOSTILE(divs, "<div>");
HOSTILE(formatting, "<b><font color=red><p>x");
HOSTILE(tables, "<table><tr><td>");
HOSTILE(misnested, "<a><b><div></a></b>x");
HOSTILE(openings, "<");
HOSTILE(references, "&#");
HOSTILE(comments, "<!-");
HOSTILE(spans, "<tr><td rowspan=9 colspan=9>");
HOSTILE(late, "<i class=a><style>.a b{display:none}</style>");
HOSTILE(selectors, "<style>.a .b,.b .a,.a>.c{display:none}</style><i class='a b'><b class='c a'>x");

}  // namespace
