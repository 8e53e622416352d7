// Every operation of the library by class name and operation name.
//
//   const auto& operations = Operations::shared();
//   const Operation* strip = operations.find("NSString", "stringByStrippingHTML");
//   id text = strip->call({.receiver = NSString(u"<p>Hi</p>")}).value;
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/foundation.h"

namespace kelspar {

// Why a call did not come about, or what it raised; the codes are those of the wire protocol.
class CallError : public std::runtime_error {
 public:
  enum Code { noSuchOperation = -32601, badArguments = -32602, raised = -32000 };
  CallError(Code code, const std::string& message) : std::runtime_error(message), code_(code) {}
  [[nodiscard]] Code code() const noexcept { return code_; }

 private:
  Code code_;
};

// What goes into a call. Pointer arguments are given as the values that they point to, bytes as
// data, a completion as the boolean true; nil stands for a null pointer.
struct Call {
  id receiver;
  std::vector<id> arguments;
};

// What comes out of it.
struct Answer {
  id value;
  bool hasOut = false;  // the operation has pointer arguments that it fills or changes
  std::vector<id> out;  // then one element an argument: its value after the call, nil elsewhere
  bool changesReceiver = false;
  id receiver;  // then the receiver after the call
};

class Operation {
 public:
  using Reply = std::function<void(Answer)>;

  virtual ~Operation() = default;

  [[nodiscard]] const std::string& name() const { return name_; }
  // Whether it is called on a receiver; otherwise it belongs to its class.
  [[nodiscard]] bool hasReceiver() const { return hasReceiver_; }
  // What the receiver, the arguments and the result are, in words for readers.
  [[nodiscard]] virtual std::string receiverType() const = 0;
  [[nodiscard]] virtual std::vector<std::string> argumentTypes() const = 0;
  [[nodiscard]] virtual std::string resultType() const = 0;

  // Calls the operation; `reply` gets the answer, at once or, where the operation completes later,
  // on another thread. Throws CallError, before `reply` could be called, for arguments that do not
  // fit and for what the operation raises.
  virtual void call(const Call& call, Reply reply) const = 0;
  // The same, waiting for the answer.
  [[nodiscard]] Answer call(const Call& call) const;

 protected:
  Operation(std::string name, bool hasReceiver)
      : name_(std::move(name)), hasReceiver_(hasReceiver) {}

 private:
  std::string name_;
  bool hasReceiver_;
};

// A utility class or a category with its operations.
struct OperationClass {
  std::string name;
  std::string extends;  // a category: the type that it adds operations to; empty for a class
  std::vector<std::unique_ptr<Operation>> operations;
};

class Operations {
 public:
  // All operations of all units.
  [[nodiscard]] static const Operations& shared();

  [[nodiscard]] const std::deque<OperationClass>& classes() const { return classes_; }

  // The operation of this full name, colons included. `className` is that of the class or category,
  // or for a category's operations the type that it extends; empty fits any. Null when there is
  // none.
  [[nodiscard]] const Operation* find(std::string_view className, std::string_view name) const;

 private:
  friend class OperationRegistry;
  std::deque<OperationClass> classes_;  // those that enter operations point into it
};

// Values and answers in the wire protocol's JSON form; UTF-8, one line.
//
// `valueFromJSON` gives nil and a reason in `*error` for text that is no JSON or no such form; nil
// and an empty `*error` for null.
[[nodiscard]] id valueFromJSON(std::string_view json, std::string* error);
[[nodiscard]] std::string jsonFromValue(const id& value);
// {"value":...}, with "out" and "receiver" where the answer has them.
[[nodiscard]] std::string jsonFromAnswer(const Answer& answer);

}  // namespace kelspar
