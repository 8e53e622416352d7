// Dates as mail has them (RFC 5322, 3.3 and 4.3), read word by word rather than by a pattern: the
// order hardly matters, and what is not understood is passed over.
#include <algorithm>
#include <optional>
#include <string>

#include "MailKelspar/MailKelspar.h"
#include "TimeKelspar/TimeKelspar.h"
#include "platform/calendar/wall_clock.h"
#include "platform/foundation/ascii.h"

namespace kelspar {

namespace {

constexpr std::string_view kMonths[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                        "jul", "aug", "sep", "oct", "nov", "dec"};

struct ZoneRow {
  std::string_view name;
  int minutes;
};
constexpr ZoneRow kZones[] = {
    {"bst", 60},   {"cdt", -300}, {"cest", 120}, {"cet", 60},  {"cst", -360}, {"edt", -240},
    {"eest", 180}, {"eet", 120},  {"est", -300}, {"gmt", 0},   {"hst", -600}, {"ist", 330},
    {"jst", 540},  {"kst", 540},  {"mdt", -360}, {"msd", 240}, {"msk", 180},  {"mst", -420},
    {"pdt", -420}, {"pst", -480}, {"sast", 120}, {"sgt", 480}, {"ut", 0},     {"utc", 0},
    {"west", 60},  {"wet", 0},    {"z", 0},
};
static_assert(std::ranges::is_sorted(kZones, {}, &ZoneRow::name));

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return c >= 'a' && c <= 'z'; }

// Lower case, comments dropped, anything but ASCII a blank.
std::string plain(const NSString& value) {
  std::string text;
  int depth = 0;
  bool escaped = false;
  for (const char16_t unit : value.view()) {
    const char c = unit < 128 ? static_cast<char>(unit) : ' ';
    if (depth > 0 && escaped) {
      escaped = false;
    } else if (depth > 0 && c == '\\') {
      escaped = true;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')' && depth > 0) {
      --depth;
      text += ' ';
    } else if (depth == 0) {
      text += ascii::lower(c);
    }
  }
  return text;
}

class DateWords {
 public:
  explicit DateWords(std::string text) : text_(std::move(text)) {}

  std::optional<int64_t> read() {
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (isDigit(c)) {
        if (!readNumber()) return {};
      } else if (isLetter(c)) {
        readWord();
      } else if ((c == '+' || c == '-') && hasTime_ && at_ + 1 < text_.size() &&
                 isDigit(text_[at_ + 1])) {
        readOffset();
      } else {
        ++at_;
      }
    }
    return result();
  }

 private:
  // -1 for one of more than nine digits.
  int digits(size_t* length) {
    const size_t from = at_;
    int number = 0;
    for (; at_ < text_.size() && isDigit(text_[at_]); ++at_) {
      if (at_ - from < 9) number = 10 * number + (text_[at_] - '0');
    }
    *length = at_ - from;
    return *length > 9 ? -1 : number;
  }

  [[nodiscard]] char next() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  bool readNumber() {
    size_t length = 0;
    const int number = digits(&length);
    if (number < 0) return false;
    // Some write "12.30.00".
    if ((next() == ':' || (next() == '.' && day_ && year_)) && !hasTime_) return readTime(number);
    if (length == 4 && !year_ && next() == '-' && !month_) return readISO(number);
    if (!day_ && length <= 2) {
      day_ = number;
      return true;
    }
    if (!year_) {
      year_ = length <= 2   ? number + (number < 50 ? 2000 : 1900)
              : length == 3 ? number + 1900
                            : number;
      return true;
    }
    return true;  // a stray number
  }

  bool readISO(int year) {
    size_t length = 0;
    ++at_;
    const int month = digits(&length);
    if (length != 2 || next() != '-') return false;
    ++at_;
    const int day = digits(&length);
    if (length != 2) return false;
    year_ = year;
    month_ = month;
    day_ = day;
    return true;
  }

  bool readTime(int hour) {
    size_t length = 0;
    hasTime_ = true;
    hour_ = hour;
    ++at_;
    minute_ = digits(&length);
    if (length == 0) return false;
    if (next() != ':' && next() != '.') return true;
    ++at_;
    second_ = digits(&length);
    if (next() == '.' || next() == ',') {
      ++at_;
      digits(&length);  // a fraction
    }
    return true;
  }

  void readOffset() {
    const int sign = text_[at_++] == '-' ? -1 : 1;
    size_t length = 0;
    int number = digits(&length);
    if (length <= 2 && number >= 0) {
      number *= 100;
      if (next() == ':') {
        ++at_;
        number += std::max(digits(&length), 0) % 100;
      }
    }
    if (number < 0 || number % 100 > 59 || number >= 2400) return;
    offset_ = sign * (number / 100 * 60 + number % 100);
  }

  void readWord() {
    const size_t from = at_;
    while (at_ < text_.size() && isLetter(text_[at_])) ++at_;
    const std::string_view word = std::string_view(text_).substr(from, at_ - from);
    const auto* month = std::ranges::find(kMonths, word.substr(0, 3));
    if (month != std::end(kMonths) && !month_) {
      month_ = static_cast<int>(month - std::begin(kMonths)) + 1;
    } else if (word == "pm" && hour_ < 12) {
      hour_ += 12;
    } else if (word == "am" && hour_ == 12) {
      hour_ = 0;
    } else if (hasTime_) {
      const auto* zone = std::ranges::lower_bound(kZones, word, {}, &ZoneRow::name);
      if (zone != std::end(kZones) && zone->name == word) offset_ = zone->minutes;
    }
  }

  [[nodiscard]] std::optional<int64_t> result() const {
    if (!day_ || !month_ || !year_) return {};
    if (!TimeKelspar::dateIsValidWithDay(*day_, *month_, *year_)) return {};
    if (hour_ > 23 || minute_ > 59 || minute_ < 0 || second_ > 60 || second_ < 0) return {};
    const int64_t minutes =
        (calendar::daysFromCivil(*year_, *month_, *day_) * 24 + hour_) * 60 + minute_;
    return (minutes - offset_) * 60 + second_;
  }

  std::string text_;
  size_t at_ = 0;
  std::optional<int> day_, month_, year_;
  bool hasTime_ = false;
  int hour_ = 0, minute_ = 0, second_ = 0, offset_ = 0;
};

}  // namespace

NSDate MailKelspar::dateFromHeader(const NSString& value) {
  if (!value) return nil;
  const auto seconds = DateWords(plain(value)).read();
  return seconds ? NSDate::since1970(static_cast<double>(*seconds)) : NSDate();
}

}  // namespace kelspar
