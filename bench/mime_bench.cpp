// Quoted-printable, base64, encoded words, HTML by expressions and addresses, each beside a plain
// reference: GMime and GLib for the decoders, the stated expressions through ICU for the rest.
#include <benchmark/benchmark.h>
#include <glib.h>
#include <gmime/gmime.h>

#include <map>
#include <random>

#include "MailKelspar/MailKelspar.h"
#include "WebKelspar/WebKelsparNSStringAdditions.h"
#include "platform/unicode/NSRegularExpression.h"

namespace kelspar {
namespace {

namespace Mime = WebKelsparNSStringAdditions;

// Lines of 76 characters: words, some escapes, soft breaks.
const std::string& quotedPrintable(size_t size) {
  static std::map<size_t, std::string> made;
  std::string& text = made[size];
  std::mt19937 random(21);
  constexpr const char* kWords[] = {"the",  "message",   "caf=C3=A9", "with", "a=3Db",
                                    "plan", "=E2=82=AC", "of",        "and",  "quarterly"};
  std::string line;
  while (text.size() < size) {
    line += kWords[random() % 24 < 3 ? 2 + random() % 3 * 2 : random() % 2 * 9];
    line += ' ';
    if (line.size() < 64) continue;
    text += line + (random() % 4 ? "=\r\n" : "\r\n");
    line.clear();
  }
  return text;
}

const std::string& base64Lines(size_t size) {
  static std::map<size_t, std::string> made;
  std::string& text = made[size];
  std::mt19937 random(22);
  constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  while (text.size() < size) {
    for (int i = 0; i < 76; ++i) text += kAlphabet[random() % 64];
    text += "\r\n";
  }
  return text;
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->Arg(100 << 10)->Arg(1 << 20)->Arg(10 << 20)->Unit(benchmark::kMicrosecond);
}

template <class Job>
void measure(benchmark::State& state, size_t bytes, Job job) {
  for (auto _ : state) benchmark::DoNotOptimize(job());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

void BM_QuotedPrintableToText(benchmark::State& state) {
  const std::string& text = quotedPrintable(static_cast<size_t>(state.range(0)));
  const NSString receiver(text);
  measure(state, text.size(), [&] {
    return Mime::quotedPrintableDecodeWithEncoding(receiver, NSUTF8StringEncoding).length();
  });
}
void BM_QuotedPrintableToBytes(benchmark::State& state) {
  const NSData body(quotedPrintable(static_cast<size_t>(state.range(0))));
  measure(state, body.length(),
          [&] { return MailKelspar::decodeTransfer(body, u"quoted-printable").length(); });
}
// Escapes only: nothing to be searched.
void BM_QuotedPrintableEscapesOnly(benchmark::State& state) {
  std::u16string text;
  while (text.size() < static_cast<size_t>(state.range(0))) text += u"=E2=82=AC";
  const NSString receiver(text);
  measure(state, text.size(), [&] {
    return Mime::quotedPrintableDecodeWithEncoding(receiver, NSUTF8StringEncoding).length();
  });
}
void BM_QuotedPrintable_GMime(benchmark::State& state) {
  const std::string& text = quotedPrintable(static_cast<size_t>(state.range(0)));
  std::string bytes(text.size() + 4, '\0');
  measure(state, text.size(), [&] {
    int saved = 0;
    guint32 rest = 0;
    return g_mime_encoding_quoted_decode_step(reinterpret_cast<const uint8_t*>(text.data()),
                                              text.size(), reinterpret_cast<uint8_t*>(bytes.data()),
                                              &saved, &rest);
  });
}

void BM_Base64ToText(benchmark::State& state) {
  const std::string& text = base64Lines(static_cast<size_t>(state.range(0)));
  const NSString receiver(text);
  measure(state, text.size(), [&] {
    return Mime::base64DecodeWithEncoding(receiver, NSISOLatin1StringEncoding).length();
  });
}
void BM_Base64ToBytes(benchmark::State& state) {
  const NSData body(base64Lines(static_cast<size_t>(state.range(0))));
  measure(state, body.length(),
          [&] { return MailKelspar::decodeTransfer(body, u"base64").length(); });
}
// A stray behind each character.
void BM_Base64Strays(benchmark::State& state) {
  std::string text;
  while (text.size() < static_cast<size_t>(state.range(0))) text += "Q!";
  const NSData body(text);
  measure(state, body.length(),
          [&] { return MailKelspar::decodeTransfer(body, u"base64").length(); });
}
void BM_Base64_GLib(benchmark::State& state) {
  const std::string& text = base64Lines(static_cast<size_t>(state.range(0)));
  std::string bytes(text.size(), '\0');
  measure(state, text.size(), [&] {
    gint saved = 0;
    guint rest = 0;
    return g_base64_decode_step(text.data(), text.size(), reinterpret_cast<guchar*>(bytes.data()),
                                &saved, &rest);
  });
}

// Lines of 68 bytes with one encoded word.
const std::vector<NSString>& headers() {
  static const std::vector<NSString> lines{
      u"Subject: =?UTF-8?Q?Caf=C3=A9_und_Kuchen_am_Nachmittag_im_Garten?= ok",
      u"Subject: =?utf-8?B?Q2Fmw6kgdW5kIEt1Y2hlbiBhbSBOYWNobWl0dGFnIGlt?= ok",
      u"Subject: =?ISO-8859-1?Q?R=E9union_de_l'=E9quipe_demain_matin_?= au 2",
      u"Subject: =?windows-1251?B?z/Do4uXyLCDq4Oog5OXr4D8gz/Do4uXyLCA=?= (3)"};
  return lines;
}
void BM_EncodedWords(benchmark::State& state) {
  for (auto _ : state)
    for (const NSString& line : headers())
      benchmark::DoNotOptimize(Mime::decodeMimeHeader(line).length());
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * headers().size()));
}
void BM_EncodedWords_GMime(benchmark::State& state) {
  g_mime_init();
  std::vector<std::string> lines;
  for (const NSString& line : headers()) lines.push_back(line.utf8());
  for (auto _ : state)
    for (const std::string& line : lines)
      g_free(g_mime_utils_header_decode_text(nullptr, line.c_str()));
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * lines.size()));
}
// Openings only: nothing closes them.
void BM_EncodedWordsHostile(benchmark::State& state) {
  std::u16string text;
  while (text.size() < static_cast<size_t>(state.range(0))) text += u"=?a?";
  const NSString receiver(text);
  measure(state, text.size(), [&] { return Mime::decodeMimeHeader(receiver).length(); });
}

