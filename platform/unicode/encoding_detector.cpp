// The order of the tests, and those that need no statistics: marks, zero bytes, escapes, UTF-8.
#include <algorithm>
#include <cstring>
#include <optional>

#include "platform/foundation/scan.h"
#include "platform/foundation/utf8.h"
#include "platform/unicode/NSEncodingDetector.h"
#include "platform/unicode/encoding_statistics.h"
#include "platform/unicode/encoding_table.h"
#include "platform/unicode/icu_converter.h"
#include "platform/unicode/shift_sequences.h"

namespace kelspar {

namespace {

using Allowed = std::span<const NSStringEncoding>;

constexpr NSStringEncoding kISO2022JP2 = 0x80000821;
constexpr NSStringEncoding kISO2022CN = 0x80000830;
constexpr NSStringEncoding kISO2022KR = 0x80000840;
constexpr NSStringEncoding kHZ = 0x80000A05;

// Well-formed sequences of two bytes and more, and bytes above 0x7F that belong to none.
std::pair<size_t, size_t> countSequences(std::string_view bytes) {
  size_t sequences = 0, faults = 0;
  const auto at = [&](size_t i) { return i < bytes.size() ? static_cast<uint8_t>(bytes[i]) : 0; };
  for (size_t i = 0; i < bytes.size();) {
    const uint8_t lead = at(i++);
    if (lead < 0x80) continue;
    size_t following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    const bool isLead = lead >= 0xC2 && lead <= 0xF4;
    while (isLead && following > 0 && (at(i) & 0xC0) == 0x80) ++i, --following;
    ++(isLead && following == 0 ? sequences : faults);
  }
  return {sequences, faults};
}

NSString decodeReplacing(std::string_view bytes, NSStringEncoding encoding) {
  const EncodingRow* row = encodingRow(encoding);
  if (!row) return nil;
  std::u16string units;
  if (row->shape == EncodingShape::utf8) {
    units = utf8::decodeReplacing(bytes);
  } else if (row->shape == EncodingShape::ascii) {
    for (const char c : bytes) {
      units.push_back(static_cast<uint8_t>(c) < 0x80 ? static_cast<char16_t>(c)
                                                     : utf8::kReplacement);
    }
  } else if (!row->converter ||
             !convertWithICU(row->converter, bytes, Malformed::replace, &units)) {
    return nil;
  }
  return NSString(std::move(units));
}

class Detector {
 public:
  Detector(std::string_view bytes, Allowed suggested, bool onlySuggested)
      : bytes_(bytes),
        isAscii_(utf8::asciiPrefix(bytes) == bytes.size()),
        suggested_(suggested),
        onlySuggested_(onlySuggested) {}

  EncodingDetection run() const {
    if (auto found = byMark()) return *found;
    if (auto found = byZeros()) return *found;
    if (auto found = byEscapes()) return *found;
    if (auto found = asUTF8()) return *found;
    if (auto found = byStatistics()) return *found;
    return withLoss();
  }

 private:
  using Found = std::optional<EncodingDetection>;

  [[nodiscard]] bool isAllowed(NSStringEncoding encoding) const {
    return !onlySuggested_ || std::ranges::find(suggested_, encoding) != suggested_.end();
  }

  [[nodiscard]] Found decode(NSStringEncoding encoding, size_t from = 0) const {
    if (!isAllowed(encoding)) return std::nullopt;
    NSString text = stringWithBytes(bytes_.substr(from), encoding);
    if (!text) return std::nullopt;
    return EncodingDetection{encoding, std::move(text), false};
  }

  // UTF-32's little-endian mark begins with UTF-16's.
  [[nodiscard]] Found byMark() const {
    constexpr std::string_view kUTF32BE("\0\0\xFE\xFF", 4), kUTF32LE("\xFF\xFE\0\0", 4);
    Found found;
    if (bytes_.starts_with(kUTF32LE)) found = decode(NSUTF32LittleEndianStringEncoding, 4);
    if (bytes_.starts_with(kUTF32BE)) found = decode(NSUTF32BigEndianStringEncoding, 4);
    if (found) return found;
    if (bytes_.starts_with("\xFF\xFE")) return decode(NSUTF16LittleEndianStringEncoding, 2);
    if (bytes_.starts_with("\xFE\xFF")) return decode(NSUTF16BigEndianStringEncoding, 2);
    if (bytes_.starts_with("\xEF\xBB\xBF")) return decode(NSUTF8StringEncoding, 3);
    return std::nullopt;
  }

