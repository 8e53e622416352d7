// Colours of encapsulated HTML: the pipeline against its literal steps, over the size of the body.
#include <benchmark/benchmark.h>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSStringAdditions.h"
#include "tests/colours_literal.h"

namespace kelspar {
namespace {

constexpr int kColours = 1000;

// One coloured line in a kilobyte, as word processors write mail: many tags, few spans.
std::string body(size_t size, bool isAscii) {
  std::string rtf =
      "{\\rtf1\\ansi\\fromhtml1{\\fonttbl{\\f0 Arial;}}\n{\\colortbl;\\red0\\green0\\blue9;}\n";
  const std::string filler =
      "{\\*\\htmltag64 <p class=MsoNormal>}\\htmlrtf \\pard\\plain\\htmlrtf0 some words of a "
      "mail,\n"
      "{\\*\\htmltag84 &nbsp;}\\htmlrtf \\'a0\\htmlrtf0 {\\*\\htmltag72 </p>}\n";
  for (int line = 0; rtf.size() < size; ++line) {
    char colour[16];
    std::snprintf(colour, sizeof colour, "#%06x", line % kColours * 977);
    rtf +=
        "{\\*\\htmltag148 <span lang=EN-US style='font-size:11.0pt;color:" + std::string(colour) +
        "'>}\\htmlrtf {\\htmlrtf0 coloured words}\n";
    for (int i = 0; i < 6; ++i) rtf += filler;
    if (!isAscii) rtf += "caf\xC3\xA9\n";
  }
  return rtf + "}";
}

template <class Function>
void run(benchmark::State& state, const std::string& rtf, Function function) {
  const NSData data{std::string_view(rtf)};
  for (auto _ : state) benchmark::DoNotOptimize(function(data));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * rtf.size()));
  state.SetComplexityN(static_cast<int64_t>(rtf.size()));
}

const auto pipeline = &RTFKelspar::generateRTFColourTagsFromEmbeddedHTMLInRTF;

void BM_Pipeline(benchmark::State& state, bool isAscii) {
  run(state, body(static_cast<size_t>(state.range(0)), isAscii), pipeline);
}
BENCHMARK_CAPTURE(BM_Pipeline, ascii, true)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Arg(10'000'000)
    ->Complexity(benchmark::oN);
BENCHMARK_CAPTURE(BM_Pipeline, utf8, false)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000);

void BM_PipelineLiteral(benchmark::State& state) {
  run(state, body(static_cast<size_t>(state.range(0)), true),
      [](const NSData& data) { return literal::colouredRTF(data); });
}
BENCHMARK(BM_PipelineLiteral)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000);

void BM_PipelineRepeated(benchmark::State& state, const char* piece) {
  std::string rtf = "{\\colortbl;}<span color:red>htmltag148\\htmlrtf0";
  while (rtf.size() < static_cast<size_t>(state.range(0))) rtf += piece;
  run(state, rtf, pipeline);
}
BENCHMARK_CAPTURE(BM_PipelineRepeated, nothingToDo, "words of a mail without a span ")
    ->Range(1 << 16, 1 << 22);
BENCHMARK_CAPTURE(BM_PipelineRepeated, tails, "A\\htmlrtf0")->Range(1 << 16, 1 << 22);
BENCHMARK_CAPTURE(BM_PipelineRepeated, groups, "{\\colortbl")->Range(1 << 16, 1 << 22);
BENCHMARK_CAPTURE(BM_PipelineRepeated, spans, "\n<span ")->Range(1 << 16, 1 << 22);

void BM_ConvertToRTFColour(benchmark::State& state, const char16_t* colour) {
  const NSString text(colour);
  for (auto _ : state) {
    benchmark::DoNotOptimize(RTFKelsparNSStringAdditions::convertToRTFColour(text));
  }
}
BENCHMARK_CAPTURE(BM_ConvertToRTFColour, hex, u"#1F497D");
BENCHMARK_CAPTURE(BM_ConvertToRTFColour, rgb, u"rgb(31,73,125)");
BENCHMARK_CAPTURE(BM_ConvertToRTFColour, named, u"windowtext");

}  // namespace
}  // namespace kelspar
