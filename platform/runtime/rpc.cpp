// Requests, batches and errors of JSON-RPC 2.0.
#include "platform/runtime/rpc.h"

#include <atomic>
#include <memory>
#include <mutex>

#include "platform/loading/json_reader.h"
#include "platform/runtime/Operations.h"
#include "platform/runtime/value_json.h"

namespace kelspar::runtime {

namespace {

constexpr int kParseError = -32700;
constexpr int kInvalidRequest = -32600;

// An identifier comes back as it was sent: a text stays a text, whatever its units.
std::string answerStart(const id& requestId) {
  std::string line = "{\"jsonrpc\":\"2.0\",\"id\":";
  if (const auto name = requestId.as<NSString>()) {
    writeString(name, &line);
  } else {
    writeValue(requestId, &line);
  }
  return line;
}

std::string errorAnswer(const id& requestId, int code, const std::string& message) {
  std::string line = answerStart(requestId);
  line += ",\"error\":{\"code\":" + std::to_string(code) + ",\"message\":";
  writeString(NSString(message), &line);
  return line + "}}";
}

std::string resultAnswer(const id& requestId, const Answer& answer) {
  return answerStart(requestId) + ",\"result\":" + jsonFromAnswer(answer) + "}";
}

NSString text(const std::string& utf8) { return NSString(utf8); }

// rpc.discover: the classes and categories with their operations.
id catalogue() {
  NSMutableArray classes;
  for (const OperationClass& owner : Operations::shared().classes()) {
    NSMutableArray operations;
    for (const auto& operation : owner.operations) {
      NSMutableArray arguments;
      for (const auto& type : operation->argumentTypes()) arguments.addObject(text(type));
      NSMutableDictionary entry{{u"name", text(operation->name())},
                                {u"kind", operation->hasReceiver() ? u"instance"_ns : u"class"_ns},
                                {u"arguments", std::move(arguments).copy()},
                                {u"result", text(operation->resultType())}};
      if (operation->hasReceiver()) entry.setObject(text(operation->receiverType()), u"receiver");
      operations.addObject(NSDictionary(std::move(entry)));
    }
    NSMutableDictionary entry{{u"name", text(owner.name)},
                              {u"operations", std::move(operations).copy()}};
    if (!owner.extends.empty()) entry.setObject(text(owner.extends), u"extends");
    classes.addObject(NSDictionary(std::move(entry)));
  }
  return NSDictionary{{u"classes", std::move(classes).copy()}};
}

struct Request {
  id requestId;  // nil for a notification
  bool isNotification = false;
  std::string method;
  NSDictionary params;
};

CallError badParams(const std::string& message) { return {CallError::badArguments, message}; }

const Operation& findOperation(const Request& request) {
  const id className = request.params.objectForKey(u"class");
  if (className && !className.is<NSString>()) throw badParams("class should be a string");
  const auto wanted = className.as<NSString>().utf8();
  const Operation* operation = Operations::shared().find(wanted, request.method);
  if (!operation) {
    throw CallError(CallError::noSuchOperation,
                    "no operation " + request.method + (wanted.empty() ? "" : " in " + wanted));
  }
  if (!operation->hasReceiver() && wanted.empty()) {
    throw badParams("class is missing: " + request.method + " belongs to a class");
  }
  return *operation;
}

id readArgument(const id& json, const std::string& what) {
  std::string error;
  id value = readValue(json, &error);
  if (!error.empty()) throw badParams(what + ": " + error);
  return value.is<NSNull>() ? id() : value;
}

Call readCall(const Request& request, const Operation& operation) {
  Call call;
  const id receiver = request.params.objectForKey(u"receiver");
  if (operation.hasReceiver()) {
    if (!receiver) throw badParams("receiver is missing");
    call.receiver = readArgument(receiver, "receiver");
  }
  const id arguments = request.params.objectForKey(u"arguments");
  if (arguments && !arguments.is<NSArray>()) throw badParams("arguments should be an array");
  size_t position = 0;
  for (const id& argument : arguments.as<NSArray>()) {
    call.arguments.push_back(readArgument(argument, "argument " + std::to_string(++position)));
  }
  return call;
}

// False for what is no request at all.
bool readRequest(const id& json, Request* request) {
  const auto fields = json.as<NSDictionary>();
  if (!fields) return false;
  const id requestId = fields.objectForKey(u"id");
  request->isNotification = !requestId;
  const bool isNumber =
      requestId.is<NSNumber>() && requestId.as<NSNumber>().type() != NSNumber::Type::boolean;
  if (requestId.is<NSString>() || isNumber) request->requestId = requestId;
  const bool isValidId = !requestId || request->requestId || requestId.is<NSNull>();
  const auto method = fields.objectForKey<NSString>(u"method");
  if (!isValidId || !method || fields.objectForKey<NSString>(u"jsonrpc") != u"2.0"_ns) {
    return false;
  }
  request->method = method.utf8();
  const id params = fields.objectForKey(u"params");
  if (params && !params.is<NSDictionary>() && !params.is<NSArray>()) return false;
  request->params = params.as<NSDictionary>();
  return true;
}

void answerRequest(const id& json, LineReply reply) {
  Request request;
  if (!readRequest(json, &request)) {
    reply(errorAnswer(request.requestId, kInvalidRequest, "not a request"));
    return;
  }
  const auto send = [reply, isSilent = request.isNotification](std::string answer) {
    reply(isSilent ? std::string() : std::move(answer));
  };
  try {
    if (request.method == "rpc.discover") {
      send(resultAnswer(request.requestId, {.value = catalogue(), .out = {}, .receiver = nil}));
      return;
    }
    const Operation& operation = findOperation(request);
    operation.call(readCall(request, operation),
                   [send, requestId = request.requestId](const Answer& answer) {
                     send(resultAnswer(requestId, answer));
                   });
  } catch (const CallError& error) {
    send(errorAnswer(request.requestId, error.code(), error.what()));
  } catch (const std::exception& error) {
    send(errorAnswer(request.requestId, CallError::raised, error.what()));
  }
}

// The answers of a batch's requests, sent as one line when the last has come.
class Batch {
 public:
  Batch(size_t requests, LineReply reply) : left_(requests), reply_(std::move(reply)) {}

  void add(const std::string& answer) {
    std::unique_lock guard(lock_);
    if (!answer.empty()) {
      line_ += line_.empty() ? '[' : ',';
      line_ += answer;
    }
    if (--left_ > 0) return;
    if (!line_.empty()) line_ += ']';
    guard.unlock();
    reply_(std::move(line_));
  }

 private:
  std::mutex lock_;
  size_t left_;
  std::string line_;
  LineReply reply_;
};

}  // namespace

void answerLine(std::string_view line, LineReply reply) {
  std::string error;
  const id json = parseJSON(line, &error);
  if (!json) {
    reply(errorAnswer(nil, kParseError, error.empty() ? "not JSON" : error));
    return;
  }
  const auto requests = json.as<NSArray>();
  if (!requests) {
    answerRequest(json, std::move(reply));
    return;
  }
  if (requests.count() == 0) {
    reply(errorAnswer(nil, kInvalidRequest, "an empty batch"));
    return;
  }
  const auto batch = std::make_shared<Batch>(requests.count(), std::move(reply));
  for (const id& request : requests) {
    answerRequest(request, [batch](const std::string& answer) { batch->add(answer); });
  }
}

}  // namespace kelspar::runtime
