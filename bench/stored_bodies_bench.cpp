// Stored bodies: compressed RTF decoded, HTML taken out, RTF read as characters. Each beside the
// plain way of doing it; the ratio of a row to its reference in the same run is what counts.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <map>

#include "MailKelspar/MailKelspar.h"
#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "RTFKelspar/encapsulated_html_literal.h"
#include "RTFKelspar/lz_textbook.h"
#include "bench/material.h"

namespace kelspar {
namespace {

// Formatted text is dense (few bytes a token), encapsulated HTML repeats itself.
std::string material(bool encapsulated, size_t bytes) {
  return encapsulated ? bench::encapsulatedRTF(bytes) : bench::formattedRTF(bytes);
}

struct Stored {
  std::string rtf;
  std::vector<uint8_t> stream;
};
const Stored& stored(bool encapsulated, size_t bytes) {
  static std::map<std::pair<bool, size_t>, Stored> made;
  Stored& entry = made[{encapsulated, bytes}];
  if (entry.rtf.empty()) {
    entry.rtf = material(encapsulated, bytes);
    entry.stream = bench::compressed(entry.rtf, encapsulated ? 200 : 4);
  }
  return entry;
}

void countOutput(benchmark::State& state, const Stored& body) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * body.rtf.size()));
}

void BM_DecodeLZ(benchmark::State& state, bool encapsulated) {
  const Stored& body = stored(encapsulated, static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    uint8_t* out =
        RTFKelspar::decodeRTFSource(body.stream.data(), body.stream.size(), body.rtf.size());
    benchmark::DoNotOptimize(out);
    std::free(out);
  }
  countOutput(state, body);
}

// The textbook decoder of the tests, over plain memory.
void BM_DecodeLZ_Reference(benchmark::State& state, bool encapsulated) {
  const Stored& body = stored(encapsulated, static_cast<size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(lz::decodeByTheBook(body.stream, body.rtf.size()).data());
  }
  countOutput(state, body);
}

void BM_ExtractHTML(benchmark::State& state) {
  const std::string rtf = material(true, static_cast<size_t>(state.range(0)));
  const NSData data{std::string_view(rtf)};
  for (auto _ : state) benchmark::DoNotOptimize(RTFKelspar::extractHTMLFromEncapsulatedRTF(data));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * rtf.size()));
}

void BM_ExtractHTML_Reference(benchmark::State& state) {
  const std::string rtf = material(true, static_cast<size_t>(state.range(0)));
  const NSData data{std::string_view(rtf)};
  for (auto _ : state) benchmark::DoNotOptimize(extractHTMLLiterally(data));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * rtf.size()));
}

void BM_ReadableHTML(benchmark::State& state) {
  const std::string rtf = material(true, static_cast<size_t>(state.range(0)));
  const NSData data{std::string_view(rtf)};
  for (auto _ : state) benchmark::DoNotOptimize(MailKelspar::htmlFromEncapsulatedRTF(data));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * rtf.size()));
}

void BM_RTFToCharacters(benchmark::State& state, bool encapsulated) {
  const std::string rtf = material(encapsulated, static_cast<size_t>(state.range(0)));
  const NSData data{std::string_view(rtf)};
  for (auto _ : state) {
    benchmark::DoNotOptimize(RTFKelsparNSDataAdditions::stringFromRTFData(data));
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * rtf.size()));
}

void BM_RTFToCharacters_HostileBraces(benchmark::State& state) {
  const auto size = static_cast<size_t>(state.range(0));
  const std::string rtf = "{\\rtf1" + std::string(size / 2, '{') + std::string(size / 2, '}') + "}";
  const NSData data{std::string_view(rtf)};
  for (auto _ : state) {
    benchmark::DoNotOptimize(RTFKelsparNSDataAdditions::stringFromRTFData(data));
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * rtf.size()));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  for (const int64_t size : {4 << 10, 64 << 10, 1 << 20, 10 << 20}) benchmark->Arg(size);
}

BENCHMARK_CAPTURE(BM_DecodeLZ_Reference, dense, false)->Apply(sizes);
BENCHMARK_CAPTURE(BM_DecodeLZ, dense, false)->Apply(sizes);
BENCHMARK_CAPTURE(BM_DecodeLZ_Reference, encapsulated, true)->Apply(sizes);
BENCHMARK_CAPTURE(BM_DecodeLZ, encapsulated, true)->Apply(sizes);
BENCHMARK(BM_ExtractHTML_Reference)->Apply(sizes);
BENCHMARK(BM_ExtractHTML)->Apply(sizes);
BENCHMARK(BM_ReadableHTML)->Apply(sizes);
BENCHMARK_CAPTURE(BM_RTFToCharacters, formatted, false)->Apply(sizes);
BENCHMARK_CAPTURE(BM_RTFToCharacters, encapsulated, true)->Apply(sizes);
BENCHMARK(BM_RTFToCharacters_HostileBraces)->Apply(sizes);

}  // namespace
}  // namespace kelspar
