// Little-endian fields, varints, bit fields and nibbles.
#include <algorithm>
#include <bit>
#include <cstring>

#include "BitKelspar/BitKelspar.h"

namespace kelspar {

namespace {

static_assert(std::endian::native == std::endian::little);

template <class T>
T readAt(const uint8_t* bytes) {
  T value = 0;
  if (bytes) std::memcpy(&value, bytes, sizeof value);
  return value;
}

template <class T>
T readInside(const NSData& data, uint64_t offset) {
  if (data.length() < sizeof(T) || offset > data.length() - sizeof(T)) return 0;
  return readAt<T>(data.bytes() + offset);
}

// The integer in the eight bytes of `word` that ends in its lowest byte without a top bit, at
// `bytes`: the groups of seven bits are moved together in pairs, then fours, then eights.
struct ShortVarint {
  uint64_t value;
  int bytes;
};
ShortVarint shortVarint(uint64_t word, uint64_t ends) {
  const int bits = std::countr_zero(ends) + 1;
  uint64_t groups = word & (UINT64_MAX >> (64 - bits)) & 0x7F7F7F7F7F7F7F7F;
  groups = (groups & 0x007F007F007F007F) | (groups & 0x7F007F007F007F00) >> 1;
  groups = (groups & 0x00003FFF00003FFF) | (groups & 0x3FFF00003FFF0000) >> 2;
  groups = (groups & 0x000000000FFFFFFF) | (groups & 0x0FFFFFFF00000000) >> 4;
  return {groups, bits / 8};
}

constexpr int kNoFreePlace = -1;

// The bit offset of the lowest or highest zero nibble.
int freePlace(uint32_t number, bool lowest) {
  for (int i = 0; i < 8; ++i) {
    const int place = 4 * (lowest ? i : 7 - i);
    if ((number >> place & 15) == 0) return place;
  }
  return kNoFreePlace;
}

}  // namespace

uint16_t BitKelspar::readU16(const uint8_t* bytes) { return readAt<uint16_t>(bytes); }
uint32_t BitKelspar::readU32(const uint8_t* bytes) { return readAt<uint32_t>(bytes); }
uint64_t BitKelspar::readU64LE(const uint8_t* bytes) { return readAt<uint64_t>(bytes); }
int64_t BitKelspar::readS64LE(const uint8_t* bytes) { return readAt<int64_t>(bytes); }

uint16_t BitKelspar::readU16FromData(const NSData& data, uint64_t offset) {
  return readInside<uint16_t>(data, offset);
}
uint32_t BitKelspar::readU32FromData(const NSData& data, uint64_t offset) {
  return readInside<uint32_t>(data, offset);
}
uint64_t BitKelspar::readU64FromData(const NSData& data, uint64_t offset) {
  return readInside<uint64_t>(data, offset);
}

void BitKelspar::writeData(uint32_t value, uint16_t* toU16) {
  if (toU16) std::memcpy(toU16, &value, sizeof *toU16);
}
void BitKelspar::writeData(uint32_t value, uint32_t* toU32) {
  if (toU32) std::memcpy(toU32, &value, sizeof *toU32);
}

int16_t BitKelspar::ByteSwap16BitNumber(uint16_t value) {
  return static_cast<int16_t>(__builtin_bswap16(value));
}
uint32_t BitKelspar::ByteSwap32BitNumber(uint32_t value) { return __builtin_bswap32(value); }
uint64_t BitKelspar::ByteSwap64BitNumber(uint64_t value) { return __builtin_bswap64(value); }

bool BitKelspar::isBitSet(uint32_t value, uint32_t position) {
  return position < 32 && (value >> position & 1) != 0;
}

uint32_t BitKelspar::extractBitsFromValue(uint32_t value, int32_t startBit, int32_t endBit) {
  if (endBit < startBit || startBit < 0 || endBit >= 32) return 0;
  const uint32_t mask = UINT32_MAX >> (31 - (endBit - startBit));
  return value >> startBit & mask;
}

uint64_t BitKelspar::readVarintFromData(const NSData& data, uint64_t* offset) {
  const auto bytes = data.span();
  if (!offset || *offset >= bytes.size()) return 0;
  uint64_t at = *offset;
  uint8_t byte = bytes[at++];
  uint64_t value = byte & 0x7F;
  if ((byte & 0x80) != 0) {
    if (bytes.size() - at >= 7) {
      const auto word = readAt<uint64_t>(bytes.data() + at - 1);
      if (const uint64_t ends = ~word & 0x8080808080808080) {
        const ShortVarint varint = shortVarint(word, ends);
        *offset += static_cast<uint64_t>(varint.bytes);
        return varint.value;
      }
    }
    const uint64_t end = std::min<uint64_t>(bytes.size(), at + 9);
    for (int shift = 7; (byte & 0x80) != 0 && at < end; shift += 7) {
      byte = bytes[at++];
      value |= static_cast<uint64_t>(byte & 0x7F) << shift;
    }
  }
  *offset = at;
  return value;
}

void BitKelspar::pushNibble(uint32_t nibble, uint32_t* number, bool fromLeft) {
  if (!number) return;
  *number |= nibble << std::max(freePlace(*number, fromLeft), 0);
}

uint32_t BitKelspar::popNibbleFromNumber(uint32_t* number, bool fromLeft) {
  if (!number) return 0;
  const int free = freePlace(*number, fromLeft);
  // Deliberate: the places go around the number's ends.
  const int place = free == kNoFreePlace ? 0 : (free + (fromLeft ? 28 : 4)) % 32;
  const uint32_t nibble = *number >> place & 15;
  *number &= ~(UINT32_C(15) << place);
  return nibble;
}

void BitKelspar::convertByte(uint8_t byte, uint8_t* bits) {
  for (int i = 0; bits && i < 8; ++i) bits[i] = byte >> i & 1;
}

int8_t BitKelspar::convertToByte(const uint8_t* bits) {
  int byte = 0;
  for (int i = 0; bits && i < 8; ++i) byte |= (bits[i] != 0) << i;
  return static_cast<int8_t>(byte);
}

}  // namespace kelspar
