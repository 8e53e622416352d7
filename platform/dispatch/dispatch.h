// Queues: the global concurrent ones and the main queue.
//
// The main queue is GLib's default main context: a host that runs a GLib main loop (any GTK or Qt
// desktop program) has to do nothing, another one calls `drainMain` from its own loop. Nothing here
// may be used in a child process after fork().
#pragma once

#include <cstdint>
#include <functional>

namespace kelspar::dispatch {

using Job = std::function<void()>;

// Jobs of a higher class start before waiting jobs of a lower one.
enum class Priority : uint8_t { userInitiated, standard, utility, background };

// Runs `job` on another thread, soon. Jobs may block: when none of the running ones has finished
// for a few milliseconds, another thread takes the next waiting job (64 threads at most).
//
// A job must not throw. Where there is no thread and the system gives none, the job is dropped and
// this throws std::system_error.
void async(Priority priority, Job job);

// Posts `job` to the main queue. Jobs run in the order in which they were posted; they must not
// throw.
void asyncMain(Job job);

// Runs `job` on the main queue and returns when it has run. On the main thread it runs at once;
// when no thread runs the main loop, this thread stands in for the main thread while the job runs.
// What the job throws is thrown here.
void syncMain(const Job& job);

// Whether this thread is the process's first, or runs the default main context at the moment.
[[nodiscard]] bool isMainThread();

// Runs what has been posted to the main queue, for hosts without a main loop; to be called on the
// main thread. Waits up to `milliseconds` for something to come when there is nothing yet.
// Returns whether anything ran.
bool drainMain(uint32_t milliseconds = 0);

}  // namespace kelspar::dispatch
