// Binary fields of message stores: little-endian integers, variable-length integers, GUID text,
// checksums, nibbles, sizes for people.
#pragma once

#include "platform/foundation/foundation.h"

namespace kelspar {

// All operations are stateless but `stringFromFourByteIdentifier`; any thread may call them.
// Everything is little-endian. Unless it says otherwise, nil data gives 0.
class BitKelspar {
 public:
  // Integers at a pointer. The bytes must be there; null gives 0.
  [[nodiscard]] static uint16_t readU16(const uint8_t* bytes);
  [[nodiscard]] static uint32_t readU32(const uint8_t* bytes);
  [[nodiscard]] static uint64_t readU64LE(const uint8_t* bytes);
  [[nodiscard]] static int64_t readS64LE(const uint8_t* bytes);

  // Integers at a byte offset of data; 0 unless all their bytes are inside.
  [[nodiscard]] static uint16_t readU16FromData(const NSData& data, uint64_t offset);
  [[nodiscard]] static uint32_t readU32FromData(const NSData& data, uint64_t offset);
  [[nodiscard]] static uint64_t readU64FromData(const NSData& data, uint64_t offset);

  // Stores the low 16 bits, or all 32, at the pointer; nothing for null.
  static void writeData(uint32_t value, uint16_t* toU16);
  static void writeData(uint32_t value, uint32_t* toU32);

  // The bytes in reverse order. Deliberate: the 16-bit form is signed.
  [[nodiscard]] static int16_t ByteSwap16BitNumber(uint16_t value);
  [[nodiscard]] static uint32_t ByteSwap32BitNumber(uint32_t value);
  [[nodiscard]] static uint64_t ByteSwap64BitNumber(uint64_t value);

  // Whether bit `position`, from 0, is 1; false for a position of 32 or more.
  [[nodiscard]] static bool isBitSet(uint32_t value, uint32_t position);

  // Bits `startBit` to `endBit`, inclusive, moved to the right. 0 when the end lies before the
  // start or either is negative or 32 or more.
  [[nodiscard]] static uint32_t extractBitsFromValue(uint32_t value, int32_t startBit,
                                                     int32_t endBit);

  // Reads the unsigned LEB128 integer at byte `*offset` and moves `*offset` past it: ten bytes at
  // most, bits beyond the 64th are lost.
  //
  // Nothing to read (nil data, null `offset`, `*offset` at or past the end): 0, and `*offset`
  // stays. Data that ends inside the integer: the bits read so far, and `*offset` is the length.
  static uint64_t readVarintFromData(const NSData& data, uint64_t* offset);

  // The text of a GUID as Windows stores it (the first three fields little-endian): upper case,
  // dashes, no braces. nil for nil and for fewer than 16 bytes; further bytes are ignored.
  [[nodiscard]] static NSString formatGUIDFromData(const NSData& data);
  // The 16 bytes of such a text, dashes wherever they stand. nil for anything but 32 hexadecimal
  // digits (either case) and dashes; braces are not accepted.
  [[nodiscard]] static NSData dataFromGUIDString(const NSString& text);

  // All bytes, XORed.
  [[nodiscard]] static uint8_t xorChecksumOfData(const NSData& data);
  // CRC-16/CCITT-FALSE: polynomial 0x1021, initial value 0xFFFF, not reflected, no final XOR.
  // Deliberate: nil and empty data give 0, not the initial value.
  [[nodiscard]] static uint16_t crc16OfData(const NSData& data);

  // A 32-bit number as a stack of eight nibbles in which a zero nibble is a free place.
  //
  // Pushing ORs `nibble` (not masked) into the lowest free place for `fromLeft`, else the highest;
  // place 0 when none is free. Popping takes the nibble below the lowest free place for `fromLeft`,
  // else the one above the highest, both around the number's ends; place 0 when none is free.
  // Null: nothing, and 0.
  static void pushNibble(uint32_t nibble, uint32_t* number, bool fromLeft);
  static uint32_t popNibbleFromNumber(uint32_t* number, bool fromLeft);

  // The low byte as two lower-case hexadecimal digits, a blank, and its bits from the lowest on.
  [[nodiscard]] static NSString dumpbits(int64_t value);
  // The bits of a byte as eight bytes of 0 or 1, lowest first, and back (any byte but 0 is a 1).
  static void convertByte(uint8_t byte, uint8_t* bits);
  [[nodiscard]] static int8_t convertToByte(const uint8_t* bits);

  // The four bytes of an identifier, lowest first, as a NUL-terminated text; a zero byte inside
  // ends it early. The text is the calling thread's and stands until its next call.
  [[nodiscard]] static const char* stringFromFourByteIdentifier(uint32_t identifier);

  // A size in bytes for people: "1.50 KB". Exactly 1024 stays "1024.00 bytes". Units are bytes, KB,
  // MB, GB, TB; a size beyond them (over 1024^5 bytes, infinity) raises NSRangeException. NaN stays
  // in bytes.
  [[nodiscard]] static NSString formatSize(double bytes);
};

}  // namespace kelspar
