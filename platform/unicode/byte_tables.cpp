// Making the tables, and the two loops over bytes that decode with them.
#include "platform/unicode/byte_tables.h"

#include <algorithm>
#include <cstring>
#include <mutex>

#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"
#include "platform/unicode/icu_converter.h"
#include "platform/unicode/own_tables.h"

namespace kelspar {

namespace {

// One table a row, made under a lock and found by its place in the list afterwards.
template <class Table, class Make>
const Table& sharedTable(const EncodingRow& row, Make make) {
  static auto& places = *new std::array<std::once_flag, 128>;
  static auto& tables = *new std::array<const Table*, 128>{};
  const auto place = static_cast<size_t>(&row - allEncodings().data());
  std::call_once(places[place], [&] { tables[place] = make(); });
  return *tables[place];
}

char16_t decodeOne(const EncodingRow& row, std::string_view bytes) {
  std::u16string units;
  const bool valid = convertWithICU(row.converter, bytes, Malformed::stop, &units);
  return valid && units.size() == 1 ? units[0] : utf8::kReplacement;
}

char16_t ownUnit(const EncodingRow& row, unsigned byte) {
  switch (row.number) {
    case NSNEXTSTEPStringEncoding:
      return byte < 0x80 ? static_cast<char16_t>(byte) : kNextStepUnits[byte - 0x80];
    case NSSymbolStringEncoding:
      return byte < 0x20 ? static_cast<char16_t>(byte) : kSymbolUnits[byte - 0x20];
    default:
      return byte < 0xA0 ? static_cast<char16_t>(byte) : kLatin10Units[byte - 0xA0];
  }
}

// ICU's DOS pages swap three control characters; below 0x80 all but EBCDIC is ASCII.
char16_t unitOf(const EncodingRow& row, unsigned byte) {
  if (row.shape == EncodingShape::own) return ownUnit(row, byte);
  if (byte < 0x80 && row.shape != EncodingShape::ebcdic) return static_cast<char16_t>(byte);
  const char text = static_cast<char>(byte);
  const char16_t unit = decodeOne(row, {&text, 1});
  const bool isC1 = unit >= 0x80 && unit <= 0x9F;
  return isC1 && row.shape == EncodingShape::windows ? utf8::kReplacement : unit;
}

}  // namespace

SingleByteTable::SingleByteTable(const EncodingRow& row) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    units_[byte] = unitOf(row, byte);
    isAsciiBelow128_ &= byte >= 0x80 || units_[byte] == byte;
    if (units_[byte] == utf8::kReplacement) {
      holes_.push_back(static_cast<uint8_t>(byte));
    } else {
      bytes_.emplace_back(units_[byte], static_cast<uint8_t>(byte));
    }
  }
  std::ranges::stable_sort(bytes_, {}, &std::pair<char16_t, uint8_t>::first);
}

const SingleByteTable& SingleByteTable::of(const EncodingRow& row) {
  return sharedTable<SingleByteTable>(row, [&row] { return new SingleByteTable(row); });
}

bool SingleByteTable::isDefined(std::string_view bytes) const {
  switch (holes_.size()) {
    case 0:
      return true;
    case 1:
      return scan::findAny(bytes, 0, holes_[0]) == bytes.size();
    case 5:
      return scan::findAny(bytes, 0, holes_[0], holes_[1], holes_[2], holes_[3], holes_[4]) ==
             bytes.size();
    default:
      return std::ranges::none_of(bytes, [this](char byte) {
        return units_[static_cast<uint8_t>(byte)] == utf8::kReplacement;
      });
  }
}

NSString SingleByteTable::decode(std::string_view bytes) const {
  if (!isDefined(bytes)) return nil;
  return NSString::build(bytes.size(), [&](char16_t* out) {
    size_t at = 0;
    const auto* in = reinterpret_cast<const uint8_t*>(bytes.data());
    for (; at + 16 <= bytes.size(); at += 16) {
      uint64_t words[2];
      std::memcpy(words, in + at, 16);
      if (isAsciiBelow128_ && ((words[0] | words[1]) & UINT64_C(0x8080808080808080)) == 0) {
        utf8::widen(bytes.substr(at, 16), out + at);
        continue;
      }
      // Byte by byte out of the registers: the stores must not come between the loads.
      for (size_t half = 0; half < 2; ++half) {
        const uint64_t word = words[half];
        for (size_t i = 0; i < 8; ++i) {
          out[at + half * 8 + i] = units_[static_cast<uint8_t>(word >> (8 * i))];
        }
      }
    }
    for (; at < bytes.size(); ++at) out[at] = units_[in[at]];
  });
}

NSData SingleByteTable::encode(std::u16string_view text) const {
  std::string bytes(text.size(), '\0');
  for (size_t i = 0; i < text.size(); ++i) {
    if (isAsciiBelow128_ && text[i] < 0x80) {
      bytes[i] = static_cast<char>(text[i]);
      continue;
    }
    const auto place =
        std::ranges::lower_bound(bytes_, text[i], {}, &std::pair<char16_t, uint8_t>::first);
    if (place == bytes_.end() || place->first != text[i]) return nil;
    bytes[i] = static_cast<char>(place->second);
  }
  return NSData(std::move(bytes));
}

PairTable::PairTable(const EncodingRow& row) {
  for (unsigned lead = 0; lead < 256; ++lead) {
    char text[2] = {static_cast<char>(lead), 0};
    singles_[lead] = lead < 0x80 ? static_cast<char16_t>(lead) : decodeOne(row, {text, 1});
    const bool stands = singles_[lead] != utf8::kReplacement &&
                        (lead < 0x80 || singles_[lead] < 0x80 || singles_[lead] > 0x9F);
    if (stands) continue;
    singles_[lead] = 0;
    for (unsigned trail = 0x30; trail < 256; ++trail) {
      text[1] = static_cast<char>(trail);
      const char16_t unit = decodeOne(row, {text, 2});
      if (unit != utf8::kReplacement) pairs_[(lead & 0x7F) << 8 | trail] = unit;
    }
  }
}

const PairTable& PairTable::of(const EncodingRow& row) {
  return sharedTable<PairTable>(row, [&row] { return new PairTable(row); });
}

NSString PairTable::decode(std::string_view bytes) const {
  const size_t ascii = utf8::asciiPrefix(bytes);
  if (ascii == bytes.size()) {
    return NSString::build(ascii, [&](char16_t* out) { utf8::widen(bytes, out); });
  }
  std::u16string units(bytes.size(), u'\0');
  char16_t* out = units.data();
  const auto* in = reinterpret_cast<const uint8_t*>(bytes.data());
  const auto* const end = in + bytes.size();
  while (in < end) {
    const uint8_t lead = *in;
    if (lead < 0x80) {
      *out++ = lead;
      ++in;
    } else if (end - in > 1 && pair(lead, in[1]) != 0) {
      *out++ = pair(lead, in[1]);
      in += 2;
    } else if (singles_[lead] != 0) {
      *out++ = singles_[lead];
      ++in;
    } else {
      return nil;
    }
  }
  units.resize(static_cast<size_t>(out - units.data()));
  return NSString(std::move(units));
}

}  // namespace kelspar
