// Varints, GUIDs and checksums over any bytes.
#include <cstdlib>

#include "BitKelspar/BitKelspar.h"
#include "BitKelspar/crc16_by_the_book.h"

using namespace kelspar;

namespace {

void check(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  const NSData data(bytes, size);
  for (uint64_t at = 0; at < size;) {
    const uint64_t from = at;
    (void)BitKelspar::readVarintFromData(data, &at);
    check(at > from && at <= size && at - from <= 10);
  }
  const NSString guid = BitKelspar::formatGUIDFromData(data);
  check(static_cast<bool>(guid) == (size >= 16));
  if (guid) check(BitKelspar::dataFromGUIDString(guid) == data.subdata(0, 16));
  const NSData parsed = BitKelspar::dataFromGUIDString(NSString(data.chars()));
  if (parsed) check(parsed.length() == 16);
  check(BitKelspar::crc16OfData(data) == (size ? crc16::byTheBook(0xFFFF, data.span()) : 0));
  uint8_t all = 0;
  for (const uint8_t byte : data.span()) all ^= byte;
  check(BitKelspar::xorChecksumOfData(data) == all);
  for (uint64_t offset = 0; offset < size + 9; ++offset) {
    const uint64_t value = BitKelspar::readU64FromData(data, offset);
    if (offset + 8 > size) check(value == 0);
  }
  return 0;
}
