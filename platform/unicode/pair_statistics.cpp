// East Asian text by its most frequent characters, and by where in the code the usual ones stand.
#include "platform/unicode/pair_statistics.h"

#include <limits>

#include "platform/unicode/language_letters.h"

namespace kelspar {

namespace {

constexpr float kImpossible = std::numeric_limits<float>::infinity();
constexpr uint8_t kUndefined = 255;
// A character of one byte, half-width katakana mostly: among others; with none beside it.
constexpr int kAlone = 9, kLonely = 13;

const EncodingRow& rowOf(NSStringEncoding encoding) { return *encodingRow(encoding); }

bool isBetween(char16_t unit, char16_t first, char16_t last) {
  return unit >= first && unit <= last;
}

bool isPunctuation(char16_t unit) {
  return isBetween(unit, 0x3000, 0x3020) || isBetween(unit, 0x2010, 0x2026) ||
         isBetween(unit, 0xFF01, 0xFF5E) || unit == 0x30FC || unit == 0xB7;
}

bool isLatin(uint8_t byte) { return (byte | 0x20) >= 'a' && (byte | 0x20) <= 'z'; }

std::u16string_view frequentOf(PairModel::Language language) {
  switch (language) {
    case PairModel::Language::simplified:
      return kFrequentSimplified;
    case PairModel::Language::traditional:
      return kFrequentTraditional;
    case PairModel::Language::japanese:
      return kFrequentKanji;
    case PairModel::Language::korean:
      return kFrequentHangul;
  }
  return {};
}

}  // namespace

PairModel::PairModel(NSStringEncoding encoding, Language language, float price, uint8_t firstLead,
                     uint8_t lastLead)
    : encoding_(encoding),
      language_(language),
      price_(price),
      firstLead_(firstLead),
      lastLead_(lastLead),
      isFourByte_(encoding == 0x80000632),
      hasThreeByte_(encoding == NSJapaneseEUCStringEncoding),
      table_(PairTable::of(rowOf(encoding))),
      costs_(128 * 256, kUndefined) {
  std::vector<bool> isFrequent(0x10000);
  for (const char16_t unit : frequentOf(language)) isFrequent[unit] = true;
  for (unsigned lead = 0x80; lead < 256; ++lead) {
    for (unsigned trail = 0x30; trail < 256; ++trail) {
      const char16_t unit = table_.pair(static_cast<uint8_t>(lead), static_cast<uint8_t>(trail));
      if (unit == 0) continue;
      costs_[(lead & 0x7F) << 8 | trail] =
          static_cast<uint8_t>(costOf(static_cast<uint8_t>(lead), unit, isFrequent[unit]) * 8);
    }
  }
}

float PairModel::costOf(uint8_t lead, char16_t unit, bool isFrequent) const {
  const bool isUsual = lead >= firstLead_ && lead <= lastLead_;
  constexpr float kRare = 19;
  if (isBetween(unit, 0x80, 0x9F) || isBetween(unit, 0xE000, 0xF8FF)) return 30;
  if (isPunctuation(unit)) return 7;
  switch (language_) {
    case Language::simplified:
    case Language::traditional:
      return isFrequent ? 8 : isUsual ? 12.5f : kRare;
    case Language::japanese:
      if (isBetween(unit, 0x3041, 0x3093)) return 5.5f;
      if (isBetween(unit, 0x30A1, 0x30F6)) return 7.5f;
      return isFrequent ? 9 : isUsual ? 13 : kRare;
    case Language::korean:
      if (isFrequent) return 8;
      if (isBetween(unit, 0xAC00, 0xD7A3)) return isUsual ? 12.5f : 17;
      return kRare;
  }
  return kRare;
}

// A lead whose trail is cut off tells nothing.
float PairModel::costOfLast(std::string_view bytes) const {
  const char16_t unit = table_.alone(static_cast<uint8_t>(bytes.back()));
  if (unit == 0) return 0;
  if (unit <= 0x9F) return kImpossible;
  const bool isLonely = bytes.size() == 1 || (bytes[bytes.size() - 2] & 0x80) == 0;
  return isLonely ? kLonely : kAlone;
}

float PairModel::cost(std::string_view bytes) const {
  const auto* in = reinterpret_cast<const uint8_t*>(bytes.data());
  const size_t size = bytes.size();
  uint64_t eighths = 0;
  for (size_t at = 0; at < size;) {
    const uint8_t lead = in[at];
    if (lead < 0x80) {
      ++at;
      continue;
    }
    if (at + 1 >= size) return price_ + static_cast<float>(eighths) / 8 + costOfLast(bytes);
    const uint8_t cost = costs_[(lead & 0x7F) << 8 | in[at + 1]];
    if (cost != kUndefined) {
      // Between two Latin letters stands a Latin letter, or two.
      const bool isInWord = at > 0 && at + 2 < size && isLatin(in[at - 1]) && isLatin(in[at + 2]);
      eighths += cost + (isInWord ? 6 * 8 : 0);
      at += 2;
    } else if (table_.alone(lead) > 0x9F) {
      const bool isLonely = (at == 0 || in[at - 1] < 0x80) && in[at + 1] < 0x80;
      eighths += (isLonely ? kLonely : kAlone) * 8;
      ++at;
    } else if (isFourByte_ && in[at + 1] >= 0x30 && in[at + 1] <= 0x39) {
      eighths += 30 * 8;
      at += 4;
    } else if (hasThreeByte_ && lead == 0x8F) {
      eighths += 22 * 8;
      at += 3;
    } else {
      return kImpossible;
    }
  }
  return price_ + static_cast<float>(eighths) / 8;
}

std::span<const PairModel> pairModels() {
  using Language = PairModel::Language;
  static const std::array<PairModel, 7> models{
      PairModel(0x80000632, Language::simplified, 2, 0xB0, 0xD7),
      PairModel(0x80000A03, Language::traditional, 2, 0xA4, 0xC6),
      PairModel(0x80000A06, Language::traditional, 6, 0xA4, 0xC6),
      PairModel(NSShiftJISStringEncoding, Language::japanese, 2, 0x88, 0x97),
      PairModel(NSJapaneseEUCStringEncoding, Language::japanese, 2, 0xB0, 0xCF),
      PairModel(0x80000422, Language::korean, 2, 0xB0, 0xC8),
      PairModel(0x80000510, Language::korean, 10, 0x88, 0xD3),
  };
  return models;
}

}  // namespace kelspar
