// `kelspar stream` beside the operations behind it, on the same messages with one job: what lines,
// order and threads cost. Processor time, in the program and in the system, with the program's
// start; the corpus several times over makes it small.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

#include "host/files.h"
#include "host/message_text.h"
#include "host/open_message.h"

#ifdef KELSPAR_CORPUS

namespace {

namespace fs = std::filesystem;
using namespace kelspar;

constexpr int kTimesOver = 10;

const std::vector<std::string>& messages() {
  static const std::vector<std::string> paths = [] {
    std::vector<std::string> list;
    for (const auto& entry : fs::directory_iterator(fs::path(KELSPAR_CORPUS) / "messages")) {
      list.push_back(entry.path());
    }
    std::ranges::sort(list);
    return list;
  }();
  return paths;
}

double processorSeconds(int who) {
  rusage usage{};
  ::getrusage(who, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void setCounters(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * kTimesOver *
                          static_cast<int64_t>(messages().size()));
}

void BM_Operations(benchmark::State& state) {
  const std::string nowhere = "/dev/null";
  for (auto _ : state) {
    const double start = processorSeconds(RUSAGE_SELF);
    for (int i = 0; i < kTimesOver; ++i) {
      for (const std::string& path : messages()) {
        const NSData bytes = host::readInput(path);
        for (const auto& message : host::openMessages(bytes, path, {})) {
          host::writeOutput(nowhere, host::jsonOf(*message));
        }
      }
    }
    state.SetIterationTime(processorSeconds(RUSAGE_SELF) - start);
  }
  setCounters(state);
}
BENCHMARK(BM_Operations)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_Stream(benchmark::State& state) {
  const fs::path list = fs::temp_directory_path() / ("kelspar-list-" + std::to_string(::getpid()));
  std::ofstream lines(list);
  for (int i = 0; i < kTimesOver; ++i) {
    for (const std::string& path : messages()) lines << path << '\n';
  }
  lines.close();
  const std::string command =
      std::string(KELSPAR_CLI) + " stream --jobs 1 <" + list.string() + " >/dev/null";
  for (auto _ : state) {
    const double start = processorSeconds(RUSAGE_CHILDREN);
    if (std::system(command.c_str()) != 0) state.SkipWithError("the program failed");
    state.SetIterationTime(processorSeconds(RUSAGE_CHILDREN) - start);
  }
  fs::remove(list);
  setCounters(state);
}
BENCHMARK(BM_Stream)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

#endif
