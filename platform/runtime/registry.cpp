// The registry: what units entered, by class and name; and the parts of a call that need no types.
#include "platform/runtime/registry.h"

#include <algorithm>
#include <condition_variable>
#include <unordered_map>

namespace kelspar {

namespace runtime {

void loadArguments(const Call& call, const Shape::Slots& slots,
                   const std::vector<std::string>& types) {
  if (call.arguments.size() != slots.size()) {
    throw CallError(CallError::badArguments, "expected " + std::to_string(slots.size()) +
                                                 " arguments, got " +
                                                 std::to_string(call.arguments.size()));
  }
  for (size_t i = 0; i < slots.size(); ++i) {
    if (!slots[i]->load(call.arguments[i])) {
      throw CallError(CallError::badArguments,
                      "argument " + std::to_string(i + 1) + " should be " + types[i]);
    }
  }
}

void Shape::prepare(const Slots& slots) const {
  for (const Bytes& bytes : bytes_) {
    ArgumentSlot& target = *slots[bytes.argument - 1];
    if (target.isNull()) continue;
    const uint64_t count = bytes.counter ? slots[bytes.counter - 1]->number() : bytes.least;
    const auto argument = std::to_string(bytes.counter);
    if (bytes.mustBeThere && count > target.byteCount()) {
      throw CallError(CallError::badArguments, "argument " + argument +
                                                   " should be at most the length of argument " +
                                                   std::to_string(bytes.argument));
    }
    if (count > kLargestBuffer) {
      throw CallError(CallError::badArguments, "argument " + argument + " should be at most " +
                                                   std::to_string(kLargestBuffer));
    }
    if (!bytes.mustBeThere) target.ensureRoom(count);
  }
}

uint64_t Shape::resultBytes(const Slots& slots) const {
  uint64_t size = 1;
  for (const size_t factor : {resultFactors_.first, resultFactors_.second}) {
    if (factor) size *= slots[factor - 1]->number();
  }
  return size;
}

void Shape::finish(const Slots& slots) const {
  if (!slot_.first) return;
  const uint64_t size = slots[slot_.second - 1]->number();
  ArgumentSlot& slot = *slots[slot_.first - 1];
  if (size > kLargestBuffer)
    throw CallError(CallError::raised, "the buffer is too large to be sent");
  slot.setSize(size);
}

id textOrOffset(const char* result, const Shape::Slots& slots) {
  if (!result) return nil;
  for (const ArgumentSlot* slot : slots) {
    const char* const bytes = slot->bytes();
    if (bytes && result >= bytes && result <= bytes + slot->byteCount()) {
      return NSNumber(static_cast<uint64_t>(result - bytes));
    }
  }
  return NSData(std::string_view(result));
}

id adoptResult(uint8_t* bytes, uint64_t size) {
  if (!bytes) return nil;
  const NSData data = NSData::adoptingMalloc(bytes, size);
  if (size > kLargestBuffer)
    throw CallError(CallError::raised, "the buffer is too large to be sent");
  return data;
}

}  // namespace runtime

namespace {

std::vector<OperationRegistry::Enter>& announced() {
  static std::vector<OperationRegistry::Enter> units;
  return units;
}

}  // namespace

bool OperationRegistry::announce(Enter enter) {
  announced().push_back(enter);
  return true;
}

OperationClass& OperationRegistry::owner(const char* name, const char* extends) {
  auto& classes = operations_.classes_;
  const auto found = std::ranges::find(classes, name, &OperationClass::name);
  if (found != classes.end()) return *found;
  return classes.emplace_back(OperationClass{name, extends, {}});
}

const Operations& Operations::shared() {
  static const Operations& operations = *[] {
    auto* registry = new OperationRegistry;
    for (const auto enter : announced()) enter(*registry);
    std::ranges::sort(registry->operations_.classes_, {}, &OperationClass::name);
    return &registry->operations_;
  }();
  return operations;
}

const Operation* Operations::find(std::string_view className, std::string_view name) const {
  using Index =
      std::unordered_multimap<std::string_view, std::pair<const OperationClass*, const Operation*>>;
  static const Index index = [this] {
    Index all;
    for (const OperationClass& owner : classes_) {
      for (const auto& operation : owner.operations) {
        all.emplace(operation->name(), std::pair(&owner, operation.get()));
      }
    }
    return all;
  }();
  const auto [from, to] = index.equal_range(name);
  for (auto at = from; at != to; ++at) {
    const auto& [owner, operation] = at->second;
    if (className.empty() || owner->name == className || owner->extends == className) {
      return operation;
    }
  }
  return nullptr;
}

Answer Operation::call(const Call& request) const {
  struct Waiting {
    std::mutex lock;
    std::condition_variable arrived;
    std::optional<Answer> answer;
  };
  const auto waiting = std::make_shared<Waiting>();
  call(request, [waiting](Answer answer) {
    const std::lock_guard guard(waiting->lock);
    waiting->answer = std::move(answer);
    waiting->arrived.notify_all();
  });
  std::unique_lock guard(waiting->lock);
  waiting->arrived.wait(guard, [&] { return waiting->answer.has_value(); });
  return std::move(*waiting->answer);
}

}  // namespace kelspar
