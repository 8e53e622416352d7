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
