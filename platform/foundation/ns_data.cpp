// NSData: a span and whatever keeps its bytes alive.
#include "platform/foundation/NSData.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "platform/foundation/NSException.h"
#include "platform/foundation/NSString.h"

namespace kelspar {

const NSKind NSData::kKind{"NSData"};

namespace {

using detail::DataContents;

// Bytes of a buffer that is destroyed with the contents. `Owner` moves without moving its bytes.
template <class Owner>
class OwnedBytes final : public DataContents {
 public:
  OwnedBytes(Owner&& owner, std::span<const uint8_t> bytes)
      : DataContents(bytes), owner_(std::move(owner)) {}

 private:
  Owner owner_;
};

template <class Owner>
const NSObject* owned(Owner&& owner, const void* bytes, size_t length) {
  return new OwnedBytes<std::remove_reference_t<Owner>>(
      std::move(owner), {static_cast<const uint8_t*>(bytes), length});
}

struct Free {
  void operator()(uint8_t* bytes) const { std::free(bytes); }
};
using MallocBytes = std::unique_ptr<uint8_t, Free>;

}  // namespace

const NSKind& detail::DataContents::kind() const { return NSData::kKind; }

bool detail::DataContents::isEqual(const NSObject& other) const {
  return &other.kind() == &NSData::kKind &&
         std::ranges::equal(bytes_, static_cast<const DataContents&>(other).bytes_);
}

// Long data shows its ends only.
NSString detail::DataContents::description() const {
  constexpr size_t kShown = 24;
  std::string text = "{length = " + std::to_string(bytes_.size()) + ", bytes = 0x";
  const auto hex = [&text](std::span<const uint8_t> bytes) {
    for (const uint8_t byte : bytes) {
      text += "0123456789abcdef"[byte >> 4];
      text += "0123456789abcdef"[byte & 15];
    }
  };
  if (bytes_.size() <= kShown) {
    hex(bytes_);
  } else {
    hex(bytes_.first(16));
    text += " ... ";
    hex(bytes_.last(8));
  }
  return NSString(text + "}");
}

NSData::NSData(const void* bytes, size_t length) {
  if (length == 0) {
    *this = fromStatic({});
    return;
  }
  auto copy = std::make_unique_for_overwrite<uint8_t[]>(length);
  std::copy_n(static_cast<const uint8_t*>(bytes), length, copy.get());
  const uint8_t* start = copy.get();
  *this = NSData(owned(std::move(copy), start, length));
}

NSData::NSData(std::string&& bytes) {
  // On the heap, so that moving the string leaves its bytes in place.
  auto holder = std::make_unique<std::string>(std::move(bytes));
  const std::string& text = *holder;
  *this =
      text.empty() ? fromStatic({}) : NSData(owned(std::move(holder), text.data(), text.size()));
}

NSData::NSData(std::vector<uint8_t>&& bytes) {
  const uint8_t* start = bytes.data();
  const size_t length = bytes.size();
  *this = length == 0 ? fromStatic({}) : NSData(owned(std::move(bytes), start, length));
}

NSData NSData::adoptingMalloc(uint8_t* bytes, size_t length) {
  MallocBytes holder(bytes);
  if (length == 0) return fromStatic({});
  return NSData(owned(std::move(holder), bytes, length));
}

NSData NSData::fromStatic(std::span<const uint8_t> bytes) {
  return NSData(new DataContents(bytes));
}

NSData NSData::subdata(size_t from, size_t length) const {
  const auto all = span();
  if (from > all.size()) throw NSRangeException("subdata begins behind the end");
  length = std::min(length, all.size() - from);
  if (length == all.size()) return *this;
  if (length == 0) return fromStatic({});
  return NSData(owned(id(*this), all.data() + from, length));
}

}  // namespace kelspar
