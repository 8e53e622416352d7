// The likelihood of the bytes above 0x7F under each code page and language, in bits: what a byte
// costs as the letter that it would be, and what it costs to stand behind its neighbour. The
// smallest sum wins.
#include "platform/unicode/encoding_statistics.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include "platform/unicode/byte_tables.h"
#include "platform/unicode/language_letters.h"
#include "platform/unicode/language_words.h"
#include "platform/unicode/pair_statistics.h"

namespace kelspar {

namespace {

constexpr size_t kSample = 16384;
constexpr float kImpossible = std::numeric_limits<float>::infinity();

// What a unit is to its neighbours.
enum class Class : uint8_t { lower, upper, letter, mark, punctuation, symbol, control, undefined };

Class classOf(char16_t unit) {
  if (unit == 0xFFFD) return Class::undefined;
  if (unit >= 0x80 && unit < 0xA0) return Class::control;
  constexpr std::u16string_view kUsual =
      u"\u00A0\u00A7\u00A9\u00AB\u00BB\u00AE\u00B0\u2013\u2014\u2018\u2019\u201A\u201C\u201D\u201E"
      u"\u2022\u2026\u2039\u203A\u20AC\u2122\u2116\u00A3\u00BF\u00A1\u00BA\u00AA\u00AD\u00B7\u00B4"
      u"\u060C\u061B\u061F\u0640\u200C\u200E\u200F\u0385\u2015";
  if (kUsual.find(unit) != kUsual.npos) return Class::punctuation;
  switch (u_charType(unit)) {
    case U_LOWERCASE_LETTER:
      return Class::lower;
    case U_UPPERCASE_LETTER:
      return Class::upper;
    case U_OTHER_LETTER:
    case U_MODIFIER_LETTER:
      return Class::letter;
    case U_NON_SPACING_MARK:
      return Class::mark;
    default:
      return Class::symbol;
  }
}

Class asciiClass(uint8_t byte) {
  if (byte >= 'a' && byte <= 'z') return Class::lower;
  return byte >= 'A' && byte <= 'Z' ? Class::upper : Class::punctuation;
}

// Of measures, money and small numbers.
bool isSign(char16_t unit) {
  constexpr std::u16string_view kSigns =
      u"\u00A2\u00A4\u00A5\u00A6\u00AC\u00B1\u00B2\u00B3\u00B5\u00B6\u00B9\u00BC\u00BD\u00BE\u00D7"
      u"\u00F7";
  return kSigns.find(unit) != kSigns.npos;
}

bool isLetter(Class c) { return c <= Class::mark; }

// The bytes of a sample: how often each stands, and behind which other.
class Sample {
 public:
  struct Pair {
    uint8_t first, second;
    uint16_t count;
  };

  explicit Sample(std::string_view bytes)
      : words_(countEverydayWords(bytes)), mostWords_(*std::ranges::max_element(words_)) {
    // The part with the first bytes that matter.
    const auto isHigh = [](char c) { return static_cast<uint8_t>(c) >= 0x80; };
    const auto first = static_cast<size_t>(std::ranges::find_if(bytes, isHigh) - bytes.begin());
    bytes = bytes.substr(first - std::min<size_t>(first, 16), kSample);
    thread_local std::array<uint16_t, 65536> table{};
    thread_local std::vector<uint16_t> used;
    used.clear();
    uint8_t before = ' ';
    // What stands before `before`.
    bool afterLetter = false, afterHigh = false;
    const auto countAlone = [&](bool isInside) {
      alone_[before] += before >= 0x80 && !isInside && !afterLetter && !afterHigh;
    };
    for (const char c : bytes) {
      const auto byte = static_cast<uint8_t>(c);
      if ((byte | before) >= 0x80) {
        const auto key = static_cast<uint16_t>(before << 8 | byte);
        if (table[key]++ == 0) used.push_back(key);
        counts_[byte] += byte >= 0x80;
        const bool isInside = byte >= 0x80 || isLetter(asciiClass(byte));
        inWords_[before] += before >= 0x80 && byte < 0x80 && isInside && afterLetter;
        countAlone(isInside);
      }
      afterLetter = before < 0x80 && isLetter(asciiClass(before));
      afterHigh = before >= 0x80;
      before = byte;
    }
    countAlone(false);
    for (const uint16_t key : used) {
      pairs_.push_back({static_cast<uint8_t>(key >> 8), static_cast<uint8_t>(key), table[key]});
      table[key] = 0;
    }
    for (unsigned byte = 0x80; byte < 256; ++byte) {
      if (counts_[byte] > 0) high_.push_back(static_cast<uint8_t>(byte));
    }
  }

