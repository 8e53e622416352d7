// kelspar-extension as a host meets it: how long it takes to start, how many small calls it answers
// a second when they are streamed through a pipe.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <thread>

extern char** environ;

namespace {

// Runs the program over `input` and returns how many lines came back.
size_t linesAnswered(const std::string& input) {
  int in[2], out[2];
  if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0) return 0;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, in[0], 0);
  posix_spawn_file_actions_adddup2(&actions, out[1], 1);
  std::string program = KELSPAR_EXTENSION;
  char* arguments[] = {program.data(), nullptr};
  pid_t process = -1;
  const int failed =
      ::posix_spawn(&process, program.c_str(), &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(in[0]), ::close(out[1]);
  if (failed) return 0;
  std::thread writer([&] {
    for (size_t at = 0; at < input.size();) {
      const ssize_t written = ::write(in[1], input.data() + at, input.size() - at);
      if (written <= 0) break;
      at += static_cast<size_t>(written);
    }
    ::close(in[1]);
  });
  size_t lines = 0;
  char chunk[65536];
  for (ssize_t count; (count = ::read(out[0], chunk, sizeof chunk)) > 0;) {
    for (ssize_t i = 0; i < count; ++i) lines += chunk[i] == '\n';
  }
  writer.join();
  ::close(out[0]);
  ::waitpid(process, nullptr, 0);
  return lines;
}

void BM_Start(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(linesAnswered(""));
}

void BM_SmallCalls(benchmark::State& state) {
  std::string input;
  for (int64_t i = 0; i < state.range(0); ++i) {
    input +=
        R"({"jsonrpc":"2.0","id":)" + std::to_string(i) +
        R"(,"method":"typeIsRTF:","params":{"class":"RTFKelspar","arguments":[{"$data":"AAAAAAAAAABMWkZ1"}]}})"
        "\n";
  }
  for (auto _ : state) {
    if (linesAnswered(input) != static_cast<size_t>(state.range(0)))
      state.SkipWithError("lost answers");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_Start)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SmallCalls)->Arg(10000)->Arg(100000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
