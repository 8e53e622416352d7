// `kelspar stream`: a filter for archives.
#pragma once

#include <cstddef>
#include <string>

namespace kelspar::host {

struct StreamOptions {
  bool base64 = false;
  std::string charset;
  size_t jobs = 0;
};

// Reads a line for each file name, or message in base64, and writes a line for each of them, in
// order: {"input":NAME,"messages":[...]} or {"input":NAME,"error":TEXT}; under `base64` the name is
// the line's number. Empty lines get no record. Each record is written as soon as it and
// those before it are there, whether or not further lines have come. Memory holds a few messages a
// job. Returns the exit status; when standard output takes no more, ends the process with it.
[[nodiscard]] int stream(const StreamOptions& options);

}  // namespace kelspar::host
