// How a unit enters its operations: a line an operation, from the function's own signature.
// Internal.
//
//   KELSPAR_OPERATIONS(RTFKelspar) {
//     auto rtf = registry.forClass("RTFKelspar");
//     rtf.add("typeIsRTF:", &RTFKelspar::typeIsRTF);
//     auto data = registry.forCategory("RTFKelsparNSDataAdditions", "NSData");
//     data.add("getRTFForData", &RTFKelsparNSDataAdditions::getRTFForData);
//   }
#pragma once

#include <array>
#include <memory>
#include <mutex>
#include <optional>
#include <tuple>
#include <utility>

#include "platform/runtime/arguments.h"

namespace kelspar {

namespace runtime {

// A buffer that an operation hands out or fills may be this large on its way to another process.
inline constexpr uint64_t kLargestBuffer = UINT64_C(512) << 20;

// What a signature cannot say of its pointers. Arguments are counted from 1, as hosts count them.
class Shape {
 public:
  // The bytes at `argument` are as many as argument `counter` says, or more.
  Shape& counted(size_t argument, size_t counter) { return note({argument, counter, true, 0}); }
  // The buffer at `argument` has room for as many bytes as argument `counter` says.
  Shape& sized(size_t argument, size_t counter) { return note({argument, counter, false, 0}); }
  // The buffer at `argument` has room for at least `bytes`.
  Shape& atLeast(size_t argument, size_t bytes) { return note({argument, 0, false, bytes}); }
  // The result has as many bytes as the product of these arguments.
  Shape& resultSize(size_t factor, size_t other = 0) {
    resultFactors_ = {factor, other};
    return *this;
  }
  // The buffer in the slot at `argument` has as many bytes as argument `counter` says afterwards.
  Shape& slotSize(size_t argument, size_t counter) {
    slot_ = {argument, counter};
    return *this;
  }

  using Slots = std::vector<ArgumentSlot*>;
  void prepare(const Slots& slots) const;  // throws CallError
  [[nodiscard]] uint64_t resultBytes(const Slots& slots) const;
  void finish(const Slots& slots) const;

 private:
  struct Bytes {
    size_t argument, counter;
    bool mustBeThere;
    size_t least;
  };
  Shape& note(Bytes bytes) {
    bytes_.push_back(bytes);
    return *this;
  }
  std::vector<Bytes> bytes_;
  std::pair<size_t, size_t> resultFactors_{0, 0}, slot_{0, 0};
};

// Loads all arguments or throws CallError with the position and type of the one that does not fit.
void loadArguments(const Call& call, const Shape::Slots& slots,
                   const std::vector<std::string>& types);

// A char result into one of the arguments is its offset there; another one is a text of its own.
[[nodiscard]] id textOrOffset(const char* result, const Shape::Slots& slots);

// Gives up on results that no other process could be sent.
[[nodiscard]] id adoptResult(uint8_t* bytes, uint64_t size);

template <class R>
std::string resultTypeName() {
  using T = std::remove_cvref_t<R>;
  if constexpr (std::is_void_v<R>) {
    return "nothing";
  } else if constexpr (ValueType<T>) {
    return Argument<T>::typeName();
  } else if constexpr (std::is_same_v<T, NSMutableArray>) {
    return "NSArray";
  } else if constexpr (std::is_same_v<T, NSMutableDictionary>) {
    return "NSDictionary";
  } else if constexpr (std::is_same_v<T, NSMutableString>) {
    return "NSString";
  } else if constexpr (std::is_enum_v<T>) {
    return numberTypeName<std::underlying_type_t<T>>();
  } else {
    return Argument<T>::typeName();
  }
}

template <class R>
id boxedResult(R&& result, const Shape& shape, const Shape::Slots& slots) {
  using T = std::remove_cvref_t<R>;
  if constexpr (std::is_same_v<T, uint8_t*>) {
    return adoptResult(result, shape.resultBytes(slots));
  } else if constexpr (std::is_same_v<T, char*>) {
    const std::unique_ptr<char, decltype(&std::free)> owner(result, &std::free);
    return result ? NSData(std::string_view(result)) : NSData();
  } else if constexpr (std::is_same_v<T, const char*>) {
    return textOrOffset(result, slots);
  } else if constexpr (std::is_enum_v<T>) {
    return NSNumber(static_cast<std::underlying_type_t<T>>(result));
  } else if constexpr (std::is_same_v<T, NSMutableDictionary>) {
    return NSDictionary(std::move(result));
  } else if constexpr (requires { std::move(result).copy(); }) {
    return std::move(result).copy();
  } else if constexpr (ValueType<T>) {
    return std::move(result);
  } else {
    return boxed(result);
  }
}

template <class R, bool onReceiver, class... A>
class FunctionOperation final : public Operation {
 public:
  using Function = R (*)(A...);

  FunctionOperation(std::string name, Function function)
      : Operation(std::move(name), onReceiver), function_(function) {}

  Shape& shape() { return shape_; }

  std::string receiverType() const override { return onReceiver ? allTypes()[0] : ""; }
  std::vector<std::string> argumentTypes() const override {
    auto types = allTypes();
    if (onReceiver) types.erase(types.begin());
    return types;
  }
  std::string resultType() const override { return resultTypeName<R>(); }

