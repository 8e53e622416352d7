// The header of a compressed RTF blob (MS-OXRTFCP 2.1.3.1), and what its two types give.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <sys/mman.h>

#include "RTFKelspar/RTFKelspar.h"
#include "RTFKelspar/RTFKelsparNSDataAdditions.h"
#include "RTFKelspar/lz_stream.h"

namespace kelspar {

namespace {

constexpr int64_t kCompressed = 0x75465A4C;    // "LZFu"
constexpr int64_t kUncompressed = 0x414C454D;  // "MELA"
constexpr size_t kRawSizeAt = 4;
constexpr size_t kTypeAt = 8;
constexpr size_t kHeaderSize = 16;

}  // namespace

bool RTFKelspar::typeIsRTF(const uint8_t* data) {
  if (!data) {
    NSLog(u"  ERROR: data is NULL");
    return false;
  }
  const int64_t type = convertToLongLong(data + kTypeAt);
  return type == kCompressed || type == kUncompressed;
}

void RTFKelspar::getRTFFromBuffer(const uint8_t* buffer, uint64_t size, uint64_t* returnSize,
                                  uint8_t** returnData) {
  if (!buffer) {
    NSLog(u"  ERROR: data is NULL");
    return;
  }
  if (size < kHeaderSize) {
    NSLog(u"  ERROR: len < 16 (too small for RTF header)");
    return;
  }
  const auto rawSize = static_cast<uint64_t>(convertToLongLong(buffer + kRawSizeAt));
  const int64_t type = convertToLongLong(buffer + kTypeAt);
  if (returnSize) *returnSize = rawSize;
  if (!returnData) return;
  if (type == kCompressed) {
    *returnData = decodeRTFSource(buffer + kHeaderSize, size - kHeaderSize, rawSize);
  } else if (type == kUncompressed && *returnData) {
    *returnData = initializeArrayWithEntryCount(rawSize, 1);
    // Deliberate: the copy begins with the raw-size field, not behind the header.
    const uint64_t there = std::min(rawSize, size - kRawSizeAt);
    if (*returnData) std::memcpy(*returnData, buffer + kRawSizeAt, there);
  }
}

uint8_t* RTFKelspar::decodeRTFSource(const uint8_t* source, uint64_t compressedSize,
                                     uint64_t uncompressedSize) {
  uint8_t* output = initializeArrayWithEntryCount(uncompressedSize, 1);
  if (!output) {
    NSLog(u"  ERROR: Failed to allocate %zu bytes for output", uncompressedSize);
    return nullptr;
  }
  if (source) lz::decode({source, compressedSize}, {output, uncompressedSize});
  return output;
}

int64_t RTFKelspar::convertToLongLong(const uint8_t* bytes) {
  if (!bytes) return 0;
  return static_cast<int64_t>(bytes[0] | bytes[1] << 8 | bytes[2] << 16 |
                              static_cast<uint32_t>(bytes[3]) << 24);
}

uint8_t* RTFKelspar::initializeArrayWithEntryCount(uint64_t count, uint64_t size) {
  constexpr uint64_t kHugePage = 2 << 20;
  if (size != 0 && count > SIZE_MAX / size) return nullptr;
  const uint64_t bytes = count * size;
  auto* block = static_cast<uint8_t*>(std::calloc(std::max<uint64_t>(bytes, 1), 1));
  // Page faults cost more than decoding does: whole huge pages are asked for where they fit.
  if (block && bytes >= 2 * kHugePage) {
    const auto start = reinterpret_cast<uintptr_t>(block);
    const uintptr_t from = (start + kHugePage - 1) & ~(kHugePage - 1);
    const uintptr_t to = (start + bytes) & ~(kHugePage - 1);
    if (from < to) madvise(reinterpret_cast<void*>(from), to - from, MADV_HUGEPAGE);
  }
  return block;
}

namespace RTFKelsparNSDataAdditions {

NSData getRTFForData(const NSData& receiver) {
  if (!receiver) return nil;
  // The type field of a shorter blob is not there to be read.
  const bool hasType = receiver.isEmpty() || receiver.length() >= kTypeAt + 4;
  if (!hasType || !RTFKelspar::typeIsRTF(receiver.bytes())) return nil;
  uint64_t size = 0;
  uint8_t* bytes = nullptr;
  RTFKelspar::getRTFFromBuffer(receiver.bytes(), receiver.length(), &size, &bytes);
  return bytes ? NSData::adoptingMalloc(bytes, size) : nil;
}

}  // namespace RTFKelsparNSDataAdditions

}  // namespace kelspar
