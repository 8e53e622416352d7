// Making the tables, and the two loops over bytes that decode with them.
#include "platform/unicode/byte_tables.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <mutex>
#include <numeric>

#include "platform/foundation/utf8.h"
#include "platform/unicode/iconv_converter.h"
#include "platform/unicode/icu_converter.h"
#include "platform/unicode/own_tables.h"

namespace kelspar {

namespace {

constexpr NSStringEncoding kGB18030 = 0x80000632;

// One table a row, made under a lock and found by its place in the list afterwards.
template <class Table, class Make>
const Table& sharedTable(const EncodingRow& row, Make make) {
  static auto& places = *new std::array<std::once_flag, 128>;
  static auto& tables = *new std::array<const Table*, 128>{};
  const auto place = static_cast<size_t>(&row - allEncodings().data());
  std::call_once(places[place], [&] { tables[place] = make(); });
  return *tables[place];
}

// The unit of each `length` bytes; U+FFFD where they are undefined.
std::vector<char16_t> unitsOf(const EncodingRow& row, std::string_view sequences, size_t length) {
  std::vector<char16_t> units(sequences.size() / length);
  const auto decode = row.shape == EncodingShape::system ? &unitsByIconv : &unitsByICU;
  decode(row.converter, sequences, length, units.data());
  return units;
}

// The 256 bytes in order.
std::string allBytes() {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  return bytes;
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

bool isC1(char16_t unit) { return unit >= 0x80 && unit <= 0x9F; }

bool isPrivateUse(char16_t unit) { return unit >= 0xE000 && unit <= 0xF8FF; }

// ICU's DOS pages swap three control characters; below 0x80 all but EBCDIC is ASCII.
char16_t unitOf(const EncodingRow& row, unsigned byte, char16_t converted) {
  if (byte < 0x80 && row.shape != EncodingShape::ebcdic) return static_cast<char16_t>(byte);
  const bool isMarked = isC1(converted) || isPrivateUse(converted);
  return isMarked && row.shape == EncodingShape::windows ? utf8::kReplacement : converted;
}

}  // namespace

SingleByteTable::SingleByteTable(const EncodingRow& row) {
  const bool isOwn = row.shape == EncodingShape::own;
  const auto converted = isOwn ? std::vector<char16_t>() : unitsOf(row, allBytes(), 1);
  for (unsigned byte = 0; byte < 256; ++byte) {
    units_[byte] = isOwn ? ownUnit(row, byte) : unitOf(row, byte, converted[byte]);
    isAsciiBelow128_ &= byte >= 0x80 || units_[byte] == byte;
    if (units_[byte] != utf8::kReplacement) {
      bytes_.emplace_back(units_[byte], static_cast<uint8_t>(byte));
    }
  }
  rows_ = byteRows(units_);
  std::ranges::stable_sort(bytes_, {}, &std::pair<char16_t, uint8_t>::first);
}

const SingleByteTable& SingleByteTable::of(const EncodingRow& row) {
  return sharedTable<SingleByteTable>(row, [&row] { return new SingleByteTable(row); });
}

NSString SingleByteTable::decode(std::string_view bytes) const {
  bool defined = true;
  NSString text = NSString::build(bytes.size(), [&](char16_t* out) {
    size_t at = 0;
    if (hasByteVectors()) at = decodeByteBlocks(rows_, isAsciiBelow128_, bytes, out, &defined);
    if (!decodePlainly(bytes.substr(at), out + at)) defined = false;
  });
  return defined ? text : nil;
}

bool SingleByteTable::decodePlainly(std::string_view bytes, char16_t* out) const {
  bool defined = true;
  size_t at = 0;
  for (; at + 8 <= bytes.size(); at += 8) {
    uint64_t word;
    std::memcpy(&word, bytes.data() + at, 8);
    // Byte by byte out of the register: the stores must not come between the loads.
    for (size_t i = 0; i < 8; ++i) {
      const char16_t unit = units_[static_cast<uint8_t>(word >> (8 * i))];
      defined &= unit != utf8::kReplacement;
      out[at + i] = unit;
    }
  }
  for (; at < bytes.size(); ++at) {
    out[at] = units_[static_cast<uint8_t>(bytes[at])];
    defined &= out[at] != utf8::kReplacement;
  }
  return defined;
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

PairTable::PairTable(const EncodingRow& row) : row_(row) {
  switch (row.number) {
    case NSJapaneseEUCStringEncoding:
      longer_ = Longer::threeBytes;
      break;
    case kGB18030:
      longer_ = Longer::fourBytes;
      break;
    default:
      break;
  }
  const auto alone = unitsOf(row, allBytes(), 1);
  constexpr size_t kFirstTrail = 0x30;
  std::string sequences;
  for (size_t trail = kFirstTrail; trail < 256; ++trail) sequences += {0, static_cast<char>(trail)};
  for (unsigned lead = 0; lead < 256; ++lead) {
    singles_[lead] = lead < 0x80 ? static_cast<char16_t>(lead) : alone[lead];
    // The narrow sets have no C1 controls, and none has single bytes of private use: ICU gives
    // these for bytes that are not defined.
    const bool isMarked =
        (isC1(singles_[lead]) && longer_ == Longer::none) || isPrivateUse(singles_[lead]);
    if (singles_[lead] != utf8::kReplacement && !isMarked) continue;
    singles_[lead] = 0;
    for (size_t i = 0; i < sequences.size(); i += 2) sequences[i] = static_cast<char>(lead);
    const auto units = unitsOf(row, sequences, 2);
    for (size_t i = 0; i < units.size(); ++i) {
      const bool isDefined = units[i] != utf8::kReplacement;
      pairs_[(lead & 0x7F) << 8 | (kFirstTrail + i)] = isDefined ? units[i] : u'\0';
    }
  }
}

const PairTable& PairTable::of(const EncodingRow& row) {
  return sharedTable<PairTable>(row, [&row] { return new PairTable(row); });
}

NSString PairTable::decode(std::string_view bytes) const {
  bool defined = true;
  NSString text = NSString::buildAtMost(bytes.size(), [&](char16_t* const out) {
    const auto* in = reinterpret_cast<const uint8_t*>(bytes.data());
    const auto* const end = in + bytes.size();
    char16_t* put = out;
    while (in < end) {
      if (*in < 0x80) {
        *put++ = *in++;
        if (in == end || *in >= 0x80) continue;
        const std::string_view rest(reinterpret_cast<const char*>(in), end - in);
        const size_t run = utf8::asciiPrefix(rest);
        utf8::widen(rest.substr(0, run), put);
        put += run, in += run;
      } else if (end - in >= 8 && decodeFourPairs(in, put)) {
        put += 4, in += 8;
      } else {
        const size_t used = decodeOther(in, static_cast<size_t>(end - in), &put);
        if (used == 0) break;
        in += used;
      }
    }
    defined = in == end;
    return static_cast<size_t>(put - out);
  });
  return defined ? text : nil;
}

inline bool PairTable::decodeFourPairs(const uint8_t* in, char16_t* out) const {
  uint64_t word;
  std::memcpy(&word, in, 8);
  if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  constexpr uint64_t kLeads = UINT64_C(0x8000800080008000);
  if ((word & kLeads) != kLeads) return false;
  const char16_t first = pairs_[word >> 48 & 0x7FFF], second = pairs_[word >> 32 & 0x7FFF],
                 third = pairs_[word >> 16 & 0x7FFF], fourth = pairs_[word & 0x7FFF];
  if (first == 0 || second == 0 || third == 0 || fourth == 0) return false;
  out[0] = first, out[1] = second, out[2] = third, out[3] = fourth;
  return true;
}

// One character that begins above 0x7F. Returns its bytes; 0 when it is undefined.
size_t PairTable::decodeOther(const uint8_t* in, size_t size, char16_t** out) const {
  if (size > 1 && pair(in[0], in[1]) != 0) {
    *(*out)++ = pair(in[0], in[1]);
    return 2;
  }
  if (singles_[in[0]] == 0) return decodeLonger(in, size, out);
  *(*out)++ = singles_[in[0]];
  return 1;
}

// Sequences of three bytes (JIS X 0212 behind 0x8F) and of four (GB 18030).
size_t PairTable::decodeLonger(const uint8_t* in, size_t size, char16_t** out) const {
  if (longer_ == Longer::threeBytes && size >= 3 && in[0] == 0x8F && in[1] >= 0x80) {
    const char16_t unit = longerUnits()[(in[1] & 0x7F) << 8 | in[2]];
    if (unit == 0) return 0;
    *(*out)++ = unit;
    return 3;
  }
  if (longer_ != Longer::fourBytes || size < 4) return 0;
  constexpr uint8_t kFirst[] = {0x81, 0x30, 0x81, 0x30}, kLast[] = {0xFE, 0x39, 0xFE, 0x39};
  uint32_t place = 0;
  for (size_t i = 0; i < 4; ++i) {
    if (in[i] < kFirst[i] || in[i] > kLast[i]) return 0;
    place = place * (kLast[i] - kFirst[i] + 1u) + in[i] - kFirst[i];
  }
  if (place < kFourByteUnits) {
    const char16_t unit = longerUnits()[place];
    if (unit == 0) return 0;
    *(*out)++ = unit;
    return 4;
  }
  constexpr uint32_t kPlaceOfPlane1 = 189'000;  // 90 30 81 30
  if (place < kPlaceOfPlane1 || place - kPlaceOfPlane1 > 0xFFFFF) return 0;
  const uint32_t c = place - kPlaceOfPlane1;
  *(*out)++ = static_cast<char16_t>(0xD800 | c >> 10);
  *(*out)++ = static_cast<char16_t>(0xDC00 | (c & 0x3FF));
  return 4;
}

// Made when the first such sequence comes: most texts have none.
std::span<const char16_t> PairTable::longerUnits() const {
  std::call_once(longerOnce_, [this] {
    const bool isThree = longer_ == Longer::threeBytes;
    const size_t count = isThree ? 128 * 256 : kFourByteUnits;
    std::string sequences;
    for (size_t place = 0; place < count; ++place) {
      const auto add = [&](size_t byte) { sequences += static_cast<char>(byte); };
      if (isThree) {
        add(0x8F), add(0x80 | place >> 8), add(place & 0xFF);
      } else {
        add(0x81 + place / 12'600), add(0x30 + place / 1'260 % 10);
        add(0x81 + place / 10 % 126), add(0x30 + place % 10);
      }
    }
    longerUnits_ = unitsOf(row_, sequences, isThree ? 3 : 4);
    std::ranges::replace(longerUnits_, utf8::kReplacement, u'\0');
  });
  return longerUnits_;
}

}  // namespace kelspar
