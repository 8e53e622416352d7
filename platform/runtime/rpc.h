// JSON-RPC 2.0 requests to operations: one line in, one line out. Internal to the library.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kelspar::runtime {

// Called once a line, with the answer without its line feed; empty when nothing is to be answered
// (notifications). Must not throw. By the calling thread or, where an operation completes later, by
// another one.
using LineReply = std::function<void(std::string answer)>;

// Runs what the line asks for and answers it. Whatever goes wrong is an answer, too; without the
// memory even for that it is empty.
void answerLine(std::string_view line, LineReply reply) noexcept;

}  // namespace kelspar::runtime
