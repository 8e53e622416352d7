// Requests, batches and errors of JSON-RPC 2.0.
#include "platform/runtime/rpc.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <new>

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

// Empty where there is no memory even for that.
std::string answerWithoutMemory(const id& requestId) noexcept {
  try {
    return errorAnswer(requestId, CallError::raised, "NSMallocException: out of memory");
  } catch (...) {
    return {};
  }
}

// The exception that is being handled, as an answer.
std::string answerToException(const id& requestId) noexcept {
  try {
    try {
      throw;
    } catch (const CallError& error) {
      return errorAnswer(requestId, error.code(), error.what());
    } catch (const std::bad_alloc&) {
      return answerWithoutMemory(requestId);
    } catch (const std::exception& error) {
      return errorAnswer(requestId, CallError::raised, error.what());
    } catch (...) {
      return errorAnswer(requestId, CallError::raised, "an exception of no known kind");
    }
  } catch (...) {
    return answerWithoutMemory(requestId);
  }
}

// Where the answer to a line or to a request of a batch goes: one, whatever happens on the way to
// it. Operations that complete later hold on to it.
class Place {
 public:
  explicit Place(LineReply reply) noexcept : reply_(std::move(reply)) {}

  void take(std::string answer) noexcept {
    if (!isTaken_.exchange(true)) reply_(isSilent ? std::string() : std::move(answer));
  }
  void takeResult(const Answer& answer) noexcept {
    try {
      take(resultAnswer(requestId, answer));
    } catch (...) {
      takeException();
    }
  }
  void takeException() noexcept { take(answerToException(requestId)); }

  id requestId;           // nil while it is not known
  bool isSilent = false;  // a notification's

 private:
  LineReply reply_;
  std::atomic<bool> isTaken_{false};
};

// Has `work` done on a place for its answer; what it throws is the answer.
template <class Work>
void answerBy(Work work, LineReply reply) noexcept {
  std::shared_ptr<Place> place;
  try {
    place = std::make_shared<Place>(std::move(reply));  // moves nothing before it has the memory
    work(place);
  } catch (...) {
    if (place) {
      place->takeException();
    } else {
      reply(answerToException(nil));
    }
  }
}

struct Request {
  std::string method;
  NSDictionary params;
};

CallError badParams(const std::string& message) { return {CallError::badArguments, message}; }

// A string in either of its forms; nil for anything else.
NSString stringMember(const NSDictionary& fields, std::u16string_view key) {
  std::string error;
  return readValue(fields.objectForKey(key), &error).as<NSString>();
}

const Operation& findOperation(const Request& request) {
  const bool hasClass = static_cast<bool>(request.params.objectForKey(u"class"));
  const NSString className = stringMember(request.params, u"class");
  if (hasClass && !className) throw badParams("class should be a string");
  const std::string wanted = className.utf8();
  const Operation* operation = Operations::shared().find(wanted, request.method);
  if (!operation || (hasClass && wanted.empty())) {
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
bool readRequest(const id& json, Request* request, Place* place) {
  const auto fields = json.as<NSDictionary>();
  if (!fields) return false;
  const id requestId = fields.objectForKey(u"id");
  const bool isNumber =
      requestId.is<NSNumber>() && requestId.as<NSNumber>().type() != NSNumber::Type::boolean;
  if (requestId.is<NSString>() || isNumber) place->requestId = requestId;
  const bool isValidId = !requestId || place->requestId || requestId.is<NSNull>();
  const NSString method = stringMember(fields, u"method");
  if (!isValidId || !method || stringMember(fields, u"jsonrpc") != u"2.0"_ns) {
    return false;
  }
  request->method = method.utf8();
  const id params = fields.objectForKey(u"params");
  if (params && !params.is<NSDictionary>() && !params.is<NSArray>()) return false;
  request->params = params.as<NSDictionary>();
  place->isSilent = !requestId;
  return true;
}

void answerRequest(const id& json, const std::shared_ptr<Place>& place) {
  Request request;
  if (!readRequest(json, &request, place.get())) {
    place->take(errorAnswer(place->requestId, kInvalidRequest, "not a request"));
  } else if (request.method == "rpc.discover") {
    place->takeResult({.value = catalogue(), .out = {}, .receiver = nil});
  } else {
    const Operation& operation = findOperation(request);
    operation.call(readCall(request, operation),
                   [place](const Answer& answer) { place->takeResult(answer); });
  }
}

// The answers of a batch's requests, sent as one line when the last has come.
class Batch {
 public:
  Batch(size_t requests, std::shared_ptr<Place> place)
      : left_(requests), place_(std::move(place)) {}

  void add(const std::string& answer) noexcept {
    std::unique_lock guard(lock_);
    try {
      if (!answer.empty()) line_.append(line_.empty() ? "[" : ",").append(answer);
      if (left_ == 1 && !line_.empty()) line_ += ']';
    } catch (...) {
      isWhole_ = false;
    }
    if (--left_ > 0) return;
    guard.unlock();
    place_->take(isWhole_ ? std::move(line_) : answerWithoutMemory(nil));
  }

 private:
  std::mutex lock_;
  size_t left_;
  std::string line_;
  bool isWhole_ = true;
  std::shared_ptr<Place> place_;
};

void answerBatch(const NSArray& requests, const std::shared_ptr<Place>& place) {
  const auto batch = std::make_shared<Batch>(requests.count(), place);
  for (const id& request : requests) {
    answerBy([&](const auto& part) { answerRequest(request, part); },
             [batch](const std::string& answer) { batch->add(answer); });
  }
}

void answerText(std::string_view line, const std::shared_ptr<Place>& place) {
  std::string error;
  const id json = parseJSON(line, &error);
  const auto requests = json.as<NSArray>();
  if (!json) {
    place->take(errorAnswer(nil, kParseError, error.empty() ? "not JSON" : error));
  } else if (!requests) {
    answerRequest(json, place);
  } else if (requests.count() == 0) {
    place->take(errorAnswer(nil, kInvalidRequest, "an empty batch"));
  } else {
    answerBatch(requests, place);
  }
}

}  // namespace

void answerLine(std::string_view line, LineReply reply) noexcept {
  answerBy([line](const auto& place) { answerText(line, place); }, std::move(reply));
}

}  // namespace kelspar::runtime