  // Wide text has its zero bytes at one side of the units: blanks and line ends at least. A few
  // bytes tell nothing: "ab\0\0" is a text that was padded.
  [[nodiscard]] Found byZeros() const {
    const size_t looked = std::min(bytes_.size() & ~size_t{3}, size_t{4096});
    if (looked < 8 || !std::memchr(bytes_.data(), 0, looked)) return std::nullopt;
    size_t zeros[4] = {}, low[4] = {};
    for (size_t i = 0; i < looked; ++i) {
      zeros[i % 4] += bytes_[i] == 0;
      low[i % 4] += static_cast<uint8_t>(bytes_[i]) < 0x20;
    }
    const size_t quarter = looked / 4;
    // Text that is valid UTF-8 with zero bytes in it must look wide throughout to be taken so.
    const bool couldBeUTF8 = static_cast<bool>(NSString::fromUTF8(bytes_));
    const size_t leastLow = couldBeUTF8 ? (quarter + 1) / 2 : 0;
    Found found;
    if (zeros[0] == quarter && zeros[1] > quarter * 3 / 4 && zeros[3] == 0 && low[2] >= leastLow) {
      found = decode(NSUTF32BigEndianStringEncoding);
    }
    if (zeros[3] == quarter && zeros[2] > quarter * 3 / 4 && zeros[0] == 0 && low[1] >= leastLow) {
      found = decode(NSUTF32LittleEndianStringEncoding);
    }
    if (found) return isPlausible(found->text) ? found : std::nullopt;
    const size_t even = zeros[0] + zeros[2], odd = zeros[1] + zeros[3];
    const size_t least = couldBeUTF8 ? std::max<size_t>(4, looked * 2 / 5) : looked / 64 + 2;
    const bool isBig = even >= least && odd * 20 <= even;
    const bool isLittle = odd >= least && even * 20 <= odd;
    if (isBig) found = decode(NSUTF16BigEndianStringEncoding);
    if (isLittle) found = decode(NSUTF16LittleEndianStringEncoding);
    return found && isPlausible(found->text) ? found : std::nullopt;
  }

  // No control characters but those of layout.
  [[nodiscard]] static bool isPlausible(std::u16string_view text) {
    return std::ranges::none_of(text.substr(0, 2048), [](char16_t unit) {
      const bool isControl = unit < 0x20 && (unit < u'\t' || unit > u'\r') && unit != 0x1B;
      return isControl || unit >= 0xFFF0;
    });
  }

  // Seven-bit encodings that shift between sets (RFC 1468, 1554, 1557, 1922, 1843).
  [[nodiscard]] Found byEscapes() const {
    if (!isAscii_ || scan::findAny(bytes_, 0, '\x1B', '~', '\x0E') == bytes_.size()) {
      return std::nullopt;
    }
    const auto has = [this](std::string_view sequence) {
      return bytes_.find(sequence) != bytes_.npos;
    };
    if (isWholeHZ(bytes_)) return decode(kHZ);
    if (!isWholeISO2022(bytes_)) return std::nullopt;
    if (has("\x1B$)C")) return decode(kISO2022KR);
    Found found;
    if (has("\x1B$)A") || has("\x1B$)G") || has("\x1B$*H")) found = decode(kISO2022CN);
    if (!found) found = decode(NSISO2022JPStringEncoding);
    if (!found) found = decode(kISO2022JP2);
    return found;
  }

  [[nodiscard]] Found asUTF8() const {
    if (isAscii_) {
      if (auto found = decode(NSASCIIStringEncoding)) return found;
    }
    return decode(NSUTF8StringEncoding);
  }

  [[nodiscard]] Found byStatistics() const {
    if (const auto damaged = asDamagedUTF8()) return damaged;
    for (const NSStringEncoding guess : guessEncodings(bytes_, suggested_)) {
      if (auto found = decode(guess)) return found;
    }
    for (const NSStringEncoding encoding : suggested_) {
      if (auto found = decode(encoding)) return found;
    }
    return decode(NSISOLatin1StringEncoding);
  }

  // UTF-8 that was cut or has lost a byte here and there: several sequences to each fault.
  [[nodiscard]] Found asDamagedUTF8() const {
    if (!isAllowed(NSUTF8StringEncoding)) return std::nullopt;
    const auto [sequences, faults] = countSequences(bytes_.substr(0, 16384));
    if (sequences < 4 || faults * 8 > sequences) return std::nullopt;
    return EncodingDetection{NSUTF8StringEncoding, NSString(utf8::decodeReplacing(bytes_)), true};
  }

  // The first that is allowed at all, with U+FFFD for what it does not take.
  [[nodiscard]] EncodingDetection withLoss() const {
    for (const NSStringEncoding encoding : suggested_) {
      NSString text = decodeReplacing(bytes_, encoding);
      if (text) return {encoding, std::move(text), true};
    }
    return {};
  }

  std::string_view bytes_;
  bool isAscii_;
  Allowed suggested_;
  bool onlySuggested_;
};

}  // namespace

EncodingDetection stringEncodingForData(const NSData& data,
                                        std::span<const NSStringEncoding> suggested,
                                        bool useOnlySuggested) {
  if (!data) return {};
  return Detector(data.chars(), suggested, useOnlySuggested).run();
}

}  // namespace kelspar