const NSString& page(size_t size) {
  static std::map<size_t, NSString> made;
  NSString& text = made[size];
  if (text) return text;
  std::mt19937 random(23);
  std::u16string html = u"<html><head><style>p { color: red }</style></head><body>\n";
  while (html.size() < size) {
    html += u"<p class=\"MsoNormal\"><span style='font-size:11.0pt'>Please find the report";
    html += random() % 2 ? u" &amp; the plan&nbsp;</span>" : u" <b>attached</b> as agreed.</span>";
    html += u"</p>\r\n<div><a href=\"https://example.org/a\">the page</a><br></div>\r\n";
  }
  return text = NSString(html);
}
void BM_StripFallback(benchmark::State& state) {
  const NSString& html = page(static_cast<size_t>(state.range(0)));
  measure(state, html.length(), [&] { return Mime::stringByStrippingHTMLFallback(html).length(); });
}
// A "<" inside every tag: the expressions are followed one by one.
void BM_StripFallbackNested(benchmark::State& state) {
  std::u16string text;
  while (text.size() < static_cast<size_t>(state.range(0))) text += u"<p <b> text </p>";
  const NSString html(text);
  measure(state, html.length(), [&] { return Mime::stringByStrippingHTMLFallback(html).length(); });
}
// The expressions for comments, styles, block tags and tags, without the entities.
void BM_StripFallback_ICU(benchmark::State& state) {
  const NSString& html = page(static_cast<size_t>(state.range(0)));
  constexpr auto kAnyCase = NSRegularExpression::caseInsensitive;
  std::vector<NSRegularExpression> steps{
      NSRegularExpression::withPattern(u"<!--[\\s\\S]*?-->"),
      NSRegularExpression::withPattern(u"<(style|script)[^>]*?>[\\s\\S]*?</\\1>", kAnyCase)};
  for (const char16_t* tag : {u"p", u"div", u"br", u"h1", u"h2", u"h3", u"h4", u"h5", u"h6", u"li",
                              u"ul", u"ol", u"blockquote", u"pre"})
    steps.push_back(NSRegularExpression::withPattern(
        NSString(u"</?" + std::u16string(tag) + u"[^>]*>"), kAnyCase));
  steps.push_back(NSRegularExpression::withPattern(u"<[^>]+>"));
  measure(state, html.length(), [&] {
    NSString text = html;
    for (const auto& step : steps) text = step.stringByReplacingMatches(text, u"");
    return text.length();
  });
}

const std::vector<NSString>& addresses() {
  static const std::vector<NSString> texts{
      u"firstname.lastname@example.org",   u"some.one+tag@mail.example.co.uk",
      u"not an address at all, you see.",  u"a_b-c.d@department.example.com",
      u"\"john doe\"@example.example.org", u"postmaster@[192.168.101.202:25]"};
  return texts;
}
void BM_ValidateAddress(benchmark::State& state) {
  for (auto _ : state)
    for (const NSString& text : addresses())
      benchmark::DoNotOptimize(Mime::validateEmailAddress(text));
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * addresses().size()));
}
void BM_ValidateAddressHostile(benchmark::State& state) {
  const NSString text(u"\"" + std::u16string(static_cast<size_t>(state.range(0)), u' ') +
                      u"\"@a.b");
  measure(state, text.length(), [&] { return Mime::validateEmailAddress(text); });
}

BENCHMARK(BM_EncodedWords);
BENCHMARK(BM_EncodedWords_GMime);
BENCHMARK(BM_EncodedWordsHostile)->Apply(sizes);
BENCHMARK(BM_StripFallback_ICU)->Arg(100 << 10)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_StripFallback)->Apply(sizes);
BENCHMARK(BM_StripFallbackNested)->Apply(sizes);
BENCHMARK(BM_ValidateAddress);
BENCHMARK(BM_ValidateAddressHostile)->Apply(sizes);
BENCHMARK(BM_QuotedPrintable_GMime)->Apply(sizes);
BENCHMARK(BM_QuotedPrintableToBytes)->Apply(sizes);
BENCHMARK(BM_QuotedPrintableToText)->Apply(sizes);
BENCHMARK(BM_QuotedPrintableEscapesOnly)->Apply(sizes);
BENCHMARK(BM_Base64_GLib)->Apply(sizes);
BENCHMARK(BM_Base64ToBytes)->Apply(sizes);
BENCHMARK(BM_Base64ToText)->Apply(sizes);
BENCHMARK(BM_Base64Strays)->Apply(sizes);

}  // namespace
}  // namespace kelspar
