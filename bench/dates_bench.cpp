// Header dates: one a call, canonical and of mixed shapes; the ordered list of formats is the
// reference.
#include <benchmark/benchmark.h>

#include "TimeKelspar/TimeKelspar.h"
#include "TimeKelspar/date_texts.h"

namespace kelspar {
namespace {

const std::vector<NSString>& texts(bool mixed) {
  static const std::vector<NSString> canonical{u"Thu, 19 Nov 2020 14:05:44 -0400",
                                               u"Fri, 04 May 2001 20:18:00 +0000"};
  static const std::vector<NSString> shapes{
      u"Thu, 19 Nov 2020 14:05:44 -0400", u"Fri, 4 May 2001 20:18:00 +0000",
      u"4 May 2001 20:18:00 +0200",       u"2020-11-19T14:05:44+0000",
      u"Thu Nov 19 14:05:44 2020",        u"Fri,  4 May 2001 20:18:00 +0000"};
  return mixed ? shapes : canonical;
}

void BM_HeaderDate(benchmark::State& state, bool mixed) {
  for (auto _ : state) {
    for (const NSString& text : texts(mixed)) {
      benchmark::DoNotOptimize(TimeKelspar::dateFromMIMEString(text));
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * texts(mixed).size()));
}
void BM_HeaderDate_Reference(benchmark::State& state, bool mixed) {
  for (auto _ : state) {
    for (const NSString& text : texts(mixed)) {
      benchmark::DoNotOptimize(dates::readByHeaderFormats(text));
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * texts(mixed).size()));
}
void BM_HeaderDate_NamedZone(benchmark::State& state) {
  const NSString text(u"Thu, 19 Nov 2020 14:05:44 EST");
  for (auto _ : state) benchmark::DoNotOptimize(TimeKelspar::dateFromMIMEString(text));
  state.SetItemsProcessed(state.iterations());
}
void BM_WriteHeaderDate(benchmark::State& state) {
  const NSDate date = NSDate::since1970(1605812744);
  for (auto _ : state) benchmark::DoNotOptimize(TimeKelspar::mimeStringFromDate(date));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(BM_HeaderDate_Reference, canonical, false);
BENCHMARK_CAPTURE(BM_HeaderDate, canonical, false);
BENCHMARK_CAPTURE(BM_HeaderDate_Reference, mixed, true);
BENCHMARK_CAPTURE(BM_HeaderDate, mixed, true);
BENCHMARK(BM_HeaderDate_NamedZone);
BENCHMARK(BM_WriteHeaderDate);

}  // namespace
}  // namespace kelspar
