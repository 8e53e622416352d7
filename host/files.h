// Input and output of the command line: whole inputs in, outputs that are complete or not there.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/foundation/NSData.h"

namespace kelspar::host {

// What goes wrong with an input or an output, in one line for the user, and the exit status it
// means.
class Failure : public std::runtime_error {
 public:
  Failure(int status, const std::string& message) : std::runtime_error(message), status_(status) {}
  [[nodiscard]] int status() const noexcept { return status_; }

 private:
  int status_;
};

inline constexpr int kInputFailed = 1;
inline constexpr int kUsage = 2;
inline constexpr int kNothingRead = 3;
inline constexpr int kCannotWrite = 4;

// The bytes of a file, or of standard input for "-". Throws Failure.
[[nodiscard]] NSData readInput(const std::string& path);

// How messages name an input.
[[nodiscard]] std::string inputName(const std::string& path);

// False, and a reason in errno, when not all could be written.
[[nodiscard]] bool writeAll(int descriptor, std::string_view bytes);

// Writes to standard output for an empty path or "-", without control characters where that is a
// terminal. A file is written beside its place and then renamed into it: it is replaced whole or
// not at all. A link's target is what is replaced; a file that must not be written stays. Throws
// Failure.
void writeOutput(const std::string& path, std::string_view bytes);

// Writes a file where there is none, in the same way: of several threads or programs that write
// `path` one succeeds. Throws Failure (kCannotWrite).
void writeNewFile(const std::string& path, std::string_view bytes);

// Throws the Failure that `writeNewFile` would throw because of what is there now.
void expectNoFile(const std::string& path);

}  // namespace kelspar::host
