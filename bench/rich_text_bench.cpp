// RTF read as characters and as attributed text, and written as HTML; beside them a reader that
// goes byte by byte and looks words up in a map, as RTF readers commonly do.
#include <benchmark/benchmark.h>

#include <map>
#include <string>

#include "bench/material.h"
#include "platform/richtext/html_writer.h"
#include "platform/richtext/rtf_reader.h"

namespace kelspar {
namespace {

const NSData& document(size_t bytes) {
  static std::map<size_t, NSData> made;
  NSData& rtf = made[bytes];
  if (!rtf) rtf = NSData(bench::formattedRTF(bytes));
  return rtf;
}

void count(benchmark::State& state, const NSData& rtf) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * rtf.length()));
}

// The reference: characters of the body, hexadecimal escapes as Latin-1, known destinations left
// out.
std::string plainReading(std::string_view rtf) {
  static const std::map<std::string, int> kDestinations = {
      {"fonttbl", 1}, {"colortbl", 1}, {"stylesheet", 1}, {"info", 1}, {"pict", 1}, {"header", 1}};
  static const std::map<std::string, char> kCharacters = {
      {"par", '\n'}, {"tab", '\t'}, {"line", '\n'}, {"cell", '\t'}};
  std::vector<bool> skipped{false};
  std::string out;
  for (size_t at = 0; at < rtf.size();) {
    const char c = rtf[at++];
    if (c == '{') {
      skipped.push_back(skipped.back());
    } else if (c == '}') {
      if (skipped.size() > 1) skipped.pop_back();
    } else if (c == '\\' && at < rtf.size() && rtf[at] == '\'') {
      if (!skipped.back())
        out += static_cast<char>(std::stoi(std::string(rtf.substr(at + 1, 2)), nullptr, 16));
      at += 3;
    } else if (c == '\\') {
      std::string word;
      while (at < rtf.size() && std::isalpha(static_cast<unsigned char>(rtf[at])))
        word += rtf[at++];
      while (at < rtf.size() &&
             (std::isdigit(static_cast<unsigned char>(rtf[at])) || rtf[at] == '-'))
        ++at;
      if (at < rtf.size() && rtf[at] == ' ') ++at;
      if (word.empty()) ++at;
      if (kDestinations.contains(word)) skipped.back() = true;
      const auto character = kCharacters.find(word);
      if (character != kCharacters.end() && !skipped.back()) out += character->second;
    } else if (c != '\r' && c != '\n' && !skipped.back()) {
      out += c;
    }
  }
  return out;
}

void BM_RTFToText(benchmark::State& state) {
  const NSData& rtf = document(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(plainTextFromRTF(rtf).length());
  count(state, rtf);
}

void BM_RTFToText_Reference(benchmark::State& state) {
  const NSData& rtf = document(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(plainReading(rtf.chars()).size());
  count(state, rtf);
}

void BM_RTFToAttributedText(benchmark::State& state) {
  const NSData& rtf = document(static_cast<size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(NSAttributedString::initWithRTF(rtf).length());
  count(state, rtf);
}

void BM_RTFToHTML(benchmark::State& state) {
  const NSData& rtf = document(static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    const NSString html = htmlFromAttributedString(NSAttributedString::initWithRTF(rtf));
    benchmark::DoNotOptimize(html.length());
  }
  count(state, rtf);
}

BENCHMARK(BM_RTFToText)->RangeMultiplier(10)->Range(100'000, 100'000'000);
BENCHMARK(BM_RTFToText_Reference)->RangeMultiplier(10)->Range(100'000, 10'000'000);
BENCHMARK(BM_RTFToAttributedText)->RangeMultiplier(10)->Range(100'000, 100'000'000);
BENCHMARK(BM_RTFToHTML)->RangeMultiplier(10)->Range(100'000, 100'000'000);

// One pattern again and again.
void BM_Hostile(benchmark::State& state, const char* pattern) {
  std::string rtf = "{\\rtf1 ";
  while (rtf.size() < static_cast<size_t>(state.range(0))) rtf += pattern;
  const NSData data(rtf);
  for (auto _ : state) benchmark::DoNotOptimize(NSAttributedString::initWithRTF(data).length());
  count(state, data);
}
BENCHMARK_CAPTURE(BM_Hostile, groups, "{")->Range(1 << 16, 4 << 20);
BENCHMARK_CAPTURE(BM_Hostile, changing_groups, "{\\b x")->Range(1 << 16, 4 << 20);
BENCHMARK_CAPTURE(BM_Hostile, toggling_groups, "{\\b x{\\b0 x")->Range(1 << 16, 4 << 20);
BENCHMARK_CAPTURE(BM_Hostile, list_items, "\\par\\ls1")->Range(1 << 16, 4 << 20);
BENCHMARK_CAPTURE(BM_Hostile, cells, "\\itap9 x\\nestcell")->Range(1 << 16, 4 << 20);
BENCHMARK_CAPTURE(BM_Hostile, colors, "\\cf1 x\\cf2 y")->Range(1 << 16, 4 << 20);

// Text of one look, edited in many places.
void BM_Insert(benchmark::State& state) {
  const auto length = static_cast<size_t>(state.range(0));
  const NSAttributedString inserted(u"picture");
  NSMutableAttributedString text(NSAttributedString(NSString(std::u16string(length, u'a'))));
  size_t at = 0;
  for (auto _ : state) {
    at = (at + 1'000'003) % length;
    text.insert(inserted, at);
    text.deleteCharacters({at, inserted.length()});
  }
}
BENCHMARK(BM_Insert)->Range(1 << 12, 16 << 20);

}  // namespace
}  // namespace kelspar