  // What speaks against a row of `languageLetters()`: fewer everyday words than in the one that has
  // the most.
  float wordCost(size_t language) const { return costOfWords(mostWords_ - words_[language]); }
  // The same for scripts other than Latin, which have none.
  float wordCostOfOthers() const { return costOfWords(mostWords_); }

  const std::vector<Pair>& pairs() const { return pairs_; }
  const std::vector<uint8_t>& high() const { return high_; }
  float countOfHigh() const {
    float count = 0;
    for (const uint8_t byte : high_) count += static_cast<float>(counts_[byte]);
    return count;
  }
  float count(uint8_t byte) const { return static_cast<float>(counts_[byte]); }
  // How often it stands between two letters of ASCII.
  float countInWords(uint8_t byte) const { return static_cast<float>(inWords_[byte]); }
  // How often neither a letter of ASCII nor another byte above 0x7F touches it.
  float countAlone(uint8_t byte) const { return static_cast<float>(alone_[byte]); }

 private:
  static float costOfWords(int missing) {
    constexpr float kWord = 1.5f, kMost = 25;
    return std::min(kMost, kWord * static_cast<float>(missing));
  }

  std::vector<Pair> pairs_;
  std::vector<uint8_t> high_;
  std::array<uint32_t, 256> counts_{}, inWords_{}, alone_{};
  std::vector<uint16_t> words_;
  uint16_t mostWords_;
};

// A code page with its languages.
class PageModel {
 public:
  explicit PageModel(const CodePageLanguages& page)
      : encoding_(page.encoding), price_(static_cast<float>(page.price)) {
    const SingleByteTable& table = SingleByteTable::of(*encodingRow(page.encoding));
    for (unsigned byte = 0; byte < 256; ++byte) {
      const auto unit = table.unit(static_cast<uint8_t>(byte));
      units_[byte] = unit;
      classes_[byte] = byte < 0x80 ? asciiClass(static_cast<uint8_t>(byte)) : classOf(unit);
      if (byte >= 0x80) inWordCosts_[byte - 0x80] = inWordCost(unit, classes_[byte]);
    }
    std::string_view rest = page.languages;
    while (!rest.empty()) {
      const size_t end = std::min(rest.find(' '), rest.size());
      addLanguage(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }

  NSStringEncoding encoding() const { return encoding_; }

  // The cheapest of the languages.
  float cost(const Sample& sample, float bound) const {
    const bool hasLetters = std::ranges::any_of(
        sample.high(), [this](uint8_t byte) { return isLetter(classes_[byte]); });
    // Another script of which nothing but punctuation is there.
    float shared = price_ + (isLatin_ || hasLetters ? 0 : 20);
    for (const Sample::Pair& pair : sample.pairs()) {
      shared += contextCost(pair) * static_cast<float>(pair.count);
      if (shared > bound) return kImpossible;
    }
    for (const uint8_t byte : sample.high()) {
      shared += inWordCosts_[byte - 0x80] * sample.countInWords(byte);
      if (isLetter(classes_[byte])) shared += aloneCost() * sample.countAlone(byte);
    }
    float best = kImpossible;
    for (const Language& language : languages_) {
      float sum = shared + (isLatin_ ? sample.wordCost(language.row) : sample.wordCostOfOthers());
      for (const uint8_t byte : sample.high()) {
        sum += language.costs[byte - 0x80] * sample.count(byte);
      }
      best = std::min(best, sum);
    }
    return best;
  }

 private:
  struct Language {
    size_t row;                    // in languageLetters()
    std::array<float, 128> costs;  // of the bytes above 0x7F, in bits
  };

  // Quotation marks and signs stand at the edges of words, apostrophes and hyphens also inside.
  static float inWordCost(char16_t unit, Class unitClass) {
    constexpr std::u16string_view kInside = u"\u2019\u00B7\u00AD\u2010\u2013\u00B4";
    if (isLetter(unitClass) || kInside.find(unit) != kInside.npos) return 0;
    return unit == 0xA0 ? 2 : 5;
  }

  // Few words are one letter.
  [[nodiscard]] float aloneCost() const { return isLatin_ ? 1 : 3; }

  void addLanguage(std::string_view name) {
    const auto letters = std::ranges::find_if(
        languageLetters(), [name](const LanguageLetters& row) { return row.language == name; });
    isLatin_ = u_getIntPropertyValue(letters->letters[0], UCHAR_SCRIPT) == kLatin ||
               letters->letters[0] == u'\u0323';
    const auto count = static_cast<float>(letters->letters.size());
    const float first = isLatin_ ? 1.5f : 3.0f;
    const float slope = isLatin_ ? std::min(0.7f, 7 / count) : 5.5f / count;
    auto& [row, costs] = languages_.emplace_back();
    row = static_cast<size_t>(letters - languageLetters().begin());
    for (unsigned byte = 0x80; byte < 256; ++byte) {
      const char16_t unit = units_[byte];
      const auto lower = static_cast<char16_t>(u_tolower(unit));
      const size_t rank = letters->letters.find(lower);
      float cost = 13;
      if (rank != std::u16string_view::npos) {
        cost = first + slope * static_cast<float>(rank);
      } else if (isLetter(classes_[byte])) {
        cost = 11;
      } else if (classes_[byte] == Class::punctuation) {
        cost = 7;
      } else if (isSign(unit)) {
        cost = 9;
      } else if (classes_[byte] == Class::control || classes_[byte] == Class::undefined) {
        cost = 40;
      }
      if (classes_[byte] == Class::upper) cost += 2.5f;
      costs[byte - 0x80] = cost;
    }
  }

  float contextCost(const Sample::Pair& pair) const {
    const Class first = classes_[pair.first], second = classes_[pair.second];
    const bool isFirstAscii = pair.first < 0x80, isSecondAscii = pair.second < 0x80;
    float cost = 0;
    if (first == Class::lower && second == Class::upper) cost += 7;
    if (first == Class::symbol && isLetter(second)) cost += 3;
    if (isLetter(first) && second == Class::symbol) cost += 3;
    if (second == Class::mark && !isLetter(first)) cost += 8;
    if (isLatin_) {
      // Letters with accents stand among plain ones.
      if (!isFirstAscii && !isSecondAscii && isLetter(first) && isLetter(second)) cost += 2.5f;
      const bool isWordStart = first == Class::punctuation && isFirstAscii;
      if (isWordStart && second == Class::upper) cost -= 1;
    } else {
      // Words are of one script.
      const bool isMixed = isLetter(first) && isLetter(second) && isFirstAscii != isSecondAscii;
      if (isMixed) cost += 5;
      if (first == Class::punctuation && second == Class::upper) cost -= 1;
    }
    return cost;
  }

  static constexpr int kLatin = USCRIPT_LATIN;

  NSStringEncoding encoding_;
  float price_;
  bool isLatin_ = true;
  std::array<char16_t, 256> units_;
  std::array<Class, 256> classes_;
  std::array<float, 128> inWordCosts_;
  std::vector<Language> languages_;
};

const std::vector<PageModel>& pageModels() {
  static const std::vector<PageModel> models(codePageLanguages().begin(),
                                             codePageLanguages().end());
  return models;
}

}  // namespace

std::vector<NSStringEncoding> guessEncodings(std::string_view bytes,
                                             std::span<const NSStringEncoding> suggested) {
  // Weighs more than a handful of bytes can say, and next to nothing against a line of text.
  const Sample sample(bytes);
  const float benefit = 1.5f + 6 / std::max(1.0f, sample.countOfHigh());
  struct Guess {
    float cost;
    NSStringEncoding encoding;
  };
  std::vector<Guess> guesses;
  float best = kImpossible;
  const auto add = [&](NSStringEncoding encoding, float cost) {
    if (cost == kImpossible) return;
    if (std::ranges::find(suggested, encoding) != suggested.end()) cost -= benefit;
    best = std::min(best, cost);
    guesses.push_back({cost, encoding});
  };
  for (const PairModel& model : pairModels()) {
    add(model.encoding(), model.cost(bytes.substr(0, kSample)) + sample.wordCostOfOthers());
  }
  for (const PageModel& model : pageModels()) {
    add(model.encoding(), model.cost(sample, best * 1.5f + 100));
  }
  std::ranges::stable_sort(guesses, {}, &Guess::cost);
  std::vector<NSStringEncoding> result;
  for (const Guess& guess : guesses) result.push_back(guess.encoding);
  return result;
}

}  // namespace kelspar
