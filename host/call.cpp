// One request to the runtime, from command-line words.
#include "host/call.h"

#include "host/files.h"
#include "platform/runtime/Operations.h"

namespace kelspar::host {

namespace {

// "-" as a JSON value reads it from standard input.
std::string jsonText(const std::string& word) {
  return word == "-" ? std::string(readInput("-").chars()) : word;
}

id valueOf(const std::string& word, const std::string& what) {
  std::string error;
  const id value = valueFromJSON(jsonText(word), &error);
  if (!error.empty()) throw Failure(kUsage, what + ": " + error);
  return value;
}

Call requested(const CallOptions& options) {
  Call request;
  if (!options.receiver.empty()) request.receiver = valueOf(options.receiver, "receiver");
  for (const std::string& word : options.arguments) {
    const auto position = std::to_string(request.arguments.size() + 1);
    request.arguments.push_back(valueOf(word, "argument " + position));
  }
  return request;
}

}  // namespace

void call(const CallOptions& options) {
  const Operation* operation = Operations::shared().find(options.className, options.operation);
  if (!operation) {
    throw Failure(kUsage, options.operation + ": there is no such operation" +
                              (options.className.empty() ? "" : " in " + options.className));
  }
  try {
    writeOutput("", jsonFromAnswer(operation->call(requested(options))) + "\n");
  } catch (const CallError& error) {
    throw Failure(error.code() == CallError::raised ? kInputFailed : kUsage, error.what());
  }
}

}  // namespace kelspar::host
