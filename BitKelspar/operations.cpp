// The unit's operations, as hosts call them.
#include "BitKelspar/BitKelspar.h"
#include "platform/runtime/registry.h"

namespace kelspar {

KELSPAR_OPERATIONS(BitKelspar) {
  using Class = BitKelspar;
  auto bits = registry.forClass("BitKelspar");
  bits.add("readU16:", &Class::readU16);
  bits.add("readU32:", &Class::readU32);
  bits.add("readU64LE:", &Class::readU64LE);
  bits.add("readS64LE:", &Class::readS64LE);
  bits.add("readU16FromData:atOffset:", &Class::readU16FromData);
  bits.add("readU32FromData:atOffset:", &Class::readU32FromData);
  bits.add("readU64FromData:atOffset:", &Class::readU64FromData);
  bits.add<void, uint32_t, uint16_t*>("writeData:toU16:", &Class::writeData);
  bits.add<void, uint32_t, uint32_t*>("writeData:toU32:", &Class::writeData);
  bits.add("ByteSwap16BitNumber:", &Class::ByteSwap16BitNumber);
  bits.add("ByteSwap32BitNumber:", &Class::ByteSwap32BitNumber);
  bits.add("ByteSwap64BitNumber:", &Class::ByteSwap64BitNumber);
  bits.add("isBitSet:atPosition:", &Class::isBitSet);
  bits.add("readVarintFromData:offset:", &Class::readVarintFromData);
  bits.add("extractBitsFromValue:startBit:endBit:", &Class::extractBitsFromValue);
  bits.add("formatGUIDFromData:", &Class::formatGUIDFromData);
  bits.add("dataFromGUIDString:", &Class::dataFromGUIDString);
  bits.add("xorChecksumOfData:", &Class::xorChecksumOfData);
  bits.add("crc16OfData:", &Class::crc16OfData);
  bits.add("pushNibble:ontoNumber:fromLeft:", &Class::pushNibble);
  bits.add("popNibbleFromNumber:fromLeft:", &Class::popNibbleFromNumber);
  bits.add("dumpbits:", &Class::dumpbits);
  bits.add("convertByte:toBits:", &Class::convertByte).atLeast(2, 8);
  bits.add("convertToByte:", &Class::convertToByte);
  bits.add("stringFromFourByteIdentifier:", &Class::stringFromFourByteIdentifier);
  bits.add("formatSize:", &Class::formatSize);
}

}  // namespace kelspar