  void call(const Call& call, Reply reply) const override {
    std::tuple<ArgumentOf<A>...> arguments;
    Shape::Slots slots = std::apply(
        [](auto&... argument) { return Shape::Slots{static_cast<ArgumentSlot*>(&argument)...}; },
        arguments);
    ArgumentSlot* receiver = nullptr;
    if constexpr (onReceiver) {
      receiver = slots.front();
      slots.erase(slots.begin());
      if (!receiver->load(call.receiver)) {
        throw CallError(CallError::badArguments, "receiver should be " + receiverType());
      }
    }
    if (call.arguments.size() != slots.size()) loadArguments(call, slots, argumentTypes());
    for (size_t i = 0; i < slots.size(); ++i) {
      if (!slots[i]->load(call.arguments[i])) loadArguments(call, slots, argumentTypes());
    }
    shape_.prepare(slots);

    Answer answer;
    // A message to a missing receiver does nothing where there is nothing to change.
    const bool isSkipped = kChangesReceiver && receiver->isNull();
    if (!isSkipped) answer.value = invoke(arguments, slots);
    shape_.finish(slots);
    answer.changesReceiver = kChangesReceiver;
    if (kChangesReceiver) answer.receiver = receiver->after();
    answer.hasOut = kHasOut;
    if (kHasOut) {
      for (const ArgumentSlot* slot : slots) answer.out.push_back(slot->after());
    }
    reply(std::move(answer));
  }

 private:
  static std::vector<std::string> allTypes() { return {ArgumentOf<A>::typeName()...}; }

  template <size_t... index>
  static constexpr bool givesBack(std::index_sequence<index...>) {
    return ((std::tuple_element_t<index + onReceiver, std::tuple<ArgumentOf<A>...>>::kGivesBack) ||
            ...);
  }
  static constexpr bool kHasOut =
      givesBack(std::make_index_sequence<sizeof...(A) - (onReceiver ? 1 : 0)>());
  static constexpr bool kChangesReceiver = [] {
    if constexpr (onReceiver)
      return std::tuple_element_t<0, std::tuple<ArgumentOf<A>...>>::kGivesBack;
    return false;
  }();

  id invoke(std::tuple<ArgumentOf<A>...>& arguments, const Shape::Slots& slots) const {
    try {
      return std::apply(
          [&](auto&... argument) -> id {
            if constexpr (std::is_void_v<R>) {
              function_(argument.pass()...);
              return nil;
            } else {
              return boxedResult(function_(argument.pass()...), shape_, slots);
            }
          },
          arguments);
    } catch (const NSException& exception) {
      throw CallError(CallError::raised, std::string(exception.name()) + ": " + exception.reason());
    } catch (const std::bad_alloc&) {
      throw CallError(CallError::raised, "NSMallocException: out of memory");
    }
  }

  Function function_;
  Shape shape_;
};

}  // namespace runtime

// The operations of one class or category, while they are entered.
class OperationEntry {
 public:
  explicit OperationEntry(OperationClass* target) : target_(target) {}

  // An operation that takes its call apart itself (completions, variable arguments).
  void add(std::unique_ptr<Operation> operation) {
    target_->operations.push_back(std::move(operation));
  }

 protected:
  template <bool onReceiver, class R, class... A>
  runtime::Shape& enter(const char* name, R (*function)(A...)) {
    auto operation =
        std::make_unique<runtime::FunctionOperation<R, onReceiver, A...>>(name, function);
    runtime::Shape& shape = operation->shape();
    add(std::move(operation));
    return shape;
  }

 private:
  OperationClass* target_;
};

// What `add` gives back takes the notes on pointers: `.add(...).counted(1, 2)`.
class ClassEntry : public OperationEntry {
 public:
  using OperationEntry::add;
  using OperationEntry::OperationEntry;
  template <class R, class... A>
  runtime::Shape& add(const char* name, R (*function)(A...)) {
    return enter<false>(name, function);
  }
};

class CategoryEntry : public OperationEntry {
 public:
  using OperationEntry::add;
  using OperationEntry::OperationEntry;
  // The function's first parameter is the receiver.
  template <class R, class... A>
  runtime::Shape& add(const char* name, R (*function)(A...)) {
    return enter<true>(name, function);
  }
  // An operation of the type itself, without a receiver.
  template <class R, class... A>
  runtime::Shape& addClassOperation(const char* name, R (*function)(A...)) {
    return enter<false>(name, function);
  }
};

class OperationRegistry {
 public:
  ClassEntry forClass(const char* name) { return ClassEntry(&owner(name, "")); }
  CategoryEntry forCategory(const char* name, const char* extends) {
    return CategoryEntry(&owner(name, extends));
  }

  // Units announce themselves before main(); their operations are entered on first use.
  using Enter = void (*)(OperationRegistry&);
  static bool announce(Enter enter);

 private:
  friend class Operations;
  OperationClass& owner(const char* name, const char* extends);
  Operations operations_;
};

}  // namespace kelspar

// Opens the function that enters a unit's operations. The C symbol is what a static library's users
// are told to link, so that the unit is not left out as unused.
#define KELSPAR_OPERATIONS(unit)                                               \
  static void enterOperationsOf##unit(::kelspar::OperationRegistry& registry); \
  extern "C" const bool kelspar_operations_##unit =                            \
      ::kelspar::OperationRegistry::announce(&enterOperationsOf##unit);        \
  static void enterOperationsOf##unit(::kelspar::OperationRegistry& registry)
